// Putting the nodes of a query into document order without duplicates, in time linear in what the
// query has visited anyway (times a logarithm for small sets).
//
// A document that was parsed and not edited since has its nodes' indices in document order, so
// indices are compared. In an edited one the paths from the nodes up to a common top are marked,
// and the marked part of the tree is walked; the work of that is counted, and when it exceeds the
// document's size, whoever asks may supply a TreeIndex, whose ranks are compared from then on.
#pragma once

#include "platform/dom/document_data.h"
#include "platform/patterns/tree_index.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kx::patterns {

class DocumentOrder {
 public:
  explicit DocumentOrder(const dom::DocumentData& data) noexcept
      : data_(&data), byIndex_(data.IdsFollowDocumentOrder()) {}

  /// True when nodes can be compared by their keys.
  [[nodiscard]] bool HasKeys() const noexcept { return byIndex_; }
  /// True when it was given an index.
  [[nodiscard]] bool HasRanks() const noexcept { return ranks_ != nullptr; }
  /// Greater for what comes later; only when HasKeys().
  [[nodiscard]] std::uint64_t KeyOf(dom::NodeId id) const noexcept;

  /// Sorts `list` from number `begin` to its end and drops duplicates. `top`: a node that is above
  /// most of them; it saves walking further up.
  void Sort(std::vector<dom::NodeId>& list, std::size_t begin, dom::NodeId top);
  /// The first in document order of the nodes of `list` from number `begin` on; there is one.
  [[nodiscard]] dom::NodeId FirstOf(std::vector<dom::NodeId>& list, std::size_t begin,
                                    dom::NodeId top);

  /// Nodes looked at to put others into order so far.
  [[nodiscard]] std::uint64_t Work() const noexcept { return work_; }
  /// From now on nodes are compared by their ranks in `index`, which outlives this.
  void Use(const TreeIndex& index) noexcept {
    if (!byIndex_) ranks_ = &index;
  }

 private:
  [[nodiscard]] bool HasKeysOf(const std::vector<dom::NodeId>& list, std::size_t begin) const;
  void SortByKeys(std::vector<dom::NodeId>& list, std::size_t begin) const;
  void SortByWalking(std::vector<dom::NodeId>& list, std::size_t begin, dom::NodeId top);

  const dom::DocumentData* data_;
  bool byIndex_;
  const TreeIndex* ranks_ = nullptr;
  std::uint64_t work_ = 0;
};

}  // namespace kx::patterns
