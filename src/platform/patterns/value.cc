// See value.h.
#include "platform/patterns/value.h"

#include "platform/text/number_text.h"
#include "platform/text/unicode.h"

#include <algorithm>

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

}  // namespace

std::string WriteNumber(double number) { return text::FormatDouble(number); }

std::size_t SameBytes(std::string_view a, std::string_view b) noexcept {
  const std::size_t shorter = std::min(a.size(), b.size());
  return static_cast<std::size_t>(std::mismatch(a.begin(), a.begin() + shorter, b.begin()).first -
                                  a.begin());
}

void TextPair::Skip(std::size_t same) noexcept {
  atA_ += same;
  atB_ += same;
  const auto continues = [](std::string_view text, std::size_t at) {
    return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
  };
  constexpr std::size_t kMostContinued = 3;
  for (std::size_t left = std::min(same, kMostContinued); left > 0; --left) {
    if (!continues(a_, atA_) && !continues(b_, atB_)) return;
    --atA_;
    --atB_;
  }
}

std::optional<int> TextPair::CompareOne(CaseRule caseRule) noexcept {
  if (atA_ >= a_.size() || atB_ >= b_.size()) {
    return static_cast<int>(atA_ < a_.size()) - static_cast<int>(atB_ < b_.size());
  }
  const Folded inA = Next(a_, atA_, caseRule);
  const Folded inB = Next(b_, atB_, caseRule);
  if (inA.character != inB.character) {
    return UnitOrder(inA.character) < UnitOrder(inB.character) ? -1 : 1;
  }
  atA_ = inA.next;
  atB_ = inB.next;
  return std::nullopt;
}

int CompareTexts(std::string_view a, std::string_view b, CaseRule caseRule) noexcept {
  TextPair pair(a, b);
  while (true) {
    pair.Skip(SameBytes(pair.LeftOfA(), pair.LeftOfB()));
    if (const std::optional<int> order = pair.CompareOne(caseRule)) return *order;
  }
}

bool HoldsForTexts(Comparison comparison, CaseRule caseRule, std::string_view left,
                   std::string_view right) noexcept {
  if (caseRule == CaseRule::kExact) {
    if (comparison == Comparison::kEqual) return left == right;
    if (comparison == Comparison::kNotEqual) return left != right;
  }
  return HoldsForOrder(comparison, CompareTexts(left, right, caseRule));
}

bool HoldsForOrder(Comparison comparison, int order) noexcept {
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
