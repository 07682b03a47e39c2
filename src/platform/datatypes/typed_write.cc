// Values as text: the other half of typed_value.h.
#include "platform/datatypes/binary_text.h"
#include "platform/datatypes/lexical.h"
#include "platform/datatypes/number_form.h"
#include "platform/datatypes/typed_value.h"
#include "platform/runtime/conversions.h"
#include "platform/runtime/error.h"
#include "platform/text/date_text.h"
#include "platform/text/number_text.h"
#include "platform/text/unicode.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace kx::datatypes {

namespace {

using Text = std::optional<std::string>;

// The scalar's exact whole number, fractions rounded half to even; nothing beyond 64 bits.
std::optional<Integer> RoundDouble(double value) noexcept {
  const double rounded = std::nearbyint(value);
  const double magnitude = std::fabs(rounded);
  if (!(magnitude < 18446744073709551616.0)) return std::nullopt;
  return Integer{static_cast<std::uint64_t>(magnitude), rounded < 0};
}

Integer RoundAmount(std::int64_t tenThousandths) noexcept {
  const bool negative = tenThousandths < 0;
  const std::uint64_t magnitude = negative ? 0 - static_cast<std::uint64_t>(tenThousandths)
                                           : static_cast<std::uint64_t>(tenThousandths);
  std::uint64_t whole = magnitude / 10000;
  const std::uint64_t rest = magnitude % 10000;
  if (rest > 5000 || (rest == 5000 && whole % 2 == 1)) ++whole;
  return {whole, negative};
}

std::optional<Integer> WholeNumber(const Variant& value) {
  if (const bool* truth = value.IfBoolean()) return Integer{*truth ? 1U : 0U, *truth};
  if (const Currency* amount = value.IfCurrency()) return RoundAmount(amount->tenThousandths);
  switch (value.Type()) {
    case VariantType::kSingle:
    case VariantType::kDouble:
      return RoundDouble(value.ToNumber());
    default:
      return value.IsInteger() ? IntegerValue(value.ToText()) : std::nullopt;
  }
}

bool IsNumeric(const Variant& value) { return value.IsNumber() || value.IsBoolean(); }

Text WriteInteger(DataType type, const Variant& value) {
  if (!IsNumeric(value)) return std::nullopt;
  const auto number = WholeNumber(value);
  if (!number) return std::nullopt;
  const IntegerRange range = RangeOf(type);
  const bool negative = number->negative && number->magnitude != 0;
  if (number->magnitude > (negative ? range.below : range.above)) return std::nullopt;
  return (negative ? "-" : "") + text::FormatInteger(number->magnitude);
}

// Digits and exponent as the run-time lays numbers out: plain while that is short, else "1E+20".
std::string LayOut(std::string_view digits, int power, bool negative, bool plain) {
  std::string out = negative ? "-" : "";
  const auto count = static_cast<int>(digits.size());
  if (plain && power < 0) {
    out.append("0.").append(static_cast<std::size_t>(-power - 1), '0').append(digits);
  } else if (plain && count <= power + 1) {
    out.append(digits).append(static_cast<std::size_t>(power + 1 - count), '0');
  } else if (plain) {
    const auto whole = static_cast<std::size_t>(power + 1);
    out.append(digits.substr(0, whole)).append(".").append(digits.substr(whole));
  } else {
    out += digits[0];
    if (count > 1) out.append(".").append(digits.substr(1));
    out.append(power < 0 ? "E-" : "E+");
    if (std::abs(power) < 10) out += '0';
    out += std::to_string(std::abs(power));
  }
  return out;
}

// The shortest decimal text that reads back as the same value.
template <class Number>
Text ShortestText(Number value, const std::string& usual) {
  if (!std::isfinite(value)) return std::nullopt;
  if (value == 0) return "0";
  char buffer[64];
  const auto written = std::to_chars(buffer, buffer + sizeof buffer, std::fabs(value),
                                     std::chars_format::scientific);
  const std::string_view all(buffer, static_cast<std::size_t>(written.ptr - buffer));
  const std::size_t mark = all.find('e');
  std::string digits;
  for (const char c : all.substr(0, mark)) {
    if (c != '.') digits += c;
  }
  while (digits.size() > 1 && digits.back() == '0') digits.pop_back();
  int power = 0;
  const char* const from = all.data() + mark + (all[mark + 1] == '+' ? 2 : 1);
  std::from_chars(from, all.data() + all.size(), power);
  return LayOut(digits, power, value < 0, usual.find('E') == std::string::npos);
}

Text WriteSingle(float value) { return ShortestText(value, text::FormatSingle(value)); }
Text WriteDouble(double value) { return ShortestText(value, text::FormatDouble(value)); }

Text WriteR4(const Variant& value) {
  if (value.Type() == VariantType::kSingle) return WriteSingle(value.ToSingle());
  const double number = value.ToNumber();
  if (!(std::fabs(number) <= static_cast<double>(std::numeric_limits<float>::max()))) {
    return std::nullopt;
  }
  return WriteSingle(static_cast<float>(number));
}

Text WriteReal(DataType type, const Variant& value) {
  if (value.IsDate() && type == DataType::kNumber) return value.ToText();
  if (!IsNumeric(value)) return std::nullopt;
  if (value.IsBoolean()) return *value.IfBoolean() ? "-1" : "0";
  if (type == DataType::kR4) return WriteR4(value);
  if (value.Type() == VariantType::kSingle) return WriteSingle(value.ToSingle());
  const bool exact = value.IsInteger() || value.IsCurrency();
  if (exact && type == DataType::kNumber) return value.ToText();
  return WriteDouble(value.ToNumber());
}

Text WriteFixed(const Variant& value) {
  if (!IsNumeric(value)) return std::nullopt;
  if (value.IsBoolean()) return *value.IfBoolean() ? "-1" : "0";
  try {
    return text::FormatCurrency(value.ToCurrency().tenThousandths);
  } catch (const Error&) {  // overflow: the amount is out of range
    return std::nullopt;
  }
}

Text WriteBoolean(const Variant& value) {
  if (const bool* truth = value.IfBoolean()) return *truth ? "1" : "0";
  if (!value.IsNumber()) return std::nullopt;
  if (const Currency* amount = value.IfCurrency()) return amount->tenThousandths != 0 ? "1" : "0";
  return value.ToNumber() != 0 ? "1" : "0";
}

Text WriteDate(DataType type, const Variant& value) {
  const Date* date = value.IfDate();
  if (date == nullptr) return std::nullopt;
  switch (type) {
    case DataType::kDate:
      return text::FormatDatePattern(date->value, "yyyy-mm-dd");
    case DataType::kTime:
    case DataType::kTimeTz:
      return text::FormatDatePattern(date->value, "hh:nn:ss");
    default: {
      const Text day = text::FormatDatePattern(date->value, "yyyy-mm-dd");
      const Text time = text::FormatDatePattern(date->value, "hh:nn:ss");
      if (!day || !time) return std::nullopt;
      return *day + "T" + *time;
    }
  }
}

Text WriteCharacter(const Variant& value) {
  if (!value.IsInteger()) return std::nullopt;
  const auto code = IntegerValue(value.ToText());
  if (!code || code->negative || code->magnitude > 0xFFFF) return std::nullopt;
  const auto codePoint = static_cast<char32_t>(code->magnitude);
  if (!text::IsXmlChar(codePoint)) return std::nullopt;
  std::string out;
  text::AppendUtf8(out, codePoint);
  return out;
}

Text WriteBytes(DataType type, const Variant& value) {
  const Variant::Bytes* bytes = value.IfBytes();
  if (bytes == nullptr) return std::nullopt;
  return type == DataType::kBinHex ? EncodeHex(*bytes) : EncodeBase64(*bytes);
}

// Into a node without type, or of type string: any scalar as the platform writes it.
Text WriteText(const Variant& value) {
  if (const bool* truth = value.IfBoolean()) return *truth ? "-1" : "0";
  return value.ToText();
}

}  // namespace

