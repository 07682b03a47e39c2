// Where the writer puts its text: a piece of a few thousand bytes that stays in the processor's
// cache and is appended to the result when it is full, so that the result's memory is touched
// once. Positions (`at`) are handed in and out so that they live in registers.
//
// Invariants:
//   - A position that Room() returned may be written for the bytes asked for, and kMargin more
//     that nobody reads: copies go by blocks of sixteen.
//   - Escaping needs one look at each block of sixteen bytes; blocks are tested with SSE2 where it
//     is there and byte by byte elsewhere, with the same result.
#pragma once

#include "platform/dom/name_table.h"
#include "platform/dom/scan.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace kx::dom {

/// What is replaced while a text is written. LF becomes CR LF in all of them.
enum class Escaping : unsigned char {
  kLineEnds,   ///< nothing else: comments, processing instructions, CDATA sections
  kText,       ///< & < > and CR
  kAttribute,  ///< these and the double quote
};

/// Whether sixteen bytes may be read at each byte of a text, whatever follows its end.
enum class Padding : unsigned char { kNone, kReadable };

/// One bit for each of the sixteen bytes at `block` that are replaced.
template <Escaping Replaced>
std::uint32_t EscapedBytes(const char* block) noexcept;
/// The same, byte by byte.
std::uint32_t EscapedBytesPortable(Escaping escaping, const char* block) noexcept;

class TextOutput {
 public:
  /// `expectedBytes`: what the result is likely to take; it is allocated when it is certain that
  /// the result outgrows one piece.
  explicit TextOutput(std::size_t expectedBytes) noexcept : expectedBytes_(expectedBytes) {}
  TextOutput(const TextOutput&) = delete;
  TextOutput& operator=(const TextOutput&) = delete;

  /// Where the first byte goes.
  [[nodiscard]] char* Begin() noexcept { return piece_; }
  /// A position after which `bytes` bytes, at most kPieceBytes, may be written.
  [[nodiscard]] char* Room(char* at, std::size_t bytes) {
    return static_cast<std::size_t>(piece_ + kPieceBytes - at) >= bytes ? at : Flush(at);
  }

  /// A short text known when compiling; the caller has made room.
  template <std::size_t Size>
  static char* Put(char* at, const char (&text)[Size]) noexcept {
    std::memcpy(at, text, Size - 1);
    return at + Size - 1;
  }
  /// A name; its first sixteen bytes are in its record. Makes room itself.
  char* PutName(char* at, const NameTable& names, std::uint32_t qname) {
    const QName& entry = names.At(qname);
    if (entry.length > 16) return PutLong(at, names.QNameText(qname));
    at = Room(at, 16);
    std::memcpy(at, &entry.key, 16);
    return at + entry.length;
  }
  /// The text as it is. Makes room itself.
  char* PutVerbatim(char* at, std::string_view text, Padding padding) {
    if (padding == Padding::kNone || text.size() > 128) return PutLong(at, text);
    at = Room(at, text.size());
    for (std::size_t copied = 0; copied < text.size(); copied += 16) {
      std::memcpy(at + copied, text.data() + copied, 16);
    }
    return at + text.size();
  }
  /// The text with everything replaced that cannot stand as it is. Makes room itself.
  template <Escaping Replaced>
  char* PutEscaped(char* at, std::string_view text, Padding padding);

  /// All that was put before `at`.
  [[nodiscard]] std::string Finish(const char* at);

 private:
  static constexpr std::size_t kPieceBytes = 8192;
  static constexpr std::size_t kMargin = 16;
  static constexpr std::size_t kMostReplacement = 6;  // &quot;

  char* Flush(const char* at);
  char* PutLong(char* at, std::string_view text);
  static char* PutReplacement(char* at, char c) noexcept;

  std::string result_;
  std::size_t expectedBytes_;
  char piece_[kPieceBytes + kMargin];
};

template <Escaping Replaced>
char* TextOutput::PutEscaped(char* at, std::string_view text, Padding padding) {
  const char* from = text.data();
  std::size_t left = text.size();
  char tail[16];
  while (left != 0) {
    at = Room(at, 16 + kMostReplacement);
    const std::size_t size = left < 16 ? left : 16;
    const char* block = from;
    if (size < 16 && padding == Padding::kNone) {
      std::memset(tail, 0, sizeof(tail));
      std::memcpy(tail, from, size);
      block = tail;
    }
    std::memcpy(at, block, 16);
    const std::uint32_t escaped = EscapedBytes<Replaced>(block) & ((1U << size) - 1U);
    if (escaped == 0) {
      at += size;
      from += size;
      left -= size;
      continue;
    }
    const auto before = static_cast<std::size_t>(std::countr_zero(escaped));
    at = PutReplacement(at + before, from[before]);
    from += before + 1;
    left -= before + 1;
  }
  return at;
}

template <Escaping Replaced>
std::uint32_t EscapedBytes(const char* block) noexcept {
#if defined(KX_SCAN_SSE2)
  const __m128i bytes = scan::Load(block);
  __m128i found = scan::Equal(bytes, '\n');
  if constexpr (Replaced != Escaping::kLineEnds) {
    // '<' and '>' differ in the bit of 2, '&' and '"' in the bit of 4.
    found = _mm_or_si128(found, scan::Equal(bytes, '\r'));
    found = _mm_or_si128(found, scan::Equal(_mm_or_si128(bytes, _mm_set1_epi8(2)), '>'));
    const __m128i ampersand =
        Replaced == Escaping::kAttribute ? _mm_or_si128(bytes, _mm_set1_epi8(4)) : bytes;
    found = _mm_or_si128(found, scan::Equal(ampersand, '&'));
  }
  return scan::Bits(found);
#else
  return EscapedBytesPortable(Replaced, block);
#endif
}

}  // namespace kx::dom
