// See name_table.h.
#include "platform/dom/name_table.h"

#include <algorithm>
#include <bit>
#include <chrono>
#include <cstring>
#include <new>
#include <random>

namespace kx::dom {

namespace {

NameKey ProcessSeeds() {
  static const NameKey seeds = [] {
    std::uint64_t start = 0x9E3779B97F4A7C15U;
    try {
      std::random_device device;
      start ^= (std::uint64_t{device()} << 32U) ^ device();
    } catch (const std::exception&) {  // no source of randomness: the clock must do
      start ^=
          static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    }
    std::mt19937_64 generator(start);
    return NameKey{generator(), generator() | 1U};
  }();
  return seeds;
}

}  // namespace

NameTable::NameTable() : seeds_(ProcessSeeds()) {
  slots_.Extend(64);
  std::fill_n(slots_.data(), slots_.size(), 0U);
  qnames_.Append(QName{});  // 0: no name; as a prefix, the default namespace
  names_.Append(Name{0, kNoUri, 0, 0});
  uris_.Append(Uri{0, 0, 0});  // kNoUri
  uris_.Append(Uri{0, 0, 0});  // kEmptyUri
  const auto begin = AddCharacters(kXmlNamespace);
  uris_.Append(Uri{begin, static_cast<std::uint32_t>(kXmlNamespace.size()), 0});
  AddShortQName(KeyOf("xmlns"), 5);
  AddShortQName(KeyOf("xml"), 3);
  At(kXmlQName).binding = kXmlUri;
}

NameKey NameTable::KeyOf(std::string_view text) noexcept {
  NameKey key;
  const std::size_t size = std::min<std::size_t>(text.size(), 16);
  if (size >= 8) {
    std::memcpy(&key.low, text.data(), 8);
    if (size == 8) return key;
    // The last eight bytes, without those that the first eight hold already.
    std::memcpy(&key.high, text.data() + size - 8, 8);
    if constexpr (std::endian::native == std::endian::little) {
      key.high >>= 8 * (16 - size);
    } else {
      key.high <<= 8 * (16 - size);
    }
    return key;
  }
  if constexpr (std::endian::native == std::endian::little) {
    if (size >= 4) {  // two halves, which may overlap: the same bytes twice
      std::uint32_t first = 0;
      std::uint32_t last = 0;
      std::memcpy(&first, text.data(), 4);
      std::memcpy(&last, text.data() + size - 4, 4);
      key.low = first | std::uint64_t{last} << (8 * (size - 4));
      return key;
    }
  }
  char bytes[8] = {};
  for (std::size_t i = 0; i < size; ++i) bytes[i] = text[i];
  std::memcpy(&key.low, bytes, 8);
  return key;
}

std::uint32_t NameTable::HashText(std::string_view text) const noexcept {
  // Names of up to 16 bytes hash by their key alone; longer ones take in the rest, so that names
  // which begin alike do not share a slot.
  NameKey key = KeyOf(text);
  for (std::size_t at = 16; at < text.size(); at += 8) {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data() + at, std::min<std::size_t>(8, text.size() - at));
    key.high = MultiplyFold(key.high ^ word, seeds_.low | 1U);
  }
  return Hash(key, static_cast<std::uint32_t>(text.size()));
}

std::uint32_t NameTable::FindQName(std::string_view text) const noexcept {
  const NameKey key = KeyOf(text);
  if (text.size() <= 16) return FindShortQName(key, static_cast<std::uint32_t>(text.size()));
  std::uint32_t index = slots_[HashText(text) & (slots_.size() - 1)];
  while (index != 0 && QNameText(index) != text) index = qnames_[index].hashNext;
  return index;
}

std::uint32_t NameTable::InternQName(std::string_view text) {
  if (text.empty()) return 0;
  const std::uint32_t found = FindQName(text);
  return found != 0 ? found : AddQName(text, KeyOf(text), HashText(text));
}

std::uint32_t NameTable::AddQName(std::string_view text, NameKey key, std::uint32_t hash) {
  const std::size_t colon = text.find(':');
  const std::uint32_t prefixLength =
      colon == std::string_view::npos ? 0 : static_cast<std::uint32_t>(colon);
  const std::uint32_t begin = AddCharacters(text);
  const std::uint32_t prefix =
      prefixLength != 0 ? InternQName(QNameTextAt(begin, prefixLength)) : 0;
  const std::uint32_t index = AppendQName(hash);
  QName& entry = qnames_[index];
  entry.key = key;
  entry.begin = begin;
  entry.length = static_cast<std::uint32_t>(text.size());
  entry.prefixLength = prefixLength;
  entry.prefix = prefix;
  return index;
}

std::uint32_t NameTable::AddShortQName(NameKey key, std::uint32_t length) {
  const std::uint32_t begin = characters_.Extend(16);  // the key is the name, padded
  std::memcpy(characters_.data() + begin, &key, 16);
  characters_.DropLast(16 - length);
  const std::uint32_t index = AppendQName(Hash(key, length));
  QName& entry = qnames_[index];
  entry.key = key;
  entry.begin = begin;
  entry.length = length;
  return index;
}

std::uint32_t NameTable::AppendQName(std::uint32_t hash) {
  if (qnames_.size() >= slots_.size()) Rehash();
  std::uint32_t& slot = slots_[hash & (slots_.size() - 1)];
  const std::uint32_t index = qnames_.Extend(1);
  // From one blank in memory: a temporary's narrow stores would stall the wide ones of the copy.
  static constexpr QName kBlank{};
  qnames_[index] = kBlank;
  qnames_[index].hashNext = slot;
  slot = index;
  return index;
}

