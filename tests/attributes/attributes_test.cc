// KXMsgAttributes.
#include "kxmessage/attributes.h"

#include "kxmessage/error_codes.h"

#include "support/bare_element.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kx {
namespace {

using test::ErrorOf;
using test::RuntimeError;

constexpr std::uint32_t Code(std::int32_t code) { return static_cast<std::uint32_t>(code); }

std::vector<std::string> Names(const KXMsgAttributes& attributes) {
  std::vector<std::string> names;
  for (const KXMsgAttribute& attribute : attributes) names.push_back(attribute.Name());
  return names;
}

constexpr const char* kDeclarations =
    "<AttributeType name='opt'/><AttributeType name='num' dt:type='int'/>"
    "<AttributeType name='need' required='yes'/>"
    "<AttributeType name='dflt' default='d'/>"
    "<AttributeType name='fix' required='yes' default='f'/>"
    "<AttributeType name='tok' dt:type='nmtoken'/>"
    "<AttributeType name='tone' dt:type='enumeration' dt:values='low high'/>"
    "<AttributeType name='tint' dt:type='enumeration' dt:values='red green' default='green'/>"
    "<ElementType name='R' content='textOnly' model='open'><attribute type='opt'/>"
    "<attribute type='num'/><attribute type='need'/><attribute type='dflt'/><attribute "
    "type='fix'/><attribute type='tok'/><attribute type='tone'/><attribute type='tint'/>"
    "</ElementType>";

class AttributesTest : public testing::Test {
 protected:
  AttributesTest() { world_.AddSchema("s.xml", kDeclarations); }

  /// The attributes of the content root of a message, which has the required ones.
  [[nodiscard]] KXMsgAttributes Loaded(const std::string& attributes) {
    message_ = world_.Loaded("s", "<R " + attributes + " need='n'/>");
    return message_.RootElement().Attributes();
  }
  /// Those of an element that nothing is supplied to.
  [[nodiscard]] test::BareElement Bare(const std::string& text) {
    return {world_, kDeclarations, "R", text};
  }
  /// The same with its attributes, when only these are asked for.
  [[nodiscard]] KXMsgAttributes BareAttributes(const std::string& text) {
    return Bare(text).Attributes();
  }

  test::MessageWorld world_;
  KXMessage message_ = nullptr;
};

// ---- Looking ------------------------------------------------------------------------------------

TEST_F(AttributesTest, AnElementKeepsItsCollection) {
  static_cast<void>(Loaded(""));
  const KXMsgElement root = message_.RootElement();
  EXPECT_EQ(root.Attributes(), root.Attributes());
  EXPECT_EQ(root.Attributes().KnownValidAttributes(), root.Attributes().KnownValidAttributes());
  EXPECT_EQ(root.Attributes().KnownValidAttributes().Count(), 8);
}

TEST_F(AttributesTest, ANamelessFirstItemIsHidden) {
  const KXMsgAttributes hidden = BareAttributes("<R xmlns='urn:x' opt='1' num='2'/>");
  EXPECT_EQ(hidden.Count(), 2);
  EXPECT_EQ(hidden.Attrib(1).Name(), "opt");
  EXPECT_EQ(hidden.Attrib(2).Name(), "num");
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(hidden.Attrib(3)); }), Code(kxMsgErrorNoAttribute));
  EXPECT_TRUE(hidden.Exists("xmlns"));
  EXPECT_EQ(Names(hidden), (std::vector<std::string>{"opt", "num"}));

  const KXMsgAttributes alone = BareAttributes("<R xmlns='urn:x'/>");
  EXPECT_EQ(alone.Count(), 0);
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(alone.Attrib(1)); }), Code(kxMsgErrorNoAttribute));
  EXPECT_EQ(Names(alone), std::vector<std::string>{});
  EXPECT_EQ(BareAttributes("<R/>").Count(), 0);
}