std::optional<std::string> WriteTyped(DataType type, const Variant& value) {
  if (value.IsEmpty() || value.IsNull()) return std::string();
  if (value.IsObject() || value.IsError()) return std::nullopt;
  if (const std::string* given = value.IfText()) {
    if (TrimSpace(*given).empty() || IsTextOf(type, *given)) return *given;
    return std::nullopt;
  }
  if (type <= DataType::kString) return WriteText(value);
  if (IsIntegerType(type)) return WriteInteger(type, value);
  if (IsDateType(type)) return WriteDate(type, value);
  if (IsBinaryType(type)) return WriteBytes(type, value);
  switch (type) {
    case DataType::kNumber:
    case DataType::kFloat:
    case DataType::kR4:
    case DataType::kR8:
      return WriteReal(type, value);
    case DataType::kFixed144:
      return WriteFixed(value);
    case DataType::kBoolean:
      return WriteBoolean(value);
    case DataType::kChar:
      return WriteCharacter(value);
    default:  // uri, uuid and the name types take texts only
      return std::nullopt;
  }
}

std::string QuotedValue(const Variant& value) {
  try {
    return value.IsNull() ? std::string() : value.ToText();
  } catch (const Error&) {  // objects and error values have no text
    return {};
  }
}

}  // namespace kx::datatypes
