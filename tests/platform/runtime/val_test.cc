// Val: the leading number of a text.
#include "platform/runtime/conversions.h"
#include "platform/runtime/expect_error.h"

#include <gtest/gtest.h>
#include <string>

namespace kx::runtime {
namespace {

struct ValCase {
  const char* text;
  double value;
  const char* why;
};

constexpr ValCase kVals[] = {
    {"1615 198th Street N.E.", 1615198, "blanks do not count"},
    {" 2 45 7", 2457, "wherever they stand"},
    {"24 and 57", 24, "the rest is not looked at"},
    {"*", 0, "the sign for any number of occurrences"},
    {"", 0, "empty"},
    {"abc", 0, "letters"},
    {"1\t2\n3", 123, "tabs and LF do not count"},
    {"1\r2", 1, "CR ends the number"},
    {"1\xC2\xA0"
     "2",
     1, "so does a no-break space"},
    {"-5", -5, "minus"},
    {"- 5", -5, "a blank behind it"},
    {"+5", 5, "plus"},
    {"--5", 0, "one sign only"},
    {"5-", 5, "a sign behind is not looked at"},
    {".5", 0.5, "a point in front"},
    {"5.", 5, "a point behind"},
    {"-.5", -0.5, "a sign and a point"},
    {".", 0, "only a point"},
    {"1.2.3", 1.2, "the second point ends it"},
    {"1,000", 1, "so does a comma"},
    {"$5", 0, "and a currency sign"},
    {"(5)", 0, "and a parenthesis"},
    {"1e3", 1000, "exponent"},
    {"1E+3", 1000, "with sign"},
    {"1d-2", 0.01, "the other exponent letter"},
    {"1 e 3", 1000, "blanks do not count in it either"},
    {"1e", 1, "a letter without digits"},
    {"1e+", 1, "or with a sign only"},
    {"2 days", 2, "or that begins a word"},
    {"e5", 0, "an exponent alone"},
    {"1e-400", 0, "too small"},
    {"50.5%", 50.5, "a suffix behind a fraction ends it"},
    {"&H10", 16, "hexadecimal"},
    {"&hff", 255, "small letters"},
    {"&O17", 15, "octal"},
    {"&H 1 0", 16, "with blanks"},
    {"&H7FFF", 32767, "the largest 16-bit number"},
    {"&H8000", -32768, "negative from here"},
    {"&HFFFF", -1, "to here"},
    {"&H0FFFF", -1, "leading zeros do not count"},
    {"&HFFFF&", 65535, "unless it is marked as long"},
    {"&H10000", 65536, "17 bits are positive"},
    {"&H7FFFFFFF", 2147483647, "the largest 32-bit number"},
    {"&HFFFFFFFF", -1, "32 bits are signed"},
    {"&O177777", -1, "16 bits in octal"},
    {"-&H10", -16, "a sign before it"},
    {"&H", 0, "no digits"},
    {"&HG", 0, "no hexadecimal digit"},
    {"&X1", 0, "no such prefix"},
    {"&", 0, "no prefix at all"},
    {"\xD9\xA3", 0, "digits of other scripts"},
    {"0.1", 0.1, "the nearest double"},
};

TEST(Val, ReadsTheLeadingNumber) {
  for (const ValCase& row : kVals) {
    SCOPED_TRACE(std::string(row.text) + ": " + row.why);
    EXPECT_EQ(Val(row.text), row.value);
  }
}

TEST(Val, OverflowsBeyondADouble) {
  EXPECT_EQ(ErrorOf([] { return Val("1e400"); }), 6);
  EXPECT_EQ(ErrorOf([] { return Val(std::string("-1") + std::string(400, '0')); }), 6);
  EXPECT_EQ(ErrorOf([] { return Val("&H" + std::string(400, 'F')); }), 6);
}

TEST(Val, ReadsLongTextsInOnePass) {
  EXPECT_EQ(Val(std::string(1'000'000, ' ') + "7"), 7);
  EXPECT_EQ(Val("7" + std::string(1'000'000, ' ') + "e1"), 70);
}

TEST(Val, RoundsToAnOccurrenceHalfToEven) {
  EXPECT_EQ(RoundToInteger(Val("2.5")), 2);
  EXPECT_EQ(RoundToInteger(Val("3.5")), 4);
  EXPECT_EQ(RoundToInteger(Val("*")), 0);
}

}  // namespace
}  // namespace kx::runtime
