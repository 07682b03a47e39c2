// The text forms of the data types: whether a text is one, without allocation and in one pass, and
// how long it counts for the length rules.
//
// Empty text is for the caller to decide about: in validation it is never an error, here it is no
// number, date or name.
#pragma once

#include "platform/datatypes/data_type.h"

#include <cstddef>
#include <string_view>

namespace kx::datatypes {

/// `text` without blanks, tabs, CR and LF at both ends.
[[nodiscard]] inline std::string_view TrimSpace(std::string_view text) noexcept {
  const auto isSpace = [](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; };
  while (!text.empty() && isSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && isSpace(text.back())) text.remove_suffix(1);
  return text;
}

/// True when `text` is a text of `type`; for every type but string white space at both ends does
/// not count. An enumeration accepts any one name token here: its list is the schema's.
[[nodiscard]] bool IsTextOf(DataType type, std::string_view text) noexcept;

/// The same for a text that is trimmed already, or of type string.
[[nodiscard]] bool IsTrimmedTextOf(DataType type, std::string_view text) noexcept;

/// True for the types to which minimum and maximum lengths apply: string, number and the binary
/// ones.
[[nodiscard]] constexpr bool HasLength(DataType type) noexcept {
  return type == DataType::kString || type == DataType::kNumber || IsBinaryType(type);
}
/// What the length rules count: the characters of the text (trimmed, but for string), the bytes
/// that a binary text stands for.
[[nodiscard]] std::size_t LengthOf(DataType type, std::string_view text) noexcept;

/// True when both texts stand for the same value of `type`: "05" and "5" as int. Texts that are
/// none of the type are compared as texts.
[[nodiscard]] bool AreSameValue(DataType type, std::string_view a, std::string_view b);

}  // namespace kx::datatypes
