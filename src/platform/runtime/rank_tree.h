// A balanced tree over nodes that live elsewhere, in the order of a list: it finds the node at a
// position and the position of a node in logarithmic time, whatever was inserted and removed.
//
// It owns nothing and compares nothing; the node is a base of the list's entry. Balance comes from
// priorities drawn per node (a treap), so the depth does not depend on the caller's order.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kx::runtime {

/// The links of one entry. Not copied with the entry.
struct RankNode {
  RankNode() noexcept = default;
  RankNode(const RankNode&) = delete;
  RankNode& operator=(const RankNode&) = delete;

  RankNode* parent = nullptr;
  RankNode* left = nullptr;
  RankNode* right = nullptr;
  std::size_t size = 1;  ///< of the subtree with this node at its top
  std::uint64_t priority = 0;
};

class RankTree {
 public:
  [[nodiscard]] std::size_t Size() const noexcept { return SizeOf(root_); }

  /// Puts `node` in front of `successor`, at the end when that is null.
  void InsertBefore(RankNode* successor, RankNode* node) noexcept;
  /// Takes `node`, which is in the tree, out of it.
  void Remove(RankNode* node) noexcept;
  /// The node at `position` (from 0), which lies below Size().
  [[nodiscard]] RankNode* At(std::size_t position) const noexcept;
  /// The position (from 0) of a node of this tree.
  [[nodiscard]] static std::size_t PositionOf(const RankNode* node) noexcept;
  /// Forgets all nodes without touching them.
  void Clear() noexcept { root_ = nullptr; }

 private:
  [[nodiscard]] static std::size_t SizeOf(const RankNode* node) noexcept {
    return node != nullptr ? node->size : 0;
  }
  [[nodiscard]] RankNode*& LinkTo(RankNode* node) noexcept;
  void RotateUp(RankNode* node) noexcept;
  [[nodiscard]] std::uint64_t DrawPriority() noexcept;

  RankNode* root_ = nullptr;
  std::uint64_t randomState_ = 0x9E3779B97F4A7C15U;
};

}  // namespace kx::runtime
