// Positions in long lists of children and attributes, so that a walk by index is as cheap as a walk
// by links: the place of the last item asked for, and the length, are remembered with the document
// and follow its edits. Short lists are simply walked.
//
// Invariants:
//   - Only lists longer than kShortList are remembered, so the memory is bounded by the document.
//   - Every edit of a remembered list is told to it, before a node that leaves is unlinked.
#pragma once

#include "platform/dom/node_record.h"

#include <cstdint>
#include <unordered_map>

namespace kx::dom {

class DocumentData;

/// A list of nodes: the children of a node, or its attributes.
using ListId = std::uint32_t;
constexpr ListId ChildrenOf(NodeId parent) { return parent; }
constexpr ListId AttributesOf(NodeId element) { return element | kInlineTextBit; }

/// The number of items.
[[nodiscard]] std::uint32_t CountItems(DocumentData& data, ListId list);
/// The item number `index`, from 0, or kNoNode outside. May be the identifier of an inline text.
[[nodiscard]] NodeId FindItem(DocumentData& data, ListId list, std::uint32_t index);

class ChildPositions {
 public:
  static constexpr std::uint32_t kShortList = 32;

  struct Place {
    std::uint32_t length;
    std::uint32_t index;
    NodeId node;  ///< at `index`; kNoNode while no place is known
  };

  /// What is known of a list, or null.
  [[nodiscard]] Place* Find(ListId list) noexcept {
    const auto found = places_.find(list);
    return found == places_.end() ? nullptr : &found->second;
  }
  Place& Remember(ListId list, const Place& place) {
    return places_.insert_or_assign(list, place).first->second;
  }

  /// An item was linked in front of `before`, which was the first one when `atFirst`.
  void NoteInserted(ListId list, NodeId before, bool atFirst) noexcept;
  /// `item`, between `previous` and `next`, leaves.
  void NoteRemoved(ListId list, NodeId item, NodeId previous, NodeId next) noexcept;
  /// All of a node's lists are gone or new.
  void Forget(NodeId id) noexcept {
    if (places_.empty()) return;
    places_.erase(ChildrenOf(id));
    places_.erase(AttributesOf(id));
  }
  void ForgetList(ListId list) noexcept { places_.erase(list); }
  [[nodiscard]] bool Empty() const noexcept { return places_.empty(); }

 private:
  std::unordered_map<ListId, Place> places_;
};

}  // namespace kx::dom
