// The sets that an expression gives from all nodes of a tree, as spans of one list: what overlaps
// is listed once. "b" lists the children of each node side by side; ".//b" lists all of them in
// document order, and what is below a node is a span of that; "../b" has the spans of the parents.
//
// Invariant: spans lie inside the list of members. In an ordered listing the spans of a node, one
// behind the other, are its set in document order without duplicates; in others a member may be
// met again.
#pragma once

#include "platform/patterns/tree_index.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace kx::patterns {

class SetListing {
 public:
  struct Span {
    std::uint32_t begin = 0;
    std::uint32_t end = 0;
  };
  /// One path's share. A node's set is that of its target, kNoRank for none; where there are no
  /// targets, each node is its own.
  struct Part {
    std::vector<Rank> targets;        ///< by the context node's rank
    std::vector<std::uint32_t> rows;  ///< by target: where its spans begin; one more for the end
    std::vector<Span> spans;
    std::vector<bool> missing;  ///< by target: what is not listed; may be shorter
  };

  /// Appends to the list of members. Returns the span.
  Span Append(const std::vector<Rank>& members);
  void Add(Part part) { parts_.push_back(std::move(part)); }
  void SetUnordered() noexcept { ordered_ = false; }

  [[nodiscard]] bool IsOrdered() const noexcept { return ordered_ && parts_.size() == 1; }
  [[nodiscard]] const std::vector<Rank>& Members() const noexcept { return members_; }
  /// True when the set of a node is listed.
  [[nodiscard]] bool Covers(Rank context) const;
  /// Calls `visit` with each span of a node's set until it answers true, which is the result then.
  template <class Visit>
  bool AnySpan(Rank context, const Visit& visit) const;
  /// How many spans and entries of the set of a node there are.
  [[nodiscard]] std::uint32_t SizeOf(Rank context) const;
  /// In an ordered listing, the member at a place counted from 0; kNoRank behind the last one.
  [[nodiscard]] Rank MemberAt(Rank context, std::uint64_t place) const;

 private:
  std::vector<Rank> members_;
  std::vector<Part> parts_;
  bool ordered_ = true;
};

template <class Visit>
bool SetListing::AnySpan(Rank context, const Visit& visit) const {
  for (const Part& part : parts_) {
    const Rank target = part.targets.empty() ? context : part.targets[context];
    if (target == kNoRank) continue;
    for (std::uint32_t i = part.rows[target]; i < part.rows[target + 1]; ++i) {
      if (visit(part.spans[i])) return true;
    }
  }
  return false;
}

}  // namespace kx::patterns
