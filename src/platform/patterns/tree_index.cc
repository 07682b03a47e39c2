// See tree_index.h.
#include "platform/patterns/tree_index.h"

#include "platform/dom/cursor.h"

#include <algorithm>

namespace kx::patterns {

using dom::Cursor;
using dom::kNoNode;
using dom::NodeId;
using dom::NodeType;

TreeIndex::TreeIndex(const dom::DocumentData& data, NodeId node) : data_(&data) {
  ranks_.assign(std::size_t{data.NodeCount()} * 2, kNoRank);
  AddTree(dom::kDocumentNode);
  if (RankOf(node) == kNoRank) {
    Cursor root(data_, node);
    while (const Cursor parent = root.Parent()) root = parent;
    AddTree(root.Id());
  }
  // From the last one back, so that all below a node is known when the node's turn comes.
  for (Rank rank = Count(); rank-- > 0;) {
    const Rank parent = parents_[rank];
    if (parent != kNoRank) ends_[parent] = std::max(ends_[parent], ends_[rank]);
  }
}

bool TreeIndex::IsAttribute(Rank rank) const noexcept {
  return Cursor(data_, nodes_[rank]).Type() == NodeType::kAttribute;
}

void TreeIndex::AddTree(NodeId root) {
  Cursor at(data_, root);
  const Cursor top = at;
  Add(root, kNoRank);
  while (true) {
    Cursor next = at.FirstChild();
    while (!next) {
      if (at == top) return;
      next = at.Next();
      if (!next) at = at.Parent();
    }
    at = next;
    Add(at.Id(), RankOf(at.Parent().Id()));
  }
}

void TreeIndex::Add(NodeId id, Rank parent) {
  const Rank rank = Count();
  ranks_[SlotOf(id)] = rank;
  nodes_.push_back(id);
  parents_.push_back(parent);
  ends_.push_back(rank + 1);
  if (!dom::IsInlineTextId(id)) AddAttributes(id);
}

void TreeIndex::AddTexts() {
  if (!textAt_.empty()) return;
  textAt_.reserve(nodes_.size() + 1);
  Rank attributeEnd = 0;
  for (Rank rank = 0; rank < Count(); ++rank) {
    textAt_.push_back(text_.size());
    if (IsAttribute(rank)) attributeEnd = EndOf(rank);
    if (rank >= attributeEnd) AddText(rank);
  }
  textAt_.push_back(text_.size());
  AddLongTexts();
}

void TreeIndex::AddLongTexts() {
  for (Rank rank = 0; rank < Count(); ++rank) {
    const Cursor at(data_, nodes_[rank]);
    if (!at.HasWholeText() || at.OwnText().size() < kLongText) continue;
    const std::string_view text = at.OwnText();
    if (textAt_[ends_[rank]] - textAt_[rank] == text.size()) continue;
    longTexts_[rank] = {text_.size(), text_.size() + text.size()};
    text_ += text;
  }
}

std::string_view TreeIndex::LongTextOf(Rank rank) const {
  const auto found = longTexts_.find(rank);
  if (found == longTexts_.end()) return TextBelow(rank);
  return AllTexts().substr(found->second.begin, found->second.end - found->second.begin);
}

void TreeIndex::AddText(Rank rank) {
  const Cursor at(data_, nodes_[rank]);
  if (!at.IsText()) return;
  const std::string_view text = at.OwnText();
  if (at.Type() == NodeType::kCData && !text.empty()) {
    cdata_.push_back({text_.size(), text_.size() + text.size()});
  }
  text_ += text;
}

void TreeIndex::AddAttributes(NodeId element) {
  if (inAttribute_ || data_->Record(element).firstAttribute == kNoNode) return;
  inAttribute_ = true;
  const Rank owner = RankOf(element);
  for (Cursor at = Cursor(data_, element).FirstAttribute(); at; at = at.Next()) {
    Add(at.Id(), owner);
    for (Cursor below = at.FirstChild(); below; below = below.NextInTree(at)) {
      Add(below.Id(), RankOf(below.Parent().Id()));
    }
  }
  inAttribute_ = false;
}

TreeIndex::Part TreeIndex::CDataBelow(Rank rank) const noexcept {
  const std::size_t begin = textAt_[rank];
  const std::size_t end = textAt_[ends_[rank]];
  const auto first = std::lower_bound(cdata_.begin(), cdata_.end(), begin,
                                      [](const Part& p, std::size_t at) { return p.begin < at; });
  if (first == cdata_.end() || first->begin >= end) return {};
  const auto behind = std::lower_bound(first, cdata_.end(), end,
                                       [](const Part& p, std::size_t at) { return p.begin < at; });
  return {first->begin - begin, std::prev(behind)->end - begin};
}

}  // namespace kx::patterns
