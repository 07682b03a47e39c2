// Where the runs of digits, zeros and blanks of a long text begin and end, found by bisection: what
// reads many overlapping parts of one text as numbers does not go through their characters again
// and again.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace kx::patterns {

class TextRuns {
 public:
  TextRuns() = default;
  /// Of `text`, which outlives this.
  explicit TextRuns(std::string_view text);

  /// True when `part` lies in the text that this was made of.
  [[nodiscard]] bool Covers(std::string_view part) const noexcept;

  // Offsets are those in `part`, which must lie in the text; the results do not leave it.

  /// The first offset from `at` on without a digit, a zero, a blank.
  [[nodiscard]] std::size_t DigitsEnd(std::string_view part, std::size_t at) const noexcept;
  [[nodiscard]] std::size_t ZerosEnd(std::string_view part, std::size_t at) const noexcept;
  [[nodiscard]] std::size_t BlanksEnd(std::string_view part, std::size_t at) const noexcept;
  /// The last offset up to `at` that no blank stands before.
  [[nodiscard]] std::size_t BlanksBegin(std::string_view part, std::size_t at) const noexcept;

 private:
  struct Run {
    std::size_t begin;
    std::size_t end;
  };
  using Runs = std::vector<Run>;

  static const Run* RunAt(const Runs& runs, std::size_t at) noexcept;
  [[nodiscard]] std::size_t EndIn(const Runs& runs, std::string_view part,
                                  std::size_t at) const noexcept;

  std::string_view text_;
  Runs digits_;
  Runs zeros_;
  Runs blanks_;
};

}  // namespace kx::patterns
