// Making nodes: kinds, names, data.
#include "kxmessage/variant.h"

#include "dom_test.h"
#include "platform/dom/attribute_map.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>

namespace kx::dom {
namespace {

struct TypeCase {
  const char* why;
  Variant type;
  const char* name;
  const char* typeName;  // null: E_INVALIDARG
};

TEST(CreateNode, TakesATypeAsNumberNumericTextOrName) {
  const TypeCase rows[] = {
      {"element", Variant(1), "n", "element"},
      {"attribute", Variant(2), "n", "attribute"},
      {"text", Variant(3), "", "text"},
      {"CDATA", Variant(4), "", "cdatasection"},
      {"entity reference", Variant(5), "n", "entityreference"},
      {"instruction", Variant(7), "n", "processinginstruction"},
      {"comment", Variant(8), "", "comment"},
      {"fragment", Variant(11), "", "documentfragment"},
      {"a 16-bit number", Variant(std::int16_t{1}), "n", "element"},
      {"a double", Variant(1.0), "n", "element"},
      {"a numeric text", Variant("1"), "n", "element"},
      {"a numeric text of two digits", Variant("11"), "", "documentfragment"},
      {"a name", Variant("element"), "n", "element"},
      {"a name in capitals", Variant("ELEMENT"), "n", "element"},
      {"a name in mixed case", Variant("cdataSection"), "", "cdatasection"},
      {"names of all kinds", Variant("processinginstruction"), "n", "processinginstruction"},
      {"names of all kinds", Variant("documentfragment"), "", "documentfragment"},
      {"names of all kinds", Variant("entityreference"), "n", "entityreference"},
      {"a number with garbage", Variant("1Garbage"), "n", nullptr},
      {"an entity", Variant(6), "n", nullptr},
      {"a document", Variant(9), "n", nullptr},
      {"a document type", Variant(10), "n", nullptr},
      {"a notation", Variant(12), "n", nullptr},
      {"names of what cannot be made", Variant("document"), "n", nullptr},
      {"zero", Variant(0), "n", nullptr},
      {"thirteen", Variant(13), "n", nullptr},
      {"a negative number", Variant(-1), "n", nullptr},
      {"a large number", Variant(257), "n", nullptr},
      {"an unknown name", Variant("elements"), "n", nullptr},
      {"an empty text", Variant(""), "n", nullptr},
      {"no type", Variant(), "n", nullptr},
      {"null", Variant::Null(), "n", nullptr},
  };
  const Document document = NewDomDocument();
  for (const TypeCase& row : rows) {
    SCOPED_TRACE(row.why);
    Node node;
    const Raised raised =
        RaisedBy([&] { return node = document.CreateNode(row.type, row.name, ""); });
    EXPECT_EQ(raised, row.typeName == nullptr ? BadArgument() : Raised());
    if (row.typeName == nullptr) continue;
    EXPECT_EQ(node.TypeName(), row.typeName);
    EXPECT_FALSE(node.ParentNode());
    EXPECT_EQ(node.OwnerDocument(), document);
  }
}

TEST(CreateNode, NeedsANameForTheKindsThatHaveOne) {
  const Raised expected = Fail("createNode requires a name for given NodeType.");
  const Document document = NewDomDocument();
  for (const int type : {1, 2, 5, 7}) {
    EXPECT_EQ(RaisedBy([&] { return document.CreateNode(Variant(type), "", "u"); }), expected);
    EXPECT_EQ(RaisedBy([&] { return document.CreateNode(Variant(type), std::string_view(), "u"); }),
              expected);
  }
  for (const int type : {3, 4, 8, 11}) {
    EXPECT_EQ(RaisedBy([&] { return document.CreateNode(Variant(type), "ignored name", "u"); }),
              Raised());
  }
}

struct ElementCase {
  const char* why;
  const char* name;
  const char* uri;
  const char* baseName;
  const char* prefix;
  const char* namespaceUri;
  const char* xml;
};
constexpr ElementCase kElements[] = {
    {"prefix and namespace", "p:x", "u", "x", "p", "u", "<p:x xmlns:p=\"u\"/>"},
    {"a default namespace", "x", "u", "x", "null", "u", "<x xmlns=\"u\"/>"},
    {"no namespace", "x", "", "x", "null", "null", "<x/>"},
    {"a prefix without namespace", "p:x", "", "x", "p", "null", "<p:x/>"},
    {"xml has its own", "xml:x", "u", "x", "xml", "http://www.w3.org/XML/1998/namespace",
     "<xml:x/>"},
};

TEST(CreateNode, BindsElementsToTheNamespaceItIsGiven) {
  const Document document = NewDomDocument();
  for (const ElementCase& row : kElements) {
    SCOPED_TRACE(row.why);
    const Node node = document.CreateNode(NodeType::kElement, row.name, row.uri);
    EXPECT_EQ(node.NodeName(), row.name);
    EXPECT_EQ(OrNull(node.BaseName()), row.baseName);
    EXPECT_EQ(OrNull(node.Prefix()), row.prefix);
    EXPECT_EQ(OrNull(node.NamespaceUri()), row.namespaceUri);
    EXPECT_EQ(node.Attributes().Length(), 0);
    EXPECT_EQ(node.Xml(), row.xml);
  }
}

TEST(CreateElement, AndCreateAttributeRefuseNullAndEmptyNames) {
  const Document document = NewDomDocument();
  const Raised needsName = Fail("createNode requires a name for given NodeType.");
  EXPECT_EQ(RaisedBy([&] { return document.CreateElement(std::string_view()); }), BadArgument());
  EXPECT_EQ(RaisedBy([&] { return document.CreateAttribute(std::string_view()); }), BadArgument());
  EXPECT_EQ(RaisedBy([&] { return document.CreateElement(""); }), needsName);
  EXPECT_EQ(RaisedBy([&] { return document.CreateAttribute(""); }), needsName);
  EXPECT_EQ(RaisedBy([&] { return document.CreateProcessingInstruction(std::string_view(), "x"); }),
            BadArgument());
  EXPECT_EQ(RaisedBy([&] { return document.CreateProcessingInstruction("", "x"); }), needsName);
  EXPECT_EQ(RaisedBy([&] { return document.CreateEntityReference(std::string_view()); }),
            BadArgument());
  EXPECT_EQ(RaisedBy([&] { return document.CreateEntityReference(""); }), needsName);
}

TEST(CreateNode, MakesEmptyData) {
  const Document document = NewDomDocument();
  for (const NodeType type : {NodeType::kText, NodeType::kCData, NodeType::kComment}) {
    EXPECT_EQ(document.CreateNode(type, "", "").NodeValue(), "");
  }
  EXPECT_EQ(document.CreateNode(NodeType::kProcessingInstruction, "p", "").Xml(), "<?p?>");
}

TEST(CreateProcessingInstruction, TakesColonsButNoOtherSpellingOfXml) {
  const Document document = NewDomDocument();
  const Node node = document.CreateProcessingInstruction("a:b", "d");
  EXPECT_EQ(node.NodeName(), "a:b");
  EXPECT_EQ(node.BaseName(), "a:b");
  EXPECT_EQ(node.Prefix(), std::nullopt);
  EXPECT_EQ(node.Xml(), "<?a:b d?>");
  EXPECT_EQ(RaisedBy([&] { return document.CreateProcessingInstruction("XML", "d"); }),
            Fail("The name 'xml' is reserved and must be lower case."));
  EXPECT_EQ(RaisedBy([&] { return document.CreateProcessingInstruction("1", "d"); }),
            Fail("A name was started with an invalid character."));
  EXPECT_EQ(RaisedBy([&] { return document.CreateProcessingInstruction("a b", "d"); }),
            Fail("A name contained an invalid character."));
}

TEST(CreateTextNode, AndItsLikeFoldLineEnds) {
  const Document document = NewDomDocument();
  EXPECT_EQ(document.CreateTextNode("a\r\nb\rc").NodeValue(), "a\nb\nc");
  EXPECT_EQ(document.CreateCDataSection("a\r\nb").NodeValue(), "a\nb");
  EXPECT_EQ(document.CreateComment("a\r\nb").NodeValue(), "a\nb");
  EXPECT_EQ(document.CreateTextNode("").NodeValue(), "");
}

TEST(CreateCDataSection, TakesItsOwnEndWhichIsWrittenInTwoSections) {
  const Document document = Parsed("<a/>");
  document.DocumentElement().AppendChild(document.CreateCDataSection("x]]>y"));
  EXPECT_EQ(XmlOf(document), "<a><![CDATA[x]]]]><![CDATA[>y]]></a>");
  EXPECT_EQ(Parsed(document.Xml()).DocumentElement().Text(), "x]]>y");
}

TEST(CreateEntityReference, HasTheContentThatTheDocumentDeclares) {
  const Document document =
      Parsed("<!DOCTYPE a [<!ENTITY e 'in<b>ner</b>'><!ENTITY f 'plain'>]><a/>");
  const Node reference = document.CreateEntityReference("e");
  EXPECT_EQ(reference.NodeName(), "e");
  EXPECT_EQ(reference.Text(), "inner");
  EXPECT_EQ(reference.LastChild().NodeName(), "b");
  document.DocumentElement().AppendChild(reference);
  EXPECT_EQ(document.DocumentElement().Xml(), "<a>&e;</a>");
  EXPECT_EQ(document.CreateEntityReference("f").Text(), "plain");
  EXPECT_EQ(RaisedBy([&] { return reference.LastChild().SetText("x"), 0; }),
            Fail("This operation can not be performed with a Node of type ENTITYREFERENCE."));
  EXPECT_EQ(RaisedBy([&] { return document.DocumentElement().AppendChild(reference.LastChild()); }),
            Fail("This operation can not be performed with a Node of type ENTITYREFERENCE."));
}

TEST(CreateEntityReference, OfAnUndeclaredEntityIsEmpty) {
  const Document document = Parsed("<a/>");
  EXPECT_FALSE(document.CreateEntityReference("e").HasChildNodes());
  EXPECT_FALSE(Parsed("<!DOCTYPE a><a/>").CreateEntityReference("e").HasChildNodes());
  EXPECT_EQ(document.CreateEntityReference("e").Xml(), "&e;");
  EXPECT_EQ(RaisedBy([&] { return document.CreateEntityReference("a:b"); }),
            Fail("Entity, EntityRef, PI, Notation names, or NMToken cannot contain a colon."));
  EXPECT_EQ(RaisedBy([&] { return document.CreateEntityReference("lt;&"); }),
            Fail("A name contained an invalid character."));
}

// Trees made by programs, as they are written ---------------------------------------------------

TEST(CreatedTrees, AreWrittenWithTheDeclarationsThatTheyNeed) {
  const Document document = NewDomDocument();
  const Node outer = document.CreateNode(NodeType::kElement, "e1", "u");
  const Node inner = document.CreateElement("e2");
  outer.AppendChild(inner);
  inner.SetAttribute("xmlns:ns", "uri");
  inner.SetAttribute("attr", "value");
  EXPECT_EQ(outer.Xml(), "<e1 xmlns=\"u\"><e2 xmlns=\"\" xmlns:ns=\"uri\" attr=\"value\"/></e1>");
  inner.AppendChild(document.CreateElement("e3"));
  EXPECT_EQ(inner.Xml(), "<e2 xmlns:ns=\"uri\" attr=\"value\"><e3/></e2>");
  const Node same = document.CreateNode(NodeType::kElement, "elem2", "u");
  outer.ReplaceChild(same, inner);
  EXPECT_EQ(outer.Xml(), "<e1 xmlns=\"u\"><elem2/></e1>");
  EXPECT_EQ(same.Xml(), "<elem2 xmlns=\"u\"/>");
  EXPECT_EQ(outer.Attributes().Length(), 0);
}

TEST(CreatedTrees, LoadAgainAsTheyWere) {
  const Document document = NewDomDocument();
  const Node root = document.CreateNode(NodeType::kElement, "p:r", "u");
  document.AsNode().AppendChild(root);
  root.AppendChild(document.CreateNode(NodeType::kElement, "d", "v"))
      .AppendChild(document.CreateElement("n"));
  root.SetAttributeNode(document.CreateNode(NodeType::kAttribute, "q:a", "w"));
  root.AppendChild(document.CreateTextNode("a<b&c>\"'\t\n\xC3\xA4"));
  const Document again = Parsed(document.Xml());
  EXPECT_EQ(again.Xml(), document.Xml());
  EXPECT_EQ(again.DocumentElement().NamespaceUri(), "u");
  EXPECT_EQ(Named(again, "d").NamespaceUri(), "v");
  EXPECT_EQ(Named(again, "n").NamespaceUri(), std::nullopt);
  EXPECT_EQ(again.DocumentElement().GetAttributeNode("q:a").NamespaceUri(), "w");
  EXPECT_EQ(again.DocumentElement().Text(), document.DocumentElement().Text());
}

}  // namespace
}  // namespace kx::dom
