// The names of one document, each kept once. A *qualified name* is the text as written ("p:x");
// a *name* is a qualified name bound to a namespace URI. Nodes hold a NameId, so two nodes of a
// document have the same name and namespace exactly when their NameIds are equal.
//
// The parser's state about a qualified name (which namespace its prefix is bound to at the moment,
// the last element that carried it as an attribute) is kept beside it, so that a start tag costs
// one hash look-up a name and nothing else.
#pragma once

#include "platform/dom/node_record.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>
#include <type_traits>

namespace kx::dom {

/// The qualified names "xmlns" and "xml", which every table has.
inline constexpr std::uint32_t kXmlnsQName = 1;
inline constexpr std::uint32_t kXmlQName = 2;

/// The namespace of a node that has none; its URI reads as "absent".
inline constexpr UriId kNoUri = 0;
/// The namespace that is the empty text (namespace declarations have it).
inline constexpr UriId kEmptyUri = 1;
/// http://www.w3.org/XML/1998/namespace
inline constexpr UriId kXmlUri = 2;

inline constexpr std::string_view kXmlNamespace = "http://www.w3.org/XML/1998/namespace";
inline constexpr std::string_view kXmlnsNamespace = "http://www.w3.org/2000/xmlns/";

/// The first sixteen bytes of a name, padded with zeros.
struct NameKey {
  std::uint64_t low = 0;
  std::uint64_t high = 0;
};

/// A qualified name and what the parser knows about it at the moment.
struct QName {
  NameKey key;
  std::uint32_t begin = 0;  ///< in the table's characters
  std::uint32_t length = 0;
  std::uint32_t hashNext = 0;      ///< next qualified name of the same hash slot
  std::uint32_t prefixLength = 0;  ///< 0 without prefix
  std::uint32_t prefix = 0;        ///< the qualified name that is this one's prefix; 0 without
  NameId firstName = 0;            ///< the names made of it, linked by Name::nextOfQName
  // Parser state.
  UriId binding = kNoUri;       ///< as a prefix (entry 0: the default namespace): bound to
  UriId lastUri = 0xFFFFFFFFU;  ///< the namespace that lastName has
  NameId lastName = 0;          ///< the name used last
  NodeId attributeStamp = 0;    ///< the element that carried this as an attribute last
  /// What came last after this name, and will probably come again: the first thing to compare.
  std::uint32_t followers[3] = {0, 0, 0};
};

/// Which follower of a name is meant.
enum Follower : unsigned { kFirstChildName, kNextSiblingName, kNextAttributeName };

/// An array of plain values that grows by reallocation and is copied as one block. The first
/// `kInline` values need no block of their own.
template <class T, std::uint32_t kInline = 0>
class PlainArray {
 public:
  PlainArray() noexcept : data_(Inline()), capacity_(kInline) {}
  ~PlainArray() {
    if (data_ != Inline()) std::free(static_cast<void*>(data_));
  }
  PlainArray(const PlainArray&) = delete;
  PlainArray& operator=(const PlainArray&) = delete;

  [[nodiscard]] std::uint32_t size() const noexcept { return size_; }
  [[nodiscard]] std::uint32_t capacity() const noexcept { return capacity_; }
  T& operator[](std::size_t index) noexcept { return data_[index]; }
  const T& operator[](std::size_t index) const noexcept { return data_[index]; }
  [[nodiscard]] T* data() noexcept { return data_; }
  [[nodiscard]] const T* data() const noexcept { return data_; }
  /// Bytes of the block that the array has besides itself.
  [[nodiscard]] std::size_t BlockBytes() const noexcept {
    return capacity_ == kInline ? 0 : capacity_ * sizeof(T);
  }

  /// Appends `count` values that are not initialised and returns the first one's index.
  std::uint32_t Extend(std::uint32_t count) {
    if (count > capacity_ - size_) Grow(count);
    const std::uint32_t index = size_;
    size_ += count;
    return index;
  }
  /// The same for one value where there is room already.
  std::uint32_t ExtendReserved() noexcept { return size_++; }
  void DropLast(std::uint32_t count) noexcept { size_ -= count; }
  std::uint32_t Append(const T& value) {
    const std::uint32_t index = Extend(1);
    data_[index] = value;
    return index;
  }
  void Reserve(std::uint32_t capacity);
  /// Gives back room beyond the values there are, where that needs no copying.
  void Shrink() noexcept;
  void CopyFrom(const PlainArray& other);

