// Attributes through their element, and what may be said about namespaces.
#include "kxmessage/variant.h"

#include "dom_test.h"
#include "platform/dom/attribute_map.h"
#include "platform/dom/node.h"
#include "platform/dom/node_list.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

namespace kx::dom {
namespace {

TEST(GetAttribute, GivesTheValueOrNothing) {
  const Node root = Parsed("<a b='1' c='' xmlns:p='u' p:d='x&amp;y'/>").DocumentElement();
  EXPECT_EQ(root.GetAttribute("b"), "1");
  EXPECT_EQ(root.GetAttribute("c"), "");
  EXPECT_EQ(root.GetAttribute("p:d"), "x&y");
  EXPECT_EQ(root.GetAttribute("d"), std::nullopt);
  EXPECT_EQ(root.GetAttribute("B"), std::nullopt);
  EXPECT_EQ(root.GetAttributeNode("b").NodeValue(), "1");
  EXPECT_FALSE(root.GetAttributeNode("q"));
}

struct BadNameCase {
  const char* why;
  const char* name;
  const char* text;
};
constexpr const char* kBadStart = "A name was started with an invalid character.";
constexpr const char* kBadPart = "A name contained an invalid character.";
constexpr const char* kColons = "Multiple colons are not allowed in a name.";
constexpr BadNameCase kBadNames[] = {
    {"a blank inside", "a b", kBadPart},
    {"a digit first", "1a", kBadStart},
    {"a blank first", " a", kBadStart},
    {"a sign", "a$", kBadPart},
    {"an apostrophe", "'", kBadStart},
    {"an at sign", "@a", kBadStart},
    {"two colons", "a:b:c", kColons},
    {"a colon first", ":a", kBadStart},
    {"a colon last", "a:", kBadStart},
    {"nothing after the colon but another", "a::b", kBadStart},
    {"a digit after the colon", "a:1", kBadStart},
    {"a hyphen first", "-a", kBadStart},
    {"bytes that are no UTF-8", "a\xFF", kBadPart},
};

TEST(AttributeNames, ThatAreNoNamesAreRefused) {
  const Document document = Parsed("<a/>");
  const Node root = document.DocumentElement();
  for (const BadNameCase& row : kBadNames) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(RaisedBy([&] { return root.GetAttribute(row.name); }), Fail(row.text));
    EXPECT_EQ(RaisedBy([&] { return root.GetAttributeNode(row.name); }), Fail(row.text));
    EXPECT_EQ(RaisedBy([&] { return root.SetAttribute(row.name, "v"), 0; }), Fail(row.text));
    EXPECT_EQ(RaisedBy([&] { return document.CreateElement(row.name); }), Fail(row.text));
    EXPECT_EQ(RaisedBy([&] { return document.CreateAttribute(row.name); }), Fail(row.text));
  }
  EXPECT_EQ(XmlOf(document), "<a/>");
}

TEST(AttributeNames, ThatAreNullAreBadArguments) {
  const Document document = Parsed("<a/>");
  const Node root = document.DocumentElement();
  const std::string_view null;
  EXPECT_EQ(RaisedBy([&] { return root.GetAttribute(null); }), BadArgument());
  EXPECT_EQ(RaisedBy([&] { return root.GetAttributeNode(null); }), BadArgument());
  EXPECT_EQ(RaisedBy([&] { return root.SetAttribute(null, "v"), 0; }), BadArgument());
  EXPECT_EQ(RaisedBy([&] { return root.RemoveAttribute(null); }), BadArgument());
  EXPECT_EQ(RaisedBy([&] { return root.GetElementsByTagName(null); }), BadArgument());
}

TEST(SetAttribute, CreatesAtTheEndOrOverwritesInPlace) {
  const Document document = Parsed("<a b=\"1\" c=\"2\"/>");
  const Node root = document.DocumentElement();
  const Node kept = root.GetAttributeNode("b");
  root.SetAttribute("b", "x\r\ny");
  root.SetAttribute("d", "<\">");
  EXPECT_EQ(kept.NodeValue(), "x\ny");
  EXPECT_EQ(XmlOf(document), "<a b=\"x\r\ny\" c=\"2\" d=\"&lt;&quot;&gt;\"/>");
  root.SetAttribute("b", "");
  EXPECT_EQ(root.GetAttribute("b"), "");
  root.SetAttributeFrom("e", Variant(99));
  root.SetAttributeFrom("f", Variant(true));
  root.SetAttributeFrom("g", Variant());
  EXPECT_EQ(XmlOf(document), "<a b=\"\" c=\"2\" d=\"&lt;&quot;&gt;\" e=\"99\" f=\"True\" g=\"\"/>");
  EXPECT_EQ(RaisedBy([&] { return root.SetAttributeFrom("h", Variant::Null()), 0; }),
            BadArgument());
}

TEST(SetAttribute, TakesTheNamespaceThatItsPrefixHasThere) {
  const Document document = Parsed("<a xmlns:p='u'><b/></a>");
  const Node b = Named(document, "b");
  b.SetAttribute("p:x", "1");
  b.SetAttribute("q:y", "2");
  b.SetAttribute("xml:lang", "en");
  EXPECT_EQ(b.GetAttributeNode("p:x").NamespaceUri(), "u");
  EXPECT_EQ(b.GetAttributeNode("q:y").NamespaceUri(), std::nullopt);
  EXPECT_EQ(b.GetAttributeNode("q:y").Prefix(), "q");
  EXPECT_EQ(b.GetAttributeNode("xml:lang").NamespaceUri(), "http://www.w3.org/XML/1998/namespace");
  EXPECT_EQ(b.Xml(), "<b xmlns:p=\"u\" p:x=\"1\" q:y=\"2\" xml:lang=\"en\"/>");
}

TEST(SetAttribute, TakesNamesAndValuesOfTheDocumentItself) {
  const Document document = Parsed("<a><longer_than_any_other_name x='value'/></a>");
  const Node root = document.DocumentElement();
  const Cursor inner = root.FirstChild().At();
  root.SetAttribute(inner.QualifiedName(), inner.FirstAttribute().OwnText());
  EXPECT_EQ(root.GetAttribute("longer_than_any_other_name"), "value");
}

TEST(SetAttribute, IsRefusedForOtherKinds) {
  const Document document = Parsed("<a>t</a>");
  const Node text = document.DocumentElement().FirstChild();
  EXPECT_EQ(RaisedBy([&] { return text.SetAttribute("b", "1"), 0; }),
            Fail("Attributes are not allowed on Nodes of type 'TEXT'."));
  EXPECT_EQ(RaisedBy([&] { return document.AsNode().SetAttribute("b", "1"), 0; }),
            Fail("Attributes are not allowed on Nodes of type 'DOCUMENT'."));
}

TEST(RemoveAttribute, TellsWhetherThereWasOne) {
  const Document document = Parsed("<a b=\"1\"/>");
  EXPECT_TRUE(document.DocumentElement().RemoveAttribute("b"));
  EXPECT_FALSE(document.DocumentElement().RemoveAttribute("b"));
  EXPECT_EQ(XmlOf(document), "<a/>");
}

TEST(SetAttributeNode, ReturnsTheAttributeItReplaced) {
  const Document document = Parsed("<a b=\"1\"/>");
  const Node root = document.DocumentElement();
  const Node first = document.CreateAttribute("c");
  EXPECT_FALSE(root.SetAttributeNode(first));
  const Node second = document.CreateAttribute("c");
  second.SetText("2");
  EXPECT_EQ(root.SetAttributeNode(second), first);
  EXPECT_EQ(XmlOf(document), "<a b=\"1\" c=\"2\"/>");
  EXPECT_EQ(RaisedBy([&] { return root.SetAttributeNode(second); }),
            Fail("Attributes must be removed before adding them to a different node."));
}

TEST(RemoveAttributeNode, TakesOnlyItsOwn) {
  const Raised expected =
      BadArgument("The provided node is not a specified attribute on this node.");
  const Document document = Parsed("<a b=\"1\"><c b=\"2\"/></a>");
  const Node root = document.DocumentElement();
  const Node own = root.GetAttributeNode("b");
  const Node other = Named(document, "c").GetAttributeNode("b");
  EXPECT_EQ(RaisedBy([&] { return root.RemoveAttributeNode(other); }), expected);
  EXPECT_EQ(RaisedBy([&] { return root.RemoveAttributeNode(Node()); }), expected);
  EXPECT_EQ(RaisedBy([&] { return root.RemoveAttributeNode(root.FirstChild()); }), expected);
  EXPECT_EQ(root.RemoveAttributeNode(own), own);
  EXPECT_EQ(RaisedBy([&] { return root.RemoveAttributeNode(own); }), expected);
  EXPECT_EQ(XmlOf(document), "<a><c b=\"2\"/></a>");
}

// Declarations of namespaces ---------------------------------------------------------------------

struct DeclarationCase {
  const char* why;
  const char* name;  // of the created element
  const char* uri;
  const char* declaration;
  const char* value;
  Raised raised;
  const char* xml;
};

TEST(NamespaceDeclarations, MustAgreeWithTheNamesInUse) {
  const DeclarationCase rows[] = {
      {"the same namespace becomes explicit", "p:x", "u", "xmlns:p", "u", Raised(),
       "<p:x xmlns:p=\"u\"/>"},
      {"another namespace", "p:x", "u", "xmlns:p", "v", BadArgument(), "<p:x xmlns:p=\"u\"/>"},
      {"another prefix is free", "p:x", "u", "xmlns:q", "v", Raised(),
       "<p:x xmlns:p=\"u\" xmlns:q=\"v\"/>"},
      {"a prefix without namespace", "p:x", "", "xmlns:p", "v", Raised(), "<p:x xmlns:p=\"v\"/>"},
      {"the same default namespace", "x", "u", "xmlns", "u", Raised(), "<x xmlns=\"u\"/>"},
      {"another default namespace", "x", "u", "xmlns", "v", BadArgument(), "<x xmlns=\"u\"/>"},
      {"no default namespace for one that has", "x", "u", "xmlns", "", BadArgument(),
       "<x xmlns=\"u\"/>"},
      {"a default namespace on an element without", "x", "", "xmlns", "u", Raised(),
       "<x xmlns=\"u\"/>"},
      {"a default namespace beside a prefix", "p:x", "u", "xmlns", "v", Raised(),
       "<p:x xmlns:p=\"u\" xmlns=\"v\"/>"},
      {"an empty default on an element without", "x", "", "xmlns", "", Raised(), "<x xmlns=\"\"/>"},
      {"a prefix for nothing", "x", "", "xmlns:p", "", BadArgument(), "<x/>"},
      {"the prefix xmlns", "x", "", "xmlns:xmlns", "u",
       Fail("Reserved namespace 'xmlns' can not be redeclared."), "<x/>"},
      {"the prefix xml for something else", "x", "", "xmlns:xml", "u",
       Fail("Reserved namespace 'xml' can not be redeclared."), "<x/>"},
      {"the prefix xml for its own", "x", "", "xmlns:xml", "http://www.w3.org/XML/1998/namespace",
       Raised(), "<x xmlns:xml=\"http://www.w3.org/XML/1998/namespace\"/>"},
      {"a prefix that begins with xml", "x", "", "xmlns:XMLfoo", "u",
       Fail("The namespace prefix is not allowed to start with the reserved string \"xml\"."),
       "<x/>"},
      {"the namespace of xml for another prefix", "x", "", "xmlns:p",
       "http://www.w3.org/XML/1998/namespace",
       Fail("Reserved namespace 'xml' can not be redeclared."), "<x/>"},
  };
  for (const DeclarationCase& row : rows) {
    SCOPED_TRACE(row.why);
    for (const bool asNode : {false, true}) {
      const Document document = NewDomDocument();
      const Node element = document.CreateNode(NodeType::kElement, row.name, row.uri);
      const Raised raised = RaisedBy([&] {
        if (!asNode) return element.SetAttribute(row.declaration, row.value), 0;
        const Node attribute = document.CreateAttribute(row.declaration);
        attribute.SetText(row.value);
        return element.SetAttributeNode(attribute), 0;
      });
      EXPECT_EQ(raised, row.raised);
      EXPECT_EQ(element.Xml(), row.xml);
      EXPECT_EQ(element.NamespaceUri(),
                *row.uri == '\0' ? std::nullopt : std::optional<std::string>(row.uri));
    }
  }
}

TEST(NamespaceDeclarations, MayNotContradictAnAttribute) {
  const Document document = NewDomDocument();
  const Node element = document.CreateElement("x");
  element.SetAttributeNode(document.CreateNode(NodeType::kAttribute, "p:a", "u"));
  EXPECT_EQ(RaisedBy([&] { return element.SetAttribute("xmlns:p", "v"), 0; }), BadArgument());
  EXPECT_EQ(RaisedBy([&] { return element.SetAttribute("xmlns:p", "u"), 0; }), Raised());
}

TEST(NamespaceDeclarations, OnceExplicitNeverChange) {
  const Raised expected = Fail("Access denied.");
  const Document document = Parsed("<p:a xmlns:p='u' xmlns='d'/>");
  const Node root = document.DocumentElement();
  const std::string before = document.Xml();
  for (const char* value : {"u", "v", ""}) {
    EXPECT_EQ(RaisedBy([&] { return root.SetAttribute("xmlns:p", value), 0; }), expected);
    EXPECT_EQ(RaisedBy([&] { return root.SetAttribute("xmlns", value), 0; }), expected);
    EXPECT_EQ(RaisedBy([&] { return root.GetAttributeNode("xmlns:p").SetText(value), 0; }),
              expected);
    EXPECT_EQ(RaisedBy([&] { return root.GetAttributeNode("xmlns").SetNodeValue(value), 0; }),
              expected);
    const Node text = root.GetAttributeNode("xmlns:p").FirstChild();
    EXPECT_EQ(RaisedBy([&] { return text.SetText(value), 0; }), expected);
    const Node fresh = document.CreateAttribute("xmlns:p");
    fresh.SetText(value);
    EXPECT_EQ(RaisedBy([&] { return root.SetAttributeNode(fresh); }), expected);
  }
  const Node attribute = root.GetAttributeNode("xmlns:p");
  EXPECT_EQ(RaisedBy([&] { return attribute.AppendChild(document.CreateTextNode("x")); }),
            expected);
  EXPECT_EQ(RaisedBy([&] { return attribute.RemoveChild(attribute.FirstChild()); }), expected);
  EXPECT_EQ(RaisedBy([&] { return root.AppendChild(attribute.FirstChild()); }), expected);
  EXPECT_EQ(document.Xml(), before);
}

TEST(NamespaceDeclarations, MayBeRemovedAndThenAreWrittenWhereNeeded) {
  const Document document = Parsed("<a ns:x=\"1\" xmlns:ns=\"u\"/>");
  const Node root = document.DocumentElement();
  EXPECT_TRUE(root.RemoveAttribute("xmlns:ns"));
  EXPECT_EQ(XmlOf(document), "<a xmlns:ns=\"u\" ns:x=\"1\"/>");
  EXPECT_EQ(root.Attributes().Length(), 1);
}

TEST(NamespaceDeclarations, OnAnElementWithoutNamespaceLeaveItAndItsChildrenWithout) {
  const Document document = NewDomDocument();
  const Node root = document.CreateElement("a");
  document.AsNode().AppendChild(root);
  root.AppendChild(document.CreateElement("b"));
  root.SetAttribute("xmlns", "u");
  EXPECT_EQ(root.NamespaceUri(), std::nullopt);
  EXPECT_EQ(XmlOf(document), "<a xmlns=\"u\"><b xmlns=\"\"/></a>");
}

struct CreatedNameCase {
  const char* why;
  const char* name;
  const char* uri;
  const char* baseName;
  const char* prefix;
  const char* namespaceUri;
};
constexpr CreatedNameCase kCreatedAttributes[] = {
    {"xmlns has itself as namespace", "xmlns", "any", "", "xmlns", "xmlns"},
    {"xmlns without one too", "xmlns", "", "", "xmlns", "xmlns"},
    {"a prefix declaration has the empty one", "xmlns:c", "any", "c", "xmlns", ""},
    {"a prefixed attribute", "p:c", "u", "c", "p", "u"},
    {"a prefix without namespace", "p:c", "", "c", "p", "null"},
    {"a namespace without prefix", "c", "u", "c", "null", "u"},
    {"xml has its own", "xml:lang", "u", "lang", "xml", "http://www.w3.org/XML/1998/namespace"},
    {"a plain name", "c", "", "c", "null", "null"},
};

TEST(CreatedAttributes, HaveTheNamesThatTheyWereGiven) {
  const Document document = NewDomDocument();
  for (const CreatedNameCase& row : kCreatedAttributes) {
    SCOPED_TRACE(row.why);
    const Node node = document.CreateNode(NodeType::kAttribute, row.name, row.uri);
    EXPECT_EQ(node.NodeName(), row.name);
    EXPECT_EQ(OrNull(node.BaseName()), row.baseName);
    EXPECT_EQ(OrNull(node.Prefix()), row.prefix);
    EXPECT_EQ(OrNull(node.NamespaceUri()), row.namespaceUri);
  }
}

TEST(CreatedAttributes, WithNamespaceButNoPrefixAreWrittenWithoutDeclaration) {
  const Document document = NewDomDocument();
  const Node element = document.CreateElement("x");
  const Node attribute = document.CreateNode(NodeType::kAttribute, "c", "u");
  attribute.SetText("1");
  element.SetAttributeNode(attribute);
  EXPECT_EQ(element.Xml(), "<x c=\"1\"/>");
}

}  // namespace
}  // namespace kx::dom
