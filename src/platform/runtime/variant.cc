// What a value is, and its conversions to the plain types. Every conversion first resolves an
// object to its default value, then treats the marks (empty, Null, error) and arrays alike; the
// rules for texts are in conversions.h.
#include "kxmessage/variant.h"

#include "platform/runtime/conversions.h"
#include "platform/runtime/error.h"
#include "platform/text/date_text.h"
#include "platform/text/number_text.h"
#include "platform/text/unicode.h"

#include <array>
#include <cmath>
#include <limits>

namespace kx {

using runtime::RaiseRuntimeError;

namespace {

// In the order of the alternatives of Variant::Data; kept in step by the test over all types.
constexpr std::array kTypes = {
    VariantType::kEmpty,      VariantType::kNull,       VariantType::kText,
    VariantType::kBoolean,    VariantType::kInteger8,   VariantType::kInteger16,
    VariantType::kInteger32,  VariantType::kInteger64,  VariantType::kUnsigned8,
    VariantType::kUnsigned16, VariantType::kUnsigned32, VariantType::kUnsigned64,
    VariantType::kSingle,     VariantType::kDouble,     VariantType::kCurrency,
    VariantType::kDate,       VariantType::kError,      VariantType::kBytes,
    VariantType::kObject,
};

template <typename T>
constexpr bool kIsArithmetic = std::is_arithmetic_v<T> && !std::is_same_v<T, bool>;

constexpr double kTenThousand = 10000.0;

// The number of an error value as people read it: a run-time error's own number.
std::string ErrorText(std::int32_t code) {
  const int mapped = runtime::MapStatusToRuntimeError(code);
  const std::int32_t number = mapped != 0 ? mapped : runtime::RuntimeErrorOfStatus(code);
  return "Error " + std::to_string(number);
}

std::string DateToText(double date) {
  const std::optional<std::string> text = text::FormatGeneralDate(date);
  if (!text) RaiseRuntimeError(runtime::kInvalidProcedureCall);
  return *text;
}

// An amount from a count of ten-thousandths that a double holds.
Currency RoundToCurrency(double tenThousandths) {
  constexpr double kLimit = 9223372036854775808.0;
  // Halves to the even neighbour, which is the rounding of the environment by default; done by hand
  // because callers may have changed that.
  const double below = std::floor(tenThousandths);
  const double rest = tenThousandths - below;
  const bool up = rest > 0.5 || (rest == 0.5 && std::fmod(below, 2.0) != 0);
  const double rounded = up ? below + 1 : below;
  if (!(rounded >= -kLimit && rounded < kLimit)) RaiseRuntimeError(runtime::kOverflow);
  return {static_cast<std::int64_t>(rounded)};
}

bool TextToBoolean(const std::string& text) {
  if (text::EqualsAsciiCaseless(text, "True") || text == "#TRUE#") return true;
  if (text::EqualsAsciiCaseless(text, "False") || text == "#FALSE#") return false;
  return runtime::TextToNumber(text) != 0;
}

}  // namespace

std::optional<Variant> Object::DefaultValue() const { return std::nullopt; }

VariantType Variant::Type() const noexcept { return kTypes[data_.index()]; }

bool Variant::IsNothing() const noexcept {
  const auto* object = std::get_if<ObjectRef>(&data_);
  return object != nullptr && !*object;
}

bool Variant::IsMissing() const noexcept {
  const auto* error = std::get_if<ErrorValue>(&data_);
  return error != nullptr && error->code == kMissingArgumentCode;
}

bool Variant::IsInteger() const noexcept {
  switch (Type()) {
    case VariantType::kInteger8:
    case VariantType::kInteger16:
    case VariantType::kInteger32:
    case VariantType::kInteger64:
    case VariantType::kUnsigned8:
    case VariantType::kUnsigned16:
    case VariantType::kUnsigned32:
    case VariantType::kUnsigned64:
      return true;
    default:
      return false;
  }
}

bool Variant::IsNumber() const noexcept {
  return IsInteger() || Holds<float>() || Holds<double>() || Holds<Currency>();
}

Object* Variant::IfObject() const noexcept {
  const auto* object = std::get_if<ObjectRef>(&data_);
  return object != nullptr ? object->Get() : nullptr;
}

std::int32_t Variant::ToInteger() const {
  const Variant scalar = runtime::ScalarOf(*this);
  if (const std::string* text = scalar.IfText()) return runtime::TextToInteger(*text);
  return runtime::RoundToInteger(scalar.ToNumber());
}

std::int16_t Variant::ToInteger16() const {
  const Variant scalar = runtime::ScalarOf(*this);
  if (const std::string* text = scalar.IfText()) return runtime::TextToInteger16(*text);
  return runtime::RoundToInteger16(scalar.ToNumber());
}

double Variant::ToNumber() const {
  return std::visit(
      [this](const auto& value) -> double {
        using T = std::decay_t<decltype(value)>;
        if constexpr (kIsArithmetic<T>)
          return static_cast<double>(value);
        else if constexpr (std::is_same_v<T, std::monostate>)
          return 0;
        else if constexpr (std::is_same_v<T, bool>)
          return value ? -1 : 0;
        else if constexpr (std::is_same_v<T, std::string>)
          return runtime::TextToNumber(value);
        else if constexpr (std::is_same_v<T, Currency>)
          return static_cast<double>(value.tenThousandths) / kTenThousand;
        else if constexpr (std::is_same_v<T, Date>)
          return value.value;
        else if constexpr (std::is_same_v<T, ObjectRef>)
          return runtime::ScalarOf(*this).ToNumber();
        else if constexpr (std::is_same_v<T, NullMark>)
          RaiseRuntimeError(runtime::kInvalidUseOfNull);
        else
          RaiseRuntimeError(runtime::kTypeMismatch);
      },
      data_);
}

float Variant::ToSingle() const {
  if (const float* single = std::get_if<float>(&data_)) return *single;
  const double value = ToNumber();
  const auto single = static_cast<float>(value);
  if (std::isinf(single) && !std::isinf(value)) RaiseRuntimeError(runtime::kOverflow);
  return single;
}

Currency Variant::ToCurrency() const {
  const Variant scalar = runtime::ScalarOf(*this);
  if (const Currency* currency = scalar.IfCurrency()) return *currency;
  if (const std::string* text = scalar.IfText()) return runtime::TextToCurrency(*text);
  return RoundToCurrency(scalar.ToNumber() * kTenThousand);
}

bool Variant::ToBoolean() const {
  const Variant scalar = runtime::ScalarOf(*this);
  if (const std::string* text = scalar.IfText()) return TextToBoolean(*text);
  return scalar.ToNumber() != 0;
}

Date Variant::ToDate() const {
  const Variant scalar = runtime::ScalarOf(*this);
  if (const Date* date = scalar.IfDate()) return *date;
  if (const std::string* text = scalar.IfText()) return runtime::TextToDate(*text);
  const double value = scalar.ToNumber();
  if (!(value >= text::kMinDate && value < text::kEndDate)) RaiseRuntimeError(runtime::kOverflow);
  return {value};
}

std::string Variant::ToText() const {
  return std::visit(
      [this](const auto& value) -> std::string {
        using T = std::decay_t<decltype(value)>;
        if constexpr (std::is_same_v<T, std::string>)
          return value;
        else if constexpr (std::is_same_v<T, std::monostate>)
          return {};
        else if constexpr (std::is_same_v<T, bool>)
          return value ? "True" : "False";
        else if constexpr (std::is_same_v<T, float>)
          return text::FormatSingle(value);
        else if constexpr (std::is_same_v<T, double>)
          return text::FormatDouble(value);
        else if constexpr (kIsArithmetic<T>)
          return std::to_string(value);
        else if constexpr (std::is_same_v<T, Currency>)
          return text::FormatCurrency(value.tenThousandths);
        else if constexpr (std::is_same_v<T, Date>)
          return DateToText(value.value);
        else if constexpr (std::is_same_v<T, ErrorValue>)
          return ErrorText(value.code);
        else if constexpr (std::is_same_v<T, Bytes>)
          return runtime::BytesToText(value);
        else if constexpr (std::is_same_v<T, ObjectRef>)
          return runtime::ScalarOf(*this).ToText();
        else
          RaiseRuntimeError(runtime::kInvalidUseOfNull);
      },
      data_);
}

Variant::Bytes Variant::ToBytes() const {
  const Variant scalar = runtime::ScalarOf(*this);
  if (const Bytes* bytes = scalar.IfBytes()) return *bytes;
  if (const std::string* text = scalar.IfText()) return runtime::TextToBytes(*text);
  RaiseRuntimeError(scalar.IsNull() ? runtime::kInvalidUseOfNull : runtime::kTypeMismatch);
}

bool operator==(const Variant& a, const Variant& b) noexcept { return a.data_ == b.data_; }

}  // namespace kx