TEST_F(AttributesTest, ANamelessItemElsewhereIsNotHidden) {
  const KXMsgAttributes attributes = BareAttributes("<R opt='1' xmlns='urn:x' num='2'/>");
  EXPECT_EQ(attributes.Count(), 3);
  EXPECT_EQ(attributes.Attrib(3).Name(), "num");
  // It has a position, and by its name there is nothing.
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(attributes.Attrib(2).Name()); }), RuntimeError(91));
  // An enumeration has a member for each that has a name, by the positions of all.
  std::vector<bool> named;
  for (const KXMsgAttribute& attribute : attributes) {
    named.push_back(ErrorOf([&] { static_cast<void>(attribute.Name()); }) == 0);
  }
  EXPECT_EQ(named, (std::vector<bool>{true, false}));
}

TEST_F(AttributesTest, NumbersAndTextsThatReadAsNumbersArePositions) {
  const KXMsgAttributes attributes = BareAttributes("<R opt='1' num='2' tok='3'/>");
  struct {
    Variant key;
    const char* name;
  } const rows[] = {{1, "opt"},   {"2", "num"}, {3.0, "tok"}, {" 2 ", "num"},
                    {1.4, "opt"}, {1.6, "num"}, {1.5, "opt"}, {2.5, "tok"}};
  for (const auto& row : rows) {
    EXPECT_EQ(attributes.Attrib(row.key).Name(), row.name) << row.key.ToText();
  }
}

TEST_F(AttributesTest, WhatIsNeitherThereNorDeclaredIsNoAttribute) {
  const KXMsgAttributes attributes = BareAttributes("<R opt='1' own='2'/>");
  struct {
    Variant key;
    std::uint32_t error;
    const char* description;
  } const rows[] = {
      {0, Code(kxMsgErrorNoAttribute), "Attribute '0' does not exist."},
      {3, Code(kxMsgErrorNoAttribute), "Attribute '3' does not exist."},
      {"-1", Code(kxMsgErrorNoAttribute), "Attribute '-1' does not exist."},
      {1e300, Code(kxMsgErrorNoAttribute), "Attribute '1E+300' does not exist."},
      {0.9, Code(kxMsgErrorNoAttribute), "Attribute '0.9' does not exist."},
      {"nobody", Code(kxMsgErrorNoAttribute), "Attribute 'nobody' does not exist."},
      {"OPT", Code(kxMsgErrorNoAttribute), "Attribute 'OPT' does not exist."},
      {"", Code(kxMsgErrorNoAttribute), "Attribute '' does not exist."},
      {"it's", Code(kxMsgErrorNoAttribute), "Attribute 'it's' does not exist."},
      {Variant(), Code(kxMsgErrorNoAttribute), "Attribute '' does not exist."},
      {true, Code(kxMsgErrorNoAttribute), "Attribute 'True' does not exist."},
      {false, Code(kxMsgErrorNoAttribute), "Attribute 'False' does not exist."},
      {"&H9", Code(kxMsgErrorNoAttribute), "Attribute '&H9' does not exist."},
      {Date{1}, Code(kxMsgErrorNoAttribute), "Attribute '12/31/1899' does not exist."},
      {Variant::Missing(), Code(kxMsgErrorNoAttribute), "Attribute 'Error 448' does not exist."},
      {Variant::Null(), RuntimeError(94), "Invalid use of Null"},
      {ObjectRef(), RuntimeError(91), "Object variable or With block variable not set"},
  };
  for (const auto& row : rows) {
    std::string description;
    EXPECT_EQ(ErrorOf([&] { static_cast<void>(attributes.Attrib(row.key)); }, &description),
              row.error)
        << row.description;
    EXPECT_EQ(description, row.description);
  }
  EXPECT_EQ(attributes.Count(), 2);
}

