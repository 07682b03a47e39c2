// See document_order.h.
#include "platform/patterns/document_order.h"

#include "platform/dom/cursor.h"

#include <algorithm>
#include <unordered_map>

namespace kx::patterns {

namespace {

using dom::Cursor;
using dom::DocumentData;
using dom::kNoNode;
using dom::NodeId;
using dom::NodeRecord;
using dom::NodeType;

// The wanted nodes and all between them and the tops of their trees.
class MarkedTree {
 public:
  MarkedTree(const DocumentData& data, NodeId top) : data_(&data), top_(top) {}

  void Add(NodeId wanted) {
    marks_[wanted].wanted = true;
    Climb(wanted);
  }

  // Appends what is wanted, in document order; the document's own tree before detached ones.
  void Walk(std::vector<NodeId>& out) {
    JoinTop();
    std::sort(roots_.begin(), roots_.end());
    for (const NodeId root : roots_) WalkTree({data_, root}, out);
  }

  /// Nodes looked at so far.
  [[nodiscard]] std::uint64_t Work() const noexcept { return work_; }

 private:
  struct Mark {
    bool wanted = false;
    bool climbed = false;      // all above it is marked as well
    std::uint32_t below = 0;   // marked children and attributes
    NodeId onlyOne = kNoNode;  // the one of them when there is one
  };

  void Climb(NodeId id) {
    while (true) {
      Mark& mark = marks_[id];
      ++work_;
      if (mark.climbed) return;
      mark.climbed = true;
      if (id == top_) return;
      id = ClimbOne(id);
      if (id == kNoNode) return;
    }
  }

  // Marks the parent; a node without one is a root.
  NodeId ClimbOne(NodeId id) {
    const NodeId parent = Cursor(data_, id).Parent().Id();
    if (parent == kNoNode) {
      roots_.push_back(id);
    } else {
      Mark& above = marks_[parent];
      ++above.below;
      above.onlyOne = id;
    }
    return parent;
  }

  // What lies below `top_` is joined to the rest of the tree when anything else was wanted.
  void JoinTop() {
    const auto top = marks_.find(top_);
    if (top == marks_.end() || !top->second.climbed) return;
    if (roots_.empty()) {
      roots_.push_back(top_);
    } else if (const NodeId above = ClimbOne(top_); above != kNoNode) {
      top_ = kNoNode;
      Climb(above);
    }
  }

  [[nodiscard]] bool IsMarked(const Cursor& at) const { return marks_.count(at.Id()) != 0; }

  // The first marked one of `at` and what follows it below `parent`.
  [[nodiscard]] Cursor MarkedFrom(const Cursor& parent, Cursor at) {
    const bool inAttributes = at && at.Type() == NodeType::kAttribute;
    for (++work_; at && !IsMarked(at); ++work_) at = at.Next();
    if (at || !inAttributes) return at;
    return MarkedFrom(parent, parent.FirstChild());
  }

  [[nodiscard]] Cursor FirstBelow(const Cursor& parent) {
    const Mark& mark = marks_.at(parent.Id());
    if (mark.below == 0) return {};
    if (mark.below == 1) return {data_, mark.onlyOne};
    const Cursor attribute = parent.FirstAttribute();
    return MarkedFrom(parent, attribute ? attribute : parent.FirstChild());
  }

  [[nodiscard]] Cursor NextBelow(const Cursor& parent, const Cursor& at) {
    if (marks_.at(parent.Id()).below == 1) return {};
    const Cursor next = at.Next();
    if (next || at.Type() != NodeType::kAttribute) return MarkedFrom(parent, next);
    return MarkedFrom(parent, parent.FirstChild());
  }

  void WalkTree(const Cursor& root, std::vector<NodeId>& out) {
    Cursor at = root;
    while (true) {
      ++work_;
      if (marks_.at(at.Id()).wanted) out.push_back(at.Id());
      Cursor next = FirstBelow(at);
      while (!next) {
        if (at == root) return;
        const Cursor parent = at.Parent();
        next = NextBelow(parent, at);
        at = parent;
      }
      at = next;
    }
  }

  const DocumentData* data_;
  NodeId top_;
  std::unordered_map<NodeId, Mark> marks_;
  std::vector<NodeId> roots_;
  std::uint64_t work_ = 0;
};

}  // namespace

std::uint64_t DocumentOrder::KeyOf(NodeId id) const noexcept {
  if (ranks_ != nullptr) return ranks_->RankOf(id);
  if (!dom::IsInlineTextId(id)) return std::uint64_t{id} << 2U;
  // Behind its owner's attributes and what these keep.
  const NodeId owner = dom::OwnerOfInlineText(id);
  const NodeRecord& record = data_->Record(owner);
  if (record.type == NodeType::kAttribute) return (std::uint64_t{owner} << 2U) + 1;
  const NodeId first = record.firstAttribute;
  const NodeId last = first == kNoNode ? owner : data_->Record(first).prev;
  return (std::uint64_t{last} << 2U) + 2;
}

// A tree that is neither the document's nor the start node's has no ranks.
bool DocumentOrder::HasKeysOf(const std::vector<NodeId>& list, std::size_t begin) const {
  if (byIndex_) return true;
  if (ranks_ == nullptr) return false;
  return std::all_of(list.begin() + static_cast<std::ptrdiff_t>(begin), list.end(),
                     [this](NodeId id) { return ranks_->RankOf(id) != kNoRank; });
}

void DocumentOrder::Sort(std::vector<NodeId>& list, std::size_t begin, NodeId top) {
  work_ += list.size() - begin;
  if (list.size() - begin < 2) return;
  if (HasKeysOf(list, begin)) {
    SortByKeys(list, begin);
  } else {
    SortByWalking(list, begin, top);
  }
}

void DocumentOrder::SortByKeys(std::vector<NodeId>& list, std::size_t begin) const {
  const auto first = list.begin() + static_cast<std::ptrdiff_t>(begin);
  const auto before = [this](NodeId a, NodeId b) { return KeyOf(a) < KeyOf(b); };
  if (!std::is_sorted(first, list.end(), before)) std::sort(first, list.end(), before);
  list.erase(std::unique(first, list.end()), list.end());
}

void DocumentOrder::SortByWalking(std::vector<NodeId>& list, std::size_t begin, NodeId top) {
  MarkedTree tree(*data_, top);
  for (std::size_t i = begin; i < list.size(); ++i) tree.Add(list[i]);
  list.resize(begin);
  tree.Walk(list);
  work_ += tree.Work();
}

NodeId DocumentOrder::FirstOf(std::vector<NodeId>& list, std::size_t begin, NodeId top) {
  work_ += list.size() - begin;
  if (!HasKeysOf(list, begin)) {
    SortByWalking(list, begin, top);
    return list[begin];
  }
  const auto first = list.begin() + static_cast<std::ptrdiff_t>(begin);
  return *std::min_element(first, list.end(),
                           [this](NodeId a, NodeId b) { return KeyOf(a) < KeyOf(b); });
}

}  // namespace kx::patterns
