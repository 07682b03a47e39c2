// The keyed collection: an ordered list of items at positions 1 to Count, each with an optional
// key. Keys are unique and compare without regard to case; the empty text is a key like any other;
// keys stay with their items while positions close up, and cannot be read back.
//
// A look-up by key is a hash look-up, one by position takes logarithmic time, however items were
// added and removed. Enumerators point at an item, not at a number, and stay right while the
// collection changes; they keep it alive. For one thread at a time.
#pragma once

#include "kxmessage/variant.h"

#include "platform/runtime/counted.h"
#include "platform/runtime/error.h"
#include "platform/runtime/rank_tree.h"
#include "platform/text/compare.h"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace kx::runtime {

/// Where a look-up argument points: a position, or a key.
struct CollectionIndex {
  std::optional<std::int32_t> position;
  std::string key;
};

/// Reads a look-up argument: every text is a key, even one of digits; numbers, booleans and dates
/// are positions, rounded half to even; empty is position 0; an object stands for its default
/// value. Raises (as CollectionError): 13 for Null, nothing, bytes, error values and objects
/// without value; 5 for a missing argument; 6 for a number that does not fit.
[[nodiscard]] CollectionIndex ReadCollectionIndex(const Variant& index);

/// A collection of `Item`, a copyable reference type. Made by MakeCounted.
template <typename Item>
class KeyedCollection final : public PlainCounted {
  struct Entry;
  using Entries = std::list<Entry>;

 public:
  class Enumerator;

  KeyedCollection() = default;
  KeyedCollection(const KeyedCollection&) = delete;
  KeyedCollection& operator=(const KeyedCollection&) = delete;

  [[nodiscard]] std::int32_t Count() const noexcept {
    return static_cast<std::int32_t>(entries_.size());
  }

  /// Adds at the end, without a key.
  void Add(Item item);
  /// Adds at the end under `key`, "" included. Raises: 457 when the key is present; nothing is
  /// added then.
  void Add(Item item, std::string_view key);
  /// Adds with arguments as a caller gives them: `key`, `before` and `after` may be missing.
  /// Raises: 13 for a key that is no text; 5 when both places are given; those of a look-up for
  /// the place; 457. Nothing is added then.
  void Add(Item item, const Variant& key, const Variant& before, const Variant& after);

  /// The item at a position, under a key, or as a caller names it. Raises: 9 outside 1 to Count, 5
  /// for an unknown key, and those of ReadCollectionIndex.
  [[nodiscard]] const Item& At(std::int32_t position) const { return FindAt(position)->item; }
  [[nodiscard]] const Item& Get(std::string_view key) const { return FindKey(key)->item; }
  [[nodiscard]] const Item& GetAny(const Variant& index) const { return Locate(index)->item; }

  /// The item under `key`, or null; raises nothing.
  [[nodiscard]] const Item* Find(std::string_view key) const noexcept;

  /// Take an item out. Raises as the look-ups.
  void RemoveAt(std::int32_t position) { Erase(FindAt(position)); }
  void RemoveKey(std::string_view key) { Erase(FindKey(key)); }
  void RemoveAny(const Variant& index) { Erase(Locate(index)); }
  void Clear() noexcept;

  /// Begins before the first item. Sees items added behind it, skips items removed ahead of it.
  [[nodiscard]] Enumerator Enumerate();

 private:
  // Entries live in the list; the map's keys stay where they are, so an entry can point at its own.
  struct Entry : RankNode {
    explicit Entry(Item value) : item(std::move(value)) {}
    Item item;
    typename Entries::iterator self;
    const std::string* key = nullptr;
  };
  using KeyMap = std::unordered_map<std::string, Entry*, text::CaselessHash, text::CaselessEqual>;

  ~KeyedCollection() override = default;

  [[nodiscard]] Entry* FindAt(std::int32_t position) const;
  [[nodiscard]] Entry* FindKey(std::string_view key) const;
  [[nodiscard]] Entry* Locate(const Variant& index) const;
  void Insert(Entry* successor, Item item, const std::string* key);
  void Erase(Entry* entry) noexcept;

  Entries entries_;
  RankTree ranks_;
  KeyMap keys_;
  Enumerator* enumerators_ = nullptr;  // all that exist, in a chain
};

/// Walks a collection that may change meanwhile. It remembers the item that it gave last; when that
/// is removed, the one before it takes its place, so that the walk goes on with the successor.
template <typename Item>
class KeyedCollection<Item>::Enumerator {
 public:
  Enumerator(const Enumerator& other) noexcept : Enumerator(other.collection_, other.last_) {}
  Enumerator& operator=(const Enumerator& other) noexcept {
    if (this == &other) return *this;
    Unlink();
    collection_ = other.collection_;
    last_ = other.last_;
    Link();
    return *this;
  }
  ~Enumerator() { Unlink(); }

  /// The next item, or nothing at the end. An item that is added behind the end is found by a later
  /// call.
  [[nodiscard]] std::optional<Item> Next() {
    Entries& entries = collection_->entries_;
    const auto next = last_ == nullptr ? entries.begin() : std::next(last_->self);
    if (next == entries.end()) return std::nullopt;
    last_ = &*next;
    return next->item;
  }

