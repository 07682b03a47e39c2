// Decoding and encoding. All reading of UTF-8 goes through DecodeUtf8, all of UTF-16 through
// DecodeUtf16, so that both treat ill-formed input alike everywhere; runs of ASCII are skipped
// eight bytes at a time.
#include "platform/text/unicode.h"

#include "platform/text/case_tables.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <span>

namespace kx::text {
namespace {

constexpr char32_t ByteAt(std::string_view text, std::size_t offset) noexcept {
  return static_cast<unsigned char>(text[offset]);
}

// How a sequence goes on after its first byte: how many bytes follow, the bits that the first one
// contributes, and the range of the second byte, which shuts out overlong forms, surrogates and
// numbers above U+10FFFF (Unicode, table 3-7).
struct LeadByte {
  int following = 0;
  char32_t bits = 0;
  char32_t secondFirst = 0x80;
  char32_t secondLast = 0xBF;
};

constexpr LeadByte ReadLeadByte(char32_t lead) noexcept {
  if (lead >= 0xC2 && lead <= 0xDF) return {1, lead & 0x1F};
  if (lead == 0xE0) return {2, 0, 0xA0, 0xBF};
  if (lead == 0xED) return {2, 0xD, 0x80, 0x9F};
  if (lead >= 0xE1 && lead <= 0xEF) return {2, lead & 0x0F};
  if (lead == 0xF0) return {3, 0, 0x90, 0xBF};
  if (lead >= 0xF1 && lead <= 0xF3) return {3, lead & 0x07};
  if (lead == 0xF4) return {3, 4, 0x80, 0x8F};
  return {};
}

// The number of bytes below 128 from `offset` on.
std::size_t AsciiRun(std::string_view text, std::size_t offset) noexcept {
  constexpr std::uint64_t kHighBits = 0x8080808080808080U;
  std::size_t end = offset;
  while (end + sizeof(std::uint64_t) <= text.size()) {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data() + end, sizeof word);
    if ((word & kHighBits) != 0) break;
    end += sizeof word;
  }
  while (end < text.size() && ByteAt(text, end) < 0x80) ++end;
  return end - offset;
}

constexpr std::size_t Utf16Length(char32_t codePoint) noexcept {
  return codePoint >= 0x10000 ? 2 : 1;
}

void AppendUtf16(std::u16string& out, char32_t codePoint) {
  if (codePoint < 0x10000) {
    out.push_back(static_cast<char16_t>(codePoint));
    return;
  }
  out.push_back(static_cast<char16_t>(0xD7C0 + (codePoint >> 10)));
  out.push_back(static_cast<char16_t>(0xDC00 + (codePoint & 0x3FF)));
}

// Reads one code point of UTF-16; `valid` is false for a surrogate without its partner.
Utf8Char DecodeUtf16(std::u16string_view text, std::size_t offset) noexcept {
  const char32_t unit = text[offset];
  if (!IsSurrogate(unit)) return {unit, 1, true};
  if (IsHighSurrogate(unit) && offset + 1 < text.size() && IsLowSurrogate(text[offset + 1])) {
    return {0x10000 + ((unit - 0xD800) << 10) + (text[offset + 1] - 0xDC00U), 2, true};
  }
  return {kReplacementCharacter, 1, false};
}

char32_t MapCase(std::span<const CaseRange> ranges, char32_t codePoint) noexcept {
  const auto after = std::upper_bound(
      ranges.begin(), ranges.end(), codePoint,
      [](char32_t wanted, const CaseRange& range) { return wanted < range.first; });
  if (after == ranges.begin()) return codePoint;
  const CaseRange& range = *(after - 1);
  if (codePoint > range.last || (codePoint - range.first) % range.step != 0) return codePoint;
  return codePoint + static_cast<char32_t>(range.difference);
}

template <typename MapAscii, typename MapOther>
std::string MapText(std::string_view text, MapAscii mapAscii, MapOther mapOther) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t offset = 0; offset < text.size();) {
    if (ByteAt(text, offset) < 0x80) {
      out.push_back(mapAscii(text[offset++]));
      continue;
    }
    const Utf8Char c = DecodeUtf8(text, offset);
    AppendUtf8(out, mapOther(c.codePoint));
    offset += c.length;
  }
  return out;
}

}  // namespace

bool IsAscii(std::string_view text) noexcept { return AsciiRun(text, 0) == text.size(); }

bool EqualsAsciiCaseless(std::string_view a, std::string_view b) noexcept {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return AsciiToLower(x) == AsciiToLower(y); });
}

std::string AsciiLowerCase(std::string_view text) {
  std::string out(text);
  for (char& c : out) c = AsciiToLower(c);
  return out;
}

