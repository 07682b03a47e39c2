// Where the nodes of a tree lead: for each node (by rank) the first few, in document order, of the
// nodes that some path gives from it; or the last few, counted from the end.
//
// Invariant: the places of a row are in order, without duplicates, unused ones at its end.
#pragma once

#include "platform/patterns/tree_index.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kx::patterns {

enum class LeadEnd : unsigned char { kFirst, kLast };

class LeadTable {
 public:
  /// Places that a row may have at most.
  static constexpr std::uint32_t kMostPlaces = 64;
  /// Places that a whole table may have at most; wider ones are not worth their memory.
  static constexpr std::size_t kMostCells = std::size_t{1} << 25U;

  LeadTable() = default;
  /// No node leads anywhere. `places`: from 1 to kMostPlaces.
  LeadTable(Rank count, std::uint32_t places, LeadEnd end);
  /// An empty one of the same shape.
  [[nodiscard]] LeadTable Blank() const { return {Count(), places_, end_}; }
  /// True when such a table may be made.
  [[nodiscard]] static bool Fits(Rank count, std::uint64_t places) noexcept {
    return places <= kMostPlaces && count * places <= kMostCells;
  }

  [[nodiscard]] Rank Count() const noexcept { return count_; }
  [[nodiscard]] bool IsMade() const noexcept { return places_ != 0; }
  /// Cells, the unit of work of a pass over the table.
  [[nodiscard]] std::size_t Cells() const noexcept { return cells_.size(); }

  /// The node that `from` leads to at a place counted from 0; kNoRank when there are not so many.
  [[nodiscard]] Rank At(Rank from, std::uint32_t place) const noexcept;
  [[nodiscard]] Rank First(Rank from) const noexcept { return At(from, 0); }
  [[nodiscard]] bool LeadsNowhere(Rank from) const noexcept {
    return cells_[std::size_t{from} * places_] == kNoRank;
  }
  /// `from` leads to `to` as well.
  void Add(Rank from, Rank to);
  /// `from` leads to all that `to` leads to in `next`, which has the same shape (or is this).
  void Join(Rank from, const LeadTable& next, Rank to);

 private:
  void JoinWide(Rank from, const LeadTable& next, Rank to);
  /// What is kept of a rank: smaller for what is nearer to the end that counts.
  [[nodiscard]] Rank Turned(Rank rank) const noexcept {
    return end_ == LeadEnd::kFirst || rank == kNoRank ? rank : count_ - 1 - rank;
  }

  Rank count_ = 0;
  std::uint32_t places_ = 0;
  LeadEnd end_ = LeadEnd::kFirst;
  std::vector<Rank> cells_;  // by row and place
};

inline LeadTable::LeadTable(Rank count, std::uint32_t places, LeadEnd end)
    : count_(count), places_(places), end_(end), cells_(std::size_t{count} * places, kNoRank) {}

inline Rank LeadTable::At(Rank from, std::uint32_t place) const noexcept {
  return Turned(cells_[std::size_t{from} * places_ + place]);
}

inline void LeadTable::Join(Rank from, const LeadTable& next, Rank to) {
  if (places_ != 1) return JoinWide(from, next, to);
  if (next.cells_[to] < cells_[from]) cells_[from] = next.cells_[to];
}

}  // namespace kx::patterns
