// Unicode text: UTF-8 and UTF-16, one code point at a time and whole strings; the characters that
// XML allows; ASCII helpers; simple upper- and lower-casing.
//
// Text is UTF-8 in std::string everywhere inside. "Strict" functions answer nothing for ill-formed
// input; the others put U+FFFD for each maximal ill-formed part, so their result is always well
// formed. Casing maps one code point to one code point (never "ss" for U+00DF), needs no locale,
// and never changes the number of UTF-16 units of a text.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kx::text {

/// Stands for what could not be decoded.
inline constexpr char32_t kReplacementCharacter = 0xFFFD;
inline constexpr char32_t kMaxCodePoint = 0x10FFFF;

// ---- ASCII --------------------------------------------------------------------------------------

[[nodiscard]] constexpr bool IsAsciiDigit(char32_t c) noexcept { return c >= U'0' && c <= U'9'; }
[[nodiscard]] constexpr bool IsAsciiLetter(char32_t c) noexcept {
  return (c >= U'a' && c <= U'z') || (c >= U'A' && c <= U'Z');
}
[[nodiscard]] constexpr char AsciiToLower(char c) noexcept {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}
[[nodiscard]] constexpr char AsciiToUpper(char c) noexcept {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c;
}
/// The value of a hexadecimal digit in either case, or -1.
[[nodiscard]] constexpr int HexDigitValue(char32_t c) noexcept {
  if (IsAsciiDigit(c)) return static_cast<int>(c - U'0');
  if (c >= U'a' && c <= U'f') return static_cast<int>(c - U'a') + 10;
  if (c >= U'A' && c <= U'F') return static_cast<int>(c - U'A') + 10;
  return -1;
}
/// True when every byte is below 128.
[[nodiscard]] bool IsAscii(std::string_view text) noexcept;
/// Equality in which only the letters A to Z ignore case.
[[nodiscard]] bool EqualsAsciiCaseless(std::string_view a, std::string_view b) noexcept;
/// `text` with A to Z made a to z; all else as it is.
[[nodiscard]] std::string AsciiLowerCase(std::string_view text);

// ---- XML characters -----------------------------------------------------------------------------

/// White space of XML 1.0: blank, tab, CR, LF.
[[nodiscard]] constexpr bool IsXmlSpace(char32_t c) noexcept {
  return c == U' ' || c == U'\t' || c == U'\n' || c == U'\r';
}
/// The production Char of XML 1.0: no controls but tab, LF and CR, no surrogates, not U+FFFE or
/// U+FFFF.
[[nodiscard]] constexpr bool IsXmlChar(char32_t c) noexcept {
  if (c < 0x20) return c == U'\t' || c == U'\n' || c == U'\r';
  return c < 0xD800 || (c >= 0xE000 && c <= 0xFFFD) || (c >= 0x10000 && c <= kMaxCodePoint);
}

// ---- UTF-8 --------------------------------------------------------------------------------------

[[nodiscard]] constexpr bool IsSurrogate(char32_t c) noexcept { return c >= 0xD800 && c <= 0xDFFF; }
[[nodiscard]] constexpr bool IsHighSurrogate(char32_t c) noexcept {
  return c >= 0xD800 && c <= 0xDBFF;
}
[[nodiscard]] constexpr bool IsLowSurrogate(char32_t c) noexcept {
  return c >= 0xDC00 && c <= 0xDFFF;
}

/// One code point read from UTF-8. When `valid` is false, `codePoint` is U+FFFD and `length` the
/// bytes of the maximal ill-formed part (at least 1).
struct Utf8Char {
  char32_t codePoint = kReplacementCharacter;
  std::size_t length = 0;
  bool valid = false;
};

/// Reads the code point that begins at byte `offset`, which lies below `text.size()`.
[[nodiscard]] Utf8Char DecodeUtf8(std::string_view text, std::size_t offset) noexcept;

/// Appends `codePoint`; U+FFFD in place of a surrogate or a number above U+10FFFF.
void AppendUtf8(std::string& out, char32_t codePoint);

/// The offset of the first ill-formed byte sequence, or nothing when `text` is well formed.
[[nodiscard]] std::optional<std::size_t> FindInvalidUtf8(std::string_view text) noexcept;
[[nodiscard]] inline bool IsValidUtf8(std::string_view text) noexcept {
  return !FindInvalidUtf8(text).has_value();
}

/// The number of code points; each ill-formed part counts as one.
[[nodiscard]] std::size_t CountCodePoints(std::string_view text) noexcept;

// ---- UTF-16 -------------------------------------------------------------------------------------

/// The number of UTF-16 units that ToUtf16 would give.
[[nodiscard]] std::size_t CountUtf16Units(std::string_view text) noexcept;

/// The byte offset of the character that holds UTF-16 unit number `unit` (from 0), and
/// `text.size()` for a unit beyond the end. A low surrogate's unit gives the start of its pair.
[[nodiscard]] std::size_t OffsetOfUtf16Unit(std::string_view text, std::size_t unit) noexcept;

[[nodiscard]] std::u16string ToUtf16(std::string_view text);
[[nodiscard]] std::optional<std::u16string> ToUtf16Strict(std::string_view text);
/// UTF-16 to UTF-8; U+FFFD for each surrogate without its partner.
[[nodiscard]] std::string ToUtf8(std::u16string_view text);
[[nodiscard]] std::optional<std::string> ToUtf8Strict(std::u16string_view text);

// ---- Case ---------------------------------------------------------------------------------------

/// The simple upper-case mapping; a character without one maps to itself.
[[nodiscard]] char32_t ToUpper(char32_t codePoint) noexcept;
/// The simple lower-case mapping; a character without one maps to itself.
[[nodiscard]] char32_t ToLower(char32_t codePoint) noexcept;
[[nodiscard]] std::string UpperCase(std::string_view text);
[[nodiscard]] std::string LowerCase(std::string_view text);

}  // namespace kx::text
