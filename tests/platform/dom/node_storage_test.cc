// What edits cost: storage stays flat under endless edits, nodes live exactly as long as somebody
// holds them, moves between documents leave no chains behind, and depth costs no stack.
#include "dom_test.h"
#include "platform/dom/attribute_map.h"
#include "platform/dom/node_list.h"

#include <cstddef>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

namespace kx::dom {
namespace {

// Everything that the counters say must be the same later, but for the count of nodes in use,
// which moves with the collections: that may only stay within what was seen early.
void ExpectFlat(const StorageCounters& early, const StorageCounters& late) {
  EXPECT_EQ(late.nodeCapacity, early.nodeCapacity);
  EXPECT_EQ(late.heapCapacityBytes, early.heapCapacityBytes);
  EXPECT_EQ(late.nameBytes, early.nameBytes);
  EXPECT_EQ(late.textBytes, early.textBytes);
  EXPECT_EQ(late.totalBytes, early.totalBytes);
  EXPECT_LE(late.nodeRecords, early.nodeCapacity);
}

TEST(Storage, IsFlatUnderAMillionEdits) {
  const Document document = Parsed("<a><keep x='1'>text</keep></a>");
  const Node root = document.DocumentElement();
  StorageCounters early;
  for (int round = 0; round < 340000; ++round) {
    const Node child = document.CreateElement("child");
    root.AppendChild(child);
    child.SetText("a text of some length " + std::to_string(round % 100));
    root.RemoveChild(child);
    if (round == 1000) early = document.Data().Counters();
  }
  ExpectFlat(early, document.Data().Counters());
  EXPECT_EQ(XmlOf(document), "<a><keep x=\"1\">text</keep></a>");
}

TEST(Storage, IsFlatWhenAttributesAndTextsAreReplaced) {
  const Document document = Parsed("<a b='1'><c>t</c></a>");
  const Node root = document.DocumentElement();
  const Node c = root.FirstChild();
  StorageCounters early;
  for (int round = 0; round < 100000; ++round) {
    root.SetAttribute("b", std::string(static_cast<std::size_t>(round % 50), 'x'));
    const Node attribute = document.CreateAttribute("b");
    attribute.SetText("v");
    root.SetAttributeNode(attribute);
    c.SetText("new");
    c.FirstChild().SetText("text");
    c.AppendChild(document.CreateTextNode("more"));
    c.Normalize();
    if (round == 1000) early = document.Data().Counters();
  }
  ExpectFlat(early, document.Data().Counters());
  EXPECT_EQ(XmlOf(document), "<a b=\"v\"><c>textmore</c></a>");
}

TEST(Storage, IsFlatWhenNodesMoveBetweenDocuments) {
  const Document left = Parsed("<l/>");
  const Document right = Parsed("<r/>");
  StorageCounters earlyLeft;
  StorageCounters earlyRight;
  for (int round = 0; round < 50000; ++round) {
    const Node node = left.CreateElement("n");
    node.SetText("text");
    const Node text = node.FirstChild();
    right.DocumentElement().AppendChild(node);
    left.DocumentElement().AppendChild(node);
    right.DocumentElement().AppendChild(text);
    right.DocumentElement().RemoveChild(text);
    left.DocumentElement().RemoveChild(node);
    if (round == 2000) {
      earlyLeft = left.Data().Counters();
      earlyRight = right.Data().Counters();
    }
  }
  ExpectFlat(earlyLeft, left.Data().Counters());
  ExpectFlat(earlyRight, right.Data().Counters());
}

TEST(Storage, IsFlatUnderClonesThatNobodyKeeps) {
  const Document document = Parsed("<a><b c='1'>t<d/>u</b></a>");
  const Node b = Named(document, "b");
  StorageCounters early;
  for (int round = 0; round < 50000; ++round) {
    EXPECT_TRUE(b.CloneNode(CloneDepth::kDeep).HasChildNodes());
    if (round == 1000) early = document.Data().Counters();
  }
  ExpectFlat(early, document.Data().Counters());
}

TEST(Storage, KeepsRemovedNodesAsLongAsTheyAreHeld) {
  const Document document = Parsed("<a/>");
  const Node root = document.DocumentElement();
  std::vector<Node> held;
  for (int i = 0; i < 2000; ++i) {
    const Node tree = document.CreateElement("tree");
    root.AppendChild(tree);
    const Node leaf = document.CreateElement("leaf");
    leaf.SetText(std::to_string(i));
    tree.AppendChild(leaf);
    tree.SetAttribute("x", std::to_string(i));
    root.RemoveChild(tree);
    if (i % 10 == 0) held.push_back(leaf);
    if (i % 10 == 5) held.push_back(tree.GetAttributeNode("x"));
  }
  document.Data().Collect();
  EXPECT_EQ(document.Data().Counters().nodeRecords, 2U + 400U * 3U);
  for (std::size_t i = 0; i < held.size(); ++i) {
    EXPECT_EQ(held[i].Text(), std::to_string(i * 5));
  }
  EXPECT_EQ(held[0].ParentNode().GetAttribute("x"), "0");
  held.clear();
  document.Data().Collect();
  EXPECT_EQ(document.Data().Counters().nodeRecords, 2U);
}

TEST(Storage, CountsHandlesBeyondWhatARecordCounts) {
  const Document document = Parsed("<a><b/></a>");
  const Node b = Named(document, "b");
  document.DocumentElement().RemoveChild(b);
  std::vector<Node> handles(70000, b);
  handles.resize(69000);
  document.Data().Collect();
  EXPECT_EQ(handles.back().NodeName(), "b");
  const Document other = Parsed("<x/>");
  other.DocumentElement().AppendChild(b);
  for (const Node& handle : handles) ASSERT_EQ(handle.OwnerDocument(), other);
  other.DocumentElement().RemoveChild(b);
  handles.resize(1);
  other.Data().Collect();
  EXPECT_EQ(handles[0].NodeName(), "b");
}

TEST(Storage, GivesTheNodeBackAfterVeryManyHandles) {
  const Document document = Parsed("<a><b/></a>");
  {
    const Node b = Named(document, "b");
    const std::vector<Node> handles(70000, b);
    document.DocumentElement().RemoveChild(b);
  }
  document.Data().Collect();
  EXPECT_EQ(document.Data().Counters().nodeRecords, 2U);
}

// Moves between documents
// --------------------------------------------------------------------------

TEST(Moves, LeadEveryHandleToTheNodeWhereverItWent) {
  const Document first = Parsed("<a><b c='1'>t<d/></b></a>");
  const Document second = Parsed("<x/>");
  const Node b = Named(first, "b");
  const Node d = Named(first, "d");
  const Node c = b.GetAttributeNode("c");
  const Node value = c.FirstChild();
  const Node text = b.FirstChild();
  second.DocumentElement().AppendChild(b);
  first.DocumentElement().AppendChild(b);
  second.DocumentElement().AppendChild(b);
  EXPECT_EQ(d.ParentNode(), b);
  EXPECT_EQ(text.NextSibling(), d);
  EXPECT_EQ(c, b.GetAttributeNode("c"));
  EXPECT_EQ(value, c.FirstChild());
  EXPECT_EQ(d.OwnerDocument(), second);
  text.SetText("u");
  value.SetText("2");
  EXPECT_EQ(XmlOf(second), "<x><b c=\"2\">u<d/></b></x>");
  EXPECT_EQ(XmlOf(first), "<a></a>");
}

TEST(Moves, OfAnUnusedHandleBackAndForthLeaveNoChain) {
  const Document first = Parsed("<a><b><c>t</c></b></a>");
  const Document second = Parsed("<x/>");
  const Node moved = Named(first, "b");
  const Node unused = Named(first, "c");
  StorageCounters early;
  for (int round = 0; round < 60000; ++round) {
    second.DocumentElement().AppendChild(moved);
    first.DocumentElement().AppendChild(moved);
    if (round == 1000) early = first.Data().Counters();
  }
  ExpectFlat(early, first.Data().Counters());
  EXPECT_EQ(unused.Text(), "t");
  EXPECT_EQ(unused.ParentNode(), moved);
  EXPECT_EQ(unused.OwnerDocument(), first);
}

TEST(Moves, WithHandlesTakenAtEveryStopLeadThemAllToTheSameNode) {
  const Document first = Parsed("<a><b>t</b></a>");
  const Document second = Parsed("<x/>");
  const Node moved = Named(first, "b");
  std::vector<Node> handles;
  for (int round = 0; round < 3000; ++round) {
    const Document& target = round % 2 == 0 ? second : first;
    target.DocumentElement().AppendChild(moved);
    handles.push_back(target.DocumentElement().FirstChild());
  }
  for (const Node& handle : handles) ASSERT_EQ(handle, moved);
  handles.clear();
  first.DocumentElement().RemoveChild(moved);
  EXPECT_EQ(moved.Text(), "t");
}

TEST(Moves, KeepTheTargetDocumentAliveAndLetTheSourceGo) {
  Node node;
  Node inner;
  {
    const Document source = Parsed("<a><b><c>t</c></b></a>");
    const Document target = Parsed("<x/>");
    node = Named(source, "b");
    inner = Named(source, "c");
    target.DocumentElement().AppendChild(node);
  }
  EXPECT_EQ(inner.Text(), "t");
  EXPECT_EQ(inner.ParentNode(), node);
  EXPECT_EQ(XmlOf(node.OwnerDocument()), "<x><b><c>t</c></b></x>");
}

TEST(Moves, BothWaysAtOnceFreeBothDocuments) {
  const Document first = Parsed("<a><b>1</b></a>");
  const Document second = Parsed("<x><y>2</y></x>");
  const Node b = Named(first, "b");
  const Node y = Named(second, "y");
  const std::vector<Node> more(10, b);
  second.DocumentElement().AppendChild(b);
  first.DocumentElement().AppendChild(y);
  EXPECT_EQ(XmlOf(first), "<a><y>2</y></a>");
  EXPECT_EQ(XmlOf(second), "<x><b>1</b></x>");
  EXPECT_EQ(y.OwnerDocument(), first);
  // The leak check of the sanitizers tells whether the circle of documents was freed.
}

TEST(Moves, SurviveAReloadOfEitherDocument) {
  const Document first = Parsed("<a><b><c>t</c></b></a>");
  const Document second = Parsed("<x/>");
  const Node b = Named(first, "b");
  const Node c = Named(first, "c");
  second.DocumentElement().AppendChild(b);
  ASSERT_TRUE(first.LoadXml("<new/>"));
  ASSERT_TRUE(second.LoadXml("<newer/>"));
  EXPECT_EQ(c.ParentNode(), b);
  EXPECT_EQ(c.OwnerDocument(), second);
  first.DocumentElement().AppendChild(c);
  EXPECT_EQ(XmlOf(first), "<new><c>t</c></new>");
  EXPECT_EQ(b.Xml(), "<b></b>");
}

TEST(Moves, OfManyNodesBetweenDocumentsWithManyNamesAreCheap) {
  constexpr int kCount = 50000;
  std::string xml = "<a>";
  for (int i = 0; i < kCount; ++i) xml += "<n" + std::to_string(i) + "/>";
  const Document source = Parsed(xml + "</a>");
  const Document target = Parsed("<x/>");
  while (const Node first = source.DocumentElement().FirstChild()) {
    target.DocumentElement().AppendChild(first);
  }
  EXPECT_EQ(target.DocumentElement().ChildNodes().Length(), kCount);
  EXPECT_EQ(target.DocumentElement().LastChild().NodeName(), "n49999");
}

TEST(Moves, OfAFrozenDocumentsFormerNodesAreLetGoWithIt) {
  const Document target = Parsed("<x/>");
  {
    const Document source = Parsed("<a><b/></a>");
    const Node b = Named(source, "b");
    target.DocumentElement().AppendChild(b);
    const Node inner = target.CreateElement("i");
    source.DocumentElement().AppendChild(inner);
    source.Freeze();
    EXPECT_EQ(inner.OwnerDocument(), source);
  }
  target.DocumentElement().RemoveChild(target.DocumentElement().FirstChild());
  target.Data().Collect();
  EXPECT_EQ(target.Data().Counters().nodeRecords, 2U);
}

// Depth
// --------------------------------------------------------------------------------------------

std::string Deep(int depth) {
  std::string xml;
  for (int i = 0; i < depth; ++i) xml += "<e>";
  xml += "t";
  for (int i = 0; i < depth; ++i) xml += "</e>";
  return xml;
}

TEST(Depth, OfAMillionLevelsNeedsNoStack) {
  constexpr int kDepth = 1000000;
  const Document document = NewDomDocument();
  document.EditSettings().maxElementDepth = kDepth;
  const std::string xml = Deep(kDepth);
  ASSERT_TRUE(document.LoadXml(xml)) << document.LastError().reason;
  EXPECT_EQ(XmlOf(document), xml);
  EXPECT_EQ(document.DocumentElement().Text(), "t");
  const Document copy = document.Clone(CloneDepth::kDeep);
  const Node clone = document.DocumentElement().CloneNode(CloneDepth::kDeep);
  EXPECT_EQ(clone.Xml(), xml);
  document.DocumentElement().Normalize();
  EXPECT_EQ(document.DocumentElement().GetElementsByTagName("e").Length(), kDepth - 1);
  copy.DocumentElement().AppendChild(clone);
  EXPECT_EQ(clone.OwnerDocument(), copy);
  EXPECT_EQ(copy.DocumentElement().LastChild(), clone);
  copy.AsNode().RemoveChild(copy.DocumentElement());
  copy.Data().Collect();
  EXPECT_EQ(clone.ParentNode().Text(), "tt");
}

TEST(Depth, IsBuiltLevelByLevelInLinearTime) {
  constexpr int kDepth = 100000;
  const Document document = NewDomDocument();
  Node at = document.CreateElement("e");
  document.AsNode().AppendChild(at);
  for (int i = 1; i < kDepth; ++i) {
    const Node below = document.CreateElement("e");
    below.AppendChild(document.CreateTextNode("t"));
    at.AppendChild(below);
    at = below;
  }
  Node top = document.CreateElement("top");
  document.DocumentElement(top);
  EXPECT_EQ(document.DocumentElement().NodeName(), "top");
  EXPECT_EQ(at.Text(), "t");
}

}  // namespace
}  // namespace kx::dom
