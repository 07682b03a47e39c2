// Texts as they are printed: nothing that comes from a message may steer a terminal or break a
// line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kxmsg {

/// The number of bytes of `text` before the first that is not of well-formed UTF-8.
[[nodiscard]] std::size_t Utf8Length(std::string_view text);

/// True when `text` is well-formed UTF-8.
[[nodiscard]] bool IsUtf8(std::string_view text);

/// The number of characters of `text`, which is well-formed UTF-8.
[[nodiscard]] std::size_t CharacterCount(std::string_view text);

/// `text` on one line: control characters (C0, DEL, C1), line and paragraph separators, the marks
/// that turn the direction of writing and ill-formed bytes as \n, \t, \xHH or \u{...}; a backslash
/// stays.
[[nodiscard]] std::string Printable(std::string_view text);

/// The same, but line ends and tabs stay.
[[nodiscard]] std::string PrintableLines(std::string_view text);

/// Printable, in double quotes, with quotes and backslashes escaped.
[[nodiscard]] std::string Quoted(std::string_view text);

/// The first `most` characters of `text`, with "..." after them when that is not all.
[[nodiscard]] std::string Shortened(std::string_view text, std::size_t most);

/// `text` with every run of blanks and line ends made one blank, none at the ends.
[[nodiscard]] std::string OneLine(std::string_view text);

/// "U+20AC": the character of `text`, well-formed UTF-8, to which the byte at `at` belongs.
[[nodiscard]] std::string CodePointName(std::string_view text, std::size_t at);

/// `text` as a JSON string, quotes included; ill-formed bytes become U+FFFD.
[[nodiscard]] std::string JsonText(std::string_view text);

/// "0x8004099D".
[[nodiscard]] std::string HexNumber(std::int32_t number);

/// `text` in the form of a whole message with its declaration naming UTF-8 instead of `encoding`.
[[nodiscard]] std::string WithUtf8Declaration(std::string text, std::string_view encoding);

/// ASCII letters compared without regard to case.
[[nodiscard]] bool SameName(std::string_view a, std::string_view b);

}  // namespace kxmsg