  /// Begins again before the first item.
  void Reset() noexcept { last_ = nullptr; }

 private:
  friend class KeyedCollection;

  explicit Enumerator(Counted<KeyedCollection> collection, Entry* last = nullptr) noexcept
      : collection_(std::move(collection)), last_(last) {
    Link();
  }

  void Link() noexcept {
    nextEnumerator_ = collection_->enumerators_;
    previousLink_ = &collection_->enumerators_;
    if (nextEnumerator_ != nullptr) nextEnumerator_->previousLink_ = &nextEnumerator_;
    collection_->enumerators_ = this;
  }
  void Unlink() noexcept {
    *previousLink_ = nextEnumerator_;
    if (nextEnumerator_ != nullptr) nextEnumerator_->previousLink_ = previousLink_;
  }
  void Leave(const Entry* removed, Entry* predecessor) noexcept {
    if (last_ == removed) last_ = predecessor;
  }

  Counted<KeyedCollection> collection_;
  Entry* last_;  // null before the first item
  Enumerator* nextEnumerator_ = nullptr;
  Enumerator** previousLink_ = nullptr;
};

template <typename Item>
auto KeyedCollection<Item>::Enumerate() -> Enumerator {
  return Enumerator(Counted<KeyedCollection>(this));
}

template <typename Item>
void KeyedCollection<Item>::Add(Item item) {
  Insert(nullptr, std::move(item), nullptr);
}

template <typename Item>
void KeyedCollection<Item>::Add(Item item, std::string_view key) {
  const std::string text(key);
  Insert(nullptr, std::move(item), &text);
}

template <typename Item>
void KeyedCollection<Item>::Add(Item item, const Variant& key, const Variant& before,
                                const Variant& after) {
  if (!key.IsMissing() && !key.IsText()) RaiseCollectionError(kTypeMismatch);
  if (!before.IsMissing() && !after.IsMissing()) RaiseCollectionError(kInvalidProcedureCall);
  Entry* successor = nullptr;
  if (!before.IsMissing()) {
    successor = Locate(before);
  } else if (!after.IsMissing()) {
    const auto next = std::next(Locate(after)->self);
    if (next != entries_.end()) successor = &*next;
  }
  Insert(successor, std::move(item), key.IfText());
}

template <typename Item>
const Item* KeyedCollection<Item>::Find(std::string_view key) const noexcept {
  const auto found = keys_.find(key);
  return found != keys_.end() ? &found->second->item : nullptr;
}

template <typename Item>
void KeyedCollection<Item>::Clear() noexcept {
  for (Enumerator* each = enumerators_; each != nullptr; each = each->nextEnumerator_) {
    each->Reset();
  }
  keys_.clear();
  ranks_.Clear();
  // An item's end may lead back here, so the collection is empty before the first one goes.
  Entries ending;
  ending.swap(entries_);
}

template <typename Item>
auto KeyedCollection<Item>::FindAt(std::int32_t position) const -> Entry* {
  if (position < 1 || position > Count()) RaiseCollectionError(kSubscriptOutOfRange);
  return static_cast<Entry*>(ranks_.At(static_cast<std::size_t>(position) - 1));
}

template <typename Item>
auto KeyedCollection<Item>::FindKey(std::string_view key) const -> Entry* {
  const auto found = keys_.find(key);
  if (found == keys_.end()) RaiseCollectionError(kInvalidProcedureCall);
  return found->second;
}

template <typename Item>
auto KeyedCollection<Item>::Locate(const Variant& index) const -> Entry* {
  const CollectionIndex place = ReadCollectionIndex(index);
  return place.position ? FindAt(*place.position) : FindKey(place.key);
}

// The entry joins the list last, when nothing can fail any more.
template <typename Item>
void KeyedCollection<Item>::Insert(Entry* successor, Item item, const std::string* key) {
  Entries fresh;
  Entry& entry = fresh.emplace_back(std::move(item));
  entry.self = fresh.begin();
  if (key != nullptr) {
    const auto [place, isNew] = keys_.try_emplace(*key, &entry);
    if (!isNew) RaiseCollectionError(kKeyAlreadyPresent);
    entry.key = &place->first;
  }
  entries_.splice(successor != nullptr ? successor->self : entries_.end(), fresh);
  ranks_.InsertBefore(successor, &entry);
}

template <typename Item>
void KeyedCollection<Item>::Erase(Entry* entry) noexcept {
  Entry* predecessor = entry->self == entries_.begin() ? nullptr : &*std::prev(entry->self);
  for (Enumerator* each = enumerators_; each != nullptr; each = each->nextEnumerator_) {
    each->Leave(entry, predecessor);
  }
  if (entry->key != nullptr) keys_.erase(keys_.find(*entry->key));
  ranks_.Remove(entry);
  Entries ending;
  ending.splice(ending.end(), entries_, entry->self);
}

}  // namespace kx::runtime
