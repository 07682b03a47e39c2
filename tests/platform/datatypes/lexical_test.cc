#include "platform/datatypes/lexical.h"

#include <gtest/gtest.h>
#include <string>

namespace kx::datatypes {
namespace {

struct TextCase {
  DataType type;
  const char* text;
  bool accepted;
  const char* why;
};
constexpr TextCase kTexts[] = {
    {DataType::kString, " anything \x7f", true, "a string is any text"},
    {DataType::kInt, "0", true, "digits"},
    {DataType::kInt, "+007", true, "sign and leading zeros"},
    {DataType::kInt, " \t-2147483648\r\n", true, "least, trimmed"},
    {DataType::kInt, "2147483647", true, "largest"},
    {DataType::kInt, "2147483648", false, "out of range"},
    {DataType::kInt, "-2147483649", false, "out of range"},
    {DataType::kInt, "00000000000000000000000000000000012", true, "zeros do not count"},
    {DataType::kInt, "1.0", false, "fraction"},
    {DataType::kInt, "1e3", false, "exponent"},
    {DataType::kInt, "1,000", false, "grouping"},
    {DataType::kInt, "0x1F", false, "hexadecimal"},
    {DataType::kInt, "1 2", false, "inner blank"},
    {DataType::kInt, "+", false, "no digit"},
    {DataType::kInt, "--1", false, "two signs"},
    {DataType::kI4, "-2147483648", true, "as int"},
    {DataType::kI4, "2147483648", false, "as int"},
    {DataType::kI1, "-128", true, "least"},
    {DataType::kI1, "128", false, "out of range"},
    {DataType::kI2, "32767", true, "largest"},
    {DataType::kI2, "-32769", false, "out of range"},
    {DataType::kI8, "-9223372036854775808", true, "least"},
    {DataType::kI8, "9223372036854775808", false, "out of range"},
    {DataType::kUi1, "255", true, "largest"},
    {DataType::kUi1, "+1", true, "leading plus"},
    {DataType::kUi1, "256", false, "out of range"},
    {DataType::kUi1, "-0", false, "any minus"},
    {DataType::kUi2, "65536", false, "out of range"},
    {DataType::kUi4, "4294967295", true, "largest"},
    {DataType::kUi4, "4294967296", false, "out of range"},
    {DataType::kUi8, "18446744073709551615", true, "largest"},
    {DataType::kUi8, "18446744073709551616", false, "out of range"},
    {DataType::kNumber, "5.", true, "no digit behind the point"},
    {DataType::kNumber, ".5", true, "no digit before the point"},
    {DataType::kNumber, "-3.71e3", true, "exponent"},
    {DataType::kNumber, "1E+2", true, "signed exponent"},
    {DataType::kNumber, ".", false, "no digit"},
    {DataType::kNumber, "1e", false, "no digit in the exponent"},
    {DataType::kNumber, "1.2.3", false, "two points"},
    {DataType::kNumber, "INF", false, "no number"},
    {DataType::kNumber, "NaN", false, "no number"},
    {DataType::kNumber, "1,5", false, "comma"},
    {DataType::kNumber, "1e309", false, "out of range of a double"},
    {DataType::kNumber, "0e999999999999999999999", true, "zero whatever the exponent"},
    {DataType::kNumber, "1e-999999999999999999999", true, "too small counts as 0"},
    {DataType::kFloat, "1.7976931348623157E+308", true, "largest double"},
    {DataType::kR8, "1.8e308", false, "overflow"},
    {DataType::kR8, "1e309", false, "overflow"},
    {DataType::kR8, "1e-400", true, "too small becomes 0"},
    {DataType::kR4, "3.4028235E+38", true, "largest single"},
    {DataType::kR4, "1e39", false, "overflow"},
    {DataType::kR4, "1e-60", true, "too small becomes 0"},
    {DataType::kFixed144, "-12.3456", true, "four decimals"},
    {DataType::kFixed144, "12.34567", false, "five decimals"},
    {DataType::kFixed144, "1e2", false, "exponent"},
    {DataType::kFixed144, "922337203685477.5807", true, "largest"},
    {DataType::kFixed144, "922337203685477.5808", false, "out of range"},
    {DataType::kFixed144, "-922337203685477.5808", true, "least"},
    {DataType::kFixed144, "9999999999999999999999", false, "out of range"},
    {DataType::kFixed144, ".", false, "no digit"},
    {DataType::kBoolean, "0", true, "digit"},
    {DataType::kBoolean, " 1 ", true, "trimmed"},
    {DataType::kBoolean, "true", true, "word"},
    {DataType::kBoolean, "false", true, "word"},
    {DataType::kBoolean, "TRUE", false, "case counts"},
    {DataType::kBoolean, "-1", false, "other number"},
    {DataType::kBoolean, "2", false, "other number"},
    {DataType::kBoolean, "yes", false, "other word"},
    {DataType::kChar, "u", true, "one character"},
    {DataType::kChar, "\xC3\xA9", true, "one character beyond ASCII"},
    {DataType::kChar, "ab", false, "two characters"},
    {DataType::kChar, "\xF0\x9F\x98\x80", false, "a surrogate pair"},
    {DataType::kDate, "2003-07-11", true, "date"},
    {DataType::kDate, "2004-02-29", true, "leap day"},
    {DataType::kDate, "2003-02-29", false, "no such day"},
    {DataType::kDate, "2003-13-01", false, "month 13"},
    {DataType::kDate, "2003-00-01", false, "month 0"},
    {DataType::kDate, "20030711", false, "no hyphens"},
    {DataType::kDate, "2003-7-11", false, "one digit"},
    {DataType::kDate, "2003-07-11T10:00:00", false, "time part"},
    {DataType::kDate, "2003-07-11Z", false, "zone"},
    {DataType::kDate, "2003-07", false, "no day"},
    {DataType::kDate, "0000-01-01", false, "year 0"},
    {DataType::kDateTime, "2003-07-11", true, "without time"},
    {DataType::kDateTime, "2003-07-11T11:13:57", true, "with time"},
    {DataType::kDateTime, "2003-07-11T11:13:57.123456789", true, "nine decimals"},
    {DataType::kDateTime, "2003-07-11 11:13:57", false, "blank for T"},
    {DataType::kDateTime, "2003-07-11t11:13:57", false, "small t"},
    {DataType::kDateTime, "2003-07-11T11:13:57Z", false, "zone"},
    {DataType::kDateTime, "2003-07-11T24:00:00", false, "hour 24"},
    {DataType::kDateTime, "2003-07-11T", false, "T without time"},
    {DataType::kDateTimeTz, "2003-07-11T11:13:57+03:00", true, "offset"},
    {DataType::kDateTimeTz, "2003-07-11T11:13:57Z", true, "Z"},
    {DataType::kDateTimeTz, "2003-07-11T11:13:57", true, "the zone is optional"},
    {DataType::kDateTimeTz, "2003-07-11T11:13:57+0300", false, "no colon"},
    {DataType::kDateTimeTz, "2003-07-11T11:13:57+03:60", false, "minute 60"},
    {DataType::kTime, "23:59:59", true, "time"},
    {DataType::kTime, "00:00:00.5", true, "fraction"},
    {DataType::kTime, "12:30", false, "no seconds"},
    {DataType::kTime, "24:00:00", false, "hour 24"},
    {DataType::kTime, "12:60:00", false, "minute 60"},
    {DataType::kTime, "12:00:60", false, "second 60"},
    {DataType::kTime, "12:00:00.", false, "no digit behind the point"},
    {DataType::kTime, "12:00:00Z", false, "zone"},
    {DataType::kTimeTz, "23:21:01+03:21", true, "offset"},
    {DataType::kTimeTz, "23:21:01", true, "the zone is optional"},
    {DataType::kUri, "not even : a URI", true, "not examined"},
    {DataType::kUuid, "333C7BC4-460F-11D0-BC04-0080C7055A83", true, "upper case"},
    {DataType::kUuid, "333c7bc4-460f-11d0-bc04-0080c7055a83", true, "lower case"},
    {DataType::kUuid, "333C7BC4460F11D0BC040080C7055A83", true, "without hyphens"},
    {DataType::kUuid, "{333C7BC4-460F-11D0-BC04-0080C7055A83}", true, "in braces"},
    {DataType::kUuid, "333C7BC4-460F-11D0-BC04-0080C7055A8", false, "too short"},
    {DataType::kUuid, "333C7BC4-460F-11D0-BC04-0080C7055A8G", false, "no digit"},
    {DataType::kUuid, "333C7BC44-60F-11D0-BC04-0080C7055A83", false, "hyphen elsewhere"},
    {DataType::kUuid, "{333C7BC4-460F-11D0-BC04-0080C7055A83", false, "half in braces"},
    {DataType::kBinHex, "0aFF", true, "digits of either case"},
    {DataType::kBinHex, "0a FF\n", true, "white space does not count"},
    {DataType::kBinHex, "0aF", false, "odd number"},
    {DataType::kBinHex, "0g", false, "no digit"},
    {DataType::kBinBase64, "ABCD", true, "whole group"},
    {DataType::kBinBase64, "QQ==", true, "padding"},
    {DataType::kBinBase64, "QQ", true, "padding may be missing"},
    {DataType::kBinBase64, "Q Q\n= =", true, "white space anywhere"},
    {DataType::kBinBase64, "Q", false, "single left-over digit"},
    {DataType::kBinBase64, "QQ=", false, "padding cut short"},
    {DataType::kBinBase64, "QQ=A", false, "digit behind padding"},
    {DataType::kBinBase64, "QQ-A", false, "no digit"},
    {DataType::kNmtoken, "1.-_a", true, "digits and marks may start"},
    {DataType::kNmtoken, "a b", false, "several tokens"},
    {DataType::kNmtoken, "a:b", false, "colon"},
    {DataType::kNmtoken, "a$", false, "other character"},
    {DataType::kNmtokens, " a 1 b\t", true, "several tokens"},
    {DataType::kNmtokens, "a, b", false, "other character"},
    {DataType::kId, "_a1", true, "name"},
    {DataType::kId, "1a", false, "digit first"},
    {DataType::kId, "a b", false, "two names"},
    {DataType::kIdref, "a", true, "name"},
    {DataType::kIdrefs, "a b", true, "names"},
    {DataType::kIdrefs, "a 1", false, "one is no name"},
    {DataType::kEntity, "a", true, "name"},
    {DataType::kEntities, "a b", true, "names"},
    {DataType::kNotation, "-a", false, "no name"},
    {DataType::kEnumeration, "a", true, "one token"},
    {DataType::kEnumeration, "a b", false, "two tokens"},
};
TEST(TextOfAType, IsAcceptedExactlyWhenTheFormAllowsIt) {
  for (const TextCase& row : kTexts) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(IsTextOf(row.type, row.text), row.accepted)
        << DataTypeName(row.type) << ": " << row.text;
  }
}

TEST(TextOfAType, IsNeverEmptyForATypeThatIsNoText) {
  for (int i = static_cast<int>(DataType::kNumber); i < kDataTypeCount; ++i) {
    const auto type = static_cast<DataType>(i);
    const bool anyText =
        type == DataType::kUri || IsBinaryType(type);  // no digits stand for no bytes
    EXPECT_EQ(IsTextOf(type, ""), anyText) << DataTypeName(type);
  }
}

TEST(TextOfAType, MayBeAMillionDigitsLong) {
  EXPECT_TRUE(IsTextOf(DataType::kNumber, "0." + std::string(1000000, '1')));
  EXPECT_FALSE(IsTextOf(DataType::kNumber, std::string(1000000, '1')));
}

struct LengthCase {
  DataType type;
  const char* text;
  std::size_t length;
  const char* why;
};
constexpr LengthCase kLengths[] = {
    {DataType::kString, " ab ", 4, "a string counts all characters"},
    {DataType::kString, "\xC3\xA9", 1, "characters, not bytes"},
    {DataType::kNumber, " 12 ", 2, "trimmed"},
    {DataType::kBinHex, "0a 0b", 2, "bytes"},
    {DataType::kBinBase64, "QUI=", 2, "bytes"},
};
TEST(TextOfAType, HasTheLengthThatLengthRulesCount) {
  for (const LengthCase& row : kLengths) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(LengthOf(row.type, row.text), row.length);
  }
}

