// KXMsgElementInfo: what the schema says of an element.
#include "kxmessage/element_info.h"

#include "support/message_world.h"

#include <gtest/gtest.h>
#include <string>

namespace kx {
namespace {

class ElementInfoTest : public testing::Test {
 protected:
  // The information on the content root, of the element type with these attributes and children.
  [[nodiscard]] KXMsgElementInfo InfoOf(const std::string& attributes,
                                        const std::string& inner = {}) {
    world_.AddSchema("s.xml",
                     "<ElementType name='Leaf' content='textOnly'/><ElementType name='E' " +
                         attributes + ">" + inner + "</ElementType>");
    message_ = world_.Loaded("s", "<E/>");
    return message_.RootElement().Info();
  }

  test::MessageWorld world_;
  KXMessage message_ = nullptr;
};

TEST_F(ElementInfoTest, ContentTellsWhetherChildrenAndValuesMayBe) {
  struct {
    const char* attributes;
    bool children;
    bool value;
    const char* why;
  } const rows[] = {{"", false, false, "an absent content has two readings"},
                    {"content='mixed'", true, true, "mixed"},
                    {"content='textOnly'", false, true, "textOnly"},
                    {"content='eltOnly'", true, false, "eltOnly"},
                    {"content='empty'", false, false, "empty"}};
  for (const auto& row : rows) {
    const KXMsgElementInfo info = InfoOf(row.attributes);
    EXPECT_EQ(info.Name(), "E");
    EXPECT_EQ(info.CanHaveChildren(), row.children) << row.why;
    EXPECT_EQ(info.CanHaveValue(), row.value) << row.why;
  }
}

TEST_F(ElementInfoTest, OnlyAModelThatSaysSoIsOpen) {
  EXPECT_FALSE(InfoOf("").IsOpenModel());
  EXPECT_FALSE(InfoOf("model='closed'").IsOpenModel());
  EXPECT_TRUE(InfoOf("model='open'").IsOpenModel());
}

TEST_F(ElementInfoTest, LengthsAreMinusOneWhereThereAreNone) {
  EXPECT_EQ(InfoOf("content='textOnly'").MinLength(), -1);
  EXPECT_EQ(InfoOf("content='textOnly'").MaxLength(), -1);
  const KXMsgElementInfo info =
      InfoOf("content='textOnly' dt:type='string' dt:minLength='0' dt:maxLength='12'");
  EXPECT_EQ(info.MinLength(), 0);
  EXPECT_EQ(info.MaxLength(), 12);
}

TEST_F(ElementInfoTest, DescriptionAndDataType) {
  EXPECT_EQ(InfoOf("content='textOnly'").Description(), "");
  EXPECT_EQ(InfoOf("content='textOnly'").DataType(), "none");
  const KXMsgElementInfo info =
      InfoOf("content='textOnly' dt:type='int'", "<description>How many</description>");
  EXPECT_EQ(info.Description(), "How many");
  EXPECT_EQ(info.DataType(), "int");
}

TEST_F(ElementInfoTest, OccurrencesAreThoseOfTheParentsOwnDeclaration) {
  struct {
    const char* declaration;
    std::int32_t most;
    std::int32_t least;
    const char* why;
  } const rows[] = {
      {"<element type='Leaf'/>", 1, 1, "both absent"},
      {"<element type='Leaf' maxOccurs='*'/>", -1, 1, "no maximum"},
      {"<element type='Leaf' minOccurs='0'/>", 1, 0, "optional"},
      {"<element type='Leaf' maxOccurs='99999999999'/>", 2147483647, 1, "more than a number holds"},
      {"<element type='Leaf' minOccurs='0' maxOccurs='*'/>", -1, 0, "both"},
      {"<group order='seq'><element type='Leaf' minOccurs='0' maxOccurs='*'/></group>", 1, 1,
       "declared in a group"},
  };
  for (const auto& row : rows) {
    world_.AddSchema("s.xml",
                     "<ElementType name='Leaf' content='textOnly'/>"
                     "<ElementType name='E' content='eltOnly'>" +
                         std::string(row.declaration) + "</ElementType>");
    const KXMessage message = world_.Loaded("s", "<E><Leaf/></E>");
    const KXMsgElementInfo info = message.RootElement().ChildElements(1).Info();
    EXPECT_EQ(info.MaxOccurrences(), row.most) << row.why;
    EXPECT_EQ(info.MinOccurrences(), row.least) << row.why;
    EXPECT_EQ(message.RootElement().Info().MaxOccurrences(), 1) << row.why;
    EXPECT_EQ(message.RootElement().Info().MinOccurrences(), 1) << row.why;
  }
}

TEST_F(ElementInfoTest, OutlivesItsElementAndMessage) {
  KXMsgElementInfo info;
  {
    world_.AddSchema("s.xml", "<ElementType name='E' content='textOnly' dt:type='int'/>");
    info = world_.Loaded("s", "<E/>").RootElement().Info();
  }
  EXPECT_EQ(info.Name(), "E");
  EXPECT_EQ(info.DataType(), "int");
}

}  // namespace
}  // namespace kx
