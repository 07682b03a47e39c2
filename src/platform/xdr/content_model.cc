// See content_model.h.
#include "platform/xdr/content_model.h"

#include <algorithm>
#include <bit>

namespace kx::xdr {

// Symbols -----------------------------------------------------------------------------------------

void SymbolTable::Reserve(std::size_t count) {
  if (count == 0) return;
  slots_.assign(std::bit_ceil(count * 2), Slot{});
  mask_ = slots_.size() - 1;
}

void SymbolTable::Insert(Symbol symbol, std::uint32_t value) {
  std::size_t at = symbol & mask_;
  while (slots_[at].symbol != kNoSymbol) {
    if (slots_[at].symbol == symbol) return;
    at = (at + 1) & mask_;
  }
  slots_[at] = {symbol, value};
}

// Building ----------------------------------------------------------------------------------------

ContentModel::ContentModel(Order order) {
  Node root;
  root.kind = static_cast<Kind>(order);
  root.repeats = root.nullable = order == Order::kMany;
  places_.push_back(root);
}

ContentModel::Place ContentModel::Add(Place parent, Node node) {
  const auto place = static_cast<Place>(places_.size());
  node.parent = parent;
  node.depth = static_cast<std::uint16_t>(places_[parent].depth + 1);
  node.index = places_[parent].count++;
  places_.push_back(node);
  return place;
}

ContentModel::Place ContentModel::AddGroup(Place parent, Order order, bool optional, bool repeats) {
  Node node;
  node.kind = static_cast<Kind>(order);
  node.nullable = optional || order == Order::kMany;
  node.repeats = repeats || order == Order::kMany;
  return Add(parent, node);
}

ContentModel::Place ContentModel::AddChild(Place parent, Symbol symbol, bool optional,
                                           bool repeats) {
  Node node;
  node.symbol = symbol;
  node.nullable = optional;
  node.repeats = repeats;
  hasChildren_ = true;
  return Add(parent, node);
}

// From the end, so that what is in a group is known before the group. An empty group matches
// nothing and can so be left out.
void ContentModel::FindNullable() {
  std::vector<bool> anyNullable(places_.size(), false);
  for (std::size_t at = places_.size(); at-- > 0;) {
    Node& node = places_[at];
    if (node.kind == Kind::kSeq && node.mandatory == 0) node.nullable = true;
    if (node.kind == Kind::kOne && (anyNullable[at] || node.count == 0)) node.nullable = true;
    if (at == 0) break;
    if (node.nullable) {
      anyNullable[node.parent] = true;
    } else {
      ++places_[node.parent].mandatory;
    }
  }
}

void ContentModel::FindEnds() {
  std::vector<std::uint32_t> seen(places_.size(), 0);  // mandatory places so far
  places_[0].repeatDepth = places_[0].repeats ? 0 : kNever;
  for (std::size_t at = 1; at < places_.size(); ++at) {
    Node& node = places_[at];
    const Node& group = places_[node.parent];
    const bool ordered = group.kind == Kind::kSeq;
    node.mandatoryBefore = seen[node.parent];
    if (!node.nullable) ++seen[node.parent];
    const bool first = !ordered || node.mandatoryBefore == 0;
    const bool last = !ordered || seen[node.parent] == group.mandatory;
    node.firstTop = first ? group.firstTop : node.depth;
    node.lastTop = last ? group.lastTop : node.depth;
    node.repeatDepth = node.repeats ? node.depth : group.repeatDepth;
  }
}

// The numbers of a group begin behind those of all groups before it.
void ContentModel::LinkPlaces() {
  links_.assign(places_.size(), Link{});
  std::vector<std::uint32_t> begin(places_.size(), 0);
  std::uint32_t free = 0;
  for (std::size_t at = 0; at < places_.size(); ++at) {
    const Node& node = places_[at];
    if (node.kind != Kind::kChild) {
      begin[at] = free;
      free += node.mandatory + 2;
    }
    if (at == 0) continue;
    Link& link = links_[at];
    const Kind kind = places_[node.parent].kind;
    const bool ordered = kind == Kind::kSeq;
    link.before = begin[node.parent] + (ordered ? node.mandatoryBefore : 0);
    link.behind = link.before + (ordered ? (node.nullable ? 0 : 1) : kind == Kind::kOne ? 1 : 0);
    link.unordered = kind == Kind::kMany;
    link.mayEnd = node.lastTop == 0;
  }
  links_[kStart].mayEnd = places_[kStart].nullable;
}

bool ContentModel::IndexNames(Symbol& symbol) {
  std::vector<Place> children;
  for (std::size_t at = 1; at < places_.size(); ++at) {
    if (places_[at].kind == Kind::kChild) children.push_back(static_cast<Place>(at));
  }
  first_.Reserve(children.size());
  // Of equal names the first comes first.
  std::stable_sort(children.begin(), children.end(),
                   [this](Place a, Place b) { return places_[a].symbol < places_[b].symbol; });
  std::uint32_t same = 0;
  for (std::size_t i = 0; i < children.size(); ++i) {
    symbol = places_[children[i]].symbol;
    const bool again = i != 0 && places_[children[i - 1]].symbol == symbol;
    same = again ? same + 1 : 1;
    if (same > kMostPlaces) return false;
    if (again) {
      places_[children[i - 1]].nextSame = children[i];
      ambiguous_ = true;
    } else {
      first_.Insert(symbol, children[i]);
    }
  }
  return true;
}

bool ContentModel::Finish(Symbol& symbol) {
  FindNullable();
  FindEnds();
  LinkPlaces();
  return IndexNames(symbol);
}

// Matching ----------------------------------------------------------------------------------------

bool ContentModel::MayFollow(Place from, Place next) const noexcept {
  const Node& last = places_[from];
  const Node& first = places_[next];
  if (from == kStart) return first.firstTop == 0;
  // A group that repeats and in which one can come last and the other first.
  const auto repeats = [&](std::uint16_t depth) {
    return depth != kNever && last.lastTop <= depth && first.firstTop <= depth;
  };
  if (from == next) return repeats(first.repeatDepth);
  // Up to the smallest group that holds both.
  Place a = from;
  Place b = next;
  while (places_[a].parent != places_[b].parent) {
    Place& deeper = places_[a].depth >= places_[b].depth ? a : b;
    Place& other = &deeper == &a ? b : a;
    if (places_[deeper].depth == places_[other].depth) other = places_[other].parent;
    deeper = places_[deeper].parent;
  }
  const Node& before = places_[a];
  const Node& after = places_[b];
  const Node& group = places_[before.parent];
  if (group.kind == Kind::kSeq && before.index < after.index && last.lastTop <= before.depth &&
      first.firstTop <= after.depth) {
    const std::uint32_t between =
        after.mandatoryBefore - before.mandatoryBefore - (before.nullable ? 0 : 1);
    if (between == 0) return true;
  }
  return repeats(group.repeatDepth);
}

std::vector<Symbol> ContentModel::Expected(std::span<const Place> states) const {
  std::vector<Symbol> names;
  SymbolTable known;
  known.Reserve(places_.size());
  for (Place next = 1; next < places_.size(); ++next) {
    const Node& node = places_[next];
    if (node.kind != Kind::kChild || known.Find(node.symbol) != kNoSymbol) continue;
    const bool may = std::any_of(states.begin(), states.end(),
                                 [&](Place from) { return MayFollow(from, next); });
    if (!may) continue;
    known.Insert(node.symbol, next);
    names.push_back(node.symbol);
  }
  return names;
}

}  // namespace kx::xdr
