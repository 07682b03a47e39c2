// The values that comparisons see, and how two of them compare: texts by their UTF-16 units,
// numbers and dates as doubles. A text that does not read as a number (or date) is a NaN, which is
// unequal to everything and neither below nor above anything.
#pragma once

#include "platform/patterns/number_reading.h"
#include "platform/patterns/pattern_code.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kx::patterns {

/// The decimal text of a number: no sign for positive ones, no fraction for whole ones.
[[nodiscard]] std::string WriteNumber(double number);

/// Below zero, zero or above zero, by UTF-16 units; both folded to upper case when case is ignored.
[[nodiscard]] int CompareTexts(std::string_view a, std::string_view b, CaseRule caseRule) noexcept;

/// Two texts that are gone through together.
class TextPair {
 public:
  TextPair(std::string_view a, std::string_view b) noexcept : a_(a), b_(b) {}
  [[nodiscard]] std::string_view LeftOfA() const noexcept { return a_.substr(atA_); }
  [[nodiscard]] std::string_view LeftOfB() const noexcept { return b_.substr(atB_); }
  /// Leaves out what is the same, byte by byte or but for case, back to the beginning of a
  /// character.
  void Skip(std::size_t same) noexcept;
  /// The order of both when it shows in the next character, or at an end. Else goes on behind it.
  [[nodiscard]] std::optional<int> CompareOne(CaseRule caseRule) noexcept;

 private:
  std::string_view a_;
  std::string_view b_;
  std::size_t atA_ = 0;
  std::size_t atB_ = 0;
};

/// How many bytes two texts have in common at their beginnings.
[[nodiscard]] std::size_t SameBytes(std::string_view a, std::string_view b) noexcept;

[[nodiscard]] bool HoldsForOrder(Comparison comparison, int order) noexcept;
[[nodiscard]] bool HoldsForTexts(Comparison comparison, CaseRule caseRule, std::string_view left,
                                 std::string_view right) noexcept;
[[nodiscard]] bool HoldsForNumbers(Comparison comparison, double left, double right) noexcept;

}  // namespace kx::patterns
