// Contents that are kept for the next message.
#include "schema/content_templates.h"

#include <gtest/gtest.h>
#include <string>

namespace kx::schema {
namespace {

dom::Document Content(const std::string& xml) {
  dom::Document document = dom::NewDomDocument();
  EXPECT_TRUE(document.LoadXml(xml));
  return document;
}

TEST(ContentTemplates, GiveACopyThatMayBeChanged) {
  ContentTemplates templates;
  const ContentTemplates::Key key{7, "n", {}};
  EXPECT_FALSE(templates.Copy(key));
  const dom::Document content = Content("<a b=\"1\"><c/></a>");
  templates.Keep(key, content);
  content.DocumentElement().SetAttribute("b", "2");
  const dom::Document copy = templates.Copy(key);
  ASSERT_TRUE(copy);
  EXPECT_FALSE(copy.Frozen());
  EXPECT_EQ(copy.DocumentElement().Xml(), "<a b=\"1\"><c/></a>");
  copy.DocumentElement().SetAttribute("b", "3");
  EXPECT_EQ(templates.Copy(key).DocumentElement().Xml(), "<a b=\"1\"><c/></a>");
}

TEST(ContentTemplates, AreOfOneRootNamespaceAndSetOfBounds) {
  ContentTemplates templates;
  templates.Keep({7, "n", {}}, Content("<a/>"));
  ContentLimits lower;
  lower.maxElements = 1;
  EXPECT_FALSE(templates.Copy({8, "n", {}}));
  EXPECT_FALSE(templates.Copy({7, "m", {}}));
  EXPECT_FALSE(templates.Copy({7, "n", lower}));
  EXPECT_TRUE(templates.Copy({7, "n", {}}));
}

TEST(ContentTemplates, AreFewAndSmall) {
  ContentTemplates templates;
  for (dom::NodeId root = 0; root < 2 * ContentTemplates::kMostTemplates; ++root) {
    templates.Keep({root, "n", {}}, Content("<a/>"));
  }
  EXPECT_TRUE(templates.Copy({ContentTemplates::kMostTemplates - 1, "n", {}}));
  EXPECT_FALSE(templates.Copy({ContentTemplates::kMostTemplates, "n", {}}));
  ContentTemplates others;
  std::string large = "<a>";
  for (std::size_t i = 0; i < ContentTemplates::kMostNodes; ++i) large += "<b/>";
  others.Keep({1, "n", {}}, Content(large + "</a>"));
  EXPECT_FALSE(others.Copy({1, "n", {}}));
}

}  // namespace
}  // namespace kx::schema
