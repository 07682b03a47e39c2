// The tree of ranks against a plain vector, and its depth.
#include "platform/runtime/rank_tree.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <vector>

namespace kx::runtime {
namespace {

std::size_t DepthOf(const RankNode* node) {
  std::size_t depth = 0;
  for (; node != nullptr; node = node->parent) ++depth;
  return depth;
}

class RankTreeTest : public testing::Test {
 protected:
  void InsertAt(std::size_t position) {
    nodes_.push_back(std::make_unique<RankNode>());
    RankNode* node = nodes_.back().get();
    tree_.InsertBefore(position < order_.size() ? order_[position] : nullptr, node);
    order_.insert(order_.begin() + static_cast<std::ptrdiff_t>(position), node);
  }
  void RemoveAt(std::size_t position) {
    tree_.Remove(order_[position]);
    order_.erase(order_.begin() + static_cast<std::ptrdiff_t>(position));
  }
  void ExpectSameOrder() {
    ASSERT_EQ(tree_.Size(), order_.size());
    for (std::size_t i = 0; i < order_.size(); ++i) {
      ASSERT_EQ(tree_.At(i), order_[i]) << i;
      ASSERT_EQ(RankTree::PositionOf(order_[i]), i);
    }
  }
  std::size_t Depth() {
    std::size_t deepest = 0;
    for (const RankNode* node : order_) deepest = std::max(deepest, DepthOf(node));
    return deepest;
  }

  RankTree tree_;
  std::vector<RankNode*> order_;
  std::vector<std::unique_ptr<RankNode>> nodes_;
};

TEST_F(RankTreeTest, KeepsTheOrderOfEveryMixOfInsertionAndRemoval) {
  std::mt19937 random(1);
  for (int step = 0; step < 2000; ++step) {
    const std::size_t position = random() % (order_.size() + 1);
    if (random() % 3 != 0 || position == order_.size()) {
      InsertAt(position);
    } else {
      RemoveAt(position);
    }
    if (step % 50 == 0) ExpectSameOrder();
  }
  ExpectSameOrder();
  while (!order_.empty()) RemoveAt(order_.size() / 2);
  EXPECT_EQ(tree_.Size(), 0U);
}

TEST_F(RankTreeTest, StaysShallowWhenItGrowsAtTheEnd) {
  for (std::size_t i = 0; i < 20000; ++i) InsertAt(order_.size());
  EXPECT_LT(Depth(), 60U);
  for (std::size_t i = 0; i < 10000; ++i) RemoveAt(order_.size() - 1);
  EXPECT_LT(Depth(), 60U);
  ExpectSameOrder();
}

TEST_F(RankTreeTest, StaysShallowWhenItGrowsAtTheFront) {
  for (std::size_t i = 0; i < 5000; ++i) InsertAt(0);
  EXPECT_LT(Depth(), 50U);
  ExpectSameOrder();
}

TEST_F(RankTreeTest, TakesARemovedNodeAgain) {
  for (std::size_t i = 0; i < 3; ++i) InsertAt(i);
  RankNode* node = order_[1];
  RemoveAt(1);
  tree_.InsertBefore(nullptr, node);
  order_.push_back(node);
  ExpectSameOrder();
}

}  // namespace
}  // namespace kx::runtime
