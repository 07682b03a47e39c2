// See child_positions.h.
#include "platform/dom/child_positions.h"

#include "platform/dom/cursor.h"
#include "platform/dom/document_data.h"

namespace kx::dom {

namespace {

bool IsAttributeList(ListId list) { return (list & kInlineTextBit) != 0; }

Cursor FirstOf(const DocumentData& data, ListId list) {
  const Cursor owner(&data, list & ~kInlineTextBit);
  return IsAttributeList(list) ? owner.FirstAttribute() : owner.FirstChild();
}

Cursor LastOf(const DocumentData& data, ListId list) {
  const Cursor owner(&data, list & ~kInlineTextBit);
  if (!IsAttributeList(list)) return owner.LastChild();
  // The first attribute's link to the previous one leads to the last.
  return owner.FirstAttribute() ? owner.FirstAttribute().Previous() : Cursor();
}

// Goes `steps` items on, or back when negative.
Cursor Step(Cursor at, std::int64_t steps) {
  for (; steps > 0; --steps) at = at.Next();
  for (; steps < 0; ++steps) at = at.Previous();
  return at;
}

// What is known of a list after it was counted; null when it is short or the content is frozen.
ChildPositions::Place* PlaceOf(DocumentData& data, ListId list, std::uint32_t& count) {
  ChildPositions* positions = data.Positions();
  if (positions != nullptr) {
    if (ChildPositions::Place* place = positions->Find(list)) return place;
  }
  count = 0;
  for (Cursor at = FirstOf(data, list); at; at = at.Next()) ++count;
  if (positions == nullptr || count <= ChildPositions::kShortList) return nullptr;
  return &positions->Remember(list, {count, 0, FirstOf(data, list).Id()});
}

NodeId FindByPlace(const DocumentData& data, ListId list, ChildPositions::Place& place,
                   std::uint32_t index) {
  if (index >= place.length) return kNoNode;
  // From the nearest of the first item, the last one, and the place.
  std::int64_t best = index;
  Cursor from = FirstOf(data, list);
  const std::int64_t fromLast = static_cast<std::int64_t>(index) - (place.length - 1);
  if (-fromLast < best) {
    best = -fromLast;
    from = LastOf(data, list);
  }
  std::int64_t steps = from == FirstOf(data, list) ? index : fromLast;
  const std::int64_t fromPlace = static_cast<std::int64_t>(index) - place.index;
  if (place.node != kNoNode && (fromPlace < 0 ? -fromPlace : fromPlace) < best) {
    from = Cursor(&data, place.node);
    steps = fromPlace;
  }
  place.node = Step(from, steps).Id();
  place.index = index;
  return place.node;
}

std::uint32_t CountFrom(Cursor element) {
  std::uint32_t count = 0;
  for (; element; element = element.NextElement()) ++count;
  return count;
}

Cursor PreviousElement(Cursor at) {
  do {
    at = at.Previous();
  } while (at && !at.IsElement());
  return at;
}

// What is known of the elements below `parent`; null when they are few or the content is frozen.
ChildPositions::ElementPlace* PlaceOfElements(DocumentData& data, NodeId parent,
                                              std::uint32_t& count) {
  ChildPositions* positions = data.Positions();
  if (positions != nullptr) {
    if (ChildPositions::ElementPlace* place = positions->FindElements(parent)) return place;
  }
  const Cursor first = Cursor(&data, parent).FirstChildElement();
  count = CountFrom(first);
  if (positions == nullptr || count <= ChildPositions::kShortList) return nullptr;
  return &positions->RememberElements(parent, {count, 0, first.Id()});
}

void FillTable(const DocumentData& data, NodeId parent, ChildPositions::ElementPlace& place) {
  place.table.clear();
  place.table.reserve(place.length);
  Cursor at = Cursor(&data, parent).FirstChildElement();
  for (; at; at = at.NextElement()) place.table.push_back(at.Id());
}

NodeId FindByPlace(const DocumentData& data, NodeId parent, ChildPositions::ElementPlace& place,
                   std::uint32_t index) {
  if (index >= place.length) return kNoNode;
  if (!place.table.empty()) return place.table[index];
  Cursor at(&data, place.node);
  std::int64_t steps = static_cast<std::int64_t>(index) - place.index;
  if (!at || -steps > static_cast<std::int64_t>(index)) {
    at = Cursor(&data, parent).FirstChildElement();
    steps = index;
  }
  place.walked += static_cast<std::uint64_t>(steps < 0 ? -steps : steps) / 2;
  if (place.walked > place.length) {
    FillTable(data, parent, place);
    return place.table[index];
  }
  for (; steps > 0; --steps) at = at.NextElement();
  for (; steps < 0; ++steps) at = PreviousElement(at);
  place.node = at.Id();
  place.index = index;
  return place.node;
}

}  // namespace

std::uint32_t CountItems(DocumentData& data, ListId list) {
  std::uint32_t count = 0;
  const ChildPositions::Place* place = PlaceOf(data, list, count);
  return place != nullptr ? place->length : count;
}

NodeId FindItem(DocumentData& data, ListId list, std::uint32_t index) {
  // The beginning of a list is found by walking, whatever its length.
  if (index <= ChildPositions::kShortList) {
    Cursor at = FirstOf(data, list);
    for (std::uint32_t i = 0; at && i < index; ++i) at = at.Next();
    return at.Id();
  }
  std::uint32_t count = 0;
  ChildPositions::Place* place = PlaceOf(data, list, count);
  if (place != nullptr) return FindByPlace(data, list, *place, index);
  return index < count ? Step(FirstOf(data, list), index).Id() : kNoNode;
}

std::uint32_t CountElements(DocumentData& data, NodeId parent) {
  std::uint32_t count = 0;
  const ChildPositions::ElementPlace* place = PlaceOfElements(data, parent, count);
  return place != nullptr ? place->length : count;
}

NodeId FindElement(DocumentData& data, NodeId parent, std::uint32_t index) {
  if (ChildPositions* positions = data.Positions()) {
    if (ChildPositions::ElementPlace* place = positions->FindElements(parent)) {
      return FindByPlace(data, parent, *place, index);
    }
  }
  // The beginning is found by walking, whatever the length; text may stand between the elements.
  Cursor at = Cursor(&data, parent).FirstChild();
  std::uint32_t passed = 0;
  for (std::uint32_t i = 0; at && i <= 2 * ChildPositions::kShortList; ++i, at = at.Next()) {
    if (at.IsElement() && passed++ == index) return at.Id();
  }
  if (!at) return kNoNode;
  std::uint32_t count = 0;
  if (ChildPositions::ElementPlace* place = PlaceOfElements(data, parent, count)) {
    return FindByPlace(data, parent, *place, index);
  }
  ChildPositions::ElementPlace once{{count, 0, kNoNode}, 0, {}};
  return FindByPlace(data, parent, once, index);
}

void ChildPositions::NoteElementInserted(NodeId parent, NodeId item, NodeId before, bool atFirst) {
  ElementPlace* place = FindElements(parent);
  if (place == nullptr) return;
  ++place->length;
  if (before == kNoNode) {
    if (!place->table.empty()) place->table.push_back(item);
    return;
  }
  if (!place->table.empty()) place->walked = 0;
  place->table.clear();
  if (place->node == kNoNode) return;
  if (atFirst || before == place->node) {
    ++place->index;
  } else {
    place->node = kNoNode;
  }
}

namespace {

// The nearest element, unless many other nodes stand before it.
template <typename Step>
Cursor NearbyElement(Cursor at, Step step) {
  for (std::uint32_t i = 0; at && i < ChildPositions::kShortList; ++i) {
    at = step(at);
    if (at && at.IsElement()) return at;
  }
  return {};
}

}  // namespace

void ChildPositions::NoteElementRemoved(NodeId parent, const Cursor& item) noexcept {
  ElementPlace* place = FindElements(parent);
  if (place == nullptr) return;
  --place->length;
  if (!place->table.empty()) {
    if (place->table.back() == item.Id()) {
      place->table.pop_back();
    } else {
      place->table.clear();
      place->walked = 0;
    }
  }
  if (place->node == kNoNode) return;
  if (item.Id() == place->node) {
    // A neighbour takes the place: the next one with its number, or the one before it.
    Cursor neighbour = NearbyElement(item, [](const Cursor& at) { return at.Next(); });
    if (!neighbour) {
      neighbour = NearbyElement(item, [](const Cursor& at) { return at.Previous(); });
      if (neighbour) --place->index;
    }
    place->node = neighbour.Id();
  } else if (!item.Previous()) {
    --place->index;
  } else if (item.Next()) {
    place->node = kNoNode;
  }
}

void ChildPositions::NoteInserted(ListId list, NodeId before, bool atFirst) noexcept {
  Place* place = Find(list);
  if (place == nullptr) return;
  ++place->length;
  if (before == kNoNode || place->node == kNoNode) return;
  if (atFirst || before == place->node) {
    ++place->index;
  } else {
    place->node = kNoNode;
  }
}

void ChildPositions::NoteRemoved(ListId list, NodeId item, NodeId previous, NodeId next) noexcept {
  Place* place = Find(list);
  if (place == nullptr) return;
  --place->length;
  if (place->node == kNoNode) return;
  if (item == place->node) {
    // The neighbour takes the place; the number is its own.
    place->node = next != kNoNode ? next : previous;
    if (next == kNoNode && place->index != 0) --place->index;
  } else if (previous == kNoNode) {
    --place->index;
  } else if (next != kNoNode) {
    place->node = kNoNode;
  }
}

}  // namespace kx::dom
