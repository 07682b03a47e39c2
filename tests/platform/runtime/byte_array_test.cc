// Byte arrays with bounds.
#include "platform/runtime/byte_array.h"

#include "platform/runtime/expect_error.h"

#include <gtest/gtest.h>
#include <limits>

namespace kx::runtime {
namespace {

TEST(ByteArray, HasNoBoundsBeforeItIsDimensioned) {
  const ByteArray array;
  EXPECT_EQ(ErrorOf([&] { return array.LBound(); }), 9);
  EXPECT_EQ(ErrorOf([&] { return array.UBound(); }), 9);
  EXPECT_EQ(ErrorOf([&] { return array.Get(0); }), 9);
}

TEST(ByteArray, HasTheBoundsOfItsBytes) {
  struct Case {
    Variant::Bytes bytes;
    std::int32_t upper;
  };
  const Case cases[] = {{{}, -1}, {{7}, 0}, {{1, 2, 3}, 2}};
  for (const Case& row : cases) {
    const ByteArray array(row.bytes);
    EXPECT_EQ(array.LBound(), 0);
    EXPECT_EQ(array.UBound(), row.upper);
    EXPECT_EQ(array.ToValue(), Variant(row.bytes));
  }
}

TEST(ByteArray, RefusesEveryIndexOutsideItsBounds) {
  struct Case {
    std::int32_t index;
    std::int32_t error;
  };
  constexpr Case kCases[] = {{4, 9},
                             {5, 0},
                             {7, 0},
                             {8, 9},
                             {0, 9},
                             {-1, 9},
                             {std::numeric_limits<std::int32_t>::min(), 9},
                             {std::numeric_limits<std::int32_t>::max(), 9}};
  ByteArray array(5, 7);
  for (const Case& row : kCases) {
    EXPECT_EQ(ErrorOf([&] { return array.Get(row.index); }), row.error) << row.index;
    const auto set = [&] {
      array.Set(row.index, 1);
      return 0;
    };
    EXPECT_EQ(ErrorOf(set), row.error) << row.index;
  }
  EXPECT_EQ(array.Elements(), (Variant::Bytes{1, 0, 1}));
}

TEST(ByteArray, BeginsWithZeros) {
  EXPECT_EQ(ByteArray(0, 2).Elements(), (Variant::Bytes{0, 0, 0}));
  EXPECT_EQ(ByteArray(3, 2).UBound(), 2) << "no elements";
  EXPECT_EQ(ErrorOf([] { return ByteArray(3, 1); }), 9) << "less than none";
}

struct RedimCase {
  std::int32_t lower;
  std::int32_t upper;
  std::int32_t error;
  Variant::Bytes elements;
  const char* why;
};

TEST(RedimPreserve, KeepsContentsAndTheLowerBound) {
  const RedimCase cases[] = {
      {0, 4, 0, {1, 2, 3, 0, 0}, "longer: zeros are added"},
      {0, 1, 0, {1, 2}, "shorter: the rest is cut"},
      {0, -1, 0, {}, "no elements"},
      {0, -2, 9, {1, 2, 3}, "less than none"},
      {1, 3, 9, {1, 2, 3}, "another lower bound"},
  };
  for (const RedimCase& row : cases) {
    SCOPED_TRACE(row.why);
    ByteArray array(Variant::Bytes{1, 2, 3});
    const auto redim = [&] {
      array.RedimPreserve(row.lower, row.upper);
      return 0;
    };
    EXPECT_EQ(ErrorOf(redim), row.error);
    EXPECT_EQ(array.Elements(), row.elements);
  }
}

TEST(RedimPreserve, GivesAnArrayWithoutBoundsAnyBounds) {
  ByteArray array;
  array.RedimPreserve(2, 3);
  EXPECT_EQ(array.LBound(), 2);
  EXPECT_EQ(array.UBound(), 3);
}

TEST(ByteArrayFromValue, RefusesWhatIsNoArray) {
  EXPECT_EQ(ByteArray::FromValue(Variant::Bytes{9}).Get(0), 9);
  for (const Variant& value : {Variant(), Variant(1), Variant("text"), Variant::Null()}) {
    EXPECT_EQ(ErrorOf([&] { return ByteArray::FromValue(value); }), 13);
  }
}

}  // namespace
}  // namespace kx::runtime
