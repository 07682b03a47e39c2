// See lexical.h.
#include "platform/datatypes/lexical.h"

#include "platform/datatypes/binary_text.h"
#include "platform/datatypes/date_text_form.h"
#include "platform/datatypes/name_text.h"
#include "platform/datatypes/number_form.h"
#include "platform/datatypes/typed_value.h"
#include "platform/text/unicode.h"

#include <algorithm>
#include <optional>

namespace kx::datatypes {

namespace {

bool IsBoolean(std::string_view text) noexcept {
  if (text.size() == 1) return text[0] == '0' || text[0] == '1';
  return text == "true" || text == "false";
}

// One UTF-16 unit.
bool IsCharacter(std::string_view text) noexcept {
  if (text.empty()) return false;
  const text::Utf8Char c = text::DecodeUtf8(text, 0);
  return c.valid && c.length == text.size() && c.codePoint <= 0xFFFF;
}

bool IsUuid(std::string_view text) noexcept {
  if (text.size() > 2 && text.front() == '{' && text.back() == '}') {
    text = text.substr(1, text.size() - 2);
  }
  const bool hyphens = text.size() == 36;
  if (!hyphens && text.size() != 32) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool atHyphen = hyphens && (i == 8 || i == 13 || i == 18 || i == 23);
    if (atHyphen ? text[i] != '-' : text::HexDigitValue(static_cast<unsigned char>(text[i])) < 0) {
      return false;
    }
  }
  return true;
}

template <class IsItem>
bool IsList(std::string_view text, const IsItem& isItem) noexcept {
  std::string_view token = TakeToken(text);
  if (token.empty()) return false;
  for (; !token.empty(); token = TakeToken(text)) {
    if (!isItem(token)) return false;
  }
  return true;
}

bool IsTextOfNameType(DataType type, std::string_view text) noexcept {
  switch (type) {
    case DataType::kIdrefs:
    case DataType::kEntities:
      return IsList(text, IsNameText);
    case DataType::kNmtokens:
      return IsList(text, IsNameToken);
    case DataType::kNmtoken:
    case DataType::kEnumeration:
      return IsNameToken(text);
    default:
      return IsNameText(text);
  }
}

}  // namespace

bool IsTextOf(DataType type, std::string_view text) noexcept {
  return type <= DataType::kString || IsTrimmedTextOf(type, TrimSpace(text));
}

bool IsTrimmedTextOf(DataType type, std::string_view text) noexcept {
  switch (type) {
    case DataType::kNone:
    case DataType::kString:
    case DataType::kUri:
      return true;
    case DataType::kNumber:
    case DataType::kFloat:
    case DataType::kR4:
    case DataType::kR8:
      return IsNumberOf(type, text);
    case DataType::kFixed144:
      return IsFixedText(text);
    case DataType::kBoolean:
      return IsBoolean(text);
    case DataType::kDateTime:
    case DataType::kDateTimeTz:
    case DataType::kDate:
    case DataType::kTime:
    case DataType::kTimeTz:
      return ReadDateParts(type, text).has_value();
    case DataType::kInt:
    case DataType::kI1:
    case DataType::kI2:
    case DataType::kI4:
    case DataType::kI8:
    case DataType::kUi1:
    case DataType::kUi2:
    case DataType::kUi4:
    case DataType::kUi8:
      return IsIntegerText(type, text);
    case DataType::kChar:
      return IsCharacter(text);
    case DataType::kUuid:
      return IsUuid(text);
    case DataType::kBinHex:
      return CountHexBytes(text).has_value();
    case DataType::kBinBase64:
      return CountBase64Bytes(text).has_value();
    default:
      return IsTextOfNameType(type, text);
  }
}

std::size_t LengthOf(DataType type, std::string_view text) noexcept {
  if (type == DataType::kBinHex) return CountHexBytes(text).value_or(0);
  if (type == DataType::kBinBase64) return CountBase64Bytes(text).value_or(0);
  return text::CountUtf16Units(type == DataType::kString ? text : TrimSpace(text));
}

bool AreSameValue(DataType type, std::string_view a, std::string_view b) {
  if (type > DataType::kString) {
    a = TrimSpace(a);
    b = TrimSpace(b);
  }
  if (a == b) return true;
  if (!IsRichType(type) || !IsTextOf(type, a) || !IsTextOf(type, b)) return false;
  if (type == DataType::kUri) return false;
  if (type == DataType::kUuid) return text::EqualsAsciiCaseless(a, b);
  if (type == DataType::kI8 || type == DataType::kUi8) return IntegerValue(a) == IntegerValue(b);
  if (type == DataType::kNumber) {
    return ReadTyped(DataType::kR8, a) == ReadTyped(DataType::kR8, b);
  }
  return ReadTyped(type, a) == ReadTyped(type, b);
}

}  // namespace kx::datatypes
