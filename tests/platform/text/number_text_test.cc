// Numbers as text: what is written, what counts as a number, and exact reading.
#include "platform/text/number_text.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace kx::text {
namespace {

struct DoubleCase {
  double value;
  const char* text;
  const char* why;
};

constexpr DoubleCase kDoubles[] = {
    {0, "0", "zero"},
    {-0.0, "0", "negative zero"},
    {1, "1", "no decimal point"},
    {-1, "-1", "minus first"},
    {0.5, "0.5", "a zero before the point"},
    {-0.25, "-0.25", "a negative fraction"},
    {3.14159265358979, "3.14159265358979", "15 digits"},
    {3.141592653589793, "3.14159265358979", "cut to 15 digits"},
    {0.1 + 0.2, "0.3", "rounded to 15 digits, no zeros at the end"},
    {1.0 / 3, "0.333333333333333", "15 digits behind the point fit"},
    {1.0 / 30, "3.33333333333333E-02", "16 places do not"},
    {100, "100", "zeros before the point stay"},
    {123456.789, "123456.789", "both sides"},
    {999999999999999, "999999999999999", "15 digits"},
    {999999999999999.9, "1E+15", "rounded up to 16 digits"},
    {1e15, "1E+15", "16 digits"},
    {1.2e15, "1.2E+15", "16 digits with a fraction in front"},
    {123456789012345678.0, "1.23456789012346E+17", "rounded with exponent"},
    {1e100, "1E+100", "three digits of exponent"},
    {1.7976931348623157e308, "1.79769313486232E+308", "the largest"},
    {5e-324, "4.94065645841247E-324", "the smallest"},
    {5.6789e-11, "0.000000000056789", "15 places"},
    {5.6789e-12, "5.6789E-12", "16 places"},
    {1e-15, "0.000000000000001", "15 places for one digit"},
    {1e-16, "1E-16", "16 places for one digit"},
    {0.001, "0.001", "small"},
};

TEST(FormatDouble, WritesUpTo15DigitsPlainWhileTheyFit) {
  for (const DoubleCase& row : kDoubles) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(FormatDouble(row.value), row.text);
    if (row.value > 0) {
      EXPECT_EQ(FormatDouble(-row.value), std::string("-") + row.text);
    }
  }
}

TEST(FormatDouble, NamesWhatIsNoNumber) {
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(FormatDouble(infinity), "1.#INF");
  EXPECT_EQ(FormatDouble(-infinity), "-1.#INF");
  EXPECT_EQ(FormatDouble(std::nan("")), "1.#QNAN");
  EXPECT_EQ(FormatDouble(-std::nan("")), "-1.#IND");
}

TEST(FormatSingle, WritesUpTo7Digits) {
  EXPECT_EQ(FormatSingle(0.1F), "0.1");
  EXPECT_EQ(FormatSingle(3.14159274F), "3.141593");
  EXPECT_EQ(FormatSingle(1234567), "1234567");
  EXPECT_EQ(FormatSingle(12345678), "1.234568E+07");
  EXPECT_EQ(FormatSingle(1e-7F), "0.0000001");
  EXPECT_EQ(FormatSingle(1e-8F), "1E-08");
  EXPECT_EQ(FormatSingle(-2.5F), "-2.5");
  EXPECT_EQ(FormatSingle(-0.0F), "0");
}

TEST(FormatCurrency, WritesUpToFourDecimals) {
  EXPECT_EQ(FormatCurrency(0), "0");
  EXPECT_EQ(FormatCurrency(10000), "1");
  EXPECT_EQ(FormatCurrency(15000), "1.5");
  EXPECT_EQ(FormatCurrency(1), "0.0001");
  EXPECT_EQ(FormatCurrency(-12345), "-1.2345");
  EXPECT_EQ(FormatCurrency(-500), "-0.05");
  EXPECT_EQ(FormatCurrency(std::numeric_limits<std::int64_t>::max()), "922337203685477.5807");
  EXPECT_EQ(FormatCurrency(std::numeric_limits<std::int64_t>::min()), "-922337203685477.5808");
}

