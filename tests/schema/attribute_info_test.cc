// KXMsgAttributeInfo, and the check of values.
#include "kxmessage/attribute_info.h"

#include "kxmessage/error_codes.h"

#include "support/bare_element.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kx {
namespace {

using schema::ReadOnlyRule;
using schema::Refusal;
using test::ErrorOf;
using test::RuntimeError;

constexpr std::uint32_t Code(std::int32_t code) { return static_cast<std::uint32_t>(code); }

class AttributeInfoTest : public testing::Test {
 protected:
  /// The attribute "a", declared with `declaration` and of an AttributeType with `type`.
  [[nodiscard]] KXMsgAttributeInfo Info(const std::string& declaration, const std::string& type) {
    return HandleAccess::Wrap<KXMsgAttributeInfo>(Impl(declaration, type));
  }
  [[nodiscard]] runtime::Counted<schema::AttributeInfoImpl> Impl(const std::string& declaration,
                                                                 const std::string& type) {
    return Described("<AttributeType name='a' " + type + "/><ElementType name='E'><attribute " +
                         "type='a' " + declaration + "/></ElementType>",
                     "a");
  }
  [[nodiscard]] runtime::Counted<schema::AttributeInfoImpl> Described(
      const std::string& declarations, std::string_view name) {
    return test::BareElement(world_, declarations, "E", "<E/>").Info(name);
  }

  test::MessageWorld world_;
};

TEST_F(AttributeInfoTest, RequiredAndDefaultAreThoseOfTheDeclarationFirst) {
  struct {
    const char* declaration;
    const char* type;
    bool required;
    const char* defaultValue;
    bool readOnly;
  } const rows[] = {
      {"", "", false, "", false},
      {"", "required='yes'", true, "", false},
      {"required=''", "required='yes'", true, "", false},
      {"required='no'", "required='yes'", false, "", false},
      {"required='yes'", "required='no'", true, "", false},
      {"required='Yes'", "required='yes'", false, "", false},
      {"", "default='1'", false, "1", false},
      {"default=''", "default='1'", false, "1", false},
      {"default='2'", "default='1'", false, "2", false},
      {"required='yes'", "default='1.0'", true, "1.0", true},
      {"required='yes' default='1.0'", "", true, "1.0", true},
      {"default='x'", "required='yes'", true, "x", true},
      {"required='no' default='x'", "required='yes'", false, "x", false},
  };
  for (const auto& row : rows) {
    const KXMsgAttributeInfo info = Info(row.declaration, row.type);
    EXPECT_EQ(info.Required(), row.required) << row.declaration << " | " << row.type;
    EXPECT_EQ(info.DefaultValue(), row.defaultValue) << row.declaration << " | " << row.type;
    EXPECT_EQ(info.ReadOnly(), row.readOnly) << row.declaration << " | " << row.type;
  }
}

TEST_F(AttributeInfoTest, NameAndDataTypeAreThoseOfTheAttributeTypeAlone) {
  const KXMsgAttributeInfo info =
      Info("dt:type='int' dt:values='x y'", "dt:type='nmtoken' dt:values='p q'");
  EXPECT_EQ(info.Name(), "a");
  EXPECT_EQ(info.DataType(), "nmtoken");
  EXPECT_EQ(info.Values(), (std::vector<std::string>{"p", "q"}));
  EXPECT_EQ(Info("dt:type='int'", "").DataType(), "none");
  EXPECT_EQ(Info("", "dt:type=''").DataType(), "none");
}

TEST_F(AttributeInfoTest, ValuesArePartedByEverySingleBlank) {
  struct {
    const char* type;
    std::vector<std::string> values;
  } const rows[] = {
      {"", {}},
      {"dt:values=''", {}},
      {"dt:values='red'", {"red"}},
      {"dt:values='red green'", {"red", "green"}},
      {"dt:values='red  green'", {"red", "", "green"}},
      {"dt:values=' red '", {"", "red", ""}},
      {"dt:values=' '", {"", ""}},
  };
  for (const auto& row : rows) EXPECT_EQ(Info("", row.type).Values(), row.values) << row.type;
}

TEST_F(AttributeInfoTest, AnAttributeTypeInTheElementTypeComesBeforeTheGlobalOne) {
  const auto info = Described(
      "<AttributeType name='a' dt:type='int'/><ElementType name='E'>"
      "<AttributeType name='a' dt:type='date'/><attribute type='a'/></ElementType>",
      "a");
  EXPECT_EQ(info->DataType(), "date");
}

TEST_F(AttributeInfoTest, WhatIsNotDeclaredIsAnObjectThatIsNotSet) {
  const auto undeclared = Described("<ElementType name='E'/>", "b");
  const auto untyped = Described("<ElementType name='E'><attribute type='b'/></ElementType>", "b");
  const auto unused = Described("<AttributeType name='b'/><ElementType name='E'/>", "b");
  using Impl = schema::AttributeInfoImpl;
  struct {
    const char* property;
    void (*read)(const Impl& info);
    bool needsType;
    bool needsDeclaration;
  } const rows[] = {
      {"Name", [](const Impl& info) { static_cast<void>(info.Name()); }, true, false},
      {"DataType", [](const Impl& info) { static_cast<void>(info.DataType()); }, true, false},
      {"Values", [](const Impl& info) { static_cast<void>(info.Values()); }, true, false},
      {"Required", [](const Impl& info) { static_cast<void>(info.Required()); }, true, true},
      {"DefaultText", [](const Impl& info) { static_cast<void>(info.DefaultText()); }, true, true},
      {"ReadOnly", [](const Impl& info) { static_cast<void>(info.ReadOnly()); }, true, true},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(ErrorOf([&] { row.read(*undeclared); }), RuntimeError(91)) << row.property;
    EXPECT_EQ(ErrorOf([&] { row.read(*untyped); }), row.needsType ? RuntimeError(91) : 0)
        << row.property;
    EXPECT_EQ(ErrorOf([&] { row.read(*unused); }), row.needsDeclaration ? RuntimeError(91) : 0)
        << row.property;
  }
}

TEST_F(AttributeInfoTest, ANameThatNoQueryTakesIsTheQuerysError) {
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(Described("<ElementType name='E'/>", "it's")); }),
            0x80004005U);
}

