// Names and name tokens as the types id, idref, nmtoken and their lists want them: the characters
// of XML 1.0 (fifth edition, productions 4 and 4a) without the colon.
#pragma once

#include <string_view>

namespace kx::datatypes {

/// True when all of `text` is a name: a letter or "_" first, no colon.
[[nodiscard]] bool IsNameText(std::string_view text) noexcept;
/// True when the first character of `text` may begin a name.
[[nodiscard]] bool StartsName(std::string_view text) noexcept;
/// True when all of `text` is one or more characters of names, no colon.
[[nodiscard]] bool IsNameToken(std::string_view text) noexcept;

/// Takes the next token off a list separated by white space; empty when there is none left.
[[nodiscard]] std::string_view TakeToken(std::string_view& list) noexcept;

}  // namespace kx::datatypes
