// The values of a list, all texts or all numbers, and whether a stretch of the list has one that is
// equal to, below or above some other value, answered without going through the stretch.
#pragma once

#include "platform/patterns/pattern_code.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace kx::patterns {

class ValueList {
 public:
  /// Orders two texts: below zero, zero or above zero.
  using TextOrder = std::function<int(std::string_view, std::string_view)>;

  // Each appends one entry. When all are there, Finish().

  void AddText(std::string_view text);  ///< outlives this
  void AddCopy(std::string text);
  /// One that does not read as a number is unequal to everything, and neither below nor above it.
  void AddNumber(double number);
  void AddUnlike() { numbers_.push_back(kUnlike); }
  /// One of which no comparison holds.
  void AddNothing() { numbers_.push_back(kNothing); }
  /// An entry that is never found.
  void AddAbsent() { numbers_.push_back(kAbsent); }
  void Finish(const TextOrder& order);

  /// Where some value stands among those of the list.
  struct Other {
    std::uint32_t below = 0;  ///< how many different ones are below it
    bool isKnown = false;     ///< the next one equals it
    bool isUnlike = false;    ///< it does not read as a number
  };
  [[nodiscard]] Other Find(std::string_view text, const TextOrder& order) const;
  [[nodiscard]] Other Find(double number) const;

  /// True when for some entry from `begin` to `end` it is `holds` that "entry comparison other".
  [[nodiscard]] bool Some(std::size_t begin, std::size_t end, Comparison comparison,
                          const Other& other, bool holds) const;

 private:
  static constexpr std::uint32_t kAbsent = std::numeric_limits<std::uint32_t>::max();
  static constexpr std::uint32_t kNothing = kAbsent - 1;
  static constexpr std::uint32_t kUnlike = kAbsent - 2;
  struct Range {
    std::uint32_t least = kAbsent;
    std::uint32_t greatest = 0;
  };

  template <class Value, class Below>
  void NumberValues(std::vector<Value>& values, const Below& below);
  void FinishRanges();
  [[nodiscard]] static Range Joined(const Range& a, const Range& b) noexcept;
  [[nodiscard]] Range RangeOf(std::size_t begin, std::size_t end) const;
  [[nodiscard]] bool Has(std::size_t begin, std::size_t end, std::uint32_t number) const;

  // Until Finish() one for each entry with a value; then the different ones, in order.
  std::vector<std::string_view> texts_;
  std::vector<double> doubles_;
  std::deque<std::string> copies_;
  std::vector<std::uint32_t> numbers_;   // of each entry's value; before Finish() any but the above
  std::vector<std::uint32_t> byNumber_;  // entries, those of one number side by side
  // A tree: the range of entry i at Size() + i, that of two neighbours at half their place.
  std::vector<Range> ranges_;
};

}  // namespace kx::patterns