std::uint32_t NameTable::AddCharacters(std::string_view text) {
  // The text may be a part of a name that is here already.
  const char* base = characters_.data();
  const bool own =
      base != nullptr && text.data() >= base && text.data() < base + characters_.size();
  const std::size_t source = own ? static_cast<std::size_t>(text.data() - base) : 0;
  const auto begin = characters_.Extend(static_cast<std::uint32_t>(text.size()));
  const char* from = own ? characters_.data() + source : text.data();
  if (!text.empty()) std::memcpy(characters_.data() + begin, from, text.size());
  return begin;
}

void NameTable::Rehash() {
  slots_.Extend(slots_.size() * 3);
  std::fill_n(slots_.data(), slots_.size(), 0U);
  for (std::uint32_t i = 1; i < qnames_.size(); ++i) {
    std::uint32_t& slot = slots_[HashText(QNameText(i)) & (slots_.size() - 1)];
    qnames_[i].hashNext = slot;
    slot = i;
  }
}

std::uint32_t NameTable::HashName(std::uint32_t qname, UriId uri) const noexcept {
  return static_cast<std::uint32_t>(MultiplyFold(qname ^ seeds_.low, uri ^ seeds_.high));
}

NameId NameTable::FindName(const QName& entry, std::uint32_t qname, UriId uri) {
  constexpr int kMostSteps = 16;
  NameId name = entry.firstName;
  for (int steps = 0; name != 0 && steps < kMostSteps; ++steps) {
    if (names_[name].uri == uri) return name;
    name = names_[name].nextOfQName;
  }
  if (name == 0) return 0;
  if (nameSlots_.size() == 0) RehashNames();
  name = nameSlots_[HashName(qname, uri) & (nameSlots_.size() - 1)];
  while (name != 0 && (names_[name].qname != qname || names_[name].uri != uri)) {
    name = names_[name].hashNext;
  }
  return name;
}

void NameTable::RehashNames() {
  std::uint32_t size = 64;
  while (size < names_.size() * 2) size *= 2;
  nameSlots_.Extend(size - nameSlots_.size());
  std::fill_n(nameSlots_.data(), nameSlots_.size(), 0U);
  for (NameId i = 1; i < names_.size(); ++i) {
    std::uint32_t& slot = nameSlots_[HashName(names_[i].qname, names_[i].uri) & (size - 1)];
    names_[i].hashNext = slot;
    slot = i;
  }
}

NameId NameTable::InternOtherName(std::uint32_t qname, UriId uri) {
  QName& entry = qnames_[qname];
  NameId name = entry.firstName == 0 ? 0 : FindName(entry, qname, uri);
  if (name == 0) {
    name = names_.Append(Name{qname, uri, entry.firstName, 0});
    entry.firstName = name;
    if (names_.size() > nameSlots_.size()) {
      if (nameSlots_.size() != 0) RehashNames();
    } else {
      NameId& slot = nameSlots_[HashName(qname, uri) & (nameSlots_.size() - 1)];
      names_[name].hashNext = slot;
      slot = name;
    }
  }
  entry.lastUri = uri;
  entry.lastName = name;
  return name;
}

UriId NameTable::FindUri(std::string_view uri) const noexcept {
  if (uri.empty()) return kEmptyUri;
  if (uriSlots_.size() == 0) {
    for (UriId i = kXmlUri; i < uris_.size(); ++i) {
      if (UriText(i) == uri) return i;
    }
    return 0xFFFFFFFFU;
  }
  std::uint32_t index = uriSlots_[HashText(uri) & (uriSlots_.size() - 1)];
  while (index != 0 && UriText(index) != uri) index = uris_[index].hashNext;
  return index != 0 ? index : 0xFFFFFFFFU;
}

UriId NameTable::InternUri(std::string_view uri) {
  const UriId found = FindUri(uri);
  if (found != 0xFFFFFFFFU) return found;
  const auto begin = AddCharacters(uri);
  const UriId index = uris_.Append(Uri{begin, static_cast<std::uint32_t>(uri.size()), 0});
  constexpr std::uint32_t kLinearLimit = 8;
  if (uris_.size() < kLinearLimit) return index;
  if (uris_.size() > uriSlots_.size()) {
    uriSlots_.Extend(uriSlots_.size() == 0 ? 64 : uriSlots_.size() * 3);
    std::fill_n(uriSlots_.data(), uriSlots_.size(), 0U);
    for (UriId i = kXmlUri; i < uris_.size(); ++i) {
      std::uint32_t& slot = uriSlots_[HashText(UriText(i)) & (uriSlots_.size() - 1)];
      uris_[i].hashNext = slot;
      slot = i;
    }
    return index;
  }
  std::uint32_t& slot = uriSlots_[HashText(uri) & (uriSlots_.size() - 1)];
  uris_[index].hashNext = slot;
  slot = index;
  return index;
}

std::size_t NameTable::Bytes() const noexcept {
  return qnames_.BlockBytes() + names_.BlockBytes() + uris_.BlockBytes() +
         characters_.BlockBytes() + slots_.BlockBytes() + uriSlots_.BlockBytes() +
         nameSlots_.BlockBytes();
}

void NameTable::CopyFrom(const NameTable& other) {
  qnames_.CopyFrom(other.qnames_);
  names_.CopyFrom(other.names_);
  uris_.CopyFrom(other.uris_);
  characters_.CopyFrom(other.characters_);
  slots_.CopyFrom(other.slots_);
  uriSlots_.CopyFrom(other.uriSlots_);
  nameSlots_.CopyFrom(other.nameSlots_);
  seeds_ = other.seeds_;
}

}  // namespace kx::dom
