// See xml_names.h.
#include "platform/dom/xml_names.h"

#include "platform/text/unicode.h"

#include <algorithm>
#include <iterator>

namespace kx::dom {

namespace {

struct Range {
  char32_t first;
  char32_t last;
};

constexpr Range kStartRanges[] = {
    {':', ':'},       {'A', 'Z'},       {'_', '_'},       {'a', 'z'},
    {0xC0, 0xD6},     {0xD8, 0xF6},     {0xF8, 0x2FF},    {0x370, 0x37D},
    {0x37F, 0x1FFF},  {0x200C, 0x200D}, {0x2070, 0x218F}, {0x2C00, 0x2FEF},
    {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF},
};
constexpr Range kOtherPartRanges[] = {
    {'-', '.'}, {'0', '9'}, {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040},
};

template <std::size_t N>
bool Contains(const Range (&ranges)[N], char32_t c) noexcept {
  const Range* found =
      std::lower_bound(std::begin(ranges), std::end(ranges), c,
                       [](const Range& range, char32_t wanted) { return range.last < wanted; });
  return found != std::end(ranges) && found->first <= c;
}

// The code point at `text`, which is valid UTF-8 of at least two bytes.
text::Utf8Char DecodeMulti(const char* text) noexcept {
  const auto lead = static_cast<unsigned char>(*text);
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  return text::DecodeUtf8({text, length}, 0);
}

bool AllNameParts(std::string_view text, std::size_t from) noexcept {
  while (from < text.size()) {
    const text::Utf8Char c = text::DecodeUtf8(text, from);
    if (!c.valid || !IsNameCodePoint(c.codePoint)) return false;
    from += c.length;
  }
  return true;
}

}  // namespace

bool IsNameStartCodePoint(char32_t c) noexcept { return Contains(kStartRanges, c); }

bool IsNameCodePoint(char32_t c) noexcept {
  return Contains(kStartRanges, c) || Contains(kOtherPartRanges, c);
}

const char* SkipNmtoken(const char* text) noexcept {
  while (true) {
    const std::uint8_t bits = name_bits::kTable[static_cast<unsigned char>(*text)];
    if ((bits & name_bits::kPart) != 0) {
      ++text;
      continue;
    }
    if ((bits & name_bits::kMulti) == 0) return text;
    const text::Utf8Char c = DecodeMulti(text);
    if (!c.valid || !IsNameCodePoint(c.codePoint)) return text;
    text += c.length;
  }
}

const char* SkipName(const char* text) noexcept {
  const std::uint8_t bits = name_bits::kTable[static_cast<unsigned char>(*text)];
  if ((bits & name_bits::kStart) != 0) return SkipNmtoken(text + 1);
  if ((bits & name_bits::kMulti) == 0) return text;
  const text::Utf8Char c = DecodeMulti(text);
  return c.valid && IsNameStartCodePoint(c.codePoint) ? SkipNmtoken(text + c.length) : text;
}

bool IsName(std::string_view text) noexcept {
  if (text.empty()) return false;
  const text::Utf8Char first = text::DecodeUtf8(text, 0);
  return first.valid && IsNameStartCodePoint(first.codePoint) && AllNameParts(text, first.length);
}

bool IsNcName(std::string_view text) noexcept {
  return IsName(text) && text.find(':') == std::string_view::npos;
}

bool IsQName(std::string_view text) noexcept {
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) return IsNcName(text);
  return IsNcName(text.substr(0, colon)) && IsNcName(text.substr(colon + 1));
}

}  // namespace kx::dom
