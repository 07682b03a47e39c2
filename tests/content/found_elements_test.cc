// FindElements and what it finds.
#include "kxmessage/found_elements.h"

#include "kxmessage/error_codes.h"

#include "support/message_world.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kx {
namespace {

using test::ErrorOf;
using test::RuntimeError;

constexpr std::uint32_t Code(std::int32_t code) { return static_cast<std::uint32_t>(code); }

class FoundElementsTest : public testing::Test {
 protected:
  FoundElementsTest() {
    world_.AddSchema("s.xml",
                     "<ElementType name='Qty' content='textOnly' dt:type='int'/>"
                     "<AttributeType name='sku'/>"
                     "<ElementType name='Item' content='eltOnly'><attribute type='sku'/>"
                     "<element type='Qty'/></ElementType>"
                     "<ElementType name='Order' content='eltOnly'>"
                     "<element type='Item' maxOccurs='*' minOccurs='0'/></ElementType>");
    message_ = world_.Loaded("s",
                             "<Order><Item sku='a'><Qty>1</Qty></Item><Item sku='b'><Qty>20</Qty>"
                             "</Item><Item sku='c'><Qty>3</Qty></Item></Order>");
  }
  [[nodiscard]] KXMsgFoundElements Find(std::string_view query) {
    return message_.RootElement().FindElements(query);
  }

  test::MessageWorld world_;
  KXMessage message_ = nullptr;
};

TEST_F(FoundElementsTest, AreTheNodesOfTheMessageInDocumentOrder) {
  const KXMsgFoundElements found = Find("Item/Qty");
  EXPECT_EQ(found.Count(), 3);
  EXPECT_EQ(found.Element(2).Value(), Variant(20));
  EXPECT_EQ(found["3"].Value(), Variant(3));
  EXPECT_NE(found.Element(1), found.Element(1));
  EXPECT_EQ(found.Element(1).Parent().Info().Name(), "Item");
  found.Element(1).Value(7);
  EXPECT_NE(message_.XML().find("<Qty>7</Qty>"), std::string::npos);
}

TEST_F(FoundElementsTest, ComparisonsSeeTheTypesOfTheSchema) {
  EXPECT_EQ(Find("Item[Qty > 3]").Count(), 1);
  EXPECT_EQ(Find("Item[@sku='b']/Qty").Element(1).Value(), Variant(20));
}

TEST_F(FoundElementsTest, ANameIsThatOfTheFirstNodeMeant) {
  const KXMsgFoundElements found = Find("//*");
  EXPECT_EQ(found.Element("Qty").Value(), Variant(1));
  std::string description;
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(found.Element("qty")); }, &description),
            Code(kxMsgErrorNoChild));
  EXPECT_EQ(description, "Child qty does not exist.");
}

TEST_F(FoundElementsTest, AQueryThatFindsNothingIsAnEmptyCollection) {
  const KXMsgFoundElements found = Find("Nobody");
  EXPECT_EQ(found.Count(), 0);
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(found.Element(1)); }), Code(kxMsgErrorNoChild));
  EXPECT_EQ(found.begin(), found.end());
}

TEST_F(FoundElementsTest, EnumerationsShowTheSameObjectsEachTime) {
  const KXMsgFoundElements found = Find("Item");
  std::vector<KXMsgElement> first(found.begin(), found.end());
  std::vector<KXMsgElement> second(found.begin(), found.end());
  EXPECT_EQ(first.size(), 3U);
  EXPECT_EQ(first, second);
}

TEST_F(FoundElementsTest, NodesWithoutDeclarationAreCountedButHaveNoElement) {
  for (const char* query : {"Item/@sku", "Item/Qty/text()", ".."}) {
    const KXMsgFoundElements found = Find(query);
    EXPECT_GE(found.Count(), 1) << query;
    EXPECT_EQ(ErrorOf([&] { static_cast<void>(found.Element(1)); }), RuntimeError(91)) << query;
    EXPECT_EQ(ErrorOf([&] { static_cast<void>(found.begin()); }), RuntimeError(91)) << query;
  }
}

TEST_F(FoundElementsTest, MoreThan32767NodesAreCountedButNotEnumerated) {
  std::string text = "<Order>";
  for (int i = 0; i < 32768; ++i) text += "<Item><Qty/></Item>";
  message_ = world_.Loaded("s", text + "</Order>");
  const KXMsgFoundElements found = Find("Item");
  EXPECT_EQ(found.Count(), 32768);
  EXPECT_EQ(found.Element(32768).Info().Name(), "Item");
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(found.begin()); }), RuntimeError(6));
}

}  // namespace
}  // namespace kx
