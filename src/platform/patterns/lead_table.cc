// See lead_table.h.
#include "platform/patterns/lead_table.h"

#include <algorithm>
#include <array>

namespace kx::patterns {

void LeadTable::Add(Rank from, Rank to) {
  Rank* const row = cells_.data() + std::size_t{from} * places_;
  Rank* const end = row + places_;
  Rank* const at = std::lower_bound(row, end, Turned(to));
  if (at == end || *at == Turned(to)) return;
  std::copy_backward(at, end - 1, end);
  *at = Turned(to);
}

void LeadTable::JoinWide(Rank from, const LeadTable& next, Rank to) {
  if (next.LeadsNowhere(to)) return;
  Rank* const row = cells_.data() + std::size_t{from} * places_;
  const Rank* const other = next.cells_.data() + std::size_t{to} * places_;
  std::array<Rank, std::size_t{kMostPlaces} * 2> joined;
  Rank* const end = std::set_union(row, std::find(row, row + places_, kNoRank), other,
                                   std::find(other, other + places_, kNoRank), joined.data());
  std::copy_n(joined.data(), std::min<std::ptrdiff_t>(end - joined.data(), places_), row);
}

}  // namespace kx::patterns
