// See value_list.h.
#include "platform/patterns/value_list.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace kx::patterns {

namespace {

Comparison Opposite(Comparison comparison) {
  switch (comparison) {
    case Comparison::kEqual:
      return Comparison::kNotEqual;
    case Comparison::kNotEqual:
      return Comparison::kEqual;
    case Comparison::kLess:
      return Comparison::kGreaterOrEqual;
    case Comparison::kLessOrEqual:
      return Comparison::kGreater;
    case Comparison::kGreater:
      return Comparison::kLessOrEqual;
    case Comparison::kGreaterOrEqual:
      break;
  }
  return Comparison::kLess;
}

}  // namespace

void ValueList::AddText(std::string_view text) {
  texts_.push_back(text);
  numbers_.push_back(0);
}

void ValueList::AddCopy(std::string text) { AddText(copies_.emplace_back(std::move(text))); }

void ValueList::AddNumber(double number) {
  if (std::isnan(number)) return AddUnlike();
  doubles_.push_back(number);
  numbers_.push_back(0);
}

void ValueList::Finish(const TextOrder& order) {
  if (texts_.empty()) {
    NumberValues(doubles_, [](double a, double b) { return a < b; });
  } else {
    NumberValues(texts_,
                 [&order](std::string_view a, std::string_view b) { return order(a, b) < 0; });
  }
  byNumber_.resize(numbers_.size());
  std::iota(byNumber_.begin(), byNumber_.end(), 0U);
  std::stable_sort(byNumber_.begin(), byNumber_.end(),
                   [this](std::uint32_t a, std::uint32_t b) { return numbers_[a] < numbers_[b]; });
  FinishRanges();
}

// Gives each entry that has a value the number of that among all different values, which are what
// is left in `values`.
template <class Value, class Below>
void ValueList::NumberValues(std::vector<Value>& values, const Below& below) {
  std::vector<std::uint32_t> sorted(values.size());
  std::iota(sorted.begin(), sorted.end(), 0U);
  std::sort(sorted.begin(), sorted.end(),
            [&](std::uint32_t a, std::uint32_t b) { return below(values[a], values[b]); });
  std::vector<Value> different;
  std::vector<std::uint32_t> numberOf(values.size());
  for (const std::uint32_t at : sorted) {
    if (different.empty() || below(different.back(), values[at])) different.push_back(values[at]);
    numberOf[at] = static_cast<std::uint32_t>(different.size() - 1);
  }
  std::size_t next = 0;
  for (std::uint32_t& number : numbers_) {
    if (number < kUnlike) number = numberOf[next++];
  }
  values = std::move(different);
}

void ValueList::FinishRanges() {
  const std::size_t size = numbers_.size();
  ranges_.resize(size * 2);
  for (std::size_t i = 0; i < size; ++i) {
    if (numbers_[i] < kUnlike) ranges_[size + i] = {numbers_[i], numbers_[i]};
  }
  for (std::size_t i = size; i-- > 1;) ranges_[i] = Joined(ranges_[i * 2], ranges_[i * 2 + 1]);
}

ValueList::Other ValueList::Find(std::string_view text, const TextOrder& order) const {
  const auto at =
      std::lower_bound(texts_.begin(), texts_.end(), text,
                       [&](std::string_view a, std::string_view b) { return order(a, b) < 0; });
  return {static_cast<std::uint32_t>(at - texts_.begin()),
          at != texts_.end() && order(*at, text) == 0, false};
}

ValueList::Other ValueList::Find(double number) const {
  if (std::isnan(number)) return {0, false, true};
  const auto at = std::lower_bound(doubles_.begin(), doubles_.end(), number);
  return {static_cast<std::uint32_t>(at - doubles_.begin()), at != doubles_.end() && *at == number,
          false};
}

ValueList::Range ValueList::Joined(const Range& a, const Range& b) noexcept {
  return {std::min(a.least, b.least), std::max(a.greatest, b.greatest)};
}

ValueList::Range ValueList::RangeOf(std::size_t begin, std::size_t end) const {
  Range range;
  begin += numbers_.size();
  end += numbers_.size();
  for (; begin < end; begin /= 2, end /= 2) {
    if (begin % 2 != 0) range = Joined(range, ranges_[begin++]);
    if (end % 2 != 0) range = Joined(range, ranges_[--end]);
  }
  return range;
}

bool ValueList::Has(std::size_t begin, std::size_t end, std::uint32_t number) const {
  using Entry = std::pair<std::uint32_t, std::size_t>;
  const auto at = std::lower_bound(byNumber_.begin(), byNumber_.end(), Entry(number, begin),
                                   [this](std::uint32_t entry, const Entry& wanted) {
                                     return Entry(numbers_[entry], entry) < wanted;
                                   });
  return at != byNumber_.end() && numbers_[*at] == number && *at < end;
}

bool ValueList::Some(std::size_t begin, std::size_t end, Comparison comparison, const Other& other,
                     bool holds) const {
  if (!holds && Has(begin, end, kNothing)) return true;
  // What is unlike holds for "!=" alone.
  const bool unlikeDoes = (comparison == Comparison::kNotEqual) == holds;
  if (unlikeDoes && Has(begin, end, kUnlike)) return true;
  const Range range = RangeOf(begin, end);
  if (range.least == kAbsent) return false;
  if (other.isUnlike) return unlikeDoes;
  const std::uint32_t above = other.below + (other.isKnown ? 1 : 0);  // the first number above it
  switch (holds ? comparison : Opposite(comparison)) {
    case Comparison::kEqual:
      return other.isKnown && Has(begin, end, other.below);
    case Comparison::kNotEqual:
      return range.least < other.below || range.greatest >= above;
    case Comparison::kLess:
      return range.least < other.below;
    case Comparison::kLessOrEqual:
      return range.least < above;
    case Comparison::kGreater:
      return range.greatest >= above;
    case Comparison::kGreaterOrEqual:
      break;
  }
  return range.greatest >= other.below;
}

}  // namespace kx::patterns
