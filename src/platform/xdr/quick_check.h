// The quickest way to find that a text is good: for the texts that most values are (a few digits, a
// day, a listed word) sixteen bytes at a time and nearly without branches. What is not found to be
// good here may be good all the same: the rules of the type (datatypes/lexical.h) then decide.
#pragma once

#include "platform/datatypes/data_type.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kx::xdr {

class QuickCheck {
 public:
  /// How many bytes behind the begin of a text are read, however short it is. The parse buffer of a
  /// document has them behind every text that lies in it.
  static constexpr std::uint32_t kReadAhead = 16;

  QuickCheck() = default;
  /// For texts of `type` with these bounds and, for an enumeration, these values.
  QuickCheck(datatypes::DataType type, std::uint32_t minLength, std::uint32_t maxLength,
             std::span<const std::string> values);

  /// True only for a text that is good. `text` has kReadAhead readable bytes.
  [[nodiscard]] bool Takes(const char* text, std::uint32_t length) const noexcept {
    // Most values are strings, and need no more than this.
    if (form_ == Form::kString) return length - fewest_ <= most_ - fewest_;
    return TakesOther(text, length);
  }

 private:
  enum class Form : std::uint8_t {
    kUnknown,
    kString,  ///< any of so many bytes
    kDigits,
    kDecimal,  ///< digits and a point
    kBoolean,
    kDate,
    kDateTime,
    kUuid,
    kListed,
  };
  /// The bytes of a listed value, padded with zeros.
  struct Listed {
    std::uint64_t low = 0;
    std::uint64_t high = 0;
  };

  [[nodiscard]] bool TakesOther(const char* text, std::uint32_t length) const noexcept;
  [[nodiscard]] bool Lists(const char* text, std::uint32_t length) const noexcept;

  Form form_ = Form::kUnknown;
  std::uint8_t decimals_ = 0;  ///< of kDecimal: at most so many behind the point
  std::uint32_t fewest_ = 1;   ///< bytes
  std::uint32_t most_ = 0;
  std::vector<Listed> listed_;
};

}  // namespace kx::xdr