TEST_F(AttributesTest, AnAttributeWithAPrefixIsFoundAsItIsWritten) {
  const KXMsgAttributes attributes = BareAttributes("<R xmlns:p='urn:p' p:a='1' a='2' p:b='3'/>");
  EXPECT_TRUE(attributes.Exists("p:a"));
  EXPECT_EQ(attributes.Attrib("p:a").Value(), "1");
  EXPECT_EQ(attributes.Attrib("p:a").Name(), "a");
  // By position it is looked for without its prefix.
  EXPECT_EQ(attributes.Attrib(2).Value(), "2");
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(attributes.Attrib(4).Name()); }), RuntimeError(91));
  EXPECT_EQ(ErrorOf([&] { attributes.RemoveAttribute(4); }), RuntimeError(91));
}

TEST_F(AttributesTest, ReadingADeclaredAttributeThatIsNotThereAddsIt) {
  const KXMsgAttributes attributes = Loaded("");
  EXPECT_FALSE(attributes.Exists("opt"));
  const KXMsgAttribute added = attributes.Attrib("opt");
  EXPECT_EQ(added.Name(), "opt");
  EXPECT_EQ(added.Value(), "");
  EXPECT_TRUE(attributes.Exists("opt"));
  EXPECT_EQ(message_.RootElement().Attributes().Count(), attributes.Count());
  EXPECT_NE(attributes.Attrib("opt"), attributes.Attrib("opt"));

  const test::BareElement bare = Bare("<R/>");
  EXPECT_EQ(bare.Attributes().Attrib("dflt").Value(), "d");
  EXPECT_EQ(bare.Xml(), "<R dflt=\"d\"/>");
}

TEST_F(AttributesTest, ReadingOneThatCannotBeAddedGivesNothing) {
  const KXMsgAttributes attributes = Loaded("");
  for (const char* name : {"tok", "tone"}) {
    EXPECT_FALSE(attributes.Attrib(name)) << name;
    EXPECT_FALSE(attributes.Exists(name)) << name;
    EXPECT_EQ(ErrorOf([&] { attributes.RemoveAttribute(name); }), RuntimeError(91)) << name;
  }
  EXPECT_TRUE(attributes.Attrib("tint"));
}

TEST_F(AttributesTest, ExistsAsksNoSchemaAndAddsNothing) {
  const KXMsgAttributes attributes = BareAttributes("<R xmlns='urn:x' own='1'/>");
  EXPECT_FALSE(attributes.Exists({}));
  EXPECT_FALSE(attributes.KnownValidAttributes().Exists({}));
  EXPECT_TRUE(attributes.Exists("own"));
  EXPECT_TRUE(attributes.Exists("xmlns"));
  EXPECT_FALSE(attributes.Exists("opt"));
  EXPECT_FALSE(attributes.Exists("1"));
  EXPECT_FALSE(attributes.Exists("it's"));
  EXPECT_EQ(attributes.Count(), 1);
}

// ---- Adding -------------------------------------------------------------------------------------

TEST_F(AttributesTest, AValueIsCheckedAndTheDefaultIsStored) {
  struct {
    const char* name;
    const char* value;
    const char* becomes;
    const char* stored;
  } const rows[] = {
      {"opt", "x", "x", ""},           {"opt", "", "", ""},
      {"dflt", "x", "x", "d"},         {"dflt", "", "d", "d"},
      {"tint", "RED", "RED", "green"}, {"tint", "", "green", "green"},
      {"tone", "high", "high", "low"}, {"tok", "a b", "a b", ""},
      {"num", "none", "none", ""},     {"need", "", "", ""},
      {"fix", "x", "x", "f"},          {"fix", "", "f", "f"},
  };
  for (const auto& row : rows) {
    const test::BareElement bare = Bare("<R/>");
    std::string value = row.value;
    const KXMsgAttribute added = bare.Attributes().AddAttribute(row.name, value);
    EXPECT_EQ(added.Name(), row.name);
    EXPECT_EQ(value, row.becomes) << row.name;
    EXPECT_EQ(bare.Xml(), "<R " + std::string(row.name) + "=\"" + row.stored + "\"/>");
  }
}

