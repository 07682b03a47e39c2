#include "platform/datatypes/typed_value.h"

#include <gtest/gtest.h>

namespace kx::datatypes {
namespace {

struct ReadCase {
  DataType type;
  const char* text;
  Variant value;
  const char* why;
};
const ReadCase kReads[] = {
    {DataType::kNone, " a ", " a ", "no type: the text"},
    {DataType::kString, " a ", " a ", "the text untouched"},
    {DataType::kNumber, " -3.71e3 ", "-3.71e3", "number stays text, trimmed"},
    {DataType::kUri, " u ", "u", "trimmed"},
    {DataType::kUuid, "333C7BC4-460F-11D0-BC04-0080C7055a83",
     "333C7BC4-460F-11D0-BC04-0080C7055a83", "case kept"},
    {DataType::kNmtoken, " a ", " a ", "the text"},
    {DataType::kIdrefs, "a b", "a b", "the text"},
    {DataType::kInt, " +05 ", std::int32_t{5}, "VT_I4"},
    {DataType::kI4, "-7", std::int32_t{-7}, "VT_I4"},
    {DataType::kI1, "-128", std::int8_t{-128}, "VT_I1"},
    {DataType::kI2, "-300", std::int16_t{-300}, "VT_I2"},
    {DataType::kUi1, "255", std::uint8_t{255}, "VT_UI1"},
    {DataType::kUi2, "65535", std::uint16_t{65535}, "VT_UI2"},
    {DataType::kUi4, "4294967295", std::uint32_t{4294967295U}, "VT_UI4"},
    {DataType::kI8, "5", Variant::Null(), "no value of its own"},
    {DataType::kUi8, "5", Variant::Null(), "no value of its own"},
    {DataType::kR4, "0.1", 0.1F, "nearest single"},
    {DataType::kR8, "0.1", 0.1, "nearest double"},
    {DataType::kFloat, "1e2", 100.0, "nearest double"},
    {DataType::kFixed144, "12.3456", Currency{123456}, "exact"},
    {DataType::kBoolean, "1", true, "1"},
    {DataType::kBoolean, "0", false, "0"},
    {DataType::kBoolean, "true", true, "word"},
    {DataType::kChar, "u", std::int32_t{117}, "the character's code"},
    {DataType::kDate, "1900-01-01", Date{2}, "VT_DATE"},
    {DataType::kTime, "12:00:00", Date{0.5}, "VT_DATE"},
    {DataType::kBinHex, "0aFF", Variant::Bytes{10, 255}, "bytes"},
    {DataType::kBinBase64, "ABCD", Variant::Bytes{0, 16, 131}, "bytes"},
};
TEST(TypedValue, IsReadAsTheTypeSays) {
  for (const ReadCase& row : kReads) {
    SCOPED_TRACE(row.why);
    const auto value = ReadTyped(row.type, row.text);
    ASSERT_TRUE(value) << DataTypeName(row.type);
    EXPECT_EQ(*value, row.value) << DataTypeName(row.type) << ": " << row.text;
  }
}

TEST(TypedValue, IsNothingForATextOfAnotherForm) {
  for (const DataType type :
       {DataType::kNumber, DataType::kInt, DataType::kI8, DataType::kR4, DataType::kFixed144,
        DataType::kBoolean, DataType::kChar, DataType::kDate, DataType::kTimeTz, DataType::kUuid,
        DataType::kBinHex, DataType::kBinBase64}) {
    EXPECT_FALSE(ReadTyped(type, "no-such")) << DataTypeName(type);
  }
}

}  // namespace
}  // namespace kx::datatypes
