// The order of two values of any type.
#include "platform/runtime/conversions.h"
#include "platform/runtime/expect_error.h"
#include "platform/runtime/test_objects.h"

#include <gtest/gtest.h>
#include <string>

namespace kx::runtime {
namespace {

using Order = std::optional<std::weak_ordering>;
constexpr std::weak_ordering kLess = std::weak_ordering::less;
constexpr std::weak_ordering kEqual = std::weak_ordering::equivalent;
constexpr std::weak_ordering kGreater = std::weak_ordering::greater;

struct CompareCase {
  const char* why;
  Variant a;
  Variant b;
  Order order;
  Order reversed;
};

TEST(CompareValues, OrdersValuesOfAllTypes) {
  const CompareCase cases[] = {
      {"numbers by value", 1, 2.5, kLess, kGreater},
      {"of different types", 2, 2.0, kEqual, kEqual},
      {"currency", Currency{15000}, 1.5, kEqual, kEqual},
      {"True is -1", true, -1, kEqual, kEqual},
      {"a date is a number", Date{2}, 2, kEqual, kEqual},
      {"texts by their units", "B", "a", kLess, kGreater},
      {"texts of digits are texts", "10", "9", kLess, kGreater},
      {"units, not bytes", "\xF0\x9F\x98\x80", "\xEF\xBC\xA1", kLess, kGreater},
      {"a number and a numeric text by value", 10, "9", kGreater, kLess},
      {"equal by value", 10, " 10.0 ", kEqual, kEqual},
      {"a number is below any other text", 1000000, "abc", kLess, kGreater},
      {"also below the empty one", 1, "", kLess, kGreater},
      {"a date and a text", Date{1}, "abc", kLess, kGreater},
      {"empty is 0 beside a number", Variant(), 0, kEqual, kEqual},
      {"empty is the empty text beside a text", Variant(), "", kEqual, kEqual},
      {"and below any other", Variant(), "a", kLess, kGreater},
      {"two empty ones", Variant(), Variant(), kEqual, kEqual},
      {"Null has no order", Variant::Null(), 1, {}, {}},
      {"not even with itself", Variant::Null(), Variant::Null(), {}, {}},
      {"an object's value", MakeValuedThing(3), 2, kGreater, kLess},
  };
  for (const CompareCase& row : cases) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(CompareValues(row.a, row.b), row.order);
    EXPECT_EQ(CompareValues(row.b, row.a), row.reversed);
  }
}

TEST(CompareValues, IgnoresCaseWhenAsked) {
  EXPECT_EQ(CompareValues("abc", "ABC"), Order(kGreater));
  EXPECT_EQ(CompareValues("abc", "ABC", TextComparison::kCaseless), Order(kEqual));
  EXPECT_EQ(CompareValues("b", "A", TextComparison::kCaseless), Order(kGreater));
}

TEST(CompareValues, RefusesWhatHasNoOrder) {
  struct Case {
    const char* name;
    Variant value;
    std::int32_t error;
  };
  const Case cases[] = {
      {"bytes", Variant::Bytes{1}, 13},
      {"a missing argument", Variant::Missing(), 13},
      {"nothing", Variant::Nothing(), 91},
      {"an object without value", MakePlainThing(), 438},
  };
  for (const Case& row : cases) {
    EXPECT_EQ(ErrorOf([&] { return CompareValues(row.value, 1) == kEqual; }), row.error)
        << row.name;
    EXPECT_EQ(ErrorOf([&] { return CompareValues("x", row.value) == kEqual; }), row.error)
        << row.name;
  }
}

}  // namespace
}  // namespace kx::runtime
