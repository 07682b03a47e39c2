// Numbers as data types write them: integers of all sizes, decimals with exponent, amounts with
// four decimals. All texts are trimmed already.
#pragma once

#include "platform/datatypes/data_type.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace kx::datatypes {

/// A whole number of 64 bits and its sign.
struct Integer {
  std::uint64_t magnitude = 0;
  bool negative = false;

  friend bool operator==(const Integer& a, const Integer& b) noexcept {
    return a.magnitude == b.magnitude && (a.negative == b.negative || a.magnitude == 0);
  }
};

/// The least and largest value of an integer type.
struct IntegerRange {
  std::uint64_t below = 0;  ///< magnitude of the least one
  std::uint64_t above = 0;
};
[[nodiscard]] IntegerRange RangeOf(DataType type) noexcept;

/// Reads an optional sign and digits; nothing for anything else and beyond 64 bits.
[[nodiscard]] std::optional<Integer> IntegerValue(std::string_view text) noexcept;
/// True when `text` is an integer in the range of `type`. Unsigned types refuse any "-".
[[nodiscard]] bool IsIntegerText(DataType type, std::string_view text) noexcept;

/// True when `text` is a decimal number, with exponent or without, that `type` (number, float, r4,
/// r8) can hold; too small ones count as 0.
[[nodiscard]] bool IsNumberOf(DataType type, std::string_view text) noexcept;
[[nodiscard]] std::optional<double> DoubleValue(std::string_view text) noexcept;
[[nodiscard]] std::optional<float> SingleValue(std::string_view text) noexcept;

/// True for at most four decimals, no exponent, in the range of a currency amount.
[[nodiscard]] bool IsFixedText(std::string_view text) noexcept;
/// The amount in ten-thousandths.
[[nodiscard]] std::optional<std::int64_t> FixedValue(std::string_view text) noexcept;

}  // namespace kx::datatypes
