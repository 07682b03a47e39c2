// See name_text.h.
#include "platform/datatypes/name_text.h"

#include "platform/text/unicode.h"

#include <algorithm>
#include <iterator>

namespace kx::datatypes {

namespace {

struct Range {
  char32_t first;
  char32_t last;
};

// Beyond ASCII: what may begin a name, and what may only continue one.
constexpr Range kStarts[] = {
    {0xC0, 0xD6},     {0xD8, 0xF6},     {0xF8, 0x2FF},    {0x370, 0x37D},
    {0x37F, 0x1FFF},  {0x200C, 0x200D}, {0x2070, 0x218F}, {0x2C00, 0x2FEF},
    {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF},
};
constexpr Range kParts[] = {{0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}};

template <std::size_t kCount>
bool IsIn(const Range (&ranges)[kCount], char32_t c) noexcept {
  return std::any_of(std::begin(ranges), std::end(ranges),
                     [c](const Range& range) { return c >= range.first && c <= range.last; });
}

bool IsStart(char32_t c) noexcept {
  if (c < 0x80) return text::IsAsciiLetter(c) || c == U'_';
  return IsIn(kStarts, c);
}

bool IsPart(char32_t c) noexcept {
  if (c < 0x80) return IsStart(c) || text::IsAsciiDigit(c) || c == U'-' || c == U'.';
  return IsIn(kStarts, c) || IsIn(kParts, c);
}

bool IsSpace(char c) noexcept { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

}  // namespace

bool StartsName(std::string_view text) noexcept {
  if (text.empty()) return false;
  const text::Utf8Char first = text::DecodeUtf8(text, 0);
  return first.valid && IsStart(first.codePoint);
}

bool IsNameToken(std::string_view text) noexcept {
  for (std::size_t at = 0; at < text.size();) {
    const text::Utf8Char c = text::DecodeUtf8(text, at);
    if (!c.valid || !IsPart(c.codePoint)) return false;
    at += c.length;
  }
  return !text.empty();
}

bool IsNameText(std::string_view text) noexcept { return StartsName(text) && IsNameToken(text); }

std::string_view TakeToken(std::string_view& list) noexcept {
  std::size_t begin = 0;
  while (begin < list.size() && IsSpace(list[begin])) ++begin;
  std::size_t end = begin;
  while (end < list.size() && !IsSpace(list[end])) ++end;
  const std::string_view token = list.substr(begin, end - begin);
  list.remove_prefix(end);
  return token;
}

}  // namespace kx::datatypes
