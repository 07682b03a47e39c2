// See binary_text.h.
#include "platform/datatypes/binary_text.h"

#include "platform/text/unicode.h"

#include <array>

namespace kx::datatypes {

namespace {

constexpr std::string_view kBase64Digits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::int8_t kOther = -1;
constexpr std::int8_t kSpace = -2;
constexpr std::int8_t kPad = -3;

using DigitTable = std::array<std::int8_t, 256>;

constexpr DigitTable WithSpaces() {
  DigitTable table{};
  for (std::int8_t& value : table) value = kOther;
  for (const char c : {' ', '\t', '\n', '\r'}) table[static_cast<unsigned char>(c)] = kSpace;
  return table;
}

constexpr DigitTable MakeBase64Table() {
  DigitTable table = WithSpaces();
  for (std::size_t i = 0; i < kBase64Digits.size(); ++i) {
    table[static_cast<unsigned char>(kBase64Digits[i])] = static_cast<std::int8_t>(i);
  }
  table['='] = kPad;
  return table;
}

constexpr DigitTable MakeHexTable() {
  DigitTable table = WithSpaces();
  for (unsigned c = 0; c < 256; ++c) {
    const int value = text::HexDigitValue(c);
    if (value >= 0) table[c] = static_cast<std::int8_t>(value);
  }
  return table;
}

constexpr DigitTable kBase64 = MakeBase64Table();
constexpr DigitTable kHex = MakeHexTable();

}  // namespace

std::optional<std::size_t> CountHexBytes(std::string_view text) noexcept {
  std::size_t digits = 0;
  for (const char c : text) {
    const std::int8_t value = kHex[static_cast<unsigned char>(c)];
    if (value == kOther) return std::nullopt;
    digits += value == kSpace ? 0 : 1;
  }
  if (digits % 2 != 0) return std::nullopt;
  return digits / 2;
}

std::optional<std::size_t> CountBase64Bytes(std::string_view text) noexcept {
  std::size_t digits = 0;
  std::size_t pads = 0;
  // Eight digits at a time while there is nothing else: all other values are negative.
  while (text.size() >= 8) {
    int all = 0;
    for (std::size_t i = 0; i < 8; ++i) all |= kBase64[static_cast<unsigned char>(text[i])];
    if (all < 0) break;
    digits += 8;
    text.remove_prefix(8);
  }
  for (const char c : text) {
    const std::int8_t value = kBase64[static_cast<unsigned char>(c)];
    if (value == kSpace) continue;
    if (value == kOther || (value != kPad && pads != 0)) return std::nullopt;
    ++(value == kPad ? pads : digits);
  }
  const std::size_t left = digits % 4;
  if (left == 1 || (pads != 0 && (left == 0 || left + pads != 4))) return std::nullopt;
  return digits / 4 * 3 + (left == 0 ? 0 : left - 1);
}

std::optional<Variant::Bytes> DecodeHex(std::string_view text) {
  const auto count = CountHexBytes(text);
  if (!count) return std::nullopt;
  Variant::Bytes bytes;
  bytes.reserve(*count);
  int high = -1;
  for (const char c : text) {
    // NOLINTNEXTLINE(bugprone-signed-char-misuse): what is no digit is negative in the table
    const int value = kHex[static_cast<unsigned char>(c)];
    if (value < 0) continue;
    if (high < 0) {
      high = value;
      continue;
    }
    bytes.push_back(static_cast<std::uint8_t>(high * 16 + value));
    high = -1;
  }
  return bytes;
}

std::optional<Variant::Bytes> DecodeBase64(std::string_view text) {
  const auto count = CountBase64Bytes(text);
  if (!count) return std::nullopt;
  Variant::Bytes bytes;
  bytes.reserve(*count);
  std::uint32_t bits = 0;
  unsigned held = 0;
  for (const char c : text) {
    // NOLINTNEXTLINE(bugprone-signed-char-misuse): what is no digit is negative in the table
    const int value = kBase64[static_cast<unsigned char>(c)];
    if (value < 0) continue;
    bits = (bits << 6U | static_cast<std::uint32_t>(value)) & 0xFFFFU;
    held += 6;
    if (held < 8) continue;
    held -= 8;
    bytes.push_back(static_cast<std::uint8_t>(bits >> held));
  }
  return bytes;
}

std::string EncodeHex(const Variant::Bytes& bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  text.reserve(bytes.size() * 2);
  for (const std::uint8_t byte : bytes) {
    text += kDigits[byte >> 4U];
    text += kDigits[byte & 15U];
  }
  return text;
}

std::string EncodeBase64(const Variant::Bytes& bytes) {
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    const std::size_t count = bytes.size() - at < 3 ? bytes.size() - at : 3;
    std::uint32_t group = static_cast<std::uint32_t>(bytes[at]) << 16U;
    if (count > 1) group |= static_cast<std::uint32_t>(bytes[at + 1]) << 8U;
    if (count > 2) group |= bytes[at + 2];
    for (std::size_t digit = 0; digit < 4; ++digit) {
      text += digit <= count ? kBase64Digits[group >> (18 - 6 * digit) & 63U] : '=';
    }
  }
  return text;
}

}  // namespace kx::datatypes
