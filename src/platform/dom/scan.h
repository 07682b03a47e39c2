// The inner loops of the parser: sixteen bytes at a time where the processor has SSE2, byte by
// byte elsewhere, with the same results. Every buffer that is scanned here ends in kSentinel and
// has kScanPadding readable bytes after its last one.
#pragma once

#include "platform/dom/name_table.h"
#include "platform/dom/xml_names.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#define KX_SCAN_SSE2 1
#include <emmintrin.h>
#endif

namespace kx::dom::scan {

/// Stands after the last byte of a text: no loop over text, values or names runs past it.
inline constexpr char kSentinel = '<';
inline constexpr std::size_t kScanPadding = 32;

/// The number of zero bits below the lowest set one of `bits`, which is not 0.
inline std::uint32_t LowestBit(std::uint32_t bits) noexcept {
#if defined(__GNUC__)
  return static_cast<std::uint32_t>(__builtin_ctz(bits));
#else
  return static_cast<std::uint32_t>(std::countr_zero(bits));
#endif
}

/// A name of at most 16 ASCII bytes: its key and length; length 0 when it is longer, not ASCII, or
/// empty, and the slow way must decide. Whether the bytes are all name characters is only certain
/// once the key has been found among the names that were checked before.
struct ShortName {
  NameKey key;
  std::uint32_t length = 0;
};

/// Where a run of characters stops, and whether something in it needs escaping when written.
struct Stop {
  const char* at = nullptr;
  bool plain = true;
};

// Both ways below have these functions:
//
//   ScanShortName       the name at `p`, as ShortName tells
//   IsPlainName         whether the bytes that ScanShortName found (1 to 16) are all name
//                       characters but the colon, and the first may begin a name
//   ScanText            the first '<', '&' or ']' at or after `p`; not plain: '>' or LF before it
//   ScanAttributeValue  the first quote, '<' or '&'; not plain: '>', '"' or LF before it
//   CopyOrdinary        copies bytes while they are ASCII and neither CR nor a control that XML
//                       forbids, and returns how many; reads nothing at or after `end`
//   SameBytes           whether two names of `length` bytes are the same
//   StartsWithKey       whether the bytes at `p` begin with the `length` (at most 16) of a key

namespace portable {

inline bool StartsWithKey(const char* p, const NameKey& key, std::uint32_t length) noexcept {
  return std::memcmp(p, &key, length) == 0;
}

inline bool IsPlainName(const char* p, std::uint32_t length) noexcept {
  for (std::uint32_t i = 0; i < length; ++i) {
    if (!IsAsciiNamePart(p[i]) || p[i] == ':') return false;
  }
  return (name_bits::kTable[static_cast<unsigned char>(*p)] & name_bits::kStart) != 0;
}

inline ShortName ScanShortName(const char* p) noexcept {
  std::uint32_t length = 0;
  while (length < 16 && IsAsciiNamePart(p[length])) ++length;
  ShortName name;
  const bool slow =
      static_cast<signed char>(p[length]) < 0 || (length == 16 && IsAsciiNamePart(p[16]));
  if (slow) return name;
  name.length = length;
  char bytes[16] = {};
  std::memcpy(bytes, p, length);
  std::memcpy(&name.key.low, bytes, 8);
  std::memcpy(&name.key.high, bytes + 8, 8);
  return name;
}

inline Stop ScanText(const char* p) noexcept {
  bool plain = true;
  while (*p != '<' && *p != '&' && *p != ']') {
    plain = plain && *p != '>' && *p != '\n';
    ++p;
  }
  return {p, plain};
}

inline Stop ScanAttributeValue(const char* p, char quote) noexcept {
  bool plain = true;
  while (*p != '<' && *p != '&' && *p != quote) {
    plain = plain && *p != '>' && *p != '\n' && *p != '"';
    ++p;
  }
  return {p, plain};
}

inline std::size_t CopyOrdinary(const char* from, const char* end, char* to) noexcept {
  const char* const start = from;
  while (from < end && (static_cast<signed char>(*from) >= ' ' || *from == '\n' || *from == '\t')) {
    *to++ = *from++;
  }
  return static_cast<std::size_t>(from - start);
}

inline bool SameBytes(const char* a, const char* b, std::uint32_t length) noexcept {
  for (; length != 0 && *a == *b; --length, ++a, ++b) {
  }
  return length == 0;
}

}  // namespace portable

#if defined(KX_SCAN_SSE2)

namespace sse2 {

inline constexpr std::uint64_t kFirstBytes[9] = {0,
                                                 0xFF,
                                                 0xFFFF,
                                                 0xFFFFFF,
                                                 0xFFFFFFFF,
                                                 0xFFFFFFFFFF,
                                                 0xFFFFFFFFFFFF,
                                                 0xFFFFFFFFFFFFFF,
                                                 0xFFFFFFFFFFFFFFFF};

inline __m128i Load(const char* p) noexcept {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
}
inline __m128i Equal(__m128i block, char c) noexcept {
  return _mm_cmpeq_epi8(block, _mm_set1_epi8(c));
}
inline std::uint32_t Bits(__m128i mask) noexcept {
  return static_cast<std::uint32_t>(_mm_movemask_epi8(mask));
}

inline ShortName ScanShortName(const char* p) noexcept {
  const __m128i block = Load(p);
  // Ends a name: up to ',' (and every byte from 0x80, negative here), '/', ';' to '@'.
  const __m128i low = _mm_cmplt_epi8(block, _mm_set1_epi8('-'));
  const __m128i middle = _mm_and_si128(_mm_cmpgt_epi8(block, _mm_set1_epi8(':')),
                                       _mm_cmplt_epi8(block, _mm_set1_epi8('A')));
  const __m128i ends = _mm_or_si128(_mm_or_si128(low, middle), Equal(block, '/'));
  const std::uint32_t bits = Bits(ends) | 0x10000U;
  const auto length = LowestBit(bits);
  ShortName name;
  std::memcpy(&name.key.low, p, 8);
  std::memcpy(&name.key.high, p + 8, 8);
  name.key.low &= kFirstBytes[length < 8 ? length : 8];
  name.key.high &= kFirstBytes[length < 8 ? 0 : length - 8];
  // A byte beyond ASCII may continue the name; the seventeenth byte may too.
  const bool slow =
      static_cast<signed char>(p[length]) < 0 || (length == 16 && IsAsciiNamePart(p[16]));
  name.length = slow ? 0 : length;
  return name;
}

inline bool IsPlainName(const char* p, std::uint32_t length) noexcept {
  const __m128i block = Load(p);
  const __m128i brackets = _mm_and_si128(_mm_cmpgt_epi8(block, _mm_set1_epi8('Z')),
                                         _mm_cmplt_epi8(block, _mm_set1_epi8('_')));
  const __m128i braces = _mm_cmpgt_epi8(block, _mm_set1_epi8('z'));
  const __m128i others = _mm_or_si128(Equal(block, '`'), Equal(block, ':'));
  const std::uint32_t bad = Bits(_mm_or_si128(_mm_or_si128(brackets, braces), others));
  const bool start = (name_bits::kTable[static_cast<unsigned char>(*p)] & name_bits::kStart) != 0;
  return start && (bad & ((1U << length) - 1U)) == 0;
}

inline Stop ScanText(const char* p) noexcept {
  std::uint32_t special = 0;
  while (true) {
    const __m128i block = Load(p);
    const __m128i stops =
        _mm_or_si128(_mm_or_si128(Equal(block, '<'), Equal(block, '&')), Equal(block, ']'));
    const __m128i escaped = _mm_or_si128(Equal(block, '>'), Equal(block, '\n'));
    const std::uint32_t stopBits = Bits(stops);
    if (stopBits != 0) {
      special |= Bits(escaped) & (stopBits - 1U) & ~stopBits;  // those before the stop
      return {p + LowestBit(stopBits), special == 0};
    }
    special |= Bits(escaped);
    p += 16;
  }
}

inline Stop ScanAttributeValue(const char* p, char quote) noexcept {
  std::uint32_t special = 0;
  while (true) {
    const __m128i block = Load(p);
    const __m128i stops =
        _mm_or_si128(_mm_or_si128(Equal(block, '<'), Equal(block, '&')), Equal(block, quote));
    const __m128i escaped =
        _mm_or_si128(_mm_or_si128(Equal(block, '>'), Equal(block, '\n')), Equal(block, '"'));
    const std::uint32_t stopBits = Bits(stops);
    if (stopBits != 0) {
      special |= Bits(escaped) & (stopBits - 1U) & ~stopBits;  // those before the stop
      return {p + LowestBit(stopBits), special == 0};
    }
    special |= Bits(escaped);
    p += 16;
  }
}

inline std::size_t CopyOrdinary(const char* from, const char* end, char* to) noexcept {
  const char* const start = from;
  const auto forbidden = [](__m128i block) {
    const __m128i below = _mm_cmplt_epi8(block, _mm_set1_epi8(' '));
    return _mm_andnot_si128(_mm_or_si128(Equal(block, '\n'), Equal(block, '\t')), below);
  };
  while (end - from >= 32) {
    const __m128i first = Load(from);
    const __m128i second = Load(from + 16);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), first);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to + 16), second);
    if (Bits(_mm_or_si128(forbidden(first), forbidden(second))) != 0) break;
    from += 32;
    to += 32;
  }
  while (end - from >= 16) {
    const __m128i block = Load(from);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), block);
    const std::uint32_t bits = Bits(forbidden(block));
    if (bits != 0) return static_cast<std::size_t>(from - start) + std::countr_zero(bits);
    from += 16;
    to += 16;
  }
  while (from < end && (static_cast<signed char>(*from) >= ' ' || *from == '\n' || *from == '\t')) {
    *to++ = *from++;
  }
  return static_cast<std::size_t>(from - start);
}

inline bool SameBytes(const char* a, const char* b, std::uint32_t length) noexcept {
  for (; length > 16; length -= 16, a += 16, b += 16) {
    if (Bits(_mm_cmpeq_epi8(Load(a), Load(b))) != 0xFFFFU) return false;
  }
  const std::uint32_t differ = ~Bits(_mm_cmpeq_epi8(Load(a), Load(b)));
  return LowestBit(differ) >= length;
}

inline bool StartsWithKey(const char* p, const NameKey& key, std::uint32_t length) noexcept {
  const __m128i keyBytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(&key));
  const std::uint32_t differ = ~Bits(_mm_cmpeq_epi8(Load(p), keyBytes));
  return LowestBit(differ) >= length;
}

}  // namespace sse2

using namespace sse2;  // NOLINT(google-build-using-namespace): the way that this processor takes

#else

using namespace portable;  // NOLINT(google-build-using-namespace)

#endif

}  // namespace kx::dom::scan
