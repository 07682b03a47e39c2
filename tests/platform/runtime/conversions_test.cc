// Rounding, checked sums, texts as numbers, IsNumeric, dates and keys.
#include "platform/runtime/conversions.h"

#include "platform/runtime/expect_error.h"
#include "platform/runtime/test_objects.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace kx::runtime {
namespace {

struct RoundCase {
  double value;
  std::int32_t result;
  std::int32_t error;
};

constexpr RoundCase kRounds[] = {
    {0.5, 0, 0},
    {1.5, 2, 0},
    {2.5, 2, 0},
    {3.5, 4, 0},
    {-0.5, 0, 0},
    {-1.5, -2, 0},
    {-2.5, -2, 0},
    {0.49999999999999994, 0, 0},
    {2.5000000001, 3, 0},
    {-2.5000000001, -3, 0},
    {2147483647.49, 2147483647, 0},
    {2147483647.5, 0, 6},
    {-2147483648.5, -2147483647 - 1, 0},
    {-2147483648.51, 0, 6},
    {-2147483649.0, 0, 6},
    {1e300, 0, 6},
    {std::numeric_limits<double>::infinity(), 0, 6},
    {std::numeric_limits<double>::quiet_NaN(), 0, 6},
};

TEST(RoundToInteger, RoundsHalfToEvenAndRefusesWhatDoesNotFit) {
  for (const RoundCase& row : kRounds) {
    SCOPED_TRACE(row.value);
    EXPECT_EQ(ErrorOf([&] { return RoundToInteger(row.value); }), row.error);
    EXPECT_EQ(FindRounded(row.value).has_value(), row.error == 0);
    if (row.error == 0) {
      EXPECT_EQ(RoundToInteger(row.value), row.result);
    }
  }
}

TEST(RoundToInteger16, HasTheLimitsOf16Bits) {
  EXPECT_EQ(RoundToInteger16(32767.49), 32767);
  EXPECT_EQ(ErrorOf([] { return RoundToInteger16(32767.5); }), 6);
  EXPECT_EQ(RoundToInteger16(-32768.5), -32768);
  EXPECT_EQ(ErrorOf([] { return RoundToInteger16(-32769); }), 6);
  EXPECT_EQ(RoundToInteger16(2.5), 2);
}

TEST(CheckedSums, OverflowInsteadOfWrappingRound) {
  EXPECT_EQ(AddInteger16(32766, 1), 32767);
  EXPECT_EQ(ErrorOf([] { return AddInteger16(32767, 1); }), 6);
  EXPECT_EQ(ErrorOf([] { return AddInteger16(20000, 20000); }), 6);
  EXPECT_EQ(SubtractInteger16(-32767, 1), -32768);
  EXPECT_EQ(ErrorOf([] { return SubtractInteger16(-32768, 1); }), 6);
  EXPECT_EQ(AddInteger(2147483646, 1), 2147483647);
  EXPECT_EQ(ErrorOf([] { return AddInteger(2147483647, 1); }), 6);
  EXPECT_EQ(SubtractInteger(-2147483647, 1), -2147483647 - 1);
  EXPECT_EQ(ErrorOf([] { return SubtractInteger(-2147483647 - 1, 1); }), 6);
}

struct TextIntegerCase {
  const char* text;
  std::int32_t result;
  std::int32_t error;
  const char* why;
};

constexpr TextIntegerCase kTextIntegers[] = {
    {"12", 12, 0, "digits"},
    {" -12 ", -12, 0, "sign and blanks"},
    {"2.5", 2, 0, "half to even, down"},
    {"3.5", 4, 0, "half to even, up"},
    {"2.50000000000000000000001", 3, 0, "more than half by a digit that no double holds"},
    {"-0.5", 0, 0, "half of minus one"},
    {"1e3", 1000, 0, "exponent"},
    {"(1,000)", -1000, 0, "parentheses and separators"},
    {"2147483647", 2147483647, 0, "the largest"},
    {"2147483647.49", 2147483647, 0, "just below the next"},
    {"2147483647.5", 0, 6, "rounds up beyond it"},
    {"-2147483648.5", -2147483647 - 1, 0, "rounds to even, within"},
    {"-2147483649", 0, 6, "below the smallest"},
    {"99999999999999999999", 0, 6, "beyond 64 bits"},
    {"1e400", 0, 6, "beyond a double"},
    {"1e-400", 0, 0, "next to nothing"},
    {"&H7FFFFFFF", 2147483647, 0, "hexadecimal"},
    {"&HFFFF", 65535, 0, "16 bits are positive in 32"},
    {"&HFFFFFFFF", -1, 0, "32 bits fill the sign"},
    {"&H100000000", 0, 6, "33 bits"},
    {"-&H10", -16, 0, "with a sign"},
    {"-&H80000000", 0, 6, "the smallest has no opposite"},
    {"", 0, 13, "empty"},
    {"abc", 0, 13, "letters"},
    {"True", 0, 13, "the name of a boolean is no number"},
    {"2008-03-14", 0, 13, "a date"},
};

TEST(TextToInteger, FollowsTheNumberGrammarAndRounds) {
  for (const TextIntegerCase& row : kTextIntegers) {
    SCOPED_TRACE(std::string(row.text) + ": " + row.why);
    EXPECT_EQ(ErrorOf([&] { return TextToInteger(row.text); }), row.error);
    if (row.error == 0) {
      EXPECT_EQ(TextToInteger(row.text), row.result);
    }
  }
}

TEST(TextToInteger16, FillsTheBitsOf16) {
  EXPECT_EQ(TextToInteger16("32767"), 32767);
  EXPECT_EQ(ErrorOf([] { return TextToInteger16("32768"); }), 6);
  EXPECT_EQ(TextToInteger16("-32768"), -32768);
  EXPECT_EQ(TextToInteger16("&HFFFF"), -1);
  EXPECT_EQ(ErrorOf([] { return TextToInteger16("&H10000"); }), 6);
  EXPECT_EQ(ErrorOf([] { return TextToInteger16("x"); }), 13);
}

TEST(TextToNumber, RaisesForNoNumberAndForTooLargeOnes) {
  EXPECT_EQ(TextToNumber("1,000.5"), 1000.5);
  EXPECT_EQ(TextToNumber("$-5"), -5);
  EXPECT_EQ(TextToNumber("&hff"), 255);
  EXPECT_EQ(TextToNumber("1.7976931348623157e308"), std::numeric_limits<double>::max());
  EXPECT_EQ(TextToNumber("1e-400"), 0) << "too small is 0";
  EXPECT_EQ(ErrorOf([] { return TextToNumber("1e309"); }), 6);
  EXPECT_EQ(ErrorOf([] { return TextToNumber("-1e309"); }), 6);
  EXPECT_EQ(ErrorOf([] { return TextToNumber(""); }), 13);
  EXPECT_EQ(ErrorOf([] { return TextToNumber("1 2"); }), 13);
}

TEST(TextToCurrency, IsExactToFourDecimals) {
  EXPECT_EQ(TextToCurrency("922337203685477.5807").tenThousandths,
            std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(TextToCurrency("-922337203685477.5808").tenThousandths,
            std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(ErrorOf([] { return TextToCurrency("922337203685477.5808"); }), 6);
  EXPECT_EQ(ErrorOf([] { return TextToCurrency("-922337203685477.5809"); }), 6);
  EXPECT_EQ(TextToCurrency("1.00005").tenThousandths, 10000) << "half to even";
  EXPECT_EQ(TextToCurrency("1.00015").tenThousandths, 10002) << "half to even, up";
  EXPECT_EQ(TextToCurrency("&H10").tenThousandths, 160000);
  EXPECT_EQ(ErrorOf([] { return TextToCurrency("x"); }), 13);
}

struct NumericCase {
  const char* name;
  Variant value;
  bool numeric;
};

TEST(IsNumeric, IsTrueForNumbersAndTextsThatAreOne) {
  const NumericCase cases[] = {
      {"empty", Variant(), true},
      {"a boolean", true, true},
      {"an 8-bit integer", std::int8_t{1}, true},
      {"a 16-bit integer", std::int16_t{1}, true},
      {"a 32-bit integer", 1, true},
      {"a 64-bit integer", std::int64_t{1}, true},
      {"an unsigned byte", std::uint8_t{1}, true},
      {"unsigned 16 bits", std::uint16_t{1}, true},
      {"unsigned 32 bits", std::uint32_t{1}, true},
      {"unsigned 64 bits", std::uint64_t{1}, true},
      {"a single", 1.0F, true},
      {"a double", 1.0, true},
      {"a currency amount", Currency{1}, true},
      {"Null", Variant::Null(), false},
      {"nothing", Variant::Nothing(), false},
      {"an object without value", MakePlainThing(), false},
      {"an object with a number", MakeValuedThing(5), true},
      {"an object with a numeric text", MakeValuedThing("5"), true},
      {"an object with another text", MakeValuedThing("x"), false},
      {"bytes", Variant::Bytes{1}, false},
      {"a missing argument", Variant::Missing(), false},
      {"an error value", ErrorValue{5}, false},
      {"a date", Date{1}, false},
      {"a text of a date", "2008-03-14", false},
      {"a text of a time", "9:05", false},
      {"the empty text", "", false},
      {"digits", "3", true},
      {"digits between blanks", " 3 ", true},
      {"a number too large for a double", "1e400", true},
      {"minus one", "-1", true},
      {"one in parentheses", "(1)", true},
      {"a name", "Item", false},
  };
  for (const NumericCase& row : cases) {
    EXPECT_EQ(IsNumeric(row.value), row.numeric) << row.name;
  }
}

TEST(FormatDateTime, WritesDatesAndLeavesOtherTexts) {
  const double moment = 41408.08625;
  EXPECT_EQ(FormatDateTime(Date{moment}), "2013-05-14 02:04:12");
  EXPECT_EQ(FormatDateTime(moment), "2013-05-14 02:04:12") << "a number is a day number";
  EXPECT_EQ(FormatDateTime("5/14/2013 2:04:12 AM"), "2013-05-14 02:04:12");
  EXPECT_EQ(FormatDateTime(Date{moment + 0.6 / 86400}), "2013-05-14 02:04:13") << "rounded";
  EXPECT_EQ(FormatDateTime(Date{moment}, "hh:mm"), "02:04");
  EXPECT_EQ(FormatDateTime(Variant::Null()), "");
  EXPECT_EQ(FormatDateTime(Variant()), "1899-12-30 00:00:00");
  EXPECT_EQ(FormatDateTime("no date"), "no date");
  EXPECT_EQ(ErrorOf([] { return FormatDateTime(Date{0}, "qq"); }), 5);
  EXPECT_EQ(ErrorOf([] { return FormatDateTime(1e9); }), 6);
  EXPECT_EQ(ErrorOf([] { return FormatDateTime(Variant::Missing()); }), 13);
}

TEST(TextToDate, RaisesWhenTheTextIsNoDate) {
  EXPECT_NEAR(TextToDate("2013-05-14 02:04:12").value, 41408.08625, 1e-9);
  EXPECT_EQ(ErrorOf([] { return TextToDate("2008-03-14T09:05:07"); }), 13);
  EXPECT_EQ(ErrorOf([] { return TextToDate(""); }), 13);
}

struct KeyCase {
  const char* name;
  Variant key;
  std::optional<double> position;
  std::string text;
  std::int32_t error;
};

TEST(ReadKey, TellsPositionsFromNames) {
  const KeyCase cases[] = {
      {"an integer", 3, 3, "", 0},
      {"a fraction is kept", 1.5, 1.5, "", 0},
      {"a numeric text", "3", 3, "", 0},
      {"a negative text", "-1", -1, "", 0},
      {"a text in parentheses", "(1)", -1, "", 0},
      {"a huge text", "99999999999", 99999999999.0, "", 0},
      {"a text beyond a double", "1e400", {}, "", 6},
      {"True", true, -1, "", 0},
      {"empty", Variant(), 0, "", 0},
      {"currency", Currency{20000}, 2, "", 0},
      {"a name", "Item", {}, "Item", 0},
      {"the empty name", "", {}, "", 0},
      {"a date is a name", Date{39521}, {}, "3/14/2008", 0},
      {"bytes are a name", Variant::Bytes{65, 0}, {}, "A", 0},
      {"an object with a name", MakeValuedThing("Item"), {}, "Item", 0},
      {"an object with a number", MakeValuedThing(2), 2, "", 0},
      {"Null", Variant::Null(), {}, "", 94},
      {"a missing argument", Variant::Missing(), {}, "", 13},
      {"nothing", Variant::Nothing(), {}, "", 91},
      {"an object without value", MakePlainThing(), {}, "", 438},
  };
  for (const KeyCase& row : cases) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(ErrorOf([&] { return ReadKey(row.key); }), row.error);
    if (row.error != 0) continue;
    const PositionOrName read = ReadKey(row.key);
    EXPECT_EQ(read.position, row.position);
    EXPECT_EQ(read.IsPosition(), row.position.has_value());
    EXPECT_EQ(read.name, row.text);
  }
}

TEST(PositionOrName, ComparesUnroundedAndCountsFromZero) {
  struct Case {
    double position;
    bool within;
    std::int32_t zeroBased;
  };
  constexpr Case kCases[] = {{1, true, 0},    {3, true, 2},   {0, false, -1}, {4, false, 3},
                             {0.5, false, 0}, {1.5, true, 0}, {2.5, true, 2}, {3.5, false, 2}};
  for (const Case& row : kCases) {
    const PositionOrName key{row.position, {}};
    EXPECT_EQ(key.IsWithin(3), row.within) << row.position;
    EXPECT_EQ(key.ZeroBased(), row.zeroBased) << row.position;
  }
  EXPECT_FALSE((PositionOrName{std::nullopt, "x"}).IsWithin(3));
  EXPECT_EQ(ErrorOf([] { return PositionOrName{1e12, {}}.ZeroBased(); }), 6);
}

TEST(ScalarOf, FollowsDefaultValuesToTheEnd) {
  EXPECT_EQ(ScalarOf(5), Variant(5));
  EXPECT_EQ(ScalarOf(MakeValuedThing(MakeValuedThing("x"))), Variant("x"));
  EXPECT_EQ(ErrorOf([] { return ScalarOf(Variant::Nothing()); }), 91);
  EXPECT_EQ(ErrorOf([] { return ScalarOf(MakePlainThing()); }), 438);
  EXPECT_EQ(ErrorOf([] { return ScalarOf(MakeValuedThing(Variant::Nothing())); }), 438);
}

// An object whose default value is itself.
class Ring : public PlainObject {
 public:
  [[nodiscard]] std::optional<Variant> DefaultValue() const override {
    return Variant(ObjectRef(const_cast<Ring*>(this)));
  }
};

TEST(ScalarOf, GivesUpOnAnObjectThatIsItsOwnValue) {
  const Variant ring = ObjectRef(MakeCounted<Ring>().Get());
  EXPECT_EQ(ErrorOf([&] { return ScalarOf(ring); }), 438);
  EXPECT_FALSE(IsNumeric(ring));
}

}  // namespace
}  // namespace kx::runtime