 private:
  T* Inline() noexcept {
    if constexpr (kInline == 0) {
      return nullptr;
    } else {
      return reinterpret_cast<T*>(inline_);
    }
  }
  void Grow(std::uint32_t count);

  T* data_;
  std::uint32_t size_ = 0;
  std::uint32_t capacity_;
  alignas(T) unsigned char inline_[kInline == 0 ? 1 : kInline * sizeof(T)];
};

class NameTable {
 public:
  NameTable();

  /// The qualified name `text`, added when it is new. Raises: std::bad_alloc.
  std::uint32_t InternQName(std::string_view text);
  /// The same for a name of at most 16 bytes whose key is known already.
  [[nodiscard]] std::uint32_t FindShortQName(NameKey key, std::uint32_t length) const noexcept;
  /// Adds a qualified name of at most 16 bytes that FindShortQName does not know and that has no
  /// colon.
  std::uint32_t AddShortQName(NameKey key, std::uint32_t length);
  /// The qualified name `text`, or 0 when no node of the document ever had it.
  [[nodiscard]] std::uint32_t FindQName(std::string_view text) const noexcept;

  /// The name made of a qualified name and a namespace, added when it is new.
  NameId InternName(std::uint32_t qname, UriId uri) {
    const QName& entry = qnames_[qname];
    return entry.lastUri == uri ? entry.lastName : InternOtherName(qname, uri);
  }
  NameId InternName(std::string_view qname, UriId uri) {
    return InternName(InternQName(qname), uri);
  }

  /// The identifier of a namespace URI, added when it is new.
  UriId InternUri(std::string_view uri);
  /// The identifier of `uri`, or 0xFFFFFFFF when the document does not use it.
  [[nodiscard]] UriId FindUri(std::string_view uri) const noexcept;

  [[nodiscard]] std::string_view QNameText(std::uint32_t qname) const noexcept {
    return {characters_.data() + qnames_[qname].begin, qnames_[qname].length};
  }
  [[nodiscard]] std::string_view QualifiedText(NameId name) const noexcept {
    return QNameText(names_[name].qname);
  }
  [[nodiscard]] std::string_view PrefixText(NameId name) const noexcept {
    return QualifiedText(name).substr(0, qnames_[names_[name].qname].prefixLength);
  }
  [[nodiscard]] std::string_view LocalText(NameId name) const noexcept {
    const QName& qname = qnames_[names_[name].qname];
    const std::uint32_t skip = qname.prefixLength == 0 ? 0 : qname.prefixLength + 1;
    return {characters_.data() + qname.begin + skip, qname.length - skip};
  }
  [[nodiscard]] UriId UriOf(NameId name) const noexcept { return names_[name].uri; }
  [[nodiscard]] std::string_view UriText(UriId uri) const noexcept {
    return {characters_.data() + uris_[uri].begin, uris_[uri].length};
  }
  [[nodiscard]] std::uint32_t QNameOf(NameId name) const noexcept { return names_[name].qname; }

  /// A qualified name's record, for the parser's own state.
  QName& At(std::uint32_t qname) noexcept { return qnames_[qname]; }
  [[nodiscard]] const QName& At(std::uint32_t qname) const noexcept { return qnames_[qname]; }

  /// Bytes held besides the table itself.
  [[nodiscard]] std::size_t Bytes() const noexcept;
  void CopyFrom(const NameTable& other);

  static NameKey KeyOf(std::string_view text) noexcept;

 private:
  struct Name {
    std::uint32_t qname;
    UriId uri;
    NameId nextOfQName;
    NameId hashNext;
  };
  struct Uri {
    std::uint32_t begin;
    std::uint32_t length;
    std::uint32_t hashNext;
  };

