#include "platform/datatypes/typed_value.h"

#include <gtest/gtest.h>
#include <limits>

namespace kx::datatypes {
namespace {

struct WriteCase {
  DataType type;
  Variant value;
  const char* text;  // null: refused
  const char* why;
};
const WriteCase kWrites[] = {
    {DataType::kInt, " 05 ", " 05 ", "a text is stored as given"},
    {DataType::kInt, "5.5", nullptr, "a text must suit the type"},
    {DataType::kBinBase64, "ABCD", "ABCD", "text is not encoded again"},
    {DataType::kBinBase64, "", "", "empty text suits every type"},
    {DataType::kDate, Variant::Null(), "", "Null is empty text"},
    {DataType::kUuid, Variant(), "", "Empty is empty text"},
    {DataType::kInt, Variant::Nothing(), nullptr, "objects are refused"},
    {DataType::kString, Variant::Missing(), nullptr, "error values are refused"},
    {DataType::kInt, std::int16_t{-1}, "-1", "VT_I2 into int"},
    {DataType::kUi1, std::int16_t{-1}, nullptr, "out of range"},
    {DataType::kI1, 128, nullptr, "out of range"},
    {DataType::kInt, 2.5, "2", "halves to the even neighbour"},
    {DataType::kInt, 3.5, "4", "halves to the even neighbour"},
    {DataType::kInt, Currency{25000}, "2", "halves to the even neighbour"},
    {DataType::kInt, Currency{-35000}, "-4", "halves to the even neighbour"},
    {DataType::kI4, 2147483648.0, nullptr, "out of range"},
    {DataType::kI4, std::numeric_limits<double>::quiet_NaN(), nullptr, "no number"},
    {DataType::kI8, std::int64_t{-9223372036854775807 - 1}, "-9223372036854775808", "all bits"},
    {DataType::kUi8, ~std::uint64_t{0}, "18446744073709551615", "all bits"},
    {DataType::kInt, -0.25, "0", "no negative zero"},
    {DataType::kInt, Variant::Bytes{1}, nullptr, "bytes are no number"},
    {DataType::kInt, Date{5}, nullptr, "a date is no integer"},
    {DataType::kInt, true, "-1", "a boolean into a number type"},
    {DataType::kUi4, true, nullptr, "-1 is out of range"},
    {DataType::kR8, 0.1, "0.1", "shortest text"},
    {DataType::kR8, 0.1 + 0.2, "0.30000000000000004", "as many digits as it takes"},
    {DataType::kR8, 1e20, "1E+20", "exponent form"},
    {DataType::kR8, -2.5e-20, "-2.5E-20", "exponent form"},
    {DataType::kR8, 1500.0, "1500", "no point"},
    {DataType::kR8, std::numeric_limits<double>::infinity(), nullptr, "no number"},
    {DataType::kR4, 0.1F, "0.1", "shortest text of a single"},
    {DataType::kR4, 0.1, "0.1", "as a single"},
    {DataType::kR4, 1e39, nullptr, "overflow"},
    {DataType::kNumber, 7, "7", "integer"},
    {DataType::kNumber, true, "-1", "boolean"},
    {DataType::kNumber, Currency{15000}, "1.5", "currency"},
    {DataType::kFixed144, 12.5, "12.5", "no zeros behind"},
    {DataType::kFixed144, 1.00004, "1", "at most four decimals"},
    {DataType::kFixed144, 1e300, nullptr, "out of range"},
    {DataType::kBoolean, 0, "0", "zero"},
    {DataType::kBoolean, 17, "1", "any other number"},
    {DataType::kBoolean, true, "1", "not -1"},
    {DataType::kBoolean, false, "0", "not a word"},
    {DataType::kBoolean, "TRUE", nullptr, "no such text"},
    {DataType::kNone, true, "-1", "no locale words"},
    {DataType::kString, false, "0", "no locale words"},
    {DataType::kNone, 1.5, "1.5", "as the platform writes it"},
    {DataType::kDateTime, Date{2.5}, "1900-01-01T12:00:00", "always with the time"},
    {DataType::kDateTimeTz, Date{2}, "1900-01-01T00:00:00", "no zone"},
    {DataType::kDate, Date{2.5}, "1900-01-01", "date alone"},
    {DataType::kTime, Date{2.5}, "12:00:00", "time alone"},
    {DataType::kTimeTz, Date{0.75}, "18:00:00", "time alone"},
    {DataType::kString, Date{2}, "1/1/1900", "the platform's text"},
    {DataType::kDateTime, 2.5, nullptr, "only texts and dates"},
    {DataType::kChar, 117, "u", "a code"},
    {DataType::kChar, 0x10000, nullptr, "not one unit"},
    {DataType::kChar, 0, nullptr, "no XML character"},
    {DataType::kChar, "ab", nullptr, "two characters"},
    {DataType::kUuid, 5, nullptr, "texts only"},
    {DataType::kUri, 5, nullptr, "texts only"},
    {DataType::kBinHex, Variant::Bytes{10, 255}, "0aff", "lower case"},
    {DataType::kBinBase64, Variant::Bytes{0, 16, 131}, "ABCD", "encoded"},
    {DataType::kBinHex, 5, nullptr, "texts and bytes only"},
};
TEST(TypedWrite, GivesTheTextOfTheTypeOrRefuses) {
  for (const WriteCase& row : kWrites) {
    SCOPED_TRACE(row.why);
    const auto text = WriteTyped(row.type, row.value);
    if (row.text == nullptr) {
      EXPECT_FALSE(text) << DataTypeName(row.type) << ": " << text.value_or("");
    } else {
      EXPECT_EQ(text, row.text) << DataTypeName(row.type);
    }
  }
}

TEST(TypedWrite, IsReadBackAsTheSameValue) {
  for (const double value : {0.1, 1e300, -2.2250738585072014e-308, 123456789012345678.0}) {
    EXPECT_EQ(ReadTyped(DataType::kR8, *WriteTyped(DataType::kR8, value)), Variant(value));
  }
  for (const float value : {0.1F, 3.4028235e38F, 1.17549435e-38F}) {
    EXPECT_EQ(ReadTyped(DataType::kR4, *WriteTyped(DataType::kR4, value)), Variant(value));
  }
}

TEST(TypedWrite, QuotesWhatHasAText) {
  EXPECT_EQ(QuotedValue(5), "5");
  EXPECT_EQ(QuotedValue("x"), "x");
  EXPECT_EQ(QuotedValue(Variant::Null()), "");
  EXPECT_EQ(QuotedValue(Variant::Nothing()), "");
}

}  // namespace
}  // namespace kx::datatypes
