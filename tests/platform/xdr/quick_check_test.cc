#include "platform/xdr/quick_check.h"

#include "platform/xdr/value_rules.h"

#include <gtest/gtest.h>
#include <string>

namespace kx::xdr {
namespace {

ValueRules Rules(DataType type, std::uint32_t least = 0, std::uint32_t most = 0xFFFFFFFFU) {
  ValueRules rules;
  rules.type = type;
  rules.minLength = least;
  rules.maxLength = most;
  if (type == DataType::kEnumeration) rules.values = {"a", "each", "longer-than-eight"};
  rules.Prepare();
  return rules;
}

// What stands behind the text must not matter.
bool Takes(const ValueRules& rules, const std::string& text) {
  const std::string digits = text + std::string(QuickCheck::kReadAhead, '1');
  const std::string blanks = text + std::string(QuickCheck::kReadAhead, ' ');
  const auto length = static_cast<std::uint32_t>(text.size());
  const bool taken = rules.quick.Takes(digits.data(), length);
  EXPECT_EQ(taken, rules.quick.Takes(blanks.data(), length)) << text;
  return taken;
}

struct QuickCase {
  DataType type;
  const char* text;
};
constexpr QuickCase kQuick[] = {
    {DataType::kString, "any"},
    {DataType::kUri, "any"},
    {DataType::kInt, "0"},
    {DataType::kI4, "999999999"},
    {DataType::kI1, "99"},
    {DataType::kUi2, "9999"},
    {DataType::kI8, "9999999999999999"},
    {DataType::kFixed144, "12.5000"},
    {DataType::kFixed144, ".5"},
    {DataType::kNumber, "1234567.1234567"},
    {DataType::kR4, "5."},
    {DataType::kBoolean, "1"},
    {DataType::kDate, "2003-12-28"},
    {DataType::kDateTime, "2003-01-01"},
    {DataType::kDateTime, "2003-12-28T23:59:59"},
    {DataType::kDateTimeTz, "2003-12-28T00:00:00"},
    {DataType::kUuid, "333C7BC4-460F-11d0-bc04-0080c7055a83"},
    {DataType::kEnumeration, "a"},
    {DataType::kEnumeration, "each"},
};
TEST(QuickCheck, TakesTheTextsThatMostValuesAre) {
  for (const QuickCase& row : kQuick) {
    EXPECT_TRUE(Takes(Rules(row.type), row.text)) << datatypes::DataTypeName(row.type) << row.text;
  }
}

TEST(QuickCheck, CountsNoMoreThanBytesForTheLengthOfAString) {
  const ValueRules rules = Rules(DataType::kString, 2, 9);
  EXPECT_TRUE(Takes(rules, "abcdef"));
  EXPECT_TRUE(Takes(rules, "abcdefghi"));
  EXPECT_FALSE(Takes(rules, "abcde")) << "could be one character of three bytes and two more";
  EXPECT_FALSE(Takes(rules, "abcdefghij"));
  EXPECT_FALSE(Takes(Rules(DataType::kString, 4, 9), "abcdef")) << "left to the rules";
  EXPECT_FALSE(Takes(Rules(DataType::kNumber, 2, 3), "12")) << "left to the rules";
}

TEST(QuickCheck, LeavesALongListToTheRules) {
  ValueRules rules;
  rules.type = DataType::kEnumeration;
  for (char c = 'a'; c <= 'z'; ++c) rules.values.emplace_back(1, c);
  rules.Prepare();
  EXPECT_FALSE(Takes(rules, "a"));
}

void ExpectNoMoreThanTheRules(const ValueRules& rules, const std::string& text) {
  if (!Takes(rules, text)) return;
  EXPECT_EQ(rules.Check(text), ValueFailure::kNone)
      << datatypes::DataTypeName(rules.type) << ": '" << text << "'";
}

TEST(QuickCheck, TakesNoShortTextThatTheRulesRefuse) {
  const std::string alphabet = "0149.+-:T eaE";
  for (int i = 0; i < datatypes::kDataTypeCount; ++i) {
    const ValueRules rules = Rules(static_cast<DataType>(i));
    const ValueRules bounded = Rules(static_cast<DataType>(i), 1, 3);
    for (std::size_t number = 0; number < std::size_t{14} * 14 * 14; ++number) {
      std::string text;
      for (std::size_t rest = number; rest != 0; rest /= 14) {
        if (rest % 14 != 0) text += alphabet[rest % 14 - 1];
      }
      ExpectNoMoreThanTheRules(rules, text);
      ExpectNoMoreThanTheRules(bounded, text);
    }
  }
}

TEST(QuickCheck, TakesNoLongTextThatTheRulesRefuse) {
  const std::string texts[] = {
      "2004-02-28",        "2004-02-28T23:59:59", "333C7BC4-460F-11D0-BC04-0080C7055A83",
      "99999999999999",    "999999999999999",     "9999999999999999",
      "99999999999999999", "1234567890.1234",     "12345678901.2345",
      "999999999",         "9999999999",          "longer-than-eight",
      "longer-than-eigh"};
  const std::string replacements = "0123456789-:.TtZagAGz +\x80\xC3";
  for (int i = 0; i < datatypes::kDataTypeCount; ++i) {
    const ValueRules rules = Rules(static_cast<DataType>(i));
    for (const std::string& text : texts) {
      ExpectNoMoreThanTheRules(rules, text);
      for (std::size_t at = 0; at < text.size(); ++at) {
        for (const char c : replacements) {
          std::string changed = text;
          changed[at] = c;
          ExpectNoMoreThanTheRules(rules, changed);
        }
        ExpectNoMoreThanTheRules(rules, text.substr(0, at));
      }
    }
  }
}

}  // namespace
}  // namespace kx::xdr
