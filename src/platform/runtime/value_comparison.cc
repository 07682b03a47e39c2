// The order of two values. Numbers of all types meet as doubles, texts by their UTF-16 units; a
// number and a text meet as numbers when the text is one.
#include "platform/runtime/conversions.h"
#include "platform/runtime/error.h"
#include "platform/text/number_text.h"
#include "platform/text/unicode.h"

namespace kx::runtime {
namespace {

// Order of the UTF-16 units, which differs from that of the bytes above U+FFFF.
std::weak_ordering CompareUnits(std::string_view a, std::string_view b) {
  if (text::IsAscii(a) && text::IsAscii(b)) return a <=> b;
  return text::ToUtf16(a) <=> text::ToUtf16(b);
}

std::weak_ordering CompareTexts(std::string_view a, std::string_view b, TextComparison comparison) {
  if (comparison == TextComparison::kBinary) return CompareUnits(a, b);
  return CompareUnits(text::UpperCase(a), text::UpperCase(b));
}

std::weak_ordering CompareNumberWithText(double number, const std::string& text) {
  if (!text::IsNumberText(text)) return std::weak_ordering::less;
  return std::weak_order(number, TextToNumber(text));
}

Variant GetComparable(const Variant& value) {
  Variant scalar = ScalarOf(value);
  if (scalar.IsBytes() || scalar.IsError()) RaiseRuntimeError(kTypeMismatch);
  return scalar;
}

std::weak_ordering Reverse(std::weak_ordering order) {
  return order < 0   ? std::weak_ordering::greater
         : order > 0 ? std::weak_ordering::less
                     : std::weak_ordering::equivalent;
}

}  // namespace

std::optional<std::weak_ordering> CompareValues(const Variant& a, const Variant& b,
                                                TextComparison comparison) {
  const Variant left = GetComparable(a);
  const Variant right = GetComparable(b);
  if (left.IsNull() || right.IsNull()) return std::nullopt;
  const std::string* leftText = left.IfText();
  const std::string* rightText = right.IfText();
  const bool asTexts =
      (leftText != nullptr || left.IsEmpty()) && (rightText != nullptr || right.IsEmpty());
  if (asTexts) return CompareTexts(left.ToText(), right.ToText(), comparison);
  if (rightText != nullptr) return CompareNumberWithText(left.ToNumber(), *rightText);
  if (leftText != nullptr) return Reverse(CompareNumberWithText(right.ToNumber(), *leftText));
  return std::weak_order(left.ToNumber(), right.ToNumber());
}

}  // namespace kx::runtime
