// String functions of the run-time. Positions are 1-based and, like lengths, count UTF-16 units;
// texts are UTF-8. A cut through a surrogate pair leaves U+FFFD for the half that remains.
#pragma once

#include "platform/runtime/conversions.h"

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace kx::runtime {

/// The number of UTF-16 units.
[[nodiscard]] std::int32_t Len(std::string_view text);

/// `length` units from position `start`; "" when `start` is beyond the end. Raises: 5 when `start`
/// is below 1 or `length` is negative.
[[nodiscard]] std::string Mid(std::string_view text, std::int32_t start,
                              std::int32_t length = std::numeric_limits<std::int32_t>::max());
/// The first `length` units. Raises: 5 when negative.
[[nodiscard]] std::string Left(std::string_view text, std::int32_t length);
/// The last `length` units. Raises: 5 when negative.
[[nodiscard]] std::string Right(std::string_view text, std::int32_t length);

/// The position of the first `wanted` in `text` at or after `start`, or 0. An empty `wanted` is
/// found at `start` when that lies within `text`. Raises: 5 when `start` is below 1.
[[nodiscard]] std::int32_t InStr(std::int32_t start, std::string_view text, std::string_view wanted,
                                 TextComparison comparison = TextComparison::kBinary);
[[nodiscard]] inline std::int32_t InStr(std::string_view text, std::string_view wanted) {
  return InStr(1, text, wanted);
}

/// The position of the last `wanted` that ends at or before `start` (-1: the end of `text`), or 0.
/// An empty `wanted` is found at `start`. Raises: 5 when `start` is 0 or below -1.
[[nodiscard]] std::int32_t InStrRev(std::string_view text, std::string_view wanted,
                                    std::int32_t start = -1,
                                    TextComparison comparison = TextComparison::kBinary);

/// `text` with every `wanted` replaced, left to right and never inside what was put in; unchanged
/// when `wanted` is empty.
[[nodiscard]] std::string Replace(std::string_view text, std::string_view wanted,
                                  std::string_view replacement);

/// The pieces between delimiters, empty ones included; none at all for an empty text, the whole
/// text for an empty delimiter.
[[nodiscard]] std::vector<std::string> Split(std::string_view text,
                                             std::string_view delimiter = " ");

/// Without the blanks (U+0020, nothing else) at both ends, the start, the end.
[[nodiscard]] std::string_view Trim(std::string_view text) noexcept;
[[nodiscard]] std::string_view LTrim(std::string_view text) noexcept;
[[nodiscard]] std::string_view RTrim(std::string_view text) noexcept;

[[nodiscard]] std::string LCase(std::string_view text);
[[nodiscard]] std::string UCase(std::string_view text);

/// True when the whole text matches the pattern: "?" one unit, "*" any number, "#" a digit, "[...]"
/// one of a list with ranges, "[!...]" none of it; inside the brackets "?", "*", "#" and "[" stand
/// for themselves. Case counts. Raises: 93 for a list without end or a range in wrong order.
[[nodiscard]] bool Like(std::string_view text, std::string_view pattern);

}  // namespace kx::runtime
