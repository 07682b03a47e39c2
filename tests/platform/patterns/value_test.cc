#include "platform/patterns/value.h"

#include <gtest/gtest.h>

namespace kx::patterns {
namespace {

int Sign(int order) { return (order > 0) - (order < 0); }

TEST(CompareTexts, OrdersByUtf16Units) {
  struct Row {
    const char* a;
    const char* b;
    int exact;
    int folded;
  };
  const Row rows[] = {
      {"", "", 0, 0},
      {"", "a", -1, -1},
      {"a", "b", -1, -1},
      {"a", "B", 1, -1},
      {"ab", "a", 1, 1},
      {"abc", "ABC", 1, 0},
      {"\xC3\xA9", "\xC3\x89", 1, 0},                // e with acute, both cases
      {"\xF0\x9F\x98\x80", "\xEE\x80\x80", -1, -1},  // a pair of surrogates below U+E000
      {"\xF0\x9F\x98\x80", "\xED\x9F\xBF", 1, 1},    // and above U+D7FF
      {"x\xF0\x9F\x98\x80", "x\xF0\x9F\x98\x81", -1, -1},
      {"x\xC3\xA9", "x\xC3\xAA", -1, -1},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Sign(CompareTexts(row.a, row.b, CaseRule::kExact)), row.exact) << row.a << row.b;
    EXPECT_EQ(Sign(CompareTexts(row.b, row.a, CaseRule::kExact)), -row.exact) << row.a << row.b;
    EXPECT_EQ(Sign(CompareTexts(row.a, row.b, CaseRule::kIgnored)), row.folded) << row.a << row.b;
  }
}

TEST(WriteNumber, WritesWholeNumbersWithoutFraction) {
  EXPECT_EQ(WriteNumber(0), "0");
  EXPECT_EQ(WriteNumber(12), "12");
  EXPECT_EQ(WriteNumber(-3), "-3");
  EXPECT_EQ(WriteNumber(1.5), "1.5");
}

TEST(HoldsForNumbers, OfAnUnreadableOneOnlyUnequalHolds) {
  for (const Comparison comparison :
       {Comparison::kEqual, Comparison::kNotEqual, Comparison::kLess, Comparison::kLessOrEqual,
        Comparison::kGreater, Comparison::kGreaterOrEqual}) {
    EXPECT_EQ(HoldsForNumbers(comparison, kUnreadable, 1), comparison == Comparison::kNotEqual);
    EXPECT_EQ(HoldsForNumbers(comparison, 1, kUnreadable), comparison == Comparison::kNotEqual);
  }
}

}  // namespace
}  // namespace kx::patterns
