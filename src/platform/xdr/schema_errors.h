// The failures of schemas and of instances that do not suit them: numbers and published texts.
#pragma once

#include "platform/dom/parse_error.h"

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace kx::xdr {

/// The numbers, those of the resources that could not be read left out. Kept in step with the
/// texts in schema_errors.cc by an assertion there.
enum class XdrCode : std::uint32_t {
  kUndeclaredElement = 0xC00CE00D,
  kDanglingIdref = 0xC00CE00E,
  kBadDefault = 0xC00CE00F,
  kElementEmpty = 0xC00CE011,
  kElementIncomplete = 0xC00CE012,
  kElementInvalid = 0xC00CE014,
  kUndeclaredAttribute = 0xC00CE015,
  kNotTheFixedValue = 0xC00CE016,
  kBadAttributeValue = 0xC00CE017,
  kTextNotAllowed = 0xC00CE018,
  kElementDeclaredTwice = 0xC00CE01B,
  kReferenceToUndeclared = 0xC00CE01C,
  kUndeclaredPrefix = 0xC00CE01D,
  kMissingAttribute = 0xC00CE020,
  kTwoIds = 0xC00CE022,
  kBadRoot = 0xC00CE101,
  kDuplicateId = 0xC00CE200,
  kDataTypeParse = 0xC00CE201,
  kTwoDataTypes = 0xC00CE205,
  kUnknownDataType = 0xC00CE21C,
  kNotOneRoot = 0xC00CE223,
  kNoSchemaForRoot = 0xC00CE224,
  kSchemaMistake = 0xC00CE225,  ///< %1 is the whole sentence
  kBadNameStart = 0xC00CE504,
  kSeveralNames = 0xC00CE574,
};

/// The text of a code with its %1 and %2 filled in, CR LF included.
[[nodiscard]] std::string XdrReason(XdrCode code,
                                    std::initializer_list<std::string_view> arguments = {});

/// Fills in number and reason; the place stays as it is.
void SetXdrError(dom::ParseError& error, XdrCode code,
                 std::initializer_list<std::string_view> arguments = {});

}  // namespace kx::xdr
