// Positions in long lists of children, child elements and attributes, so that a walk by index is as
// cheap as a walk by links: the place of the last item asked for, and the length, are remembered
// with the document and follow its edits. Short lists are simply walked.
//
// Invariants:
//   - Only lists longer than kShortList are remembered, so the memory is bounded by the document.
//   - Every edit of a remembered list is told to it, before a node that leaves is unlinked.
#pragma once

#include "platform/dom/node_record.h"

#include <cstdint>
#include <unordered_map>
#include <vector>

namespace kx::dom {

class Cursor;
class DocumentData;

/// A list of nodes: the children of a node, or its attributes.
using ListId = std::uint32_t;
constexpr ListId ChildrenOf(NodeId parent) { return parent; }
constexpr ListId AttributesOf(NodeId element) { return element | kInlineTextBit; }

/// The number of items.
[[nodiscard]] std::uint32_t CountItems(DocumentData& data, ListId list);
/// The item number `index`, from 0, or kNoNode outside. May be the identifier of an inline text.
[[nodiscard]] NodeId FindItem(DocumentData& data, ListId list, std::uint32_t index);

/// The same for the elements among the children of a node.
[[nodiscard]] std::uint32_t CountElements(DocumentData& data, NodeId parent);
[[nodiscard]] NodeId FindElement(DocumentData& data, NodeId parent, std::uint32_t index);

class ChildPositions {
 public:
  static constexpr std::uint32_t kShortList = 32;

  struct Place {
    std::uint32_t length;
    std::uint32_t index;
    NodeId node;  ///< at `index`; kNoNode while no place is known
  };
  /// What is known of the elements of a long list. Positions that are asked for here and there are
  /// walked to until the walks have cost as much as a table of all of them does.
  struct ElementPlace : Place {
    std::uint64_t walked = 0;   ///< since the last edit that was not an appending
    std::vector<NodeId> table;  ///< all elements, or empty
  };

  /// What is known of a list, or null.
  [[nodiscard]] Place* Find(ListId list) noexcept {
    const auto found = places_.find(list);
    return found == places_.end() ? nullptr : &found->second;
  }
  Place& Remember(ListId list, const Place& place) {
    return places_.insert_or_assign(list, place).first->second;
  }
  [[nodiscard]] ElementPlace* FindElements(NodeId parent) noexcept {
    const auto found = elements_.find(parent);
    return found == elements_.end() ? nullptr : &found->second;
  }
  ElementPlace& RememberElements(NodeId parent, const Place& place) {
    return elements_.insert_or_assign(parent, ElementPlace{place, 0, {}}).first->second;
  }

  /// An item was linked in front of `before`, which was the first one when `atFirst`.
  void NoteInserted(ListId list, NodeId before, bool atFirst) noexcept;
  /// `item`, between `previous` and `next`, leaves.
  void NoteRemoved(ListId list, NodeId item, NodeId previous, NodeId next) noexcept;
  /// The same for an element among the children of `parent`; `before` is of any kind.
  void NoteElementInserted(NodeId parent, NodeId item, NodeId before, bool atFirst);
  void NoteElementRemoved(NodeId parent, const Cursor& item) noexcept;
  /// All of a node's lists are gone or new.
  void Forget(NodeId id) noexcept {
    if (Empty()) return;
    ForgetChildren(id);
    places_.erase(AttributesOf(id));
  }
  void ForgetChildren(NodeId id) noexcept {
    places_.erase(ChildrenOf(id));
    elements_.erase(id);
  }
  [[nodiscard]] bool Empty() const noexcept { return places_.empty() && elements_.empty(); }

 private:
  std::unordered_map<ListId, Place> places_;
  std::unordered_map<NodeId, ElementPlace> elements_;
};

}  // namespace kx::dom
