// The folders and names that Win32 gives out as text: the temporary folder, the names of temporary
// files, and the system folder. Nothing is created or looked for here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace kx::paths {

/// The value of an environment variable, or nothing when it is not set.
using EnvironmentLookup = std::function<std::optional<std::string>(std::string_view name)>;

/// The value of TMP, else TEMP, else USERPROFILE, else `windowsFolder`, with a closing backslash.
/// Whether the folder exists is not asked; an empty variable counts as not set.
[[nodiscard]] std::string GetTempPathA(const EnvironmentLookup& environment,
                                       std::string_view windowsFolder);

/// The name of a temporary file: `folder`, a separator if it ends in none, at most three characters
/// of `prefix`, `number` as upper-case hexadecimal digits without leading zeros, ".tmp".
/// Note: a folder that begins with "/" is native and gets a forward slash.
[[nodiscard]] std::string TempFileNameA(std::string_view folder, std::string_view prefix,
                                        std::uint16_t number);

/// What GetSystemDirectoryA leaves of a folder in a buffer of `capacity` characters.
struct BufferText {
  std::size_t length = 0;  ///< of the text, or the size needed with the end mark when too small
  std::string text;        ///< empty when the buffer is too small
};

/// `systemFolder` without a closing backslash unless it is a root.
[[nodiscard]] BufferText GetSystemDirectoryA(std::string_view systemFolder, std::size_t capacity);

}  // namespace kx::paths
