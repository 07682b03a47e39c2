#include "platform/datatypes/number_form.h"

#include <gtest/gtest.h>
#include <limits>

namespace kx::datatypes {
namespace {

TEST(NumberForm, OfASingleIsTheNearestOne) {
  // Rounded to a double first, this would go to the even neighbour below.
  EXPECT_EQ(SingleValue("1.00000017881393432617187499"), 1.00000011920928955078125F);
  EXPECT_EQ(SingleValue("0.1"), 0.1F);
  EXPECT_EQ(SingleValue("1e-60"), 0.0F);
  EXPECT_FALSE(SingleValue("1e39"));
}

TEST(NumberForm, OfADoubleIsTheNearestOne) {
  EXPECT_EQ(DoubleValue("-3.71e3"), -3710.0);
  EXPECT_EQ(DoubleValue("+.5"), 0.5);
  EXPECT_EQ(DoubleValue("5."), 5.0);
  EXPECT_EQ(DoubleValue("1e-400"), 0.0);
  EXPECT_EQ(DoubleValue("1.7976931348623157E+308"), std::numeric_limits<double>::max());
  EXPECT_FALSE(DoubleValue("1e309"));
  EXPECT_FALSE(DoubleValue("0x10"));
  EXPECT_FALSE(DoubleValue("inf"));
}

TEST(NumberForm, OfAnAmountIsExact) {
  EXPECT_EQ(FixedValue("12.34"), 123400);
  EXPECT_EQ(FixedValue("-0.0001"), -1);
  EXPECT_EQ(FixedValue("922337203685477.5807"), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(FixedValue("-922337203685477.5808"), std::numeric_limits<std::int64_t>::min());
  EXPECT_FALSE(FixedValue("1.23456"));
  EXPECT_FALSE(FixedValue("-"));
}

TEST(NumberForm, OfAnIntegerKeepsAll64Bits) {
  EXPECT_EQ(IntegerValue("18446744073709551615")->magnitude, ~std::uint64_t{0});
  EXPECT_FALSE(IntegerValue("18446744073709551616"));
  EXPECT_TRUE(IntegerValue("-5")->negative);
}

}  // namespace
}  // namespace kx::datatypes
