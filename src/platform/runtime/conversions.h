// Conversions of values as the run-time makes them: rounding, the test whether a value is a number,
// Val, text forms, the reading of keys that are positions or names, string conversion by code, and
// bytes to text and back. kx::Variant's To… members are made of these.
//
// Failures are run-time errors: 5, 6, 13, 91, 94, 438. Nothing depends on the host's locale.
#pragma once

#include "kxmessage/variant.h"

#include <compare>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kx::runtime {

// ---- Numbers ------------------------------------------------------------------------------------

/// `value` rounded half to even, as 32 bits. Raises: 6 when the result does not fit (2147483647.49
/// fits, 2147483647.5 does not; -2147483648.5 does), also for a value that is no number.
[[nodiscard]] std::int32_t RoundToInteger(double value);
[[nodiscard]] std::int16_t RoundToInteger16(double value);

/// The same without raising: nothing when the result does not fit.
[[nodiscard]] std::optional<std::int32_t> FindRounded(double value) noexcept;

/// Sums and differences that raise 6 instead of wrapping round.
[[nodiscard]] std::int16_t AddInteger16(std::int16_t a, std::int16_t b);
[[nodiscard]] std::int16_t SubtractInteger16(std::int16_t a, std::int16_t b);
[[nodiscard]] std::int32_t AddInteger(std::int32_t a, std::int32_t b);
[[nodiscard]] std::int32_t SubtractInteger(std::int32_t a, std::int32_t b);

/// A text as a number by the number grammar. Raises: 13, 6.
[[nodiscard]] double TextToNumber(std::string_view text);
/// The same as 32 bits, rounded half to even. Hexadecimal is taken by its bits: "&HFFFFFFFF" is -1.
[[nodiscard]] std::int32_t TextToInteger(std::string_view text);

/// The same with 16 bits: "&HFFFF" is -1 there.
[[nodiscard]] std::int16_t TextToInteger16(std::string_view text);
[[nodiscard]] Currency TextToCurrency(std::string_view text);

/// `value`, or the default value of the object that it refers to. Raises: 91 for nothing, 438 for
/// an object without default value.
[[nodiscard]] Variant ScalarOf(const Variant& value);

/// The same without raising: nothing where ScalarOf raises.
[[nodiscard]] std::optional<Variant> FindScalar(const Variant& value);

/// True for empty, boolean and every numeric type, for a text that is a number as a whole, and for
/// an object whose default value is so; false for everything else. Raises nothing.
[[nodiscard]] bool IsNumeric(const Variant& value);

/// The leading number of a text: blanks, tabs and LF do not count, "&H" and "&O" are understood,
/// 0 when there is none. Raises: 6.
[[nodiscard]] double Val(std::string_view text);

// ---- Dates --------------------------------------------------------------------------------------

/// Raises: 13 when the text is no date.
[[nodiscard]] Date TextToDate(std::string_view text);

/// `value` as a date by `pattern` (see text::FormatDatePattern); "" for Null, and a text that is no
/// date as it is. Raises: 13, 6; 5 for a pattern with other letters.
[[nodiscard]] std::string FormatDateTime(const Variant& value,
                                         std::string_view pattern = "yyyy-mm-dd hh:nn:ss");

// ---- Keys and comparison ------------------------------------------------------------------------

/// A key that is a 1-based position when it is numeric, and a name otherwise.
struct PositionOrName {
  /// Set for a numeric key. Not rounded: range checks compare it as it is, so that a huge number
  /// is outside the range rather than an overflow.
  std::optional<double> position;
  std::string name;

  [[nodiscard]] bool IsPosition() const noexcept { return position.has_value(); }
  /// True when the position lies in 1 to `count`.
  [[nodiscard]] bool IsWithin(std::int64_t count) const noexcept {
    return position && *position >= 1 && *position <= static_cast<double>(count);
  }
  /// `position` - 1, rounded: the number in a list that counts from 0. Raises: 6.
  [[nodiscard]] std::int32_t ZeroBased() const;
};

/// Reads a key. Raises: 94 for Null, 13 for a missing argument and other error values, 91 for
/// nothing, 438 for an object without value, 6 for a number too large for a double.
[[nodiscard]] PositionOrName ReadKey(const Variant& key);

enum class TextComparison { kBinary, kCaseless };

/// Order of two values: numbers (with booleans, dates, currency, empty as 0) by value, texts by
/// `comparison`, a number and a numeric text by value; a number is smaller than any text that is
/// no number. Nothing when either is Null. Raises: 13 for bytes and error values, 91 and 438 for
/// objects.
[[nodiscard]] std::optional<std::weak_ordering> CompareValues(
    const Variant& a, const Variant& b, TextComparison comparison = TextComparison::kBinary);

// ---- Text and bytes -----------------------------------------------------------------------------

/// The UTF-16 units of a text, low byte first.
[[nodiscard]] Variant::Bytes TextToBytes(std::string_view text);
/// The reverse. An odd last byte is dropped; U+FFFD for a surrogate without its partner.
[[nodiscard]] std::string BytesToText(std::span<const std::uint8_t> bytes);

/// `value` as text the way `&` joins values: Null counts as "". Raises as Variant::ToText
/// otherwise.
[[nodiscard]] std::string ToJoinedText(const Variant& value);

/// String conversion by code: 1 upper case, 2 lower case, 3 words capitalised, 64 from bytes of
/// windows-1252 to text, 128 from text to such bytes; 1 to 3 may be added to 64 or 128. Null gives
/// Null. Raises: 5 for any other code, 13, 91, 438.
[[nodiscard]] Variant StrConv(const Variant& value, std::int32_t code);

}  // namespace kx::runtime
