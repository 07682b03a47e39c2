// The failures of DOM calls other than loading, as a caller sees them: a status code, the source
// "msxml3.dll" and a published text followed by CR LF. The internal number of a text is not
// visible.
#pragma once

#include "platform/dom/node_record.h"
#include "platform/dom/parse_error.h"
#include "platform/runtime/error.h"

#include <cstdint>
#include <initializer_list>
#include <string_view>

namespace kx::dom {

inline constexpr std::int32_t kStatusFail = static_cast<std::int32_t>(0x80004005U);
inline constexpr std::int32_t kStatusInvalidArgument = static_cast<std::int32_t>(0x80070057U);
inline constexpr std::string_view kDomErrorSource = "msxml3.dll";

/// The internal numbers of the texts. Kept in step with the table in dom_error.cc by a test.
enum class DomCode : std::uint32_t {
  kInvalidParameter = 0x80070057,  ///< the system's own text for a bad argument
  kDataTypeParse = 0xC00CE201,
  kInsertPositionNotFound = 0xC00CE206,
  kBadNodeType = 0xC00CE208,
  kInsertUnderItself = 0xC00CE20A,
  kPositionNotAChild = 0xC00CE20B,
  kAttributesNotAllowed = 0xC00CE20C,
  kNotAChild = 0xC00CE20D,
  kNameRequired = 0xC00CE20E,
  kAccessDenied = 0xC00CE213,
  kAttributeInUse = 0xC00CE214,
  kInvalidData = 0xC00CE215,
  kBadOffset = 0xC00CE218,
  kNotItsAttribute = 0xC00CE219,
  kDataTypeNotSupported = 0xC00CE21C,
};

/// The text of a code with its %1 and %2 filled in, CR LF included.
[[nodiscard]] std::string DomErrorText(DomCode code,
                                       std::initializer_list<std::string_view> arguments = {});

/// Raises a DomError with the status E_FAIL.
[[noreturn]] void RaiseDomFailure(DomCode code,
                                  std::initializer_list<std::string_view> arguments = {});
/// The same with a text that load failures have as well.
[[noreturn]] void RaiseDomFailure(ParseCode code,
                                  std::initializer_list<std::string_view> arguments = {});
/// Raises a DomError with the status E_INVALIDARG.
[[noreturn]] void RaiseDomArgument(DomCode code = DomCode::kInvalidParameter,
                                   std::initializer_list<std::string_view> arguments = {});

/// The published name of a kind of nodes: "element", "cdatasection", ...
[[nodiscard]] std::string_view NodeTypeName(NodeType type) noexcept;
/// The same in capitals, as the texts of failures have it.
[[nodiscard]] std::string_view NodeTypeCapitals(NodeType type) noexcept;

}  // namespace kx::dom
