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
  [[nodiscard]] const Item& Get(const Variant& index) const { return Locate(index)->item; }

  /// The item under `key`, or null; raises nothing.
  [[nodiscard]] const Item* Find(std::string_view key) const noexcept;

  /// Take an item out. Raises as the look-ups.
  void RemoveAt(std::int32_t position) { Erase(FindAt(position)); }
  void Remove(std::string_view key) { Erase(FindKey(key)); }
  void Remove(const Variant& index) { Erase(Locate(index)); }
  void Clear() noexcept;

  /// Begins before the first item. Sees items added behind it, skips items removed ahead of it.
  [[nodiscard]] Enumerator Enumerate() { return Enumerator(Counted<KeyedCollection>(this)); }

 private:
  using Iterator = typename Entries::iterator;
  using KeyMap = std::unordered_map<std::string, Iterator, text::CaselessHash, text::CaselessEqual>;

  struct Entry : RankNode {
    explicit Entry(Item value) : item(std::move(value)) {}
    Item item;
    Iterator self;
    std::optional<typename KeyMap::iterator> keyPlace;
  };

  ~KeyedCollection() override = default;

  [[nodiscard]] Iterator FindAt(std::int32_t position) const;
  [[nodiscard]] Iterator FindKey(std::string_view key) const;
  [[nodiscard]] Iterator Locate(const Variant& index) const;
  void Insert(Iterator place, Item item, const std::string_view* key);
  void Erase(Iterator entry);

  mutable Entries entries_;  // iterators handed out by const look-ups stay private
  RankTree ranks_;
  KeyMap keys_;
  Enumerator* enumerators_ = nullptr;  // all that exist, doubly linked
};

}  // namespace kx::runtime
