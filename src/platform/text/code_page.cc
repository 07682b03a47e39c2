// The code pages at work. A page is of one of four kinds: a table for single bytes, UTF-8, UTF-16,
// or an encoding of the host; every conversion chooses between them in that order.
#include "platform/text/code_page.h"

#include "platform/text/code_page_labels.h"
#include "platform/text/code_page_tables.h"
#include "platform/text/unicode.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kx::text {
namespace {

constexpr std::size_t kMaxLabelLength = 64;

enum class Undefined { kLenient, kStrict };

// The pages of this family leave holes in 80 to 9F that carry the control characters.
bool HasControlsInHoles(const SingleByteTable& table) noexcept { return table.number < 2000; }

std::optional<char32_t> DecodeByte(const SingleByteTable& table, unsigned char byte,
                                   Undefined undefined) noexcept {
  if (byte < 0x80) return byte;
  const char16_t character = table.characters[byte - 0x80U];
  if (character != 0) return character;
  if (undefined == Undefined::kLenient && byte < 0xA0 && HasControlsInHoles(table)) return byte;
  return std::nullopt;
}

std::optional<unsigned char> EncodeByte(const SingleByteTable& table, char32_t codePoint) noexcept {
  if (codePoint < 0x80) return static_cast<unsigned char>(codePoint);
  const auto end = table.byCharacter.begin() + static_cast<std::ptrdiff_t>(table.defined);
  const auto found = std::lower_bound(
      table.byCharacter.begin(), end, codePoint,
      [](const CharacterByte& entry, char32_t wanted) { return entry.character < wanted; });
  if (found != end && found->character == codePoint) return found->byte;
  if (codePoint < 0xA0 && HasControlsInHoles(table) && table.characters[codePoint - 0x80] == 0) {
    return static_cast<unsigned char>(codePoint);
  }
  return std::nullopt;
}

StrictDecoding DecodeSingleByte(const SingleByteTable& table, std::string_view bytes,
                                Undefined undefined) {
  StrictDecoding result;
  result.text.reserve(bytes.size() + bytes.size() / 8);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const auto character = DecodeByte(table, static_cast<unsigned char>(bytes[i]), undefined);
    if (!character && undefined == Undefined::kStrict) {
      result.badOffset = i;
      return result;
    }
    AppendUtf8(result.text, character.value_or(kReplacementCharacter));
  }
  return result;
}

StrictDecoding DecodeUtf8Bytes(std::string_view bytes, Undefined undefined) {
  const std::optional<std::size_t> bad = FindInvalidUtf8(bytes);
  if (!bad) return {std::string(bytes), std::nullopt};
  StrictDecoding result{std::string(bytes.substr(0, *bad)), bad};
  if (undefined == Undefined::kStrict) return result;
  for (std::size_t offset = *bad; offset < bytes.size();) {
    const Utf8Char c = DecodeUtf8(bytes, offset);
    AppendUtf8(result.text, c.codePoint);
    offset += c.length;
  }
  return result;
}

class Utf16Reader {
 public:
  Utf16Reader(std::string_view bytes, CodePageKind kind) noexcept
      : bytes_(bytes), low_(kind == CodePageKind::kUtf16Le ? 0 : 1) {}

  // The unit at an even offset below the last byte.
  [[nodiscard]] char32_t Unit(std::size_t offset) const noexcept {
    return static_cast<unsigned char>(bytes_[offset + low_]) |
           static_cast<char32_t>(static_cast<unsigned char>(bytes_[offset + 1 - low_])) << 8;
  }

  // The code point at `offset`; not valid for a lone surrogate and for an odd last byte.
  [[nodiscard]] Utf8Char Read(std::size_t offset) const noexcept {
    if (offset + 1 >= bytes_.size()) return {kReplacementCharacter, 1, false};
    const char32_t first = Unit(offset);
    if (!IsSurrogate(first)) return {first, 2, true};
    if (IsHighSurrogate(first) && offset + 3 < bytes_.size()) {
      const char32_t second = Unit(offset + 2);
      if (IsLowSurrogate(second)) {
        return {0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00), 4, true};
      }
    }
    return {kReplacementCharacter, 2, false};
  }

 private:
  std::string_view bytes_;
  std::size_t low_;
};

StrictDecoding DecodeUtf16Bytes(std::string_view bytes, CodePageKind kind, Undefined undefined) {
  StrictDecoding result;
  result.text.reserve(bytes.size() / 2);
  const Utf16Reader reader(bytes, kind);
  for (std::size_t offset = 0; offset < bytes.size();) {
    const Utf8Char c = reader.Read(offset);
    if (!c.valid && undefined == Undefined::kStrict) {
      result.badOffset = offset;
      return result;
    }
    AppendUtf8(result.text, c.codePoint);
    offset += c.length;
  }
  return result;
}

std::string EncodeUtf16(std::string_view text, CodePageKind kind) {
  std::string out;
  out.reserve(text.size() * 2);
  for (const char16_t unit : ToUtf16(text)) {
    const char low = static_cast<char>(unit & 0xFF);
    const char high = static_cast<char>(unit >> 8);
    out.push_back(kind == CodePageKind::kUtf16Le ? low : high);
    out.push_back(kind == CodePageKind::kUtf16Le ? high : low);
  }
  return out;
}

std::string EncodeSingleByte(const SingleByteTable& table, std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t offset = 0; offset < text.size();) {
    const Utf8Char c = DecodeUtf8(text, offset);
    const auto byte = EncodeByte(table, c.codePoint);
    out.push_back(byte ? static_cast<char>(*byte) : '?');
    offset += c.length;
  }
  return out;
}

