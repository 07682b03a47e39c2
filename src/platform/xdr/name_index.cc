// See name_index.h.
#include "platform/xdr/name_index.h"

#include "platform/text/compare.h"

namespace kx::xdr {

namespace {

constexpr std::size_t kShort = 16;  // bytes that a key holds

struct Seeds {
  std::uint64_t low = text::HashExact("low");
  std::uint64_t high = text::HashExact("high");
};

const Seeds& ProcessSeeds() noexcept {
  static const Seeds seeds;
  return seeds;
}

// Both halves of the product depend on all bits of the factors.
std::uint64_t Fold(std::uint64_t a, std::uint64_t b) noexcept {
#if defined(__SIZEOF_INT128__)
  __extension__ using Wide = unsigned __int128;
  const Wide product = static_cast<Wide>(a) * b;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64U);
#else
  const std::uint64_t crossed = (a >> 32U) * (b & 0xFFFFFFFFU) ^ (b >> 32U) * (a & 0xFFFFFFFFU);
  return a * b ^ crossed ^ (a >> 32U) * (b >> 32U);
#endif
}

}  // namespace

std::size_t NameIndex::Hash(const dom::NameKey& key, std::uint32_t length,
                            std::string_view name) noexcept {
  if (length > kShort) return text::HashExact(name);
  const Seeds& seeds = ProcessSeeds();
  return Fold(key.low ^ seeds.low ^ length, key.high ^ seeds.high);
}

std::uint32_t NameIndex::Find(const dom::NameKey& key, std::string_view name) const noexcept {
  if (slots_.empty()) return kNone;
  for (std::uint32_t at =
           slots_[Hash(key, static_cast<std::uint32_t>(name.size()), name) & (slots_.size() - 1)];
       at != kNone; at = entries_[at].next) {
    const Entry& entry = entries_[at];
    if (entry.key.low == key.low && entry.key.high == key.high && entry.length == name.size() &&
        (name.size() <= kShort || names_[at] == name)) {
      return entry.value;
    }
  }
  return kNone;
}

void NameIndex::Grow() {
  slots_.assign(slots_.empty() ? 16 : slots_.size() * 2, kNone);
  for (std::uint32_t at = 0; at < entries_.size(); ++at) {
    Entry& entry = entries_[at];
    std::uint32_t& slot = slots_[Hash(entry.key, entry.length, names_[at]) & (slots_.size() - 1)];
    entry.next = slot;
    slot = at;
  }
}

std::uint32_t NameIndex::Insert(std::string_view name, std::uint32_t value) {
  const std::uint32_t known = Find(name);
  if (known != kNone) return known;
  const auto at = static_cast<std::uint32_t>(entries_.size());
  const auto length = static_cast<std::uint32_t>(name.size());
  entries_.push_back({dom::NameTable::KeyOf(name), length, value, kNone});
  names_.emplace_back(length > kShort ? name : std::string_view());
  if (entries_.size() * 2 > slots_.size()) {
    Grow();
  } else {
    std::uint32_t& slot = slots_[Hash(entries_[at].key, length, name) & (slots_.size() - 1)];
    entries_[at].next = slot;
    slot = at;
  }
  return value;
}

}  // namespace kx::xdr
