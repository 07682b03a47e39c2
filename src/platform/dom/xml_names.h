// Which characters a name may have (XML 1.0, fifth edition, 2.3, productions 4 and 4a), and where
// a name ends. The colon counts as a name character here; callers that want names with at most one
// colon check that themselves.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kx::dom {

[[nodiscard]] bool IsNameStartCodePoint(char32_t c) noexcept;
[[nodiscard]] bool IsNameCodePoint(char32_t c) noexcept;

namespace name_bits {
inline constexpr std::uint8_t kStart = 1;
inline constexpr std::uint8_t kPart = 2;
inline constexpr std::uint8_t kMulti = 4;  // first byte of a longer UTF-8 sequence
constexpr std::array<std::uint8_t, 256> MakeTable() {
  std::array<std::uint8_t, 256> table{};
  for (unsigned c = 0; c < 256; ++c) {
    const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':';
    const bool part = letter || (c >= '0' && c <= '9') || c == '-' || c == '.';
    table[c] = static_cast<std::uint8_t>((letter ? kStart : 0) | (part ? kPart : 0) |
                                         (c >= 0x80 ? kMulti : 0));
  }
  return table;
}
inline constexpr std::array<std::uint8_t, 256> kTable = MakeTable();
}  // namespace name_bits

[[nodiscard]] constexpr bool IsAsciiNamePart(char c) noexcept {
  return (name_bits::kTable[static_cast<unsigned char>(c)] & name_bits::kPart) != 0;
}

/// Where the run of name characters that begins at `text` ends; `text` itself when the first
/// character may not start a name. `text` is valid UTF-8 ended by a byte that is no name character.
[[nodiscard]] const char* SkipName(const char* text) noexcept;
/// The same without the rule for the first character (Nmtoken).
[[nodiscard]] const char* SkipNmtoken(const char* text) noexcept;

/// True when all of `text` is a name.
[[nodiscard]] bool IsName(std::string_view text) noexcept;
/// True when all of `text` is a name without colon (Namespaces in XML 1.0, NCName).
[[nodiscard]] bool IsNcName(std::string_view text) noexcept;
/// True when `text` is an NCName or two of them joined by a colon.
[[nodiscard]] bool IsQName(std::string_view text) noexcept;

}  // namespace kx::dom
