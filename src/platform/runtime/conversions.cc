// Numbers and dates out of texts and doubles, default values of objects, and keys. Texts go through
// the grammar of text/number_text.h; whole numbers are rounded exactly, not by way of a double.
#include "platform/runtime/conversions.h"

#include "platform/runtime/error.h"
#include "platform/text/date_text.h"
#include "platform/text/number_text.h"
#include "platform/text/unicode.h"

#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

namespace kx::runtime {
namespace {

// An object's value may be an object again; a chain longer than this has no value.
constexpr int kMaxDefaultValueSteps = 32;

// ---- Numbers ------------------------------------------------------------------------------------

double RoundHalfToEven(double value) noexcept {
  const double below = std::floor(value);
  const double rest = value - below;
  if (rest < 0.5) return below;
  if (rest > 0.5) return below + 1;
  return std::fmod(below, 2.0) == 0 ? below : below + 1;
}

template <typename Integer>
std::optional<Integer> FindRoundedAs(double value) noexcept {
  const double rounded = RoundHalfToEven(value);
  const bool fits = rounded >= std::numeric_limits<Integer>::min() &&
                    rounded <= std::numeric_limits<Integer>::max();
  if (!fits) return std::nullopt;  // also what is no number
  return static_cast<Integer>(rounded);
}

template <typename Integer>
Integer RoundAs(double value) {
  const std::optional<Integer> rounded = FindRoundedAs<Integer>(value);
  if (!rounded) RaiseRuntimeError(kOverflow);
  return *rounded;
}

template <typename Integer>
Integer Fit(std::int64_t value) {
  if (value < std::numeric_limits<Integer>::min() || value > std::numeric_limits<Integer>::max()) {
    RaiseRuntimeError(kOverflow);
  }
  return static_cast<Integer>(value);
}

text::ParsedNumber GetNumber(std::string_view text) {
  std::optional<text::ParsedNumber> number = text::ParseNumber(text);
  if (!number) RaiseRuntimeError(kTypeMismatch);
  return std::move(*number);
}

// A magnitude of up to 2^63 with its sign.
std::int64_t WithSign(std::uint64_t magnitude, bool negative) {
  constexpr auto kLargest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  if (negative) return static_cast<std::int64_t>(0 - magnitude);
  if (magnitude > kLargest) RaiseRuntimeError(kOverflow);
  return static_cast<std::int64_t>(magnitude);
}

std::int64_t GetScaled(const text::ParsedNumber& number, int decimals) {
  const auto magnitude = text::ReadScaled(number.digits, number.exponent, decimals);
  if (!magnitude) RaiseRuntimeError(kOverflow);
  return WithSign(*magnitude, number.negative);
}

// Hexadecimal and octal numbers fill the bits of the type; decimals are rounded.
template <typename Signed, typename Unsigned>
Signed TextAs(std::string_view text) {
  const text::ParsedNumber number = GetNumber(text);
  if (!number.hexOrOctal) return Fit<Signed>(GetScaled(number, 0));
  if (number.tooManyBits || number.bits > std::numeric_limits<Unsigned>::max()) {
    RaiseRuntimeError(kOverflow);
  }
  const std::int64_t value = static_cast<Signed>(static_cast<Unsigned>(number.bits));
  return Fit<Signed>(number.negative ? -value : value);
}

}  // namespace

std::optional<std::int32_t> FindRounded(double value) noexcept {
  return FindRoundedAs<std::int32_t>(value);
}

std::int32_t RoundToInteger(double value) { return RoundAs<std::int32_t>(value); }

std::int16_t RoundToInteger16(double value) { return RoundAs<std::int16_t>(value); }

std::int16_t AddInteger16(std::int16_t a, std::int16_t b) {
  return Fit<std::int16_t>(std::int64_t{a} + b);
}

std::int16_t SubtractInteger16(std::int16_t a, std::int16_t b) {
  return Fit<std::int16_t>(std::int64_t{a} - b);
}

std::int32_t AddInteger(std::int32_t a, std::int32_t b) {
  return Fit<std::int32_t>(std::int64_t{a} + b);
}

std::int32_t SubtractInteger(std::int32_t a, std::int32_t b) {
  return Fit<std::int32_t>(std::int64_t{a} - b);
}

double TextToNumber(std::string_view text) {
  const text::DecimalValue value = text::ValueOf(GetNumber(text));
  if (value.status == text::DecimalStatus::kTooLarge) RaiseRuntimeError(kOverflow);
  return value.value;
}

std::int32_t TextToInteger(std::string_view text) {
  return TextAs<std::int32_t, std::uint32_t>(text);
}

std::int16_t TextToInteger16(std::string_view text) {
  return TextAs<std::int16_t, std::uint16_t>(text);
}

Currency TextToCurrency(std::string_view text) {
  const text::ParsedNumber number = GetNumber(text);
  if (!number.hexOrOctal) return {GetScaled(number, 4)};
  return Variant(text::ValueOf(number).value).ToCurrency();
}

std::optional<Variant> FindScalar(const Variant& value) {
  Variant current = value;
  for (int step = 0; current.IsObject(); ++step) {
    if (current.IsNothing() || step == kMaxDefaultValueSteps) return std::nullopt;
    std::optional<Variant> next = current.IfObject()->DefaultValue();
    if (!next) return std::nullopt;
    current = std::move(*next);
  }
  return current;
}

Variant ScalarOf(const Variant& value) {
  if (value.IsNothing()) RaiseRuntimeError(kObjectNotSet);
  std::optional<Variant> scalar = FindScalar(value);
  if (!scalar) RaiseRuntimeError(kNoSuchMember);
  return std::move(*scalar);
}

bool IsNumeric(const Variant& value) {
  const std::optional<Variant> scalar = FindScalar(value);
  if (!scalar) return false;
  if (const std::string* text = scalar->IfText()) return text::IsNumberText(*text);
  return scalar->IsEmpty() || scalar->IsBoolean() || scalar->IsNumber();
}

Date TextToDate(std::string_view text) {
  const std::optional<double> date = text::ParseDate(text);
  if (!date) RaiseRuntimeError(kTypeMismatch);
  return {*date};
}

std::string FormatDateTime(const Variant& value, std::string_view pattern) {
  const Variant scalar = ScalarOf(value);
  if (scalar.IsNull()) return {};
  if (const std::string* text = scalar.IfText(); text != nullptr && !text::ParseDate(*text)) {
    return *text;
  }
  const auto formatted = text::FormatDatePattern(scalar.ToDate().value, pattern);
  if (!formatted) RaiseRuntimeError(kInvalidProcedureCall);
  return *formatted;
}

std::int32_t PositionOrName::ZeroBased() const { return RoundToInteger(position.value_or(0) - 1); }

PositionOrName ReadKey(const Variant& key) {
  // Most keys are names, and what begins with a letter is no number.
  const std::string* const text = key.IfText();
  if (text != nullptr && !text->empty() &&
      text::IsAsciiLetter(static_cast<unsigned char>(text->front()))) {
    return {std::nullopt, *text};
  }
  const Variant scalar = ScalarOf(key);
  if (scalar.IsError()) RaiseRuntimeError(kTypeMismatch);
  if (IsNumeric(scalar)) return {scalar.ToNumber(), {}};
  return {std::nullopt, scalar.ToText()};
}

}  // namespace kx::runtime
