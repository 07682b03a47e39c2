// The rules of element types that no good schema breaks, asked of bare schema nodes.
#include "schema/element_rules.h"

#include "platform/dom/document.h"
#include "support/message_world.h"

#include <gtest/gtest.h>
#include <string>

namespace kx::schema {
namespace {

dom::Node Type(const std::string& attributes) {
  const dom::Document document = dom::NewDomDocument();
  EXPECT_TRUE(document.LoadXml("<ElementType xmlns:dt='u' name='E' " + attributes + "/>"));
  return document.DocumentElement();
}

TEST(ElementRules, WordsCompareExactlyAndAnEmptyOneCountsAsAbsent) {
  EXPECT_TRUE(CanHaveChildren(Type("content='TextOnly'")));
  EXPECT_TRUE(CanHaveValue(Type("content='Empty'")));
  EXPECT_FALSE(CanHaveChildren(Type("content=''")));
  EXPECT_FALSE(CanHaveValue(Type("content=''")));
  EXPECT_FALSE(IsMixed(Type("content='Mixed'")));
  EXPECT_TRUE(IsMixed(Type("content='mixed'")));
  EXPECT_FALSE(IsClosedModel(Type("model='Closed'")));
  EXPECT_TRUE(IsClosedModel(Type("model=''")));
}

TEST(ElementRules, ALengthThatIsNoNumberIsTheConversionsError) {
  EXPECT_EQ(LengthBound(Type("dt:minLength='1.5'"), "dt:minLength"), 1.5);
  EXPECT_EQ(LengthBound(Type("dt:minLength=''"), "dt:minLength"), -1);
  EXPECT_EQ(test::ErrorOf(
                [] { static_cast<void>(LengthBound(Type("dt:minLength='x'"), "dt:minLength")); }),
            test::RuntimeError(13));
}

TEST(ElementRules, ANodeWithoutParentOccursOnce) {
  EXPECT_EQ(MaxOccurrences(Type("")), 1);
  EXPECT_EQ(MinOccurrences(Type("")), 1);
}

}  // namespace
}  // namespace kx::schema
