// See node_list.h.
#include "platform/dom/node_list.h"

#include "platform/dom/child_positions.h"
#include "platform/dom/dom_error.h"

namespace kx::dom {

NodeList NodeList::OfChildren(const Node& parent) {
  NodeList list;
  list.kind_ = Kind::kChildren;
  list.root_ = parent;
  return list;
}

NodeList NodeList::OfElements(const Node& root, std::string_view name) {
  NodeList list;
  list.kind_ = Kind::kElements;
  list.root_ = root;
  list.name_ = name;
  return list;
}

NodeList NodeList::OfNodes(std::vector<Node> nodes) {
  NodeList list;
  list.kind_ = Kind::kFixed;
  list.fixed_ = runtime::MakeCounted<Fixed>(std::move(nodes));
  return list;
}

NodeList NodeList::OfNode(Node node) { return {Kind::kFixed, std::move(node)}; }

// Walked lists: elements by name, and the children of frozen content ------------------------------

Cursor NodeList::ElementFrom(const Cursor& root, Cursor at) const {
  while (at && !(at.IsElement() && (name_ == "*" || at.QualifiedName() == name_))) {
    at = at.NextInTree(root);
  }
  return at;
}

Cursor NodeList::First(const Cursor& root) const {
  return kind_ == Kind::kChildren ? root.FirstChild() : ElementFrom(root, root.NextInTree(root));
}

Cursor NodeList::Next(const Cursor& root, const Cursor& at) const {
  return kind_ == Kind::kChildren ? at.Next() : ElementFrom(root, at.NextInTree(root));
}

bool NodeList::IsWalked(const Cursor& root) const {
  return kind_ == Kind::kElements || root.Data().Frozen();
}

NodeList::Place& NodeList::CurrentPlace(const Cursor& root) const {
  const DocumentData& data = root.Data();
  if (place_.data != &data || place_.root != root.Id() || place_.version != data.EditVersion()) {
    place_ = Place{&data, root.Id(), data.EditVersion(), 0, Cursor(), -1};
  }
  return place_;
}

Cursor NodeList::Walk(const Cursor& root, std::uint32_t index) const {
  Place& place = CurrentPlace(root);
  if (place.length >= 0 && index >= place.length) return {};
  if (!place.at || place.index > index) {
    place.at = First(root);
    place.index = 0;
  }
  Cursor at = place.at;
  for (; at && place.index < index; ++place.index) {
    place.at = at;
    at = Next(root, at);
  }
  if (!at && place.at) {  // beyond the end: stay at the last one
    place.length = place.index;
    --place.index;
    return {};
  }
  place.at = at;
  return at;
}

std::int32_t NodeList::WalkedLength(const Cursor& root) const {
  Place& place = CurrentPlace(root);
  if (place.length < 0) {
    std::int64_t length = place.at ? place.index : 0;
    for (Cursor at = place.at ? place.at : First(root); at; at = Next(root, at)) ++length;
    place.length = length;
  }
  return static_cast<std::int32_t>(place.length);
}

// The members ------------------------------------------------------------------------------------

std::int32_t NodeList::Length() const {
  if (kind_ == Kind::kFixed) {
    if (!fixed_) return root_ ? 1 : 0;
    return static_cast<std::int32_t>(fixed_->nodes.size());
  }
  const Cursor root = root_.At();
  if (IsWalked(root)) return WalkedLength(root);
  return static_cast<std::int32_t>(CountItems(root_.Data(), ChildrenOf(root.Id())));
}

Node NodeList::Item(std::int32_t index) const {
  const auto position = static_cast<std::uint32_t>(index);
  if (kind_ == Kind::kFixed) {
    if (!fixed_) return index == 0 ? root_ : Node();
    const bool inside = index >= 0 && position < fixed_->nodes.size();
    return inside ? fixed_->nodes[position] : Node();
  }
  const Cursor root = root_.At();
  if (index < 0 || !root.FirstChild()) return {};
  if (IsWalked(root)) return Node(Walk(root, position));
  return {&root_.Data(), FindItem(root_.Data(), ChildrenOf(root.Id()), position)};
}

Node NodeList::NextNode() {
  Node node = Item(next_);
  if (node) ++next_;
  return node;
}

}  // namespace kx::dom
