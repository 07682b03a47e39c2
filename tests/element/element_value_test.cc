// KXMsgElement: Value and TextValue.
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

class ElementValueTest : public testing::Test {
 protected:
  ElementValueTest() {
    world_.AddSchema("s.xml",
                     "<ElementType name='Int' content='textOnly' dt:type='int'/>"
                     "<ElementType name='Short' content='textOnly' dt:type='string' "
                     "dt:maxLength='3'/>"
                     "<ElementType name='Text' content='textOnly'/>"
                     "<ElementType name='Day' content='textOnly' dt:type='date'/>"
                     "<ElementType name='Bytes' content='textOnly' dt:type='bin.hex'/>"
                     "<ElementType name='Flag' content='textOnly' dt:type='boolean'/>"
                     "<ElementType name='Colour' content='textOnly' dt:type='enumeration' "
                     "dt:values='red green'/>"
                     "<ElementType name='Bare'/>"
                     "<ElementType name='Empty' content='empty'/>"
                     "<ElementType name='Mixed' content='mixed'><element type='Int' "
                     "minOccurs='0' maxOccurs='*'/></ElementType>"
                     "<ElementType name='Root' content='eltOnly' order='many'>"
                     "<element type='Int'/><element type='Short'/><element type='Text'/>"
                     "<element type='Day'/><element type='Bytes'/><element type='Flag'/>"
                     "<element type='Colour'/><element type='Bare'/><element type='Empty'/>"
                     "<element type='Mixed'/></ElementType>");
  }
  [[nodiscard]] KXMsgElement Child(std::string_view content) {
    message_ = world_.Loaded("s", "<Root>" + std::string(content) + "</Root>");
    return message_.RootElement().ChildElements(1);
  }

  test::MessageWorld world_;
  KXMessage message_ = nullptr;
};

TEST_F(ElementValueTest, AValueHasTheTypeThatTheSchemaGivesIt) {
  struct {
    const char* content;
    Variant value;
    const char* text;
  } const rows[] = {
      {"<Int>12</Int>", 12, "12"},
      {"<Int> 12 </Int>", 12, " 12 "},
      {"<Text>12</Text>", "12", "12"},
      {"<Text/>", "", ""},
      {"<Flag>1</Flag>", true, "1"},
      {"<Bytes>0a0B</Bytes>", Variant::Bytes{10, 11}, "0a0B"},
      {"<Day>1999-12-31</Day>", Date{36525}, "1999-12-31"},
      {"<Mixed>a<Int>1</Int>b</Mixed>", "a1b", "a1b"},
      {"<Int/>", Variant(), ""},
  };
  for (const auto& row : rows) {
    const KXMsgElement element = Child(row.content);
    EXPECT_EQ(element.Value(), row.value) << row.content;
    EXPECT_EQ(element.TextValue(), row.text) << row.content;
  }
}

TEST_F(ElementValueTest, AnElementWithoutTextHasNoValue) {
  for (const char* content : {"<Empty/>", "<Bare/>"}) {
    const KXMsgElement element = Child(content);
    EXPECT_EQ(ErrorOf([&] { static_cast<void>(element.Value()); }), Code(kxMsgErrorNoValue));
    EXPECT_EQ(ErrorOf([&] { element.Value(1); }), Code(kxMsgErrorNoValue));
    EXPECT_EQ(ErrorOf([&] { static_cast<void>(element.TextValue()); }), Code(kxMsgErrorNoValue));
    EXPECT_EQ(ErrorOf([&] { static_cast<void>(element.Parent().Value()); }),
              Code(kxMsgErrorNoValue));
  }
}

TEST_F(ElementValueTest, AValueIsStoredInTheFormOfItsType) {
  struct {
    const char* content;
    Variant value;
    const char* text;
  } const rows[] = {
      {"<Int/>", 7, "7"},
      {"<Int/>", "7", "7"},
      {"<Int/>", 7.0, "7"},
      {"<Text/>", 7, "7"},
      {"<Text/>", true, "True"},
      {"<Flag/>", true, "1"},
      {"<Bytes/>", Variant::Bytes{1, 255}, "01ff"},
      {"<Short/>", "longer than three", "longer than three"},
      {"<Text>old</Text>", "a < b", "a < b"},
  };
  for (const auto& row : rows) {
    const KXMsgElement element = Child(row.content);
    element.Value(row.value);
    EXPECT_EQ(element.TextValue(), row.text) << row.content;
  }
}