struct SameCase {
  DataType type;
  const char* a;
  const char* b;
  bool same;
};
constexpr SameCase kSame[] = {
    {DataType::kInt, "05", "5", true},
    {DataType::kInt, "05", "6", false},
    {DataType::kString, " a", "a", false},
    {DataType::kNone, "a ", "a", false},
    {DataType::kI8, "+9007199254740993", "9007199254740993", true},
    {DataType::kI8, "9007199254740993", "9007199254740992", false},
    {DataType::kR8, "1.50", "15e-1", true},
    {DataType::kNumber, "1.50", "1.5", true},
    {DataType::kBoolean, "true", "1", true},
    {DataType::kUuid, "333C7BC4-460F-11D0-BC04-0080C7055A83",
     "333c7bc4-460f-11d0-bc04-0080c7055a83", true},
    {DataType::kEnumeration, " a ", "a", true},
    {DataType::kEnumeration, "A", "a", false},
    {DataType::kBinHex, "0A", "0a", true},
};
TEST(TextOfAType, StandsForTheSameValueAsAnotherOne) {
  for (const SameCase& row : kSame) {
    EXPECT_EQ(AreSameValue(row.type, row.a, row.b), row.same) << row.a << " and " << row.b;
  }
}

}  // namespace
}  // namespace kx::datatypes
