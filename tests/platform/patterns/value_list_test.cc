#include "platform/patterns/value_list.h"

#include "platform/patterns/generators.h"
#include "platform/patterns/value.h"

#include <gtest/gtest.h>
#include <optional>

namespace kx::patterns {
namespace {

constexpr Comparison kComparisons[] = {Comparison::kEqual,   Comparison::kNotEqual,
                                       Comparison::kLess,    Comparison::kLessOrEqual,
                                       Comparison::kGreater, Comparison::kGreaterOrEqual};

int ExactOrder(std::string_view a, std::string_view b) {
  return CompareTexts(a, b, CaseRule::kExact);
}
int FoldedOrder(std::string_view a, std::string_view b) {
  return CompareTexts(a, b, CaseRule::kIgnored);
}

// Every stretch of `size` entries, each comparison, both truths: as when it is gone through.
template <class Holds>
void ExpectAsGoneThrough(const ValueList& list, std::size_t size, const ValueList::Other& other,
                         const Holds& holds) {
  for (std::size_t begin = 0; begin <= size; ++begin) {
    for (std::size_t end = begin; end <= size; ++end) {
      for (const Comparison comparison : kComparisons) {
        for (const bool wanted : {false, true}) {
          bool some = false;
          for (std::size_t i = begin; i < end; ++i) {
            const std::optional<bool> answer = holds(i, comparison);
            some = some || (answer && *answer == wanted);
          }
          EXPECT_EQ(list.Some(begin, end, comparison, other, wanted), some)
              << begin << " to " << end << ", comparison " << static_cast<int>(comparison) << ", "
              << wanted;
        }
      }
    }
  }
}

TEST(ValueList, KnowsOfEveryStretchWhetherATextIsThere) {
  Dice dice(5);
  const char* const texts[] = {"", "a", "A", "ab", "b", "1", "10", "9"};
  for (int round = 0; round < 40; ++round) {
    const bool folded = round % 2 == 0;
    const CaseRule rule = folded ? CaseRule::kIgnored : CaseRule::kExact;
    ValueList list;
    std::vector<std::optional<std::string>> entries;
    const std::uint32_t size = dice.Roll(9);
    for (std::uint32_t i = 0; i < size; ++i) {
      if (dice.Roll(5) == 0) {
        list.AddAbsent();
        entries.emplace_back();
      } else {
        entries.emplace_back(dice.Pick(texts));
        list.AddCopy(*entries.back());
      }
    }
    list.Finish(folded ? FoldedOrder : ExactOrder);
    for (const char* other : texts) {
      SCOPED_TRACE(other);
      ExpectAsGoneThrough(list, size, list.Find(other, folded ? FoldedOrder : ExactOrder),
                          [&](std::size_t i, Comparison comparison) -> std::optional<bool> {
                            if (!entries[i]) return std::nullopt;
                            return HoldsForTexts(comparison, rule, *entries[i], other);
                          });
    }
  }
}

TEST(ValueList, KnowsOfEveryStretchWhetherANumberIsThere) {
  enum class Kind { kNumber, kUnlike, kNothing };
  struct Entry {
    Kind kind;
    double number;
  };
  Dice dice(6);
  constexpr double kNumbers[] = {-1.5, -0.0, 0.0, 1, 2, 1e300, kUnreadable};
  for (int round = 0; round < 40; ++round) {
    ValueList list;
    std::vector<Entry> entries;
    const std::uint32_t size = dice.Roll(9);
    for (std::uint32_t i = 0; i < size; ++i) {
      const double number = kNumbers[dice.Roll(7)];
      entries.push_back({static_cast<Kind>(dice.Roll(4) == 0 ? dice.Roll(3) : 0), number});
      if (entries.back().kind == Kind::kNumber) list.AddNumber(number);
      if (entries.back().kind == Kind::kUnlike) list.AddUnlike();
      if (entries.back().kind == Kind::kNothing) list.AddNothing();
    }
    list.Finish(ExactOrder);
    for (const double other : kNumbers) {
      SCOPED_TRACE(other);
      ExpectAsGoneThrough(list, size, list.Find(other),
                          [&](std::size_t i, Comparison comparison) -> std::optional<bool> {
                            if (entries[i].kind == Kind::kNothing) return false;
                            const double number =
                                entries[i].kind == Kind::kUnlike ? kUnreadable : entries[i].number;
                            return HoldsForNumbers(comparison, number, other);
                          });
    }
  }
}

}  // namespace
}  // namespace kx::patterns