// Goes on behind each byte that the host refuses.
std::string DecodeByHost(const HostCodec& host, std::string_view name, std::string_view bytes) {
  std::string out;
  while (true) {
    HostConversion part = host.ToUtf8(name, bytes);
    out += part.output;
    if (!part.badOffset) return out;
    AppendUtf8(out, kReplacementCharacter);
    bytes.remove_prefix(std::min(*part.badOffset + 1, bytes.size()));
  }
}

// Puts "?" for each character that the host refuses and goes on behind it.
std::string EncodeByHost(const HostCodec& host, std::string_view name, std::string_view text) {
  const std::string wellFormed =
      IsValidUtf8(text) ? std::string() : DecodeUtf8Bytes(text, Undefined::kLenient).text;
  std::string_view rest = IsValidUtf8(text) ? text : std::string_view(wellFormed);
  std::string out;
  while (true) {
    HostConversion part = host.FromUtf8(name, rest);
    out += part.output;
    if (!part.badOffset || *part.badOffset >= rest.size()) return out;
    out.push_back('?');
    rest.remove_prefix(*part.badOffset + DecodeUtf8(rest, *part.badOffset).length);
  }
}

bool IsPlausibleLabel(std::string_view name) noexcept {
  return !name.empty() && name.size() <= kMaxLabelLength &&
         std::all_of(name.begin(), name.end(), [](char c) {
           const auto u = static_cast<unsigned char>(c);
           return IsAsciiLetter(u) || IsAsciiDigit(u) || c == '.' || c == '_' || c == ':' ||
                  c == '-';
         });
}

}  // namespace

int CodePage::Number() const noexcept { return entry_ != nullptr ? entry_->number : 0; }

std::string_view CodePage::Name() const noexcept {
  return entry_ != nullptr ? entry_->name : std::string_view(hostName_);
}

bool CodePage::IsSingleByte() const noexcept { return table_ != nullptr; }

std::string CodePage::Decode(std::string_view bytes) const {
  if (table_ != nullptr) return DecodeSingleByte(*table_, bytes, Undefined::kLenient).text;
  if (host_ != nullptr) return DecodeByHost(*host_, hostName_, bytes);
  if (entry_->kind == CodePageKind::kUtf8) return DecodeUtf8Bytes(bytes, Undefined::kLenient).text;
  return DecodeUtf16Bytes(bytes, entry_->kind, Undefined::kLenient).text;
}

StrictDecoding CodePage::DecodeStrict(std::string_view bytes) const {
  if (table_ != nullptr) return DecodeSingleByte(*table_, bytes, Undefined::kStrict);
  if (host_ != nullptr) {
    HostConversion conversion = host_->ToUtf8(hostName_, bytes);
    return {std::move(conversion.output), conversion.badOffset};
  }
  if (entry_->kind == CodePageKind::kUtf8) return DecodeUtf8Bytes(bytes, Undefined::kStrict);
  return DecodeUtf16Bytes(bytes, entry_->kind, Undefined::kStrict);
}

std::string CodePage::Encode(std::string_view text) const {
  if (table_ != nullptr) return EncodeSingleByte(*table_, text);
  if (host_ != nullptr) return EncodeByHost(*host_, hostName_, text);
  if (entry_->kind == CodePageKind::kUtf8) return DecodeUtf8Bytes(text, Undefined::kLenient).text;
  return EncodeUtf16(text, entry_->kind);
}

bool CodePage::CanEncode(char32_t codePoint) const {
  if (IsSurrogate(codePoint) || codePoint > kMaxCodePoint) return false;
  if (table_ != nullptr) return EncodeByte(*table_, codePoint).has_value();
  if (host_ == nullptr) return true;
  std::string text;
  AppendUtf8(text, codePoint);
  return !host_->FromUtf8(hostName_, text).badOffset;
}

std::optional<char32_t> CodePage::CharacterOf(std::uint8_t byte) const noexcept {
  if (table_ == nullptr) return std::nullopt;
  return DecodeByte(*table_, byte, Undefined::kStrict);
}

std::optional<CodePage> CodePage::FromEntry(const CodePageEntry& entry, const HostCodec* host) {
  if (entry.kind == CodePageKind::kSingleByte) {
    return CodePage(&entry, FindSingleByteTable(entry.number), {}, nullptr);
  }
  if (entry.kind != CodePageKind::kHost) return CodePage(&entry, nullptr, {}, nullptr);
  if (host == nullptr || !host->Knows(entry.hostName)) return std::nullopt;
  return CodePage(&entry, nullptr, std::string(entry.hostName), host);
}

std::optional<CodePage> CodePage::FromLabel(std::string_view name, const HostCodec* host) {
  if (const CodePageEntry* entry = FindCodePageEntry(name)) return FromEntry(*entry, host);
  if (host == nullptr || !IsPlausibleLabel(name) || IsRefusedLabel(name)) return std::nullopt;
  if (!host->Knows(name)) return std::nullopt;
  return CodePage(nullptr, nullptr, std::string(name), host);
}

std::optional<CodePage> FindCodePage(std::string_view name, const HostCodec* host) {
  return CodePage::FromLabel(name, host);
}

std::optional<CodePage> FindCodePage(int number, const HostCodec* host) {
  const CodePageEntry* entry = FindCodePageEntry(number);
  if (entry == nullptr) return std::nullopt;
  return CodePage::FromEntry(*entry, host);
}

CodePage Windows1252() { return *FindCodePage(kCodePageWindows1252); }

}  // namespace kx::text
