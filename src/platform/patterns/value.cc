// See value.h.
#include "platform/patterns/value.h"

#include "platform/text/number_text.h"
#include "platform/text/unicode.h"

#include <algorithm>
#include <cstddef>

namespace kx::patterns {

namespace {

struct Folded {
  char32_t character;
  std::size_t next;
};

Folded Next(std::string_view text, std::size_t at, CaseRule caseRule) noexcept {
  const text::Utf8Char c = text::DecodeUtf8(text, at);
  const char32_t folded = caseRule == CaseRule::kIgnored ? text::ToUpper(c.codePoint) : c.codePoint;
  return {folded, at + c.length};
}

// Where a character stands among UTF-16 units: the pairs of surrogates come before U+E000.
constexpr char32_t UnitOrder(char32_t c) {
  if (c >= 0x10000) return c - 0x10000 + 0xD800;
  return c >= 0xE000 ? c + 0x100000 : c;
}

int CompareFrom(std::string_view a, std::size_t atA, std::string_view b, std::size_t atB,
                CaseRule caseRule) noexcept {
  while (atA < a.size() && atB < b.size()) {
    const Folded inA = Next(a, atA, caseRule);
    const Folded inB = Next(b, atB, caseRule);
    if (inA.character != inB.character) {
      return UnitOrder(inA.character) < UnitOrder(inB.character) ? -1 : 1;
    }
    atA = inA.next;
    atB = inB.next;
  }
  return static_cast<int>(atA < a.size()) - static_cast<int>(atB < b.size());
}

}  // namespace

std::string WriteNumber(double number) { return text::FormatDouble(number); }

int CompareTexts(std::string_view a, std::string_view b, CaseRule caseRule) noexcept {
  // What is the same byte by byte is the same in any sense. Characters are compared from the
  // beginning of the one in which the first different byte lies.
  const std::size_t shorter = std::min(a.size(), b.size());
  std::size_t same = 0;
  while (same < shorter && a[same] == b[same]) ++same;
  if (same == a.size() && same == b.size()) return 0;
  const auto continues = [](std::string_view text, std::size_t at) {
    return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
  };
  while (same > 0 && (continues(a, same) || continues(b, same))) --same;
  return CompareFrom(a, same, b, same, caseRule);
}

bool HoldsForTexts(Comparison comparison, CaseRule caseRule, std::string_view left,
                   std::string_view right) noexcept {
  if (caseRule == CaseRule::kExact) {
    if (comparison == Comparison::kEqual) return left == right;
    if (comparison == Comparison::kNotEqual) return left != right;
  }
  const int order = CompareTexts(left, right, caseRule);
  switch (comparison) {
    case Comparison::kEqual:
      return order == 0;
    case Comparison::kNotEqual:
      return order != 0;
    case Comparison::kLess:
      return order < 0;
    case Comparison::kLessOrEqual:
      return order <= 0;
    case Comparison::kGreater:
      return order > 0;
    case Comparison::kGreaterOrEqual:
      break;
  }
  return order >= 0;
}

bool HoldsForNumbers(Comparison comparison, double left, double right) noexcept {
  switch (comparison) {
    case Comparison::kEqual:
      return left == right;
    case Comparison::kNotEqual:
      return left != right;
    case Comparison::kLess:
      return left < right;
    case Comparison::kLessOrEqual:
      return left <= right;
    case Comparison::kGreater:
      return left > right;
    case Comparison::kGreaterOrEqual:
      break;
  }
  return left >= right;
}

}  // namespace kx::patterns
