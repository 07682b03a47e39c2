// The path functions of Win32 that look at one path: extension, relative or not, folder, file name.
//
// All functions of this folder are pure: they know no files and no current folder, and give the
// same result on every system. They work on the bytes of an 8-bit code page, each byte one
// character; the letters of schemes and drives compare without regard to case. A text ends at its
// first NUL, as it does for the platform. The backslash separates; the forward slash is an ordinary
// character except where a function says otherwise. Native paths of a POSIX system (those that
// begin with "/") are recognised by the callers before any of these is asked.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kx::paths {

/// The size of a path buffer of the platform, its end mark included: 259 characters are usable.
inline constexpr std::size_t kPathBufferSize = 260;

/// Appends `extension` (with its full stop) to `path` unless its last component has an extension,
/// or the result would need more than 259 characters. Returns true when it was appended.
/// Note: a backslash or a blank ends what counts as the last component, a forward slash does not;
/// so "a.b/Order" has an extension and "v1.2 final" has none.
bool PathAddExtensionA(std::string& path, std::string_view extension);

/// False when the first character is a backslash or the second a colon; true for all else, URLs
/// and the empty text included.
[[nodiscard]] bool PathIsRelativeA(std::string_view path) noexcept;

/// Removes the last component and the backslash before it; a root stays. Returns true when
/// something was removed.
/// Note: a path written with forward slashes loses everything after its drive.
bool PathRemoveFileSpecA(std::string& path);

/// The text after the last separator (backslash, forward slash or colon) that is followed by
/// something other than a slash; the whole text when there is none. A view into `path`.
[[nodiscard]] std::string_view PathFindFileNameA(std::string_view path) noexcept;

/// The text before its first NUL.
[[nodiscard]] constexpr std::string_view UpToNul(std::string_view text) noexcept {
  return text.substr(0, text.find('\0'));
}

/// True when `text` begins with a letter and a colon.
[[nodiscard]] constexpr bool StartsWithDrive(std::string_view text) noexcept {
  return text.size() >= 2 && text[1] == ':' &&
         ((text[0] >= 'a' && text[0] <= 'z') || (text[0] >= 'A' && text[0] <= 'Z'));
}

/// True for a slash of either kind.
[[nodiscard]] constexpr bool IsSlash(char c) noexcept { return c == '/' || c == '\\'; }

}  // namespace kx::paths
