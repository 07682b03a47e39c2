// The single-byte pages as data: what each byte from 80 to FF means, and the same sorted by
// character for the way back. Both halves are made at compile time from one table.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace kx::text {

/// The characters of the bytes 80 to FF; 0 where the page defines none.
using HighHalf = std::array<char16_t, 128>;

struct CharacterByte {
  char16_t character;
  std::uint8_t byte;
};

struct SingleByteTable {
  int number;
  HighHalf characters;
  std::array<CharacterByte, 128> byCharacter;  ///< ascending; only the first `defined` count
  std::size_t defined;
};

constexpr SingleByteTable MakeSingleByteTable(int number, const HighHalf& characters) {
  SingleByteTable table{number, characters, {}, 0};
  for (std::size_t i = 0; i < characters.size(); ++i) {
    if (characters[i] == 0) continue;
    table.byCharacter[table.defined++] = {characters[i], static_cast<std::uint8_t>(0x80 + i)};
  }
  std::sort(table.byCharacter.begin(),
            table.byCharacter.begin() + static_cast<std::ptrdiff_t>(table.defined),
            [](CharacterByte a, CharacterByte b) { return a.character < b.character; });
  return table;
}

/// The table of the page with that number, or null.
[[nodiscard]] const SingleByteTable* FindSingleByteTable(int number) noexcept;

}  // namespace kx::text