TEST_F(AttributesTest, AValueOfTheWrongKindAddsNothing) {
  struct {
    const char* name;
    const char* value;
    const char* description;
  } const rows[] = {
      {"tone", "loud",
       "Attribute 'tone' cannot have value 'loud' as it does not correspond to type "
       "'enumeration.'"},
      {"tone", "",
       "Attribute 'tone' cannot have value '' as it does not correspond to type 'enumeration.'"},
      {"tok", "",
       "Attribute 'tok' cannot have value '' as it does not correspond to type "
       "'nmtoken.'"},
  };
  for (const auto& row : rows) {
    const KXMsgAttributes attributes = Loaded("");
    const std::int32_t count = attributes.Count();
    std::string description;
    EXPECT_EQ(ErrorOf([&] { attributes.AddAttribute(row.name, row.value); }, &description),
              Code(kxMsgErrorBadAttributeValue));
    EXPECT_EQ(description, row.description);
    EXPECT_EQ(attributes.Count(), count);
  }
}

TEST_F(AttributesTest, OnlyADeclaredAttributeThatIsNotThereIsAdded) {
  const KXMsgAttributes attributes = Loaded("xmlns:p='urn:p' p:own='1' opt='2'");
  struct {
    const char* name;
    std::uint32_t error;
    const char* description;
  } const rows[] = {
      {"p:own", Code(kxMsgErrorUnknownAttribute),
       "An AttributeType named \"p:own\" does not exist in schema."},
      {"nobody", Code(kxMsgErrorUnknownAttribute),
       "An AttributeType named \"nobody\" does not exist in schema."},
      {"", Code(kxMsgErrorUnknownAttribute),
       "An AttributeType named \"\" does not exist in schema."},
      {"xmlns", Code(kxMsgErrorUnknownAttribute),
       "An AttributeType named \"xmlns\" does not exist in schema."},
      {"opt", Code(kxMsgErrorAttributeExists), "Attribute 'opt' already exists."},
      {"need", Code(kxMsgErrorAttributeExists), "Attribute 'need' already exists."},
      // A schema's defaults are supplied to the message when it is loaded.
      {"dflt", Code(kxMsgErrorAttributeExists), "Attribute 'dflt' already exists."},
      {"fix", Code(kxMsgErrorAttributeExists), "Attribute 'fix' already exists."},
  };
  const std::int32_t count = attributes.Count();
  for (const auto& row : rows) {
    std::string description;
    EXPECT_EQ(ErrorOf([&] { attributes.AddAttribute(row.name, "tone"); }, &description), row.error)
        << row.name;
    EXPECT_EQ(description, row.description);
  }
  EXPECT_EQ(ErrorOf([&] { attributes.AddAttribute("it's"); }), 0x80004005U);
  EXPECT_EQ(attributes.Count(), count);
}

TEST_F(AttributesTest, AReadOnlyAttributeIsAddedAndThenRefusesEveryValue) {
  const test::BareElement bare = Bare("<R/>");
  const KXMsgAttribute fixed = bare.Attributes().AddAttribute("fix", "anything");
  EXPECT_EQ(fixed.Value(), "f");
  for (const char* value : {"f", "g"}) {
    EXPECT_EQ(ErrorOf([&] { fixed.Value(value); }), Code(kxMsgErrorAttributeReadOnly)) << value;
  }
  EXPECT_EQ(bare.Xml(), "<R fix=\"f\"/>");
}

TEST_F(AttributesTest, WhatWasAddedComesBackWithTheMessage) {
  const KXMsgAttributes attributes = Loaded("");
  attributes.AddAttribute("tone", "high").Value("high");
  attributes.AddAttribute("num").Value("42");
  KXMessage again = world_.NewMessage();
  again.LoadMessageFromString(message_.XML());
  EXPECT_EQ(again.RootElement().Attributes().Attrib("tone").Value(), "high");
  EXPECT_EQ(again.RootElement().Attributes().Attrib("num").Value(), "42");
  EXPECT_EQ(again.RootElement().Attributes().Count(), attributes.Count());
}

