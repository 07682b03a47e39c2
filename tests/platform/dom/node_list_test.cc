#include "platform/dom/node_list.h"

#include "dom_test.h"
#include "platform/dom/attribute_map.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kx::dom {
namespace {

// <a> with `count` children <n0/>, <n1/>, ...
Document WithChildren(int count) {
  std::string xml = "<a>";
  for (int i = 0; i < count; ++i) xml += "<n" + std::to_string(i) + "/>";
  return Parsed(xml + "</a>");
}

// The names of the children by position, checked against the links.
std::string NamesByPosition(const NodeList& list) {
  std::string names;
  for (int i = 0; i < list.Length(); ++i) names += list.Item(i).NodeName() + " ";
  return names;
}
std::string NamesByLinks(const Node& parent) {
  std::string names;
  for (Node at = parent.FirstChild(); at; at = at.NextSibling()) names += at.NodeName() + " ";
  return names;
}

TEST(NodeList, HoldsChildrenInOrderAndNothingOutside) {
  for (const int count : {0, 1, 2, 31, 32, 33, 34, 200}) {
    SCOPED_TRACE(count);
    const Document document = WithChildren(count);
    const NodeList list = document.DocumentElement().ChildNodes();
    ASSERT_EQ(list.Length(), count);
    for (int i = 0; i < count; ++i) EXPECT_EQ(list.Item(i).NodeName(), "n" + std::to_string(i));
    for (int i = count; i-- > 0;) EXPECT_EQ(list.Item(i).NodeName(), "n" + std::to_string(i));
    EXPECT_FALSE(list.Item(count));
    EXPECT_FALSE(list.Item(count + 1000));
    EXPECT_FALSE(list.Item(-1));
    EXPECT_FALSE(list.Item(INT32_MIN));
    EXPECT_FALSE(list.Item(INT32_MAX));
  }
}

TEST(NodeList, OfATextKeptInItsElementHasThatText) {
  const NodeList list = Parsed("<a>t</a>").DocumentElement().ChildNodes();
  ASSERT_EQ(list.Length(), 1);
  EXPECT_EQ(list.Item(0).NodeValue(), "t");
  EXPECT_FALSE(list.Item(1));
}

TEST(NodeList, OfANodeWithoutChildrenIsEmptyAndNotNothing) {
  const NodeList list = Parsed("<a>t</a>").DocumentElement().FirstChild().ChildNodes();
  EXPECT_TRUE(list);
  EXPECT_EQ(list.Length(), 0);
  EXPECT_FALSE(list.Item(0));
  EXPECT_FALSE(NodeList());
}

TEST(NodeList, NextNodeWalksAndItemDoesNotMoveIt) {
  NodeList list = WithChildren(3).DocumentElement().ChildNodes();
  EXPECT_EQ(list.NextNode().NodeName(), "n0");
  EXPECT_EQ(list.Item(2).NodeName(), "n2");
  EXPECT_EQ(list.NextNode().NodeName(), "n1");
  EXPECT_EQ(list.NextNode().NodeName(), "n2");
  EXPECT_FALSE(list.NextNode());
  EXPECT_FALSE(list.NextNode());
  list.Reset();
  EXPECT_EQ(list.NextNode().NodeName(), "n0");
}

TEST(NodeList, FollowsEveryEditAtOnce) {
  for (const int count : {5, 100}) {
    const Document document = WithChildren(count);
    const Node root = document.DocumentElement();
    const NodeList list = root.ChildNodes();
    const auto check = [&](const char* edit) {
      EXPECT_EQ(NamesByPosition(list), NamesByLinks(root)) << edit << " of " << count;
      static_cast<void>(list.Item(count / 2));
    };
    check("nothing");
    root.AppendChild(document.CreateElement("last"));
    check("append");
    root.InsertBefore(document.CreateElement("first"), root.FirstChild());
    check("insert first");
    root.InsertBefore(document.CreateElement("place"), list.Item(count / 2));
    check("insert at the place");
    root.InsertBefore(document.CreateElement("mid"), list.Item(3));
    check("insert in the middle");
    root.RemoveChild(list.Item(count / 2));
    check("remove the place");
    root.RemoveChild(root.FirstChild());
    check("remove first");
    root.RemoveChild(root.LastChild());
    check("remove last");
    static_cast<void>(list.Item(list.Length() - 1));
    root.RemoveChild(root.LastChild());
    check("remove the place at the end");
    root.RemoveChild(list.Item(2));
    check("remove in the middle");
    root.SetText("text");
    check("set text");
    EXPECT_EQ(list.Length(), 1);
    root.SetText("");
    EXPECT_EQ(list.Length(), 0);
  }
}

TEST(NodeList, CountsAfterAllChildrenWereRemovedOneByOne) {
  const Document document = WithChildren(300);
  const Node root = document.DocumentElement();
  int left = 300;
  while (root.ChildNodes().Length() > 0) {
    ASSERT_EQ(root.ChildNodes().Length(), left);
    root.RemoveChild(root.ChildNodes().Item(left % 3 == 0 ? 0 : left - 1));
    --left;
  }
  EXPECT_EQ(left, 0);
  root.SetText("t");
  EXPECT_EQ(root.ChildNodes().Length(), 1);
}

// These would take minutes if a position were looked for from the start each time.
TEST(NodeList, ManyChildrenAreWalkedByPositionWithANewListEachTime) {
  constexpr int kCount = 200000;
  const Document document = WithChildren(kCount);
  const Node root = document.DocumentElement();
  int seen = 0;
  for (int i = 0; i < root.ChildNodes().Length(); ++i) {
    if (root.ChildNodes().Item(i).HasChildNodes()) ADD_FAILURE();
    ++seen;
  }
  EXPECT_EQ(seen, kCount);
}

TEST(NodeList, ManyChildrenAreWalkedByPositionWhileTheyAreEdited) {
  constexpr int kCount = 100000;
  const Document document = WithChildren(kCount);
  const Node root = document.DocumentElement();
  for (int i = 0; i < root.ChildNodes().Length(); ++i) {
    const Node child = root.ChildNodes().Item(i);
    child.SetText("t");
    child.SetAttribute("x", "1");
  }
  for (int i = kCount; i-- > 0;) root.ChildNodes().Item(i).AppendChild(document.CreateElement("s"));
  EXPECT_EQ(root.LastChild().Xml(), "<n99999 x=\"1\">t<s/></n99999>");
  while (root.ChildNodes().Length() > kCount / 2) root.RemoveChild(root.ChildNodes().Item(0));
  while (root.ChildNodes().Length() > 0) {
    root.RemoveChild(root.ChildNodes().Item(root.ChildNodes().Length() - 1));
  }
  EXPECT_FALSE(root.HasChildNodes());
}

TEST(NodeList, NestedWalksByPositionDoNotDisturbEachOther) {
  std::string xml = "<a>";
  for (int i = 0; i < 300; ++i) {
    xml += "<b>";
    for (int j = 0; j < 300; ++j) xml += "<c/>";
    xml += "</b>";
  }
  const Document document = Parsed(xml + "</a>");
  const Node root = document.DocumentElement();
  int inner = 0;
  for (int i = 0; i < root.ChildNodes().Length(); ++i) {
    for (int j = 0; j < root.ChildNodes().Item(i).ChildNodes().Length(); ++j) {
      inner += root.ChildNodes().Item(i).ChildNodes().Item(j).NodeName() == "c" ? 1 : 0;
    }
  }
  EXPECT_EQ(inner, 90000);
}

TEST(NodeList, OfFrozenContentIsWalkedByPosition) {
  const Document document = WithChildren(50000);
  document.Freeze();
  const NodeList list = document.DocumentElement().ChildNodes();
  ASSERT_EQ(list.Length(), 50000);
  for (int i = 0; i < list.Length(); ++i) ASSERT_TRUE(list.Item(i));
  EXPECT_EQ(list.Item(49999).NodeName(), "n49999");
  EXPECT_EQ(list.Item(7).NodeName(), "n7");
  EXPECT_FALSE(list.Item(50000));
  EXPECT_EQ(list.Item(49999).NodeName(), "n49999");
}

TEST(NodeList, OfElementsByNameIsInDocumentOrderAndLive) {
  const Document document = Parsed("<a><b><c/><p:c xmlns:p='u'/></b><c>t<c/></c></a>");
  const Node root = document.DocumentElement();
  const NodeList list = root.GetElementsByTagName("c");
  ASSERT_EQ(list.Length(), 3);
  EXPECT_EQ(list.Item(0).ParentNode().NodeName(), "b");
  EXPECT_EQ(list.Item(2).ParentNode(), list.Item(1));
  EXPECT_FALSE(list.Item(3));
  EXPECT_EQ(list.Item(1).Text(), "t");
  EXPECT_EQ(root.GetElementsByTagName("p:c").Length(), 1);
  EXPECT_EQ(root.GetElementsByTagName("*").Length(), 5);
  EXPECT_EQ(document.AsNode().GetElementsByTagName("*").Length(), 6);
  EXPECT_EQ(root.GetElementsByTagName("x").Length(), 0);
  EXPECT_FALSE(root.GetElementsByTagName("x").Item(0));
  EXPECT_EQ(list.Item(2), root.LastChild().LastChild());
  root.InsertBefore(document.CreateElement("c"), root.FirstChild());
  EXPECT_EQ(list.Length(), 4);
  EXPECT_EQ(list.Item(0), root.FirstChild());
  root.RemoveChild(root.LastChild());
  EXPECT_EQ(list.Length(), 2);
}

TEST(NodeList, OfElementsIsWalkedByPositionInOneWalk) {
  const Document document = WithChildren(100000);
  const NodeList list = document.DocumentElement().GetElementsByTagName("*");
  int seen = 0;
  for (int i = 0; i < list.Length(); ++i) seen += list.Item(i) ? 1 : 0;
  EXPECT_EQ(seen, 100000);
  EXPECT_EQ(list.Item(5).NodeName(), "n5");
}

TEST(NodeList, OfNodesKeepsWhatItWasGiven) {
  const Document document = WithChildren(3);
  const Node root = document.DocumentElement();
  NodeList list = NodeList::OfNodes({root.FirstChild(), root.LastChild()});
  root.RemoveChild(root.FirstChild());
  EXPECT_EQ(list.Length(), 2);
  EXPECT_EQ(list.Item(0).NodeName(), "n0");
  EXPECT_FALSE(list.Item(2));
  EXPECT_FALSE(list.Item(-1));
  const NodeList copy = list;
  EXPECT_EQ(list.NextNode().NodeName(), "n0");
  EXPECT_EQ(list.NextNode().NodeName(), "n2");
  EXPECT_EQ(copy.Item(1), root.LastChild());
}

TEST(NodeList, OfOneNodeHasItAndOfNoNodeNone) {
  const Document document = Parsed("<a><b/></a>");
  const Node child = document.DocumentElement().FirstChild();
  NodeList one = NodeList::OfNode(child);
  EXPECT_TRUE(one);
  EXPECT_EQ(one.Length(), 1);
  EXPECT_EQ(one.Item(0), child);
  EXPECT_FALSE(one.Item(1));
  EXPECT_FALSE(one.Item(-1));
  document.DocumentElement().RemoveChild(child);
  EXPECT_EQ(one.NextNode(), child) << "it keeps what it was given";
  EXPECT_FALSE(one.NextNode());
  one.Reset();
  EXPECT_EQ(one.NextNode(), child);

  NodeList none = NodeList::OfNode(Node());
  EXPECT_TRUE(none) << "a list, not nothing";
  EXPECT_EQ(none.Length(), 0);
  EXPECT_FALSE(none.Item(0));
  EXPECT_FALSE(none.NextNode());
}

TEST(NodeList, FollowsItsNodeToAnotherDocument) {
  const Document source = WithChildren(100);
  const Document target = Parsed("<x/>");
  const Node moved = source.DocumentElement();
  const NodeList list = moved.ChildNodes();
  static_cast<void>(list.Item(50));
  target.DocumentElement().AppendChild(moved);
  EXPECT_EQ(list.Length(), 100);
  EXPECT_EQ(list.Item(51).NodeName(), "n51");
  EXPECT_EQ(list.Item(51).OwnerDocument(), target);
}

TEST(NodeList, OfNothingRaises) {
  EXPECT_EQ(RaisedBy([] { return NodeList().Length(); }), ObjectNotSet());
  EXPECT_EQ(RaisedBy([] { return NodeList().Item(0); }), ObjectNotSet());
}

}  // namespace
}  // namespace kx::dom
