// Texts as numbers, the way comparisons read them: blanks around it do not count; an optional sign,
// digits with an optional fraction (at least one digit in all), an optional exponent.
#pragma once

#include "platform/patterns/text_runs.h"

#include <limits>
#include <string_view>

namespace kx::patterns {

inline constexpr double kUnreadable = std::numeric_limits<double>::quiet_NaN();

/// The nearest double; kUnreadable for anything that is no number, the empty text included.
[[nodiscard]] double ReadNumber(std::string_view text);
/// The same of a part of the text that `runs` knows, without going through all of its characters.
[[nodiscard]] double ReadNumber(std::string_view text, const TextRuns& runs);

}  // namespace kx::patterns
