#include "platform/dom/attribute_map.h"

#include "dom_test.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>

namespace kx::dom {
namespace {

std::string NamesOf(const AttributeMap& map) {
  std::string names;
  for (int i = 0; i < map.Length(); ++i) names += map.Item(i).NodeName() + " ";
  return names;
}

struct OrderCase {
  const char* why;
  const char* xml;
  const char* names;
};
constexpr OrderCase kOrders[] = {
    {"source order", "<a z='1' b='2' m='3'/>", "z b m "},
    {"declarations at their place", "<a z='1' xmlns='u' b='2' xmlns:p='v'/>", "z xmlns b xmlns:p "},
    {"a default declaration first", "<a xmlns='u' b='2'/>", "xmlns b "},
    {"none", "<a/>", ""},
    {"inherited namespaces count nothing", "<p:a xmlns:p='u'/>", "xmlns:p "},
};

TEST(AttributeMap, IsInSourceOrder) {
  for (const OrderCase& row : kOrders) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(NamesOf(Parsed(row.xml).DocumentElement().Attributes()), row.names);
  }
}

TEST(AttributeMap, OfACreatedElementWithNamespaceIsEmpty) {
  const Document document = NewDomDocument();
  const Node element = document.CreateNode(NodeType::kElement, "p:x", "u");
  EXPECT_EQ(element.Attributes().Length(), 0);
  EXPECT_FALSE(element.Attributes().GetNamedItem("xmlns:p"));
  EXPECT_FALSE(element.Attributes().GetNamedItem("xmlns"));
}

TEST(AttributeMap, ItemIsNothingOutside) {
  const AttributeMap map = Parsed("<a b='1'/>").DocumentElement().Attributes();
  EXPECT_EQ(map.Item(0).Text(), "1");
  EXPECT_FALSE(map.Item(1));
  EXPECT_FALSE(map.Item(-1));
  EXPECT_FALSE(map.Item(INT32_MAX));
}

struct LookUpCase {
  const char* why;
  const char* name;
  const char* value;  // or null
};
constexpr LookUpCase kLookUps[] = {
    {"a plain name", "b", "1"},
    {"a qualified name", "ns:c", "2"},
    {"the local part alone finds nothing", "c", nullptr},
    {"xml:lang is found by all of its name", "xml:lang", "en"},
    {"its local part is not", "lang", nullptr},
    {"case matters", "B", nullptr},
    {"a name nobody has", "q", nullptr},
    {"the empty name", "", nullptr},
    {"what is no name is just absent", "b c<", nullptr},
    {"a declaration", "xmlns:ns", "u"},
};

TEST(AttributeMap, GetNamedItemFindsTheQualifiedNameAsWritten) {
  const Node root = Parsed("<a b='1' xmlns:ns='u' ns:c='2' xml:lang='en'/>").DocumentElement();
  for (const LookUpCase& row : kLookUps) {
    SCOPED_TRACE(row.why);
    const Node found = root.Attributes().GetNamedItem(row.name);
    ASSERT_EQ(static_cast<bool>(found), row.value != nullptr);
    if (found) {
      EXPECT_EQ(found.Text(), row.value);
    }
  }
  EXPECT_EQ(RaisedBy([&] { return root.Attributes().GetNamedItem(std::string_view()); }),
            BadArgument());
}

TEST(AttributeMap, QualifiedItemsAreFoundByLocalNameAndNamespace) {
  const Node root = Parsed("<a b='1' xmlns:ns='u' ns:b='2'/>").DocumentElement();
  const AttributeMap map = root.Attributes();
  EXPECT_EQ(map.GetQualifiedItem("b", "").Text(), "1");
  EXPECT_EQ(map.GetQualifiedItem("b", "u").Text(), "2");
  EXPECT_FALSE(map.GetQualifiedItem("b", "v"));
  EXPECT_EQ(map.RemoveQualifiedItem("b", "u").Text(), "2");
  EXPECT_FALSE(map.RemoveQualifiedItem("b", "u"));
  EXPECT_EQ(NamesOf(map), "b xmlns:ns ");
}

TEST(AttributeMap, SetNamedItemAppendsOrTakesThePlaceOfItsName) {
  const Document document = Parsed("<a b=\"1\" c=\"2\" d=\"3\"/>");
  const AttributeMap map = document.DocumentElement().Attributes();
  const Node old = map.GetNamedItem("c");
  const Node added = document.CreateAttribute("e");
  added.SetText("4");
  EXPECT_EQ(map.SetNamedItem(added), added);
  for (const char* name : {"c", "b", "e"}) {
    const Node fresh = document.CreateAttribute(name);
    fresh.SetText(std::string("new ") + name);
    EXPECT_EQ(map.SetNamedItem(fresh), fresh);
  }
  EXPECT_EQ(XmlOf(document), "<a b=\"new b\" c=\"new c\" d=\"3\" e=\"new e\"/>");
  EXPECT_EQ(map.Length(), 4);
  EXPECT_EQ(old.Text(), "2");
  EXPECT_EQ(RaisedBy([&] { return map.SetNamedItem(old); }), Raised()) << "free again";
}

TEST(AttributeMap, SetNamedItemRefusesWhatIsInUseOrNoAttribute) {
  const Raised inUse = Fail("Attributes must be removed before adding them to a different node.");
  const Document document = Parsed("<a b=\"1\"><c d=\"2\"/></a>");
  const Node root = document.DocumentElement();
  const AttributeMap map = root.Attributes();
  EXPECT_EQ(RaisedBy([&] { return map.SetNamedItem(root.GetAttributeNode("b")); }), inUse);
  EXPECT_EQ(RaisedBy([&] { return map.SetNamedItem(root.FirstChild().GetAttributeNode("d")); }),
            inUse);
  EXPECT_EQ(RaisedBy([&] {
              return map.SetNamedItem(Parsed("<x y='1'/>").DocumentElement().GetAttributeNode("y"));
            }),
            inUse)
      << "of another document";
  EXPECT_EQ(RaisedBy([&] { return map.SetNamedItem(document.CreateElement("e")); }),
            Fail("This operation can not be performed with a Node of type ELEMENT."));
  EXPECT_EQ(RaisedBy([&] { return map.SetNamedItem(Node()); }), BadArgument());
  EXPECT_EQ(XmlOf(document), "<a b=\"1\"><c d=\"2\"/></a>");
}

TEST(AttributeMap, SetNamedItemTakesADetachedAttributeOfAnotherDocument) {
  const Document document = Parsed("<a/>");
  const Document other = Parsed("<x/>");
  const Node attribute = other.CreateNode(NodeType::kAttribute, "p:y", "u");
  attribute.SetText("1");
  document.DocumentElement().Attributes().SetNamedItem(attribute);
  EXPECT_EQ(attribute.OwnerDocument(), document);
  EXPECT_EQ(XmlOf(document), "<a xmlns:p=\"u\" p:y=\"1\"/>");
  attribute.SetText("2");
  EXPECT_EQ(document.DocumentElement().GetAttribute("p:y"), "2");
}

TEST(AttributeMap, RemoveNamedItemGivesTheAttributeBackForUseAgain) {
  const Document document = Parsed("<a b=\"1\" c=\"2\" d=\"3\"/>");
  const AttributeMap map = document.DocumentElement().Attributes();
  const Node removed = map.RemoveNamedItem("b");
  EXPECT_EQ(removed.Text(), "1");
  EXPECT_FALSE(map.RemoveNamedItem("b"));
  EXPECT_EQ(RaisedBy([&] { return map.RemoveNamedItem(std::string_view()); }), BadArgument());
  EXPECT_EQ(NamesOf(map), "c d ");
  map.SetNamedItem(removed);
  EXPECT_EQ(NamesOf(map), "c d b ");
  map.RemoveNamedItem("d");
  map.RemoveNamedItem("b");
  EXPECT_EQ(NamesOf(map), "c ");
  map.SetNamedItem(removed);
  EXPECT_EQ(XmlOf(document), "<a c=\"2\" b=\"1\"/>");
}

TEST(AttributeMap, IsLiveAndKeepsItsElement) {
  const Document document = Parsed("<a/>");
  AttributeMap map = document.DocumentElement().Attributes();
  EXPECT_EQ(map.Length(), 0);
  document.DocumentElement().SetAttribute("b", "1");
  EXPECT_EQ(map.Length(), 1);
  document.AsNode().RemoveChild(document.DocumentElement());
  EXPECT_EQ(map.Item(0).Text(), "1");
}

TEST(AttributeMap, WorksAfterItsElementMovedToAnotherDocument) {
  const Document source = Parsed("<a><b c='1'/></a>");
  const Document target = Parsed("<x/>");
  const Node element = Named(source, "b");
  const AttributeMap map = element.Attributes();
  target.DocumentElement().AppendChild(element);
  EXPECT_EQ(map.Length(), 1);
  element.SetAttribute("d", "2");
  EXPECT_EQ(NamesOf(map), "c d ");
  EXPECT_EQ(map.RemoveNamedItem("c").OwnerDocument(), target);
}

TEST(AttributeMap, NextNodeWalksAndItemDoesNotMoveIt) {
  AttributeMap map = Parsed("<a b='1' c='2'/>").DocumentElement().Attributes();
  EXPECT_EQ(map.NextNode().NodeName(), "b");
  EXPECT_EQ(map.Item(0).NodeName(), "b");
  EXPECT_EQ(map.NextNode().NodeName(), "c");
  EXPECT_FALSE(map.NextNode());
  map.Reset();
  EXPECT_EQ(map.NextNode().NodeName(), "b");
}

TEST(AttributeMap, IsNothingForKindsWithoutAttributes) {
  const Document document = Parsed("<a b='1'>t<!--c--><![CDATA[d]]><?p q?></a>");
  const Node root = document.DocumentElement();
  for (Node at = root.FirstChild(); at; at = at.NextSibling()) EXPECT_FALSE(at.Attributes());
  EXPECT_FALSE(root.GetAttributeNode("b").Attributes());
  EXPECT_FALSE(document.CreateDocumentFragment().Attributes());
  EXPECT_FALSE(document.AsNode().Attributes());
  EXPECT_EQ(RaisedBy([] { return AttributeMap().Length(); }), ObjectNotSet());
}

TEST(AttributeMap, OfAnXmlDeclarationHasItsPseudoAttributes) {
  const Document document =
      Parsed("<?xml version=\"1.0\" encoding=\"windows-1252\" standalone=\"yes\"?><a/>");
  const AttributeMap map = document.AsNode().FirstChild().Attributes();
  ASSERT_TRUE(map);
  EXPECT_EQ(NamesOf(map), "version encoding standalone ");
  EXPECT_EQ(map.GetNamedItem("encoding").Text(), "windows-1252");
}

TEST(AttributeMap, ManyAttributesAreWalkedByPosition) {
  constexpr int kCount = 60000;
  std::string xml = "<a";
  for (int i = 0; i < kCount; ++i) xml += " n" + std::to_string(i) + "=''";
  const Document document = Parsed(xml + "/>");
  const Node root = document.DocumentElement();
  for (int i = 0; i < root.Attributes().Length(); ++i) {
    ASSERT_TRUE(root.Attributes().Item(i));
    root.Attributes().Item(i).SetText("1");
  }
  EXPECT_EQ(root.Attributes().Item(kCount - 2).NodeName(), "n59998");
  root.Attributes().RemoveNamedItem("n40");
  EXPECT_EQ(root.Attributes().Item(kCount - 2).NodeName(), "n59999");
  while (root.Attributes().Length() > 0) {
    root.RemoveAttributeNode(root.Attributes().Item(root.Attributes().Length() - 1));
  }
  EXPECT_EQ(XmlOf(document), "<a/>");
}

}  // namespace
}  // namespace kx::dom