Utf8Char DecodeUtf8(std::string_view text, std::size_t offset) noexcept {
  const char32_t first = ByteAt(text, offset);
  if (first < 0x80) return {first, 1, true};
  const LeadByte lead = ReadLeadByte(first);
  Utf8Char result{kReplacementCharacter, 1, false};
  if (lead.following == 0) return result;
  char32_t codePoint = lead.bits;
  char32_t lowest = lead.secondFirst;
  char32_t highest = lead.secondLast;
  for (int i = 0; i < lead.following; ++i, ++result.length) {
    if (offset + result.length >= text.size()) return result;
    const char32_t byte = ByteAt(text, offset + result.length);
    if (byte < lowest || byte > highest) return result;
    codePoint = (codePoint << 6) | (byte & 0x3F);
    lowest = 0x80;
    highest = 0xBF;
  }
  return {codePoint, result.length, true};
}

void AppendUtf8(std::string& out, char32_t codePoint) {
  if (codePoint < 0x80) {
    out.push_back(static_cast<char>(codePoint));
    return;
  }
  if (IsSurrogate(codePoint) || codePoint > kMaxCodePoint) codePoint = kReplacementCharacter;
  const auto trail = [codePoint](int shift) {
    return static_cast<char>(0x80 | ((codePoint >> shift) & 0x3F));
  };
  if (codePoint < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (codePoint >> 6)));
  } else if (codePoint < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | (codePoint >> 12)));
    out.push_back(trail(6));
  } else {
    out.push_back(static_cast<char>(0xF0 | (codePoint >> 18)));
    out.push_back(trail(12));
    out.push_back(trail(6));
  }
  out.push_back(trail(0));
}

std::optional<std::size_t> FindInvalidUtf8(std::string_view text) noexcept {
  for (std::size_t offset = AsciiRun(text, 0); offset < text.size();) {
    const Utf8Char c = DecodeUtf8(text, offset);
    if (!c.valid) return offset;
    offset += c.length;
    offset += AsciiRun(text, offset);
  }
  return std::nullopt;
}

std::size_t CountCodePoints(std::string_view text) noexcept {
  std::size_t count = 0;
  for (std::size_t offset = 0; offset < text.size(); ++count) {
    offset += DecodeUtf8(text, offset).length;
  }
  return count;
}

std::size_t CountUtf16Units(std::string_view text) noexcept {
  std::size_t offset = AsciiRun(text, 0);
  std::size_t units = offset;
  while (offset < text.size()) {
    const Utf8Char c = DecodeUtf8(text, offset);
    units += Utf16Length(c.codePoint);
    offset += c.length;
    const std::size_t run = AsciiRun(text, offset);
    units += run;
    offset += run;
  }
  return units;
}

std::size_t OffsetOfUtf16Unit(std::string_view text, std::size_t unit) noexcept {
  std::size_t offset = 0;
  for (std::size_t passed = 0; offset < text.size();) {
    const Utf8Char c = DecodeUtf8(text, offset);
    passed += Utf16Length(c.codePoint);
    if (passed > unit) return offset;
    offset += c.length;
  }
  return offset;
}

std::u16string ToUtf16(std::string_view text) {
  std::u16string out;
  out.reserve(text.size());
  for (std::size_t offset = 0; offset < text.size();) {
    const Utf8Char c = DecodeUtf8(text, offset);
    AppendUtf16(out, c.codePoint);
    offset += c.length;
  }
  return out;
}

std::optional<std::u16string> ToUtf16Strict(std::string_view text) {
  if (!IsValidUtf8(text)) return std::nullopt;
  return ToUtf16(text);
}

std::string ToUtf8(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t offset = 0; offset < text.size();) {
    const Utf8Char c = DecodeUtf16(text, offset);
    AppendUtf8(out, c.codePoint);
    offset += c.length;
  }
  return out;
}

std::optional<std::string> ToUtf8Strict(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t offset = 0; offset < text.size();) {
    const Utf8Char c = DecodeUtf16(text, offset);
    if (!c.valid) return std::nullopt;
    AppendUtf8(out, c.codePoint);
    offset += c.length;
  }
  return out;
}

char32_t ToUpper(char32_t codePoint) noexcept {
  if (codePoint < 0x80) {
    return static_cast<unsigned char>(AsciiToUpper(static_cast<char>(codePoint)));
  }
  return MapCase(UpperCaseRanges(), codePoint);
}

char32_t ToLower(char32_t codePoint) noexcept {
  if (codePoint < 0x80) {
    return static_cast<unsigned char>(AsciiToLower(static_cast<char>(codePoint)));
  }
  return MapCase(LowerCaseRanges(), codePoint);
}

std::string UpperCase(std::string_view text) { return MapText(text, AsciiToUpper, ToUpper); }

std::string LowerCase(std::string_view text) { return MapText(text, AsciiToLower, ToLower); }

}  // namespace kx::text
