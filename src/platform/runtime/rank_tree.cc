// The treap: insertion hangs a node on as a leaf and rotates it up, removal rotates it down. Every
// loop follows one path between root and leaf; nothing recurses.
#include "platform/runtime/rank_tree.h"

namespace kx::runtime {

// The pointer that leads to `node`: its parent's, or the root.
RankNode*& RankTree::LinkTo(RankNode* node) noexcept {
  if (node->parent == nullptr) return root_;
  return node->parent->left == node ? node->parent->left : node->parent->right;
}

// Exchanges `node` with its parent, keeping the order; sizes stay right.
void RankTree::RotateUp(RankNode* node) noexcept {
  RankNode* parent = node->parent;
  const bool fromLeft = parent->left == node;
  RankNode* inner = fromLeft ? node->right : node->left;
  LinkTo(parent) = node;
  node->parent = parent->parent;
  parent->parent = node;
  (fromLeft ? node->right : node->left) = parent;
  (fromLeft ? parent->left : parent->right) = inner;
  if (inner != nullptr) inner->parent = parent;
  node->size = parent->size;
  parent->size = SizeOf(parent->left) + SizeOf(parent->right) + 1;
}

// xorshift64: enough to keep the depth logarithmic; nobody outside can choose positions by it.
std::uint64_t RankTree::DrawPriority() noexcept {
  randomState_ ^= randomState_ << 13;
  randomState_ ^= randomState_ >> 7;
  randomState_ ^= randomState_ << 17;
  return randomState_;
}

void RankTree::InsertBefore(RankNode* successor, RankNode* node) noexcept {
  node->left = nullptr;
  node->right = nullptr;
  node->parent = nullptr;
  node->size = 1;
  node->priority = DrawPriority();
  if (root_ == nullptr) {
    root_ = node;
    return;
  }
  // 1. Hang it on as a leaf: left of the successor, or behind the last node of what is left of it.
  RankNode* place = successor != nullptr ? successor->left : root_;
  if (place == nullptr) {
    node->parent = successor;
    successor->left = node;
  } else {
    while (place->right != nullptr) place = place->right;
    node->parent = place;
    place->right = node;
  }
  for (RankNode* above = node->parent; above != nullptr; above = above->parent) ++above->size;
  // 2. Lift it to where its priority belongs.
  while (node->parent != nullptr && node->parent->priority < node->priority) RotateUp(node);
}

void RankTree::Remove(RankNode* node) noexcept {
  while (node->left != nullptr || node->right != nullptr) {
    const bool leftUp = node->right == nullptr ||
                        (node->left != nullptr && node->left->priority > node->right->priority);
    RotateUp(leftUp ? node->left : node->right);
  }
  for (RankNode* above = node->parent; above != nullptr; above = above->parent) --above->size;
  LinkTo(node) = nullptr;
  node->parent = nullptr;
}

RankNode* RankTree::At(std::size_t position) const noexcept {
  RankNode* node = root_;
  while (true) {
    const std::size_t before = SizeOf(node->left);
    if (position == before) return node;
    if (position < before) {
      node = node->left;
    } else {
      position -= before + 1;
      node = node->right;
    }
  }
}

std::size_t RankTree::PositionOf(const RankNode* node) noexcept {
  std::size_t position = SizeOf(node->left);
  for (; node->parent != nullptr; node = node->parent) {
    if (node->parent->right == node) position += SizeOf(node->parent->left) + 1;
  }
  return position;
}

}  // namespace kx::runtime
