// A tree laid out flat, for queries that would otherwise ask the same of the same nodes again and
// again: every node's place in document order, its parent, the end of what is below it, and the
// text below it as a part of one long text.
//
// Made at most once in a query, when the repeated work has grown to the size of the tree; linear in
// that size. The text is added when it is asked for. Attributes and texts that are kept in their
// owner's record have places of their own.
#pragma once

#include "platform/dom/document_data.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kx::patterns {

/// A node's number in document order within a TreeIndex.
using Rank = std::uint32_t;
inline constexpr Rank kNoRank = 0xFFFFFFFFU;

class TreeIndex {
 public:
  /// Lays out the document's tree and, when it is another one, that of `node`.
  TreeIndex(const dom::DocumentData& data, dom::NodeId node);

  [[nodiscard]] Rank Count() const noexcept { return static_cast<Rank>(nodes_.size()); }
  [[nodiscard]] dom::NodeId NodeAt(Rank rank) const noexcept { return nodes_[rank]; }
  /// kNoRank for a node of another tree.
  [[nodiscard]] Rank RankOf(dom::NodeId id) const noexcept {
    const std::size_t slot = SlotOf(id);
    return slot < ranks_.size() ? ranks_[slot] : kNoRank;
  }
  /// kNoRank for the top of a tree.
  [[nodiscard]] Rank ParentOf(Rank rank) const noexcept { return parents_[rank]; }
  /// The rank of the first node behind `rank` and all that is below it, attributes included.
  [[nodiscard]] Rank EndOf(Rank rank) const noexcept { return ends_[rank]; }
  [[nodiscard]] bool IsAttribute(Rank rank) const noexcept;

  /// Lays out the texts, which the members below need.
  void AddTexts();
  /// All texts in one piece, those of attributes, comments and instructions left out.
  [[nodiscard]] std::string_view Texts() const noexcept {
    return std::string_view(text_).substr(0, textAt_.back());
  }
  /// The same with the long ones of those behind it.
  [[nodiscard]] std::string_view AllTexts() const noexcept { return text_; }
  /// A text as long as this is a long one.
  static constexpr std::size_t kLongText = 512;
  /// The long text of a node, which has it in one piece, as a part of AllTexts().
  [[nodiscard]] std::string_view LongTextOf(Rank rank) const;
  /// All text and CDATA below an element, document or the like, in one piece.
  [[nodiscard]] std::string_view TextBelow(Rank rank) const noexcept {
    return std::string_view(text_).substr(textAt_[rank], textAt_[ends_[rank]] - textAt_[rank]);
  }
  /// The offsets in TextBelow() of the first byte and behind the last byte that CDATA sections
  /// gave; both 0 when they gave none.
  struct Part {
    std::size_t begin = 0;
    std::size_t end = 0;
  };
  [[nodiscard]] Part CDataBelow(Rank rank) const noexcept;

 private:
  static std::size_t SlotOf(dom::NodeId id) noexcept {
    return std::size_t{dom::OwnerOfInlineText(id)} * 2 + (dom::IsInlineTextId(id) ? 1 : 0);
  }
  void AddTree(dom::NodeId root);
  void Add(dom::NodeId id, Rank parent);
  void AddAttributes(dom::NodeId element);
  void AddText(Rank rank);
  void AddLongTexts();

  const dom::DocumentData* data_;
  std::vector<dom::NodeId> nodes_;
  std::vector<Rank> parents_;
  std::vector<Rank> ends_;
  std::vector<Rank> ranks_;
  std::string text_;
  std::vector<std::size_t> textAt_;           // by rank, and once more for the end
  std::vector<Part> cdata_;                   // in text_, in order
  std::unordered_map<Rank, Part> longTexts_;  // in text_, of nodes that textAt_ knows nothing of
  bool inAttribute_ = false;
};

}  // namespace kx::patterns