// ---- Removing -----------------------------------------------------------------------------------

TEST_F(AttributesTest, AnAttributeIsRemovedByNameAndByPosition) {
  const test::BareElement bare = Bare("<R xmlns:p='urn:p' opt='1' num='2' tok='t'/>");
  const KXMsgAttributes attributes = bare.Attributes();
  attributes.RemoveAttribute("num");
  attributes.RemoveAttribute(2);
  EXPECT_EQ(bare.Xml(), "<R xmlns:p=\"urn:p\" tok=\"t\"/>");
}

TEST_F(AttributesTest, AnOptionalAttributeThatIsNotThereIsAddedAndRemovedAgain) {
  const KXMsgAttributes attributes = Loaded("");
  const std::string before = message_.XML();
  attributes.RemoveAttribute("opt");
  EXPECT_EQ(message_.XML(), before);
}

TEST_F(AttributesTest, ARequiredAttributeThatIsNotThereIsAddedAndStays) {
  const test::BareElement bare = Bare("<R/>");
  for (const char* name : {"need", "dflt", "fix", "tint"}) {
    std::string description;
    EXPECT_EQ(ErrorOf([&] { bare.Attributes().RemoveAttribute(name); }, &description),
              Code(kxMsgErrorAttributeRequired));
    EXPECT_EQ(description, "Attribute '" + std::string(name) + "' is required.");
  }
  EXPECT_EQ(bare.Xml(), "<R need=\"\" dflt=\"d\" fix=\"f\" tint=\"green\"/>");
}

TEST_F(AttributesTest, WhatCannotBeRemoved) {
  const KXMsgAttributes attributes = Loaded("xmlns:p='urn:p' p:own='1'");
  struct {
    Variant key;
    std::uint32_t error;
    const char* description;
  } const rows[] = {
      {"p:own", Code(kxMsgErrorUnknownAttribute),
       "An AttributeType named \"own\" does not exist in schema."},
      {"xmlns", Code(kxMsgErrorUnknownAttribute),
       "An AttributeType named \"\" does not exist in schema."},
      {"need", Code(kxMsgErrorAttributeRequired), "Attribute 'need' is required."},
      {"dflt", Code(kxMsgErrorAttributeRequired), "Attribute 'dflt' is required."},
      {"fix", Code(kxMsgErrorAttributeRequired), "Attribute 'fix' is required."},
      {"nobody", Code(kxMsgErrorNoAttribute), "Attribute 'nobody' does not exist."},
      {0, Code(kxMsgErrorNoAttribute), "Attribute '0' does not exist."},
      {99, Code(kxMsgErrorNoAttribute), "Attribute '99' does not exist."},
  };
  const std::string before = message_.XML();
  for (const auto& row : rows) {
    std::string description;
    EXPECT_EQ(ErrorOf([&] { attributes.RemoveAttribute(row.key); }, &description), row.error)
        << row.description;
    EXPECT_EQ(description, row.description);
  }
  EXPECT_EQ(message_.XML(), before);
}

// The name without prefix is what is looked for when a prefixed attribute goes.
TEST_F(AttributesTest, AnAttributeWithAPrefixIsRemovedByItsNameWithoutIt) {
  const KXMsgAttributes attributes = BareAttributes("<R xmlns:p='urn:p' p:opt='1'/>");
  std::string description;
  EXPECT_EQ(ErrorOf([&] { attributes.RemoveAttribute("p:opt"); }, &description),
            Code(kxMsgErrorNoAttribute));
  EXPECT_EQ(description, "Attribute 'opt' does not exist.");
}

// ---- Enumeration --------------------------------------------------------------------------------