TEST_F(AttributeInfoTest, ValuesAreCheckedByTheirDataType) {
  struct {
    const char* type;
    const char* value;
    bool accepted;
  } const rows[] = {
      {"dt:type='nmtoken'", "", false},
      {"dt:type='nmtoken'", "a", true},
      {"dt:type='nmtoken'", "a b", true},
      {"dt:type='nmtoken'", "<&>", true},
      {"dt:type='nmtokens'", "", false},
      {"dt:type='nmtokens'", "a b", true},
      {"dt:type='enumeration' dt:values='red green'", "green", true},
      {"dt:type='enumeration' dt:values='red green'", "GREEN", true},
      {"dt:type='enumeration' dt:values='red green'", "blue", false},
      {"dt:type='enumeration' dt:values='red green'", "red green", false},
      {"dt:type='enumeration' dt:values='red green'", "", false},
      {"dt:type='enumeration' dt:values='red  green'", "", true},
      {"dt:type='enumeration' dt:values='1 2'", "1", true},
      {"dt:type='enumeration' dt:values='1 2'", "3", false},
      {"dt:type='enumeration'", "red", false},
      {"dt:type='enumeration'", "", false},
      {"dt:type='Enumeration' dt:values='red'", "blue", true},
      {"dt:type='int'", "no number", true},
      {"dt:type='nobody'", "", true},
      {"dt:type='id'", "", true},
      {"dt:type='string'", "", true},
      {"", "", true},
  };
  for (const auto& row : rows) {
    const auto info = Impl("", row.type);
    EXPECT_EQ(info->ValidateValue(row.value, Refusal::kAnswer, ReadOnlyRule::kInForce),
              row.accepted)
        << row.type << " | " << row.value;
    std::string description;
    const std::uint32_t error = ErrorOf(
        [&] {
          static_cast<void>(info->ValidateValue(row.value, Refusal::kRaise, ReadOnlyRule::kWaived));
        },
        &description);
    EXPECT_EQ(error, row.accepted ? 0U : Code(kxMsgErrorBadAttributeValue)) << row.type;
    if (row.accepted) continue;
    EXPECT_EQ(description, "Attribute 'a' cannot have value '" + std::string(row.value) +
                               "' as it does not correspond to type '" + info->DataType() + ".'");
  }
}

TEST_F(AttributeInfoTest, AReadOnlyAttributeRefusesEveryValueUnlessTheRuleIsWaived) {
  const auto info = Impl("required='yes'", "default='1.0'");
  for (const char* value : {"1.0", "2.0", ""}) {
    EXPECT_FALSE(info->ValidateValue(value, Refusal::kAnswer, ReadOnlyRule::kInForce));
    std::string description;
    EXPECT_EQ(ErrorOf(
                  [&] {
                    static_cast<void>(
                        info->ValidateValue(value, Refusal::kRaise, ReadOnlyRule::kInForce));
                  },
                  &description),
              Code(kxMsgErrorAttributeReadOnly));
    EXPECT_EQ(description, "Attribute 'a' is read-only and must contain the value '1.0.'");
    EXPECT_TRUE(info->ValidateValue(value, Refusal::kRaise, ReadOnlyRule::kWaived));
  }
}

TEST_F(AttributeInfoTest, AnEnumerationThatListsAValueTwiceCannotBeAsked) {
  for (const char* values : {"red green red", "red RED", "a   b"}) {
    const auto info = Impl("", "dt:type='enumeration' dt:values='" + std::string(values) + "'");
    for (int i = 0; i < 2; ++i) {
      EXPECT_EQ(
          ErrorOf([&] {
            static_cast<void>(info->ValidateValue("red", Refusal::kAnswer, ReadOnlyRule::kInForce));
          }),
          RuntimeError(457))
          << values;
    }
  }
}

TEST_F(AttributeInfoTest, AHandleOfNothingRaisesObjectNotSet) {
  const KXMsgAttributeInfo nothing;
  EXPECT_FALSE(nothing);
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(nothing.Name()); }), RuntimeError(91));
}

}  // namespace
}  // namespace kx
