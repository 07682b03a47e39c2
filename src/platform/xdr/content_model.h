// What children an element type takes, in which order: a regular expression over its declared
// children, matched as such, ambiguous ones included.
//
// The expression is kept as its tree, not as an automaton: whether one place may follow another is
// read off the tree, so that a model takes memory linear in its declarations and a step costs the
// depth of its groups. A state is the place that was matched last; of an ambiguous model the
// set of all such places, which all bear the same name and are at most kMostPlaces.
//
// Invariants: place 0 is the whole content and, as a state, the beginning; a group's index is lower
// than that of everything in it; children of one group have ascending `index`.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace kx::xdr {

/// A number that stands for a name, in one schema.
using Symbol = std::uint32_t;
inline constexpr Symbol kNoSymbol = 0xFFFFFFFFU;

enum class Order : std::uint8_t { kSeq, kOne, kMany };

/// A table from symbols to numbers: open addressing, filled once.
class SymbolTable {
 public:
  /// The number that was entered first for `symbol`, or kNoSymbol.
  [[nodiscard]] std::uint32_t Find(Symbol symbol) const noexcept {
    if (slots_.empty()) return kNoSymbol;
    for (std::size_t at = symbol & mask_;; at = (at + 1) & mask_) {
      if (slots_[at].symbol == symbol) return slots_[at].value;
      if (slots_[at].symbol == kNoSymbol) return kNoSymbol;
    }
  }
  /// Makes room for `count` symbols; called once, first.
  void Reserve(std::size_t count);
  /// Enters `value` unless the symbol is there already.
  void Insert(Symbol symbol, std::uint32_t value);

 private:
  struct Slot {
    Symbol symbol = kNoSymbol;
    std::uint32_t value = 0;
  };
  std::vector<Slot> slots_;
  std::size_t mask_ = 0;
};

class ContentModel {
 public:
  using Place = std::uint32_t;
  static constexpr Place kStart = 0;
  /// How often one name may stand in a model, and how deep groups may nest.
  static constexpr std::uint32_t kMostPlaces = 64;
  static constexpr std::uint32_t kMostDepth = 250;

  /// No declared children.
  ContentModel() : ContentModel(Order::kMany) {}
  /// The expression so far is an empty group of that order.
  explicit ContentModel(Order order);

  // Building: in document order, each place after its group.

  /// Adds a group to the group `parent` and returns it. Occurrences count for the group as a whole.
  Place AddGroup(Place parent, Order order, bool optional, bool repeats);
  Place AddChild(Place parent, Symbol symbol, bool optional, bool repeats);
  [[nodiscard]] std::uint32_t DepthOf(Place place) const noexcept { return places_[place].depth; }
  /// Works out what the questions below need. False when a name stands in more than kMostPlaces
  /// places, of which `symbol` is then one.
  [[nodiscard]] bool Finish(Symbol& symbol);

  // Matching.

  /// True when some name stands in two places, so that a state is a set.
  [[nodiscard]] bool IsAmbiguous() const noexcept { return ambiguous_; }
  /// The first place of that name; kStart when there is none.
  [[nodiscard]] Place FindPlace(Symbol symbol) const noexcept {
    const std::uint32_t place = first_.Find(symbol);
    return place == kNoSymbol ? kStart : place;
  }
  /// The next place of the same name; kStart behind the last.
  [[nodiscard]] Place NextPlace(Place place) const noexcept { return places_[place].nextSame; }
  /// True when a child at `next` may come directly after one at `from` (or first, from kStart).
  [[nodiscard]] bool Takes(Place from, Place next) const noexcept {
    const Link& last = links_[from];
    const Link& first = links_[next];
    // Side by side in one group, with nothing between that must be there; else by the tree.
    return (last.behind == first.before && (from < next || first.unordered)) ||
           MayFollow(from, next);
  }
  /// The same, read off the tree.
  [[nodiscard]] bool MayFollow(Place from, Place next) const noexcept;
  /// True when the content may end after a child at `place` (or be empty, at kStart).
  [[nodiscard]] bool MayEnd(Place place) const noexcept { return links_[place].mayEnd; }
  /// The names that may come next from any of the states, in declared order, each once.
  [[nodiscard]] std::vector<Symbol> Expected(std::span<const Place> states) const;
  [[nodiscard]] bool HasChildren() const noexcept { return hasChildren_; }
  /// How many places there are: the beginning, and one for each declaration and group.
  [[nodiscard]] std::size_t Size() const noexcept { return places_.size(); }

 private:
  enum class Kind : std::uint8_t { kSeq, kOne, kMany, kChild };
  static constexpr std::uint16_t kNever = 0xFFFF;

  struct Node {
    Place parent = 0;
    Symbol symbol = kNoSymbol;
    std::uint32_t index = 0;      ///< among the places of the same group
    std::uint32_t mandatory = 0;  ///< of a group: how many of its places cannot be left out
    std::uint32_t mandatoryBefore = 0;
    std::uint32_t count = 0;  ///< places of a group
    Place nextSame = 0;
    std::uint16_t depth = 0;
    /// The depth of the largest group in which this can come first, or last; the own depth when in
    /// none.
    std::uint16_t firstTop = 0;
    std::uint16_t lastTop = 0;
    /// The depth of the smallest group around this, itself included, that may repeat.
    std::uint16_t repeatDepth = kNever;
    Kind kind = Kind::kChild;
    bool nullable = false;
    bool repeats = false;
  };
  /// What most steps need of a place. Within one group `behind` of a place is `before` of another
  /// exactly when nothing that must be there stands between; groups share no numbers.
  struct Link {
    std::uint32_t before = 0;
    std::uint32_t behind = 0;
    bool unordered = false;  ///< in a group of order many
    bool mayEnd = false;
  };

  Place Add(Place parent, Node node);
  void FindNullable();
  void FindEnds();
  void LinkPlaces();
  [[nodiscard]] bool IndexNames(Symbol& symbol);

  std::vector<Node> places_;
  std::vector<Link> links_;
  SymbolTable first_;
  bool ambiguous_ = false;
  bool hasChildren_ = false;
};

}  // namespace kx::xdr
