// The values that comparisons see, and how two of them compare: texts by their UTF-16 units,
// numbers and dates as doubles. A text that does not read as a number (or date) is a NaN, which is
// unequal to everything and neither below nor above anything.
#pragma once

#include "platform/patterns/number_reading.h"
#include "platform/patterns/pattern_code.h"

#include <string>
#include <string_view>

namespace kx::patterns {

/// The decimal text of a number: no sign for positive ones, no fraction for whole ones.
[[nodiscard]] std::string WriteNumber(double number);

/// Below zero, zero or above zero, by UTF-16 units; both folded to upper case when case is ignored.
[[nodiscard]] int CompareTexts(std::string_view a, std::string_view b, CaseRule caseRule) noexcept;

[[nodiscard]] bool HoldsForTexts(Comparison comparison, CaseRule caseRule, std::string_view left,
                                 std::string_view right) noexcept;
[[nodiscard]] bool HoldsForNumbers(Comparison comparison, double left, double right) noexcept;

}  // namespace kx::patterns
