#include "platform/dom/child_positions.h"

#include "dom_test.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace kx::dom {
namespace {

// <a> with `count` children and as many attributes.
Document WithItems(int count) {
  std::string xml = "<a";
  for (int i = 0; i < count; ++i) xml += " n" + std::to_string(i) + "=''";
  xml += ">";
  for (int i = 0; i < count; ++i) xml += "<c/>";
  return Parsed(xml + "</a>");
}

// The items of a list by their links.
std::vector<NodeId> Walked(const DocumentData& data, ListId list) {
  const Cursor owner(&data, list & ~kInlineTextBit);
  std::vector<NodeId> ids;
  const bool attributes = (list & kInlineTextBit) != 0;
  for (Cursor at = attributes ? owner.FirstAttribute() : owner.FirstChild(); at; at = at.Next()) {
    ids.push_back(at.Id());
  }
  return ids;
}

TEST(ChildPositions, RemembersLongListsOnly) {
  for (const int count : {0, 1, 32, 33}) {
    const Document document = WithItems(count);
    DocumentData& data = document.Data();
    const NodeId root = data.DocumentElement();
    for (const ListId list : {ChildrenOf(root), AttributesOf(root)}) {
      EXPECT_EQ(CountItems(data, list), static_cast<std::uint32_t>(count));
      EXPECT_EQ(data.Positions()->Find(list) != nullptr, count > 32) << count;
    }
  }
}

TEST(ChildPositions, AreNotKeptForFrozenContent) {
  const Document document = WithItems(100);
  document.Freeze();
  DocumentData& data = document.Data();
  EXPECT_EQ(data.Positions(), nullptr);
  EXPECT_EQ(CountItems(data, ChildrenOf(data.DocumentElement())), 100U);
  EXPECT_EQ(FindItem(data, AttributesOf(data.DocumentElement()), 99),
            Walked(data, AttributesOf(data.DocumentElement()))[99]);
  EXPECT_EQ(FindItem(data, ChildrenOf(data.DocumentElement()), 100), kNoNode);
}

TEST(ChildPositions, AreForgottenWithTheirNode) {
  const Document document = WithItems(100);
  const NodeId id = document.Data().DocumentElement();
  EXPECT_EQ(CountItems(document.Data(), ChildrenOf(id)), 100U);
  EXPECT_EQ(CountItems(document.Data(), AttributesOf(id)), 100U);
  document.AsNode().RemoveChild(document.DocumentElement());
  document.Data().Collect();
  EXPECT_TRUE(document.Data().Positions()->Empty());
}

TEST(ChildPositions, OfElementsPassOverOtherNodesAndAreRememberedForLongListsOnly) {
  for (const int count : {0, 1, 32, 33, 200}) {
    std::string xml = "<a>";
    for (int i = 0; i < count; ++i) xml += " <!--x--><c/> ";
    const Document document = Parsed(xml + "</a>");
    DocumentData& data = document.Data();
    const NodeId root = data.DocumentElement();
    EXPECT_EQ(CountElements(data, root), static_cast<std::uint32_t>(count));
    EXPECT_EQ(data.Positions()->FindElements(root) != nullptr, count > 32) << count;
    std::uint32_t index = 0;
    for (Cursor at = document.Root().FirstChildElement(); at; at = at.NextElement()) {
      EXPECT_EQ(FindElement(data, root, index++), at.Id());
    }
    EXPECT_EQ(FindElement(data, root, index), kNoNode);
  }
}

TEST(ChildPositions, OfElementsAgreeWithTheLinksAfterEveryEdit) {
  std::mt19937 random(11);
  const Document document = WithItems(60);
  DocumentData& data = document.Data();
  const Node root = document.DocumentElement();
  NodeId lastFound = kNoNode;
  for (int step = 0; step < 5000; ++step) {
    const std::vector<NodeId> ids = Walked(data, ChildrenOf(root.At().Id()));
    const std::size_t at = random() % (ids.size() + 1);
    NodeId before = at == ids.size() ? kNoNode : ids[at];
    if (lastFound != kNoNode && random() % 4 == 0) before = lastFound;
    if (before != kNoNode && ids.size() > 50 && random() % 2 == 0) {
      data.RemoveChild(before);
    } else {
      const Node added =
          random() % 3 == 0 ? document.CreateComment("x") : document.CreateElement("x");
      data.InsertChild(root.At().Id(), added.At().Id(), before);
    }
    std::vector<NodeId> elements;
    for (Cursor e = root.At().FirstChildElement(); e; e = e.NextElement()) {
      elements.push_back(e.Id());
    }
    ASSERT_EQ(CountElements(data, root.At().Id()), elements.size()) << "step " << step;
    for (int i = 0; i < 3; ++i) {
      const auto index = static_cast<std::uint32_t>(random() % (elements.size() + 3));
      ASSERT_EQ(FindElement(data, root.At().Id(), index),
                index < elements.size() ? elements[index] : kNoNode)
          << "step " << step << " element " << index;
      lastFound = index < elements.size() ? elements[index] : kNoNode;
    }
  }
}

// Removes or inserts at a place that is often near the last one asked for.
void EditAtRandom(const Document& document, ListId list, std::mt19937& random) {
  DocumentData& data = document.Data();
  const std::vector<NodeId> ids = Walked(data, list);
  const bool attributes = (list & kInlineTextBit) != 0;
  const Node root = document.DocumentElement();
  const std::size_t at = random() % (ids.size() + 1);
  const NodeId before = at == ids.size() ? kNoNode : ids[at];
  if (before != kNoNode && random() % 2 == 0) {
    attributes ? data.RemoveAttribute(before) : data.RemoveChild(before);
  } else if (attributes) {
    const Node added = document.CreateAttribute("x");
    data.InsertAttribute(root.At().Id(), added.At().Id(), before);
  } else {
    const Node added = document.CreateElement("x");
    data.InsertChild(root.At().Id(), added.At().Id(), before);
  }
}

TEST(ChildPositions, AgreeWithTheLinksAfterEveryEdit) {
  std::mt19937 random(7);
  for (const bool attributes : {false, true}) {
    const Document document = WithItems(60);
    DocumentData& data = document.Data();
    const NodeId root = data.DocumentElement();
    const ListId list = attributes ? AttributesOf(root) : ChildrenOf(root);
    for (int step = 0; step < 5000; ++step) {
      EditAtRandom(document, list, random);
      const std::vector<NodeId> ids = Walked(data, list);
      ASSERT_EQ(CountItems(data, list), ids.size()) << "step " << step;
      for (int i = 0; i < 3; ++i) {
        const auto index = static_cast<std::uint32_t>(random() % (ids.size() + 3));
        ASSERT_EQ(FindItem(data, list, index), index < ids.size() ? ids[index] : kNoNode)
            << "step " << step << " item " << index;
      }
    }
  }
}

}  // namespace
}  // namespace kx::dom