  // Seeded once per process, so that nobody can prepare names which all share a slot.
  [[nodiscard]] std::uint32_t Hash(NameKey key, std::uint32_t length) const noexcept {
    return static_cast<std::uint32_t>(
        MultiplyFold(key.low ^ seeds_.low ^ length, key.high ^ seeds_.high));
  }
  static std::uint64_t MultiplyFold(std::uint64_t a, std::uint64_t b) noexcept;
  [[nodiscard]] std::uint32_t HashText(std::string_view text) const noexcept;
  [[nodiscard]] std::uint32_t HashName(std::uint32_t qname, UriId uri) const noexcept;
  NameId InternOtherName(std::uint32_t qname, UriId uri);
  std::uint32_t AppendQName(std::uint32_t hash);
  [[nodiscard]] std::string_view QNameTextAt(std::uint32_t begin,
                                             std::uint32_t length) const noexcept {
    return {characters_.data() + begin, length};
  }
  NameId FindName(const QName& entry, std::uint32_t qname, UriId uri);
  void RehashNames();
  std::uint32_t AddQName(std::string_view text, NameKey key, std::uint32_t hash);
  std::uint32_t AddCharacters(std::string_view text);
  void Rehash();

  // The inline room is what a small message needs, so that its names cost no allocation.
  PlainArray<QName, 36> qnames_;
  PlainArray<Name, 36> names_;
  PlainArray<Uri, 6> uris_;
  PlainArray<char, 320> characters_;
  PlainArray<std::uint32_t, 64> slots_;  // qualified names by hash; 0 is empty
  PlainArray<std::uint32_t> uriSlots_;   // made when there are more than a few URIs
  PlainArray<std::uint32_t> nameSlots_;  // made when one qualified name is in many namespaces
  NameKey seeds_;
};

inline std::uint64_t NameTable::MultiplyFold(std::uint64_t a, std::uint64_t b) noexcept {
#if defined(__SIZEOF_INT128__)
  __extension__ using Wide = unsigned __int128;
  const Wide product = static_cast<Wide>(a) * b;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64U);
#else
  const std::uint64_t crossed = (a >> 32U) * (b & 0xFFFFFFFFU) ^ (b >> 32U) * (a & 0xFFFFFFFFU);
  return a * b ^ crossed ^ (a >> 32U) * (b >> 32U);
#endif
}

template <class T, std::uint32_t kInline>
void PlainArray<T, kInline>::Reserve(std::uint32_t capacity) {
  if (capacity <= capacity_) return;
  const bool owned = data_ != Inline();
  const std::size_t bytes = std::size_t{capacity} * sizeof(T);
  void* grown = owned ? std::realloc(static_cast<void*>(data_), bytes) : std::malloc(bytes);
  if (grown == nullptr) throw std::bad_alloc();
  if (!owned && size_ != 0) std::memcpy(grown, data_, std::size_t{size_} * sizeof(T));
  data_ = static_cast<T*>(grown);
  capacity_ = capacity;
}

template <class T, std::uint32_t kInline>
void PlainArray<T, kInline>::Shrink() noexcept {
  if (data_ == Inline() || size_ == capacity_ || size_ == 0) return;
  void* smaller = std::realloc(static_cast<void*>(data_), std::size_t{size_} * sizeof(T));
  if (smaller == nullptr) return;
  data_ = static_cast<T*>(smaller);
  capacity_ = size_;
}

template <class T, std::uint32_t kInline>
void PlainArray<T, kInline>::Grow(std::uint32_t count) {
  const std::uint64_t wanted = std::uint64_t{size_} + count;
  if (wanted > 0x7FFFFFFFU) throw std::bad_alloc();
  const std::uint64_t grown = std::uint64_t{capacity_} + capacity_ / 2 + 8;
  Reserve(static_cast<std::uint32_t>(grown > wanted ? grown : wanted));
}

template <class T, std::uint32_t kInline>
void PlainArray<T, kInline>::CopyFrom(const PlainArray& other) {
  static_assert(std::is_trivially_copyable_v<T>);
  size_ = 0;
  Reserve(other.size_);
  size_ = other.size_;
  if (size_ != 0) std::memcpy(data_, other.data_, std::size_t{size_} * sizeof(T));
}

inline std::uint32_t NameTable::FindShortQName(NameKey key, std::uint32_t length) const noexcept {
  std::uint32_t index = slots_[Hash(key, length) & (slots_.size() - 1)];
  while (index != 0) {
    const QName& entry = qnames_[index];
    if (entry.key.low == key.low && entry.key.high == key.high && entry.length == length) {
      return index;
    }
    index = entry.hashNext;
  }
  return 0;
}

}  // namespace kx::dom
