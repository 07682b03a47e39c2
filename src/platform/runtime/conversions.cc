#include "platform/runtime/conversions.h"

#include "platform/runtime/error.h"
#include "platform/text/code_page.h"
#include "platform/text/date_text.h"
#include "platform/text/number_text.h"
#include "platform/text/unicode.h"

#include <algorithm>
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

// ---- Val ----------------------------------------------------------------------------------------

// Reads the leading number; blanks, tabs and LF are invisible to it.
class LeadingNumber {
 public:
  explicit LeadingNumber(std::string_view text) : text_(text) {}

  double Read() {
    const bool negative = Peek() == '-';
    if (negative || Peek() == '+') Take();
    const double magnitude = Peek() == '&' ? ReadBits() : ReadDecimal();
    return negative && magnitude != 0 ? -magnitude : magnitude;
  }

 private:
  [[nodiscard]] static bool IsInvisible(char c) { return c == ' ' || c == '\t' || c == '\n'; }

  char Peek() {
    while (at_ < text_.size() && IsInvisible(text_[at_])) ++at_;
    return at_ < text_.size() ? text_[at_] : '\0';
  }

  char Take() {
    const char c = Peek();
    ++at_;
    return c;
  }

  [[nodiscard]] bool AtDigit() { return text::IsAsciiDigit(static_cast<unsigned char>(Peek())); }

  double ReadBits() {
    Take();
    const char letter = text::AsciiToUpper(Take());
    if (letter != 'H' && letter != 'O') return 0;
    const int base = letter == 'H' ? 16 : 8;
    double exact = 0;
    for (int digit = NextDigit(base); digit >= 0; digit = NextDigit(base)) {
      exact = exact * base + digit;
      Take();
    }
    if (!std::isfinite(exact)) RaiseRuntimeError(kOverflow);
    return WithTypeOfBits(exact);
  }

  int NextDigit(int base) {
    const int digit = text::HexDigitValue(static_cast<unsigned char>(Peek()));
    return digit < base ? digit : -1;
  }

  // Up to 16 bits are a signed 16-bit number unless "&" asks for 32, up to 32 a signed 32-bit one.
  double WithTypeOfBits(double value) {
    if (value >= 0x8000 && value <= 0xFFFF && Peek() != '&') return value - 0x10000;
    if (value >= 0x80000000 && value <= 0xFFFFFFFF) return value - 4294967296.0;
    return value;
  }

  double ReadDecimal() {
    std::string digits;
    bool pointSeen = false;
    for (; AtDigit() || (Peek() == '.' && !pointSeen); digits.push_back(Take())) {
      pointSeen = pointSeen || Peek() == '.';
    }
    if (digits.empty() || digits == ".") return 0;
    const text::DecimalValue value = text::ReadDecimal(digits, ReadExponent());
    if (value.status == text::DecimalStatus::kTooLarge) RaiseRuntimeError(kOverflow);
    return value.value;
  }

  // 0 when the letter is not followed by digits.
  std::int64_t ReadExponent() {
    constexpr std::int64_t kLimit = 1'000'000'000'000;
    const char letter = text::AsciiToUpper(Peek());
    if (letter != 'E' && letter != 'D') return 0;
    Take();
    const bool negative = Peek() == '-';
    if (negative || Peek() == '+') Take();
    std::int64_t exponent = 0;
    while (AtDigit()) exponent = std::min(exponent * 10 + (Take() - '0'), kLimit);
    return negative ? -exponent : exponent;
  }

  std::string_view text_;
  std::size_t at_ = 0;
};

// ---- Comparison ---------------------------------------------------------------------------------

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

// ---- Conversion by code -------------------------------------------------------------------------

constexpr std::int32_t kUpperCase = 1;
constexpr std::int32_t kLowerCase = 2;
constexpr std::int32_t kProperCase = 3;
constexpr std::int32_t kFromCodePage = 64;
constexpr std::int32_t kToCodePage = 128;

bool SeparatesWords(char32_t c) { return c == 0 || c == U' ' || (c >= U'\t' && c <= U'\r'); }

std::string CapitaliseWords(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  bool atStart = true;
  for (std::size_t offset = 0; offset < text.size();) {
    const text::Utf8Char c = text::DecodeUtf8(text, offset);
    text::AppendUtf8(out, atStart ? text::ToUpper(c.codePoint) : text::ToLower(c.codePoint));
    atStart = SeparatesWords(c.codePoint);
    offset += c.length;
  }
  return out;
}

std::string ConvertCase(std::string text, std::int32_t code) {
  switch (code) {
    case kUpperCase:
      return text::UpperCase(text);
    case kLowerCase:
      return text::LowerCase(text);
    case kProperCase:
      return CapitaliseWords(text);
    default:
      return text;
  }
}

Variant::Bytes BytesOf(const Variant& value) {
  return value.IsBytes() ? *value.IfBytes() : TextToBytes(value.ToText());
}

std::string_view AsChars(const Variant::Bytes& bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
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

double Val(std::string_view text) { return LeadingNumber(text).Read(); }

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
  const Variant scalar = ScalarOf(key);
  if (scalar.IsError()) RaiseRuntimeError(kTypeMismatch);
  if (IsNumeric(scalar)) return {scalar.ToNumber(), {}};
  return {std::nullopt, scalar.ToText()};
}

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

Variant::Bytes TextToBytes(std::string_view text) {
  Variant::Bytes bytes;
  bytes.reserve(text.size() * 2);
  for (const char16_t unit : text::ToUtf16(text)) {
    bytes.push_back(static_cast<std::uint8_t>(unit & 0xFF));
    bytes.push_back(static_cast<std::uint8_t>(unit >> 8));
  }
  return bytes;
}

std::string BytesToText(std::span<const std::uint8_t> bytes) {
  std::u16string units;
  units.reserve(bytes.size() / 2);
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    units.push_back(static_cast<char16_t>(bytes[i] | bytes[i + 1] << 8));
  }
  return text::ToUtf8(units);
}

std::string ToJoinedText(const Variant& value) {
  const Variant scalar = ScalarOf(value);
  return scalar.IsNull() ? std::string() : scalar.ToText();
}

Variant StrConv(const Variant& value, std::int32_t code) {
  const std::int32_t direction = code & (kFromCodePage | kToCodePage);
  const std::int32_t letterCase = code & ~direction;
  const bool both = direction == (kFromCodePage | kToCodePage);
  if (code == 0 || both || letterCase < 0 || letterCase > kProperCase) {
    RaiseRuntimeError(kInvalidProcedureCall);
  }
  const Variant scalar = ScalarOf(value);
  if (scalar.IsNull()) return scalar;
  const text::CodePage page = text::Windows1252();
  if (direction == kFromCodePage) {
    return ConvertCase(page.Decode(AsChars(BytesOf(scalar))), letterCase);
  }
  std::string converted = ConvertCase(scalar.ToText(), letterCase);
  if (direction == 0) return converted;
  const std::string bytes = page.Encode(converted);
  return Variant::Bytes(bytes.begin(), bytes.end());
}

}  // namespace kx::runtime
