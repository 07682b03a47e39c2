#include "platform/xdr/value_rules.h"

#include <gtest/gtest.h>

namespace kx::xdr {
namespace {

ValueRules Rules(DataType type, std::uint32_t least = 0, std::uint32_t most = 0xFFFFFFFFU) {
  ValueRules rules;
  rules.type = type;
  rules.minLength = least;
  rules.maxLength = most;
  return rules;
}

TEST(ValueRules, CountLengthsWhereLengthsMeanSomething) {
  EXPECT_EQ(Rules(DataType::kString, 2, 3).Check(" a "), ValueFailure::kNone);
  EXPECT_EQ(Rules(DataType::kString, 2, 3).Check("abcd"), ValueFailure::kLength);
  EXPECT_EQ(Rules(DataType::kNone, 2, 3).Check("a"), ValueFailure::kLength);
  EXPECT_EQ(Rules(DataType::kNumber, 2, 3).Check(" 1 "), ValueFailure::kLength);
  EXPECT_EQ(Rules(DataType::kInt, 2, 3).Check("1"), ValueFailure::kNone) << "ignored";
  EXPECT_EQ(Rules(DataType::kBinHex, 2, 2).Check("0a0b"), ValueFailure::kNone) << "bytes";
  EXPECT_EQ(Rules(DataType::kString, 0, 2).Check("\xC3\xA9\xC3\xA9"), ValueFailure::kNone);
  EXPECT_EQ(Rules(DataType::kString, 2, 3).Check(""), ValueFailure::kNone) << "empty";
}

TEST(ValueRules, FindAValueInALongList) {
  ValueRules rules = Rules(DataType::kEnumeration);
  for (int i = 10; i < 99; ++i) rules.values.push_back("v" + std::to_string(i));
  EXPECT_EQ(rules.Check(" v42 "), ValueFailure::kNone);
  EXPECT_EQ(rules.Check("v09"), ValueFailure::kNotListed);
  EXPECT_EQ(rules.Check("v42 v43"), ValueFailure::kSeveralNames);
}

TEST(ValueRules, RefuseEveryEntity) {
  EXPECT_EQ(Rules(DataType::kEntity).Check("a"), ValueFailure::kNoEntity);
  EXPECT_EQ(Rules(DataType::kEntities).Check(""), ValueFailure::kNone);
}

}  // namespace
}  // namespace kx::xdr
