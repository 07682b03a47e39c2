// KXMsgAttribute: name, value and information of one attribute.
#include "kxmessage/attribute.h"

#include "kxmessage/attributes.h"
#include "kxmessage/element.h"
#include "kxmessage/error_codes.h"

#include "support/message_world.h"

#include <gtest/gtest.h>
#include <string>

namespace kx {
namespace {

using test::ErrorOf;
using test::RuntimeError;

constexpr std::uint32_t Code(std::int32_t code) { return static_cast<std::uint32_t>(code); }

class AttributeTest : public testing::Test {
 protected:
  AttributeTest() {
    world_.AddSchema("s.xml",
                     "<AttributeType name='text'/><AttributeType name='int' dt:type='int'/>"
                     "<AttributeType name='flag' dt:type='boolean'/>"
                     "<AttributeType name='day' dt:type='date'/>"
                     "<AttributeType name='bytes' dt:type='bin.hex'/>"
                     "<AttributeType name='tok' dt:type='nmtoken'/>"
                     "<AttributeType name='tone' dt:type='enumeration' dt:values='low high'/>"
                     "<AttributeType name='fix' required='yes' default='f'/>"
                     "<ElementType name='R' content='textOnly' model='open'>"
                     "<attribute type='text'/><attribute type='int'/><attribute type='flag'/>"
                     "<attribute type='day'/><attribute type='bytes'/><attribute type='tok'/>"
                     "<attribute type='tone'/><attribute type='fix'/></ElementType>");
    message_ = world_.Loaded(
        "s",
        "<R xmlns:p='urn:p' text='t' int='007' flag='1' day='2001-02-03' bytes='41004200' "
        "tok='a' tone='low' fix='f' p:own='o'/>");
    attributes_ = message_.RootElement().Attributes();
  }

  test::MessageWorld world_;
  KXMessage message_ = nullptr;
  KXMsgAttributes attributes_;
};

TEST_F(AttributeTest, TheValueIsThatOfTheDataTypeAsText) {
  struct {
    const char* name;
    const char* value;
  } const rows[] = {{"text", "t"},   {"int", "7"}, {"flag", "True"}, {"day", "2/3/2001"},
                    {"bytes", "AB"}, {"tok", "a"}, {"tone", "low"},  {"p:own", "o"}};
  for (const auto& row : rows) EXPECT_EQ(attributes_[row.name].Value(), row.value) << row.name;
}

TEST_F(AttributeTest, TheTextIsThatOfTheMessageAndWhatValueTakes) {
  struct {
    const char* name;
    const char* text;
    const char* other;
  } const rows[] = {{"text", "t", " t\n"},
                    {"int", "007", "+8"},
                    {"flag", "1", "0"},
                    {"day", "2001-02-03", "1999-12-31"},
                    {"tok", "a", "b"},
                    {"tone", "low", "high"},
                    {"bytes", "41004200", "00ff"}};
  for (const auto& row : rows) {
    const KXMsgAttribute attribute = attributes_[row.name];
    EXPECT_EQ(attribute.TextValue(), row.text) << row.name;
    attribute.Value(row.other);
    EXPECT_EQ(attribute.TextValue(), row.other) << row.name;
  }
  EXPECT_EQ(attributes_["p:own"].TextValue(), "o");
  EXPECT_EQ(attributes_["fix"].TextValue(), "f");
}

TEST_F(AttributeTest, AValueIsStoredByItsDataType) {
  struct {
    const char* name;
    const char* value;
    std::uint32_t error;
    const char* description;
  } const rows[] = {
      {"text", "<&\">", 0, ""},
      {"int", "8", 0, ""},
      {"tok", "b", 0, ""},
      {"tone", "HIGH", 0, ""},
      // The check takes these; the data type does not.
      {"int", "eight", 0x80004005U, nullptr},
      {"tok", "a b", 0x80004005U, nullptr},
      {"tok", "", Code(kxMsgErrorBadAttributeValue),
       "Attribute 'tok' cannot have value '' as it does not correspond to type 'nmtoken.'"},
      {"tone", "loud", Code(kxMsgErrorBadAttributeValue),
       "Attribute 'tone' cannot have value 'loud' as it does not correspond to type "
       "'enumeration.'"},
      {"fix", "g", Code(kxMsgErrorAttributeReadOnly),
       "Attribute 'fix' is read-only and must contain the value 'f.'"},
      {"fix", "f", Code(kxMsgErrorAttributeReadOnly),
       "Attribute 'fix' is read-only and must contain the value 'f.'"},
      {"p:own", "p", RuntimeError(91), "Object variable or With block variable not set"},
  };
  for (const auto& row : rows) {
    const KXMsgAttribute attribute = attributes_[row.name];
    const std::string before = message_.XML();
    std::string description;
    EXPECT_EQ(ErrorOf([&] { attribute.Value(row.value); }, &description), row.error) << row.value;
    if (row.description != nullptr) {
      EXPECT_EQ(description, row.description);
    }
    if (row.error == 0) {
      EXPECT_EQ(attribute.Value(), row.value);
    } else {
      EXPECT_EQ(message_.XML(), before) << row.value;
    }
  }
}

TEST_F(AttributeTest, AnEmptyTextOfATypeThatWantsOneIsNull) {
  attributes_.RemoveAttribute("int");
  const KXMsgAttribute added = attributes_.AddAttribute("int");
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(added.Value()); }), RuntimeError(94));
  added.Value("5");
  EXPECT_EQ(added.Value(), "5");
}

TEST_F(AttributeTest, ItKeepsTheAttributeThatItFound) {
  const KXMsgAttribute text = attributes_["text"];
  attributes_.RemoveAttribute("text");
  EXPECT_EQ(text.Name(), "text");
  EXPECT_EQ(text.Value(), "t");
  text.Value("u");
  EXPECT_EQ(text.Value(), "u");
  EXPECT_FALSE(attributes_.Exists("text"));
  EXPECT_EQ(attributes_["text"].Value(), "");
}

TEST_F(AttributeTest, InfoTellsWhatTheSchemaSaysAndIsTheSameEachTime) {
  const KXMsgAttribute tone = attributes_["tone"];
  EXPECT_EQ(tone.Info(), tone.Info());
  EXPECT_EQ(tone.Info().Name(), "tone");
  EXPECT_EQ(tone.Info().DataType(), "enumeration");
  EXPECT_EQ(tone.Info().Values().size(), 2U);
  EXPECT_TRUE(attributes_["fix"].Info().ReadOnly());
  const KXMsgAttributeInfo own = attributes_["p:own"].Info();
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(own.Name()); }), RuntimeError(91));
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(own.Required()); }), RuntimeError(91));
}

TEST_F(AttributeTest, TheDeclarationOfTheNamespaceHasNoName) {
  const KXMsgAttribute declaration = attributes_["xmlns"];
  EXPECT_EQ(declaration.Name(), "");
  EXPECT_NE(declaration.Value(), "");
  EXPECT_EQ(ErrorOf([&] { declaration.Value("urn:other"); }), RuntimeError(91));
}

TEST_F(AttributeTest, AHandleOfNothingRaisesObjectNotSet) {
  const KXMsgAttribute nothing;
  EXPECT_FALSE(nothing);
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(nothing.Value()); }), RuntimeError(91));
}

}  // namespace
}  // namespace kx
