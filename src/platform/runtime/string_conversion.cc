// Text to bytes and back, and the string conversion by code. Bytes handed in as bytes are UTF-16
// text unless the code says that they are windows-1252.
#include "platform/runtime/conversions.h"
#include "platform/runtime/error.h"
#include "platform/text/code_page.h"
#include "platform/text/unicode.h"

#include <cstddef>

namespace kx::runtime {
namespace {

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
  if (scalar.IsNull()) return Variant::Null();
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