TEST_F(AttributesTest, AnEnumerationKeepsItsMembersUntilOneIsRemoved) {
  const KXMsgAttributes attributes = BareAttributes("<R opt='1' num='2'/>");
  EXPECT_EQ(Names(attributes), (std::vector<std::string>{"opt", "num"}));
  EXPECT_EQ(*attributes.begin(), *attributes.begin());
  attributes.AddAttribute("dflt");
  static_cast<void>(attributes.Attrib("tint"));
  EXPECT_EQ(attributes.Count(), 4);
  EXPECT_EQ(Names(attributes), (std::vector<std::string>{"opt", "num"}));
  EXPECT_EQ(ErrorOf([&] { attributes.RemoveAttribute("dflt"); }),
            Code(kxMsgErrorAttributeRequired));
  EXPECT_EQ(Names(attributes), (std::vector<std::string>{"opt", "num"}));
  attributes.RemoveAttribute("opt");
  EXPECT_EQ(Names(attributes), (std::vector<std::string>{"num", "dflt", "tint"}));
}

TEST_F(AttributesTest, ValuesInAnEnumerationAreReadLive) {
  const KXMsgAttributes attributes = BareAttributes("<R opt='1'/>");
  const KXMsgAttribute first = *attributes.begin();
  attributes.Attrib("opt").Value("changed");
  EXPECT_EQ(first.Value(), "changed");
  EXPECT_EQ((*attributes.begin()).Value(), "changed");
}

// Each member stands for its name without prefix, as one that is asked for by position does.
TEST_F(AttributesTest, AnEnumerationOfManyAttributesAgreesWithTheirPositions) {
  std::string text = "<R xmlns='urn:x' xmlns:p='urn:p' xmlns:q='urn:q'";
  for (int i = 0; i < 300; ++i) {
    const std::string number = std::to_string(i);
    constexpr const char* kStarts[] = {" p:a", " b", " q:b"};
    text.append(kStarts[i % 3]).append(number).append("='").append(number).append("'");
    if (i % 7 == 0) text.append(" a").append(number).append("='own'");
  }
  const KXMsgAttributes attributes = BareAttributes(text + "/>");
  std::int32_t position = 0;
  for (const KXMsgAttribute& member : attributes) {
    const KXMsgAttribute at = attributes.Attrib(++position);
    std::string value;
    std::string expected;
    EXPECT_EQ(ErrorOf([&] { value = member.Value(); }), ErrorOf([&] { expected = at.Value(); }));
    EXPECT_EQ(value, expected) << position;
  }
  EXPECT_EQ(position, attributes.Count());
}

TEST_F(AttributesTest, ObjectsOutliveTheMessageAndKeepAContentThatWasReplaced) {
  const KXMsgAttributes attributes = Loaded("opt='1'");
  const KXMsgAttribute opt = attributes["opt"];
  message_.LoadMessageFromString(world_.Loaded("s", "<R need='other'/>").XML());
  opt.Value("2");
  attributes.AddAttribute("num").Value("3");
  attributes.RemoveAttribute("num");
  EXPECT_EQ(attributes["opt"].Value(), "2");
  EXPECT_FALSE(message_.RootElement().Attributes().Exists("opt"));
  message_ = nullptr;
  opt.Value("4");
  EXPECT_EQ(attributes["opt"].Value(), "4");
  EXPECT_EQ((*attributes.begin()).Name(), "opt");
}

TEST_F(AttributesTest, AnEmptyEnumerationIsKeptToo) {
  const KXMsgAttributes attributes = BareAttributes("<R/>");
  EXPECT_EQ(Names(attributes), std::vector<std::string>{});
  attributes.AddAttribute("opt");
  EXPECT_EQ(Names(attributes), std::vector<std::string>{});
  attributes.RemoveAttribute("num");
  EXPECT_EQ(Names(attributes), std::vector<std::string>{"opt"});
}

TEST_F(AttributesTest, AHandleOfNothingRaisesObjectNotSet) {
  const KXMsgAttributes nothing;
  EXPECT_FALSE(nothing);
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(nothing.Count()); }), RuntimeError(91));
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(KXMsgElement().Attributes()); }), RuntimeError(91));
}

}  // namespace
}  // namespace kx
