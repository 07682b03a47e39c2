// See set_listing.h.
#include "platform/patterns/set_listing.h"

#include <algorithm>

namespace kx::patterns {

SetListing::Span SetListing::Append(const std::vector<Rank>& members) {
  const auto begin = static_cast<std::uint32_t>(members_.size());
  members_.insert(members_.end(), members.begin(), members.end());
  return {begin, static_cast<std::uint32_t>(members_.size())};
}

bool SetListing::Covers(Rank context) const {
  return std::all_of(parts_.begin(), parts_.end(), [context](const Part& part) {
    const Rank target = part.targets.empty() ? context : part.targets[context];
    return target == kNoRank || target >= part.missing.size() || !part.missing[target];
  });
}

std::uint32_t SetListing::SizeOf(Rank context) const {
  std::uint32_t size = 0;
  AnySpan(context, [&size](const Span& span) {
    size += span.end - span.begin;
    return false;
  });
  return size;
}

Rank SetListing::MemberAt(Rank context, std::uint64_t place) const {
  Rank found = kNoRank;
  AnySpan(context, [&](const Span& span) {
    const std::uint64_t size = span.end - span.begin;
    if (place < size) {
      found = members_[span.begin + place];
      return true;
    }
    place -= size;
    return false;
  });
  return found;
}

}  // namespace kx::patterns
