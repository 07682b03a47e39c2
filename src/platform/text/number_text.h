// Numbers as text, without any locale: the shape in which integers, singles, doubles and currency
// amounts are written, the number grammar that tells whether a text is a number, and the reading
// of decimals.
//
// Pure functions; what is not a number is an answer here, and becomes an error in the run-time's
// conversions.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kx::text {

/// The double in at most 15 significant digits: "0.5", "3.14159265358979". Plain while the result
/// fits into 15 digits, else "1E+15", "5.6789E-12". Negative zero is "0".
[[nodiscard]] std::string FormatDouble(double value);
/// The same with 7 digits.
[[nodiscard]] std::string FormatSingle(float value);
/// An amount in ten-thousandths, with up to four decimals and no zeros at the end: "1.5".
[[nodiscard]] std::string FormatCurrency(std::int64_t tenThousandths);
[[nodiscard]] std::string FormatInteger(std::int64_t value);
[[nodiscard]] std::string FormatInteger(std::uint64_t value);

/// What reading a decimal number can give beside a value.
enum class DecimalStatus { kOk, kTooLarge };

/// `value` is 0 for a magnitude too small and infinite for one too large.
struct DecimalValue {
  double value = 0;
  DecimalStatus status = DecimalStatus::kOk;
};

/// Reads `digits` (digits with at most one ".", at least one digit) times ten to the `exponent`,
/// correctly rounded, in time linear in the length.
[[nodiscard]] DecimalValue ReadDecimal(std::string_view digits, std::int64_t exponent);

/// A text taken apart by the number grammar.
struct ParsedNumber {
  bool negative = false;
  bool hexOrOctal = false;    ///< then `bits` holds it, else `digits` and `exponent`
  bool tooManyBits = false;   ///< more than 64 bits were written
  std::uint64_t bits = 0;     ///< the magnitude
  std::string digits;         ///< digits and at most one ".", separators removed
  std::int64_t exponent = 0;  ///< of ten; clamped far outside the range of a double
};

/// Takes `text` apart when the whole of it is a number: white space, signs, "$", parentheses and a
/// decimal point around the digits, "&H" and "&O", separators, an exponent. Nothing otherwise.
[[nodiscard]] std::optional<ParsedNumber> ParseNumber(std::string_view text);

/// True when ParseNumber accepts the text.
[[nodiscard]] bool IsNumberText(std::string_view text);

/// Reads `digits` times ten to the `exponent` as a whole number of 10^-`decimals`, exactly, rounded
/// half to even; nothing when the magnitude is above 2^63.
[[nodiscard]] std::optional<std::uint64_t> ReadScaled(std::string_view digits,
                                                      std::int64_t exponent, int decimals);

/// The value of a parsed number as a double.
[[nodiscard]] DecimalValue ValueOf(const ParsedNumber& number);

}  // namespace kx::text
