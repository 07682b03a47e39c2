// The list of known encodings and of the labels that name them.
#pragma once

#include <string_view>

namespace kx::text {

enum class CodePageKind { kSingleByte, kUtf8, kUtf16Le, kUtf16Be, kHost };

/// One encoding of the list. `hostName` is what the host calls it, empty for our own.
struct CodePageEntry {
  int number;
  CodePageKind kind;
  std::string_view name;
  std::string_view hostName;
};

/// The entry of that number, or null.
[[nodiscard]] const CodePageEntry* FindCodePageEntry(int number) noexcept;
/// The entry that a label names, in any case, or null.
[[nodiscard]] const CodePageEntry* FindCodePageEntry(std::string_view label) noexcept;

/// True for a label that names nothing, whatever the host may make of it.
[[nodiscard]] bool IsRefusedLabel(std::string_view label) noexcept;

}  // namespace kx::text
