// See win32_codec.h. Text is converted character by character, because the system does not tell
// where a conversion stopped; such encodings are rare enough for that.
#include "platform/host/windows/win32_codec.h"

#include "platform/host/system_codec.h"
#include "platform/host/windows/wide_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>

namespace kx::host {
namespace {

struct NameRow {
  std::string_view name;
  UINT codePage;
};
constexpr NameRow kNames[] = {
    {"big5", 950},           {"euc-jp", 20932},    {"euc-kr", 949},      {"gb18030", 54936},
    {"gb2312", 936},         {"gbk", 936},         {"koi8-r", 20866},    {"koi8-u", 21866},
    {"ks_c_5601-1987", 949}, {"macintosh", 10000}, {"ms_kanji", 932},    {"shift-jis", 932},
    {"shift_jis", 932},      {"sjis", 932},        {"windows-31j", 932}, {"windows-949", 949},
    {"x-sjis", 932},
};

// Pages whose bytes shift the meaning of others cannot be converted character by character.
bool IsStateless(UINT codePage) {
  const bool shifts = (codePage >= 50220 && codePage <= 50229) || codePage == 52936 ||
                      codePage == 65000 || (codePage >= 57002 && codePage <= 57011);
  return !shifts;
}

UINT NumberBehind(std::string_view name, std::string_view prefix) {
  if (!name.starts_with(prefix)) return 0;
  const std::string_view digits = name.substr(prefix.size());
  UINT number = 0;
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return read.ptr == digits.data() + digits.size() ? number : 0;
}

// 0 for an encoding that is not known or not installed.
UINT CodePageOf(std::string_view name) {
  const std::string lower = text::AsciiLowerCase(name);
  UINT number = std::max(NumberBehind(lower, "cp"), NumberBehind(lower, "ibm"));
  for (const NameRow& row : kNames) {
    if (row.name == lower) number = row.codePage;
  }
  return number != 0 && IsStateless(number) && IsValidCodePage(number) != 0 ? number : 0;
}

// The UTF-8 of one character's bytes; empty when they are not exactly one.
std::string Decode(UINT codePage, std::string_view bytes) {
  std::array<wchar_t, 4> units{};
  const int count = MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, bytes.data(),
                                        static_cast<int>(bytes.size()), units.data(),
                                        static_cast<int>(units.size()));
  if (count <= 0) return {};
  return FromWide(std::wstring_view(units.data(), static_cast<std::size_t>(count)));
}

// The longest character of a page: GB18030 has four bytes, all others one or two.
std::size_t LongestCharacter(UINT codePage) {
  CPINFO info{};
  return GetCPInfo(codePage, &info) == 0 ? 2 : info.MaxCharSize;
}

// The bytes of one character, given as UTF-8; empty when the page lacks it.
std::string Encode(UINT codePage, std::string_view character) {
  constexpr UINT kGb18030 = 54936;
  const std::wstring units = ToWide(character);
  std::array<char, 8> bytes{};
  BOOL usedDefault = FALSE;
  // GB18030 holds every character and takes neither flag nor answer.
  const bool holdsAll = codePage == kGb18030;
  const int count = WideCharToMultiByte(
      codePage, holdsAll ? 0 : WC_NO_BEST_FIT_CHARS, units.data(), static_cast<int>(units.size()),
      bytes.data(), static_cast<int>(bytes.size()), nullptr, holdsAll ? nullptr : &usedDefault);
  if (count <= 0 || usedDefault != FALSE) return {};
  return {bytes.data(), static_cast<std::size_t>(count)};
}

}  // namespace

bool Win32Codec::Knows(std::string_view name) const { return CodePageOf(name) != 0; }

text::HostConversion Win32Codec::ToUtf8(std::string_view name, std::string_view bytes) const {
  const UINT codePage = CodePageOf(name);
  if (codePage == 0) return {{}, 0};
  const std::size_t longest = LongestCharacter(codePage);
  text::HostConversion result;
  for (std::size_t i = 0; i < bytes.size();) {
    std::string character;
    std::size_t length = 0;
    while (character.empty() && length < longest && i + length < bytes.size()) {
      character = Decode(codePage, bytes.substr(i, ++length));
    }
    if (character.empty()) {
      result.badOffset = i;
      return result;
    }
    result.output += character;
    i += length;
  }
  return result;
}

text::HostConversion Win32Codec::FromUtf8(std::string_view name, std::string_view text) const {
  const UINT codePage = CodePageOf(name);
  if (codePage == 0) return {{}, 0};
  text::HostConversion result;
  for (std::size_t i = 0; i < text.size();) {
    const text::Utf8Char character = text::DecodeUtf8(text, i);
    const std::string bytes = Encode(codePage, text.substr(i, character.length));
    if (bytes.empty()) {
      result.badOffset = i;
      return result;
    }
    result.output += bytes;
    i += character.length;
  }
  return result;
}

const text::HostCodec& SystemCodec() {
  static const Win32Codec codec;
  return codec;
}

}  // namespace kx::host
