// Putting the nodes of a query into document order without duplicates, in time linear in what the
// query has visited anyway (times a logarithm for small sets).
//
// A document that was parsed and not edited since has its nodes' indices in document order, so
// indices are compared. In an edited one the paths from the nodes up to a common top are marked,
// and the marked part of the tree is walked.
#pragma once

#include "platform/dom/document_data.h"

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
  /// Greater for what comes later; only when HasKeys().
  [[nodiscard]] std::uint64_t KeyOf(dom::NodeId id) const noexcept;

  /// Sorts `list` from number `begin` to its end and drops duplicates. `top`: a node that is above
  /// most of them; it saves walking further up.
  void Sort(std::vector<dom::NodeId>& list, std::size_t begin, dom::NodeId top) const;
  /// The first in document order of the nodes of `list` from number `begin` on; there is one.
  [[nodiscard]] dom::NodeId FirstOf(std::vector<dom::NodeId>& list, std::size_t begin,
                                    dom::NodeId top) const;

 private:
  void SortByKeys(std::vector<dom::NodeId>& list, std::size_t begin) const;
  void SortByWalking(std::vector<dom::NodeId>& list, std::size_t begin, dom::NodeId top) const;

  const dom::DocumentData* data_;
  bool byIndex_;
};

}  // namespace kx::patterns