TEST_F(ElementValueTest, AValueOfAnotherTypeIsRefusedAndChangesNothing) {
  const KXMsgElement element = Child("<Int>5</Int>");
  std::string description;
  EXPECT_EQ(ErrorOf([&] { element.Value("many"); }, &description), Code(kxMsgErrorInvalidValue));
  EXPECT_EQ(description, "Value does not conform to data type 'int'.");
  EXPECT_EQ(element.Value(), Variant(5));
}

TEST_F(ElementValueTest, AFailureOnAnElementWithoutTypeIsInvalidUseOfNull) {
  const KXMsgElement element = Child("<Text>old</Text>");
  std::string description;
  EXPECT_EQ(ErrorOf([&] { element.Value(Variant::Null()); }, &description), RuntimeError(94));
  EXPECT_EQ(description, "Invalid use of Null");
  EXPECT_EQ(element.TextValue(), "old");
}

TEST_F(ElementValueTest, TheChildrenOfAMixedElementComeBackBehindTheText) {
  const KXMsgElement element = Child("<Mixed>a<Int>1</Int>b<Int>2</Int></Mixed>");
  element.Value("new");
  EXPECT_EQ(element.XML(), "<Mixed xmlns=\"ref-schema:\">new<Int>1</Int><Int>2</Int></Mixed>");
  element.Value("newer");
  EXPECT_EQ(element.XML(), "<Mixed xmlns=\"ref-schema:\">newer<Int>1</Int><Int>2</Int></Mixed>");
}

TEST_F(ElementValueTest, AnOlderListOfChildrenIsUsedAsItIs) {
  const KXMsgElement element = Child("<Mixed/>");
  element.Value("a");  // keeps the list of the children, which is empty
  static_cast<void>(element.ChildElements("Int"));
  EXPECT_EQ(element.Count(), 1);
  // Deliberate: the list does not know of the child, so it is gone with the former text.
  element.Value("b");
  EXPECT_EQ(element.XML(), "<Mixed xmlns=\"ref-schema:\">b</Mixed>");
}

TEST_F(ElementValueTest, AMixedElementWithMoreThan32767ChildrenKeepsItsText) {
  std::string children;
  for (int i = 0; i < 32767; ++i) children += "<Int>1</Int>";
  const KXMsgElement most = Child("<Mixed>a" + children + "</Mixed>");
  most.Value("b");
  EXPECT_EQ(most.Count(), 32767);
  const KXMsgElement tooMany = Child("<Mixed>a" + children + "<Int>1</Int></Mixed>");
  EXPECT_EQ(ErrorOf([&] { tooMany.Value("b"); }), RuntimeError(6));
  EXPECT_EQ(tooMany.TextValue().substr(0, 2), "a1");
  EXPECT_EQ(tooMany.Count(), 32768);
}

TEST_F(ElementValueTest, AnElementWithoutATypeOfItsOwnGetsThatOfItsDeclaration) {
  struct {
    const char* content;
    const char* xml;
  } const rows[] = {
      {"<Short/>",
       "<Short xmlns=\"ref-schema:\" xmlns:dt=\"urn:schemas-microsoft-com:datatypes\" "
       "dt:dt=\"string\">red</Short>"},
      {"<Text/>", "<Text xmlns=\"ref-schema:\">red</Text>"},
  };
  for (const auto& row : rows) {
    const KXMsgElement element = Child(row.content);
    element.Value("red");
    EXPECT_EQ(element.XML(), row.xml);
  }
}

TEST_F(ElementValueTest, TheTypeStaysWhenTheFirstValueIsRefused) {
  const KXMsgElement element = Child("<Short>old</Short>");
  EXPECT_EQ(ErrorOf([&] { element.Value(Variant::Null()); }), RuntimeError(94));
  EXPECT_EQ(element.XML(),
            "<Short xmlns=\"ref-schema:\" xmlns:dt=\"urn:schemas-microsoft-com:datatypes\" "
            "dt:dt=\"string\">old</Short>");
}

TEST_F(ElementValueTest, ARefusalWhereTheSchemaGivesNoTypeNamesNone) {
  const KXMsgElement element =
      Child("<Text xmlns:dt='urn:schemas-microsoft-com:datatypes' dt:dt='int'>5</Text>");
  std::string description;
  EXPECT_EQ(ErrorOf([&] { element.Value("x"); }, &description), Code(kxMsgErrorInvalidValue));
  EXPECT_EQ(description, "Value does not conform to data type 'none'.");
}

}  // namespace
}  // namespace kx
