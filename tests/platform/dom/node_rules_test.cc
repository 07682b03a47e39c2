#include "platform/dom/node_rules.h"

#include "kxmessage/variant.h"

#include "dom_test.h"

#include <gtest/gtest.h>
#include <string>

namespace kx::dom {
namespace {

struct FoldCase {
  const char* text;
  const char* folded;
};
constexpr FoldCase kFolds[] = {
    {"", ""},
    {"plain", "plain"},
    {"\n", "\n"},
    {"\r\n", "\n"},
    {"\r", "\n"},
    {"\r\r\n", "\n\n"},
    {"a\rb\r\nc\nd", "a\nb\nc\nd"},
    {"\n\r", "\n\n"},
    {"end\r", "end\n"},
};

TEST(FoldLineEnds, MakesLfOfEveryLineEnd) {
  for (const FoldCase& row : kFolds) {
    std::string scratch;
    EXPECT_EQ(FoldLineEnds(row.text, scratch), row.folded);
  }
}

TEST(FoldLineEnds, CopiesNothingThatNeedsNoChange) {
  const std::string text = "a\nb";
  std::string scratch;
  EXPECT_EQ(FoldLineEnds(text, scratch).data(), text.data());
}

TEST(TextOfValue, RefusesNull) {
  EXPECT_EQ(TextOfValue(Variant(1)), "1");
  EXPECT_EQ(RaisedBy([] { return TextOfValue(Variant::Null()); }), BadArgument());
}

struct NamespaceCase {
  const char* why;
  const char* xml;
  const char* prefix;
  const char* uri;  // seen from <x>; null for none
};
constexpr NamespaceCase kNamespaces[] = {
    {"declared on the element", "<x xmlns:p='u'/>", "p", "u"},
    {"declared around it", "<a xmlns:p='u'><b><x/></b></a>", "p", "u"},
    {"the nearest one counts", "<a xmlns:p='u'><b xmlns:p='v'><x/></b></a>", "p", "v"},
    {"not declared", "<a xmlns:q='u'><x/></a>", "p", nullptr},
    {"a default namespace is no prefix's", "<a xmlns='u'><x/></a>", "p", nullptr},
    {"xml needs no declaration", "<x/>", "xml", "http://www.w3.org/XML/1998/namespace"},
};

TEST(FindNamespace, LooksUpFromTheElement) {
  for (const NamespaceCase& row : kNamespaces) {
    SCOPED_TRACE(row.why);
    const Document document = Parsed(row.xml);
    const UriId uri = FindNamespace(Named(document, "x").At(), row.prefix);
    if (row.uri == nullptr) {
      EXPECT_EQ(uri, kNoUri);
    } else {
      EXPECT_EQ(document.Data().Names().UriText(uri), row.uri);
    }
  }
}

TEST(FindNamespace, SeesTheNamesThatProgramsMade) {
  const Document document = NewDomDocument();
  const Node outer = document.CreateNode(NodeType::kElement, "p:a", "u");
  const Node inner = document.CreateElement("b");
  outer.AppendChild(inner);
  inner.SetAttributeNode(document.CreateNode(NodeType::kAttribute, "q:c", "v"));
  inner.SetAttribute("p:x", "1");
  inner.SetAttribute("q:x", "2");
  EXPECT_EQ(inner.GetAttributeNode("p:x").NamespaceUri(), "u");
  EXPECT_EQ(inner.GetAttributeNode("q:x").NamespaceUri(), "v");
}

TEST(IsDeclarationName, KnowsTheTwoForms) {
  EXPECT_TRUE(IsDeclarationName("xmlns"));
  EXPECT_TRUE(IsDeclarationName("xmlns:p"));
  EXPECT_FALSE(IsDeclarationName("xmlnsp"));
  EXPECT_FALSE(IsDeclarationName("p:xmlns"));
  EXPECT_FALSE(IsDeclarationName("XMLNS"));
}

}  // namespace
}  // namespace kx::dom