TEST(FormatInteger, WritesAllOfTheRange) {
  EXPECT_EQ(FormatInteger(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
  EXPECT_EQ(FormatInteger(std::numeric_limits<std::uint64_t>::max()), "18446744073709551615");
}

struct NumberCase {
  const char* text;
  std::optional<double> value;
  const char* why;
};

const NumberCase kNumbers[] = {
    {"3", 3, "digits"},
    {" 3 ", 3, "blanks around"},
    {"\t\n\v\f\r3\t\n\v\f\r", 3, "every kind of white space"},
    {"\xC2\xA0"
     "3\xC2\xA0",
     3, "the no-break space"},
    {"", std::nullopt, "empty"},
    {"   ", std::nullopt, "blanks only"},
    {"-5", -5, "minus"},
    {"- 5", -5, "a blank behind the sign"},
    {" - 5", -5, "blanks on both sides of the sign"},
    {"5-", -5, "minus behind"},
    {"5 -", -5, "minus behind a blank"},
    {"(5)", -5, "parentheses"},
    {"( 5 )", -5, "blanks inside the parentheses"},
    {"+5", 5, "plus"},
    {"5+", 5, "plus behind"},
    {"+5+", std::nullopt, "a sign on both sides"},
    {"-5-", std::nullopt, "minus on both sides"},
    {"+5-", std::nullopt, "different signs on both sides"},
    {"5--", std::nullopt, "two signs behind"},
    {"--5", std::nullopt, "two minus signs"},
    {"++5", std::nullopt, "two plus signs"},
    {"+-5", -5, "one of each in front"},
    {"(-5)", -5, "minus inside parentheses"},
    {"(5-)", -5, "minus behind, inside parentheses"},
    {"-(5)", -5, "minus before parentheses"},
    {"(5", std::nullopt, "not closed"},
    {"5)", std::nullopt, "not opened"},
    {"((5))", std::nullopt, "opened twice"},
    {"(5))", std::nullopt, "closed twice"},
    {"()", std::nullopt, "nothing inside"},
    {".5", 0.5, "a point in front"},
    {"5.", 5, "a point behind"},
    {"-.5", -0.5, "a sign before the point"},
    {".-5", std::nullopt, "a sign behind the point"},
    {". 5", std::nullopt, "a blank behind the point"},
    {".", std::nullopt, "only a point"},
    {"1.2.3", std::nullopt, "two points"},
    {"1,000", 1000, "a separator"},
    {"1,,000", 1000, "two in a row"},
    {"1,00,0,,", 1000, "anywhere, also at the end"},
    {"1,000.5", 1000.5, "before the point"},
    {"1.5,", 1.5, "behind the point"},
    {",1", std::nullopt, "not before the first digit"},
    {"-,1", std::nullopt, "nor behind the sign"},
    {"1e3", 1000, "exponent"},
    {"1E+3", 1000, "capital, with sign"},
    {"1e-3", 0.001, "negative exponent"},
    {"1d3", 1000, "the other exponent letter"},
    {"1D-3", 0.001, "its capital"},
    {"1e3-", -1000, "a sign behind the exponent's digits"},
    {"1,0e1", 100, "a separator before the exponent"},
    {"1e1,0", std::nullopt, "none inside it"},
    {"1e", std::nullopt, "no digits in the exponent"},
    {"1e+", std::nullopt, "only its sign"},
    {"1e 3", std::nullopt, "a blank in it"},
    {"1e1.5", std::nullopt, "a fraction in it"},
    {"e3", std::nullopt, "only an exponent"},
    {"&H10", 16, "hexadecimal"},
    {"&hff", 255, "small letters"},
    {"&hFf", 255, "mixed letters"},
    {"&O17", 15, "octal"},
    {"&o17", 15, "octal, small letter"},
    {"-&H10", -16, "a sign before it"},
    {" &H10 ", 16, "blanks around it"},
    {"(&H10)", -16, "in parentheses"},
    {"&H", std::nullopt, "no digits"},
    {"&O8", std::nullopt, "no octal digit"},
    {"&HG", std::nullopt, "no hexadecimal digit"},
    {"&10", std::nullopt, "no letter"},
    {"& H10", std::nullopt, "a blank before the letter"},
    {"$&H10", std::nullopt, "not after $"},
    {".&H10", std::nullopt, "not after a point"},
    {"&H1.5", std::nullopt, "no fraction"},
    {"&H1,0", std::nullopt, "no separator"},
    {"&H1e+1", std::nullopt, "no exponent"},
    {"0x10", std::nullopt, "another language's hexadecimal"},
    {"FF", std::nullopt, "no prefix"},
    {"$5", 5, "currency in front"},
    {"$-5", -5, "then the sign"},
    {"-$5", -5, "the sign first"},
    {"- $ 5", -5, "with blanks"},
    {"5$", 5, "currency behind"},
    {"5$$", 5, "even repeated"},
    {"$5$", 5, "on both sides"},
    {"$$5", std::nullopt, "repeated in front"},
    {"$", std::nullopt, "alone"},
    {"$1e3", std::nullopt, "no exponent after $"},
    {"1e3$", 1000, "but before it"},
    {"$.5", 0.5, "a fraction after $"},
    {"($5)", -5, "in parentheses"},
    {"5%", std::nullopt, "per cent"},
    {"1 2", std::nullopt, "two numbers"},
    {"abc", std::nullopt, "letters"},
    {"True", std::nullopt, "a boolean's name"},
    {"2008-03-14", std::nullopt, "a date"},
    {"9:05", std::nullopt, "a time"},
    {"INF", std::nullopt, "infinity's name"},
    {"NaN", std::nullopt, "not a number"},
    {"\xD9\xA3", std::nullopt, "a digit of another script"},
    {"007", 7, "leading zeros"},
    {"-0", 0, "zero has no sign"},
    {"0.1", 0.1, "the nearest double"},
    {"123456789012345678901234567890", 123456789012345678901234567890.0, "many digits"},
    {"1e-400", 0, "too small for a double"},
    {"0e999999999999999999999", 0, "zero times anything"},
    {"&HFFFFFFFFFFFFFFFF", 18446744073709551615.0, "64 bits"},
};

TEST(NumberGrammar, AcceptsExactlyWholeNumbersAndGivesTheirValue) {
  for (const NumberCase& row : kNumbers) {
    SCOPED_TRACE(std::string(row.text) + ": " + row.why);
    EXPECT_EQ(IsNumberText(row.text), row.value.has_value());
    const std::optional<ParsedNumber> parsed = ParseNumber(row.text);
    ASSERT_EQ(parsed.has_value(), row.value.has_value());
    if (!parsed) continue;
    EXPECT_EQ(ValueOf(*parsed).value, *row.value);
    EXPECT_EQ(ValueOf(*parsed).status, DecimalStatus::kOk);
    EXPECT_FALSE(std::signbit(ValueOf(*parsed).value) && *row.value == 0);
  }
}

TEST(NumberGrammar, StopsAtANulCharacter) {
  EXPECT_FALSE(IsNumberText(std::string_view("5\0", 2)));
  EXPECT_FALSE(
      IsNumberText(std::string_view("\0"
                                    "5",
                                    2)));
}

TEST(NumberGrammar, AcceptsNumbersTooLargeForADoubleAndSaysSo) {
  for (const char* text :
       {"1e400", "-1e309", "1e999999999999999999999999", "&H10000000000000000"}) {
    SCOPED_TRACE(text);
    const std::optional<ParsedNumber> parsed = ParseNumber(text);
    ASSERT_TRUE(parsed.has_value());
    EXPECT_EQ(ValueOf(*parsed).status, DecimalStatus::kTooLarge);
  }
}

TEST(ReadDecimal, TellsTooLargeFromTooSmallWhateverTheLength) {
  const std::string zeros(5000, '0');
  EXPECT_EQ(ReadDecimal("1" + zeros, 0).status, DecimalStatus::kTooLarge);
  EXPECT_EQ(ReadDecimal("1" + zeros, -5000).value, 1);
  EXPECT_EQ(ReadDecimal("0." + zeros + "1", 0).value, 0);
  EXPECT_EQ(ReadDecimal("0." + zeros + "1", 0).status, DecimalStatus::kOk);
  EXPECT_EQ(ReadDecimal("0." + zeros + "1", 5001).value, 1);
  EXPECT_EQ(ReadDecimal("0." + zeros + "1", 6000).status, DecimalStatus::kTooLarge);
  EXPECT_EQ(ReadDecimal("1", -320).value, 1e-320) << "a subnormal is no zero";
}

TEST(NumberGrammar, TakesAMillionDigits) {
  std::string text(1'000'000, '7');
  text += "e-999999";
  const std::optional<ParsedNumber> parsed = ParseNumber(text);
  ASSERT_TRUE(parsed.has_value());
  EXPECT_DOUBLE_EQ(ValueOf(*parsed).value, 7.0 + 7.0 / 9);
}

struct ScaledCase {
  const char* digits;
  std::int64_t exponent;
  int decimals;
  std::optional<std::uint64_t> value;
  const char* why;
};

const ScaledCase kScaled[] = {
    {"0", 0, 0, 0, "zero"},
    {"12", 0, 0, 12, "whole"},
    {"12.5", 0, 0, 12, "half to even, down"},
    {"13.5", 0, 0, 14, "half to even, up"},
    {"0.5", 0, 0, 0, "half of nothing"},
    {"12.50000000000000000000000001", 0, 0, 13, "more than half, far behind"},
    {"12.4999999999999999999999999", 0, 0, 12, "less than half, far behind"},
    {"0.05", 0, 0, 0, "below half behind a zero"},
    {"0.9", 0, 0, 1, "above half"},
    {"1.2345", 0, 4, 12345, "decimals"},
    {"1.23455", 0, 4, 12346, "rounded to even behind four decimals"},
    {"1.23445", 0, 4, 12344, "rounded to even the other way"},
    {"12", 2, 0, 1200, "exponent"},
    {"1250", -2, 0, 12, "negative exponent"},
    {"5", -1, 0, 0, "half by exponent"},
    {"9", -2, 0, 0, "below half by exponent"},
    {"9223372036854775808", 0, 0, std::uint64_t{1} << 63, "the largest"},
    {"9223372036854775808.5", 0, 0, std::uint64_t{1} << 63, "half above an even largest"},
    {"9223372036854775809", 0, 0, std::nullopt, "above the largest"},
    {"1", 19, 0, std::nullopt, "above by exponent"},
    {"1", 1'000'000'000'000, 0, std::nullopt, "far above by exponent"},
    {"1", -1'000'000'000'000, 0, 0, "far below by exponent"},
    {"0", 1'000'000'000'000, 0, 0, "zero by any exponent"},
    {".5", 0, 1, 5, "no digit before the point"},
};

TEST(ReadScaled, RoundsExactlyHalfToEven) {
  for (const ScaledCase& row : kScaled) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(ReadScaled(row.digits, row.exponent, row.decimals), row.value);
  }
}

}  // namespace
}  // namespace kx::text
