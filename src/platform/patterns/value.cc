// See value.h.
#include "platform/patterns/value.h"

#include "platform/text/number_text.h"
#include "platform/text/unicode.h"

#include <algorithm>
#include <cstddef>
#include <optional>

namespace kx::patterns {

namespace {

constexpr bool IsBlank(char c) { return text::IsXmlSpace(static_cast<unsigned char>(c)); }
constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

// Takes a sign off the front; true when it is a minus.
bool TakeSign(std::string_view& text) {
  if (text.empty() || (text.front() != '-' && text.front() != '+')) return false;
  const bool negative = text.front() == '-';
  text.remove_prefix(1);
  return negative;
}

std::size_t CountDigits(std::string_view text) {
  const auto end = std::find_if_not(text.begin(), text.end(), IsDigit);
  return static_cast<std::size_t>(end - text.begin());
}

// The length of digits with at most one point at the front of `text`; 0 without any digit.
std::size_t MantissaLength(std::string_view text) {
  const std::size_t whole = CountDigits(text);
  if (whole == text.size() || text[whole] != '.') return whole;
  const std::size_t fraction = CountDigits(text.substr(whole + 1));
  return whole + fraction == 0 ? 0 : whole + 1 + fraction;
}

// The value of up to fifteen digits that a division by a power of ten at most makes: both are exact
// as doubles, so the result is the nearest one. Nothing for longer ones.
std::optional<double> ReadShort(std::string_view digits) {
  constexpr double kPowers[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
  if (digits.size() > 15) return std::nullopt;
  std::int64_t value = 0;
  std::size_t fraction = 0;
  for (std::size_t i = 0; i < digits.size(); ++i) {
    if (digits[i] == '.') {
      fraction = digits.size() - i - 1;
    } else {
      value = value * 10 + (digits[i] - '0');
    }
  }
  return static_cast<double>(value) / kPowers[fraction];
}

double ReadMantissa(std::string_view digits, std::int64_t exponent) {
  if (exponent == 0) {
    if (const std::optional<double> value = ReadShort(digits)) return *value;
  }
  return text::ReadDecimal(digits, exponent).value;
}

// An exponent of whatever length; far outside the range of a double it makes no difference.
std::int64_t ReadExponent(std::string_view digits, bool negative) {
  constexpr std::int64_t kMost = 1'000'000'000'000;
  std::int64_t exponent = 0;
  for (const char c : digits) exponent = std::min(kMost, exponent * 10 + (c - '0'));
  return negative ? -exponent : exponent;
}

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

double ReadNumber(std::string_view text) {
  text = Trimmed(text);
  const bool negative = TakeSign(text);
  const std::size_t length = MantissaLength(text);
  if (length == 0) return kUnreadable;
  const std::string_view digits = text.substr(0, length);
  text.remove_prefix(length);
  std::int64_t exponent = 0;
  if (!text.empty() && (text.front() == 'e' || text.front() == 'E')) {
    text.remove_prefix(1);
    const bool down = TakeSign(text);
    const std::size_t exponentLength = CountDigits(text);
    if (exponentLength == 0) return kUnreadable;
    exponent = ReadExponent(text.substr(0, exponentLength), down);
    text.remove_prefix(exponentLength);
  }
  if (!text.empty()) return kUnreadable;
  const double magnitude = ReadMantissa(digits, exponent);
  return negative ? -magnitude : magnitude;
}

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
