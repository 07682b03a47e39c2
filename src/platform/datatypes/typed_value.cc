// See typed_value.h.
#include "platform/datatypes/typed_value.h"

#include "platform/datatypes/binary_text.h"
#include "platform/datatypes/date_text_form.h"
#include "platform/datatypes/lexical.h"
#include "platform/datatypes/number_form.h"
#include "platform/text/unicode.h"

namespace kx::datatypes {

namespace {

std::optional<Variant> ReadInteger(DataType type, std::string_view text) {
  if (!IsIntegerText(type, text)) return std::nullopt;
  const Integer integer = *IntegerValue(text);
  const auto value =
      static_cast<std::int64_t>(integer.negative ? 0 - integer.magnitude : integer.magnitude);
  switch (type) {
    case DataType::kI1:
      return Variant(static_cast<std::int8_t>(value));
    case DataType::kI2:
      return Variant(static_cast<std::int16_t>(value));
    case DataType::kUi1:
      return Variant(static_cast<std::uint8_t>(value));
    case DataType::kUi2:
      return Variant(static_cast<std::uint16_t>(value));
    case DataType::kUi4:
      return Variant(static_cast<std::uint32_t>(value));
    case DataType::kI8:
    case DataType::kUi8:
      return Variant::Null();
    default:
      return Variant(static_cast<std::int32_t>(value));
  }
}

std::optional<Variant> ReadDate(DataType type, std::string_view text) {
  const auto parts = ReadDateParts(type, text);
  if (!parts) return std::nullopt;
  const auto value = DateValue(*parts);
  if (!value) return std::nullopt;
  return Variant(Date{*value});
}

template <class Value>
std::optional<Variant> Wrap(std::optional<Value> value) {
  if (!value) return std::nullopt;
  return Variant(std::move(*value));
}

std::optional<Variant> ReadCharacter(std::string_view text) {
  if (!IsTextOf(DataType::kChar, text)) return std::nullopt;
  return Variant(static_cast<std::int32_t>(text::DecodeUtf8(text, 0).codePoint));
}

std::optional<Variant> ReadFixed(std::string_view text) {
  const auto amount = FixedValue(text);
  if (!amount) return std::nullopt;
  return Variant(Currency{*amount});
}

std::optional<Variant> ReadBoolean(std::string_view text) {
  if (!IsTextOf(DataType::kBoolean, text)) return std::nullopt;
  return Variant(text == "1" || text == "true");
}

}  // namespace

std::optional<Variant> ReadTyped(DataType type, std::string_view text) {
  if (!IsRichType(type)) return Variant(text);
  text = TrimSpace(text);
  if (IsIntegerType(type)) return ReadInteger(type, text);
  if (IsDateType(type)) return ReadDate(type, text);
  switch (type) {
    case DataType::kFloat:
    case DataType::kR8:
      return Wrap(DoubleValue(text));
    case DataType::kR4:
      return Wrap(SingleValue(text));
    case DataType::kFixed144:
      return ReadFixed(text);
    case DataType::kBoolean:
      return ReadBoolean(text);
    case DataType::kChar:
      return ReadCharacter(text);
    case DataType::kBinHex:
      return Wrap(DecodeHex(text));
    case DataType::kBinBase64:
      return Wrap(DecodeBase64(text));
    default:  // number, uri, uuid
      if (!IsTextOf(type, text)) return std::nullopt;
      return Variant(text);
  }
}

}  // namespace kx::datatypes
