#include "platform/patterns/document_order.h"

#include "platform/patterns/generators.h"
#include "platform/patterns/pattern_test.h"

#include <algorithm>

namespace kx::patterns {
namespace {

using Ids = std::vector<dom::NodeId>;

// Some nodes of the index, some of them twice, in any order; and the same as they should be.
std::pair<Ids, Ids> RandomNodes(const TreeIndex& index, Dice& dice) {
  Ids nodes;
  std::vector<Rank> ranks;
  for (std::uint32_t count = dice.Roll(20); count > 0; --count) {
    ranks.push_back(dice.Roll(index.Count()));
    nodes.push_back(index.NodeAt(ranks.back()));
  }
  std::sort(ranks.begin(), ranks.end());
  ranks.erase(std::unique(ranks.begin(), ranks.end()), ranks.end());
  Ids sorted;
  for (const Rank rank : ranks) sorted.push_back(index.NodeAt(rank));
  return {nodes, sorted};
}

TEST(DocumentOrder, SortsByIndicesByWalkingAndByRanks) {
  Dice dice(5);
  for (int i = 0; i < 200; ++i) {
    const dom::Document document = Parsed(RandomDocument(dice));
    if (i % 2 == 1) EditAtRandom(document, dice);
    const dom::DocumentData& data = document.AsNode().Data();
    const TreeIndex index(data, dom::kDocumentNode);
    for (int j = 0; j < 10; ++j) {
      const auto [nodes, sorted] = RandomNodes(index, dice);
      const dom::NodeId top = index.NodeAt(dice.Roll(index.Count()));
      for (const bool ranked : {false, true}) {
        DocumentOrder order(data);
        if (ranked) order.Use(index);
        Ids list = {dom::kDocumentNode, 77};  // what stands before is left alone
        list.insert(list.end(), nodes.begin(), nodes.end());
        order.Sort(list, 2, top);
        EXPECT_EQ(Ids(list.begin() + 2, list.end()), sorted);
        EXPECT_EQ(list[1], 77U);
        if (nodes.empty()) continue;
        Ids again = nodes;
        EXPECT_EQ(order.FirstOf(again, 0, top), sorted.front());
      }
    }
  }
}

TEST(DocumentOrder, CountsWhatItLooksAt) {
  const dom::Document document = Parsed("<r><a><b/></a><c/></r>");
  const dom::Node root = document.DocumentElement();
  root.InsertBefore(root.LastChild(), root.FirstChild());
  const dom::DocumentData& data = document.AsNode().Data();
  DocumentOrder order(data);
  EXPECT_FALSE(order.HasKeys());
  const TreeIndex index(data, dom::kDocumentNode);
  Ids list = {index.NodeAt(4), index.NodeAt(2)};
  order.Sort(list, 0, dom::kDocumentNode);
  EXPECT_GE(order.Work(), 6U);
}

TEST(DocumentOrder, PutsTheNodesOfOtherTreesBehindTheDocuments) {
  const dom::Document document = Parsed("<r><a/></r>");
  const dom::Node detached = document.CreateElement("t");
  const dom::Node child = detached.AppendChild(document.CreateElement("u"));
  const dom::Node inside = document.DocumentElement().AppendChild(document.CreateElement("z"));
  const dom::DocumentData& data = document.AsNode().Data();
  const TreeIndex index(data, dom::kDocumentNode);
  for (const bool ranked : {false, true}) {
    DocumentOrder order(data);
    if (ranked) order.Use(index);
    Ids list = {child.At().Id(), inside.At().Id(), detached.At().Id(), child.At().Id()};
    order.Sort(list, 0, dom::kDocumentNode);
    EXPECT_EQ(list, (Ids{inside.At().Id(), detached.At().Id(), child.At().Id()}));
  }
}

}  // namespace
}  // namespace kx::patterns
