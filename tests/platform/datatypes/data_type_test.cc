#include "platform/datatypes/data_type.h"

#include <gtest/gtest.h>
#include <string>

namespace kx::datatypes {
namespace {

TEST(DataType, HasACanonicalNameThatFindsItAgain) {
  for (int i = 1; i < kDataTypeCount; ++i) {
    const auto type = static_cast<DataType>(i);
    SCOPED_TRACE(std::string(DataTypeName(type)));
    EXPECT_FALSE(DataTypeName(type).empty());
    EXPECT_EQ(FindDataType(DataTypeName(type)), type);
  }
  EXPECT_EQ(DataTypeName(DataType::kNone), "");
}

struct NameCase {
  const char* name;
  DataType type;
  const char* why;
};
constexpr NameCase kNames[] = {
    {"NUMbEr", DataType::kNumber, "letter case does not count"},
    {"datetime", DataType::kDateTime, "letter case does not count"},
    {"UuId", DataType::kUuid, "letter case does not count"},
    {"Bin.Base64", DataType::kBinBase64, "letter case does not count"},
    {"decimal", DataType::kNumber, "synonym"},
    {"float.ieee.754.32", DataType::kR4, "synonym"},
    {"float.ieee.754.64", DataType::kR8, "synonym"},
    {"date.tz", DataType::kDate, "synonym"},
};
TEST(DataType, IsFoundInAnyCaseAndBySynonyms) {
  for (const NameCase& row : kNames) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(FindDataType(row.name), row.type) << row.name;
  }
}

TEST(DataType, IsNotFoundByAnyOtherText) {
  for (const char* name : {"", "none", "integer", " int", "int ", "fixed", "i3", "bin", "id s"}) {
    EXPECT_FALSE(FindDataType(name)) << name;
  }
}

struct KindCase {
  DataType type;
  bool rich;
  bool name;
};
constexpr KindCase kKinds[] = {
    {DataType::kNone, false, false},    {DataType::kString, false, false},
    {DataType::kNumber, true, false},   {DataType::kBinBase64, true, false},
    {DataType::kId, false, true},       {DataType::kNmtoken, false, true},
    {DataType::kNotation, false, true}, {DataType::kChar, true, false},
};
TEST(DataType, IsRichExactlyWhenItsValueIsMoreThanText) {
  for (const KindCase& row : kKinds) {
    SCOPED_TRACE(std::string(DataTypeName(row.type)));
    EXPECT_EQ(IsRichType(row.type), row.rich);
    EXPECT_EQ(IsNameType(row.type), row.name);
  }
}

}  // namespace
}  // namespace kx::datatypes
