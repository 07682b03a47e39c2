// Completing a relative URL by a base as Win32 does, with the canonical form of URLs and their
// escaping.
#pragma once

#include "platform/paths/url_text.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kx::paths {

/// How UrlCombineA writes its result: kUnsafe is the flag URL_ESCAPE_UNSAFE.
enum class UrlEscape : std::uint32_t { kNone = 0, kUnsafe = 0x20000000 };

/// `relative` completed by `base`, canonical and, if asked for, escaped. Nothing stands for a null
/// argument.
/// `capacity`: characters of the caller's buffer, the end mark included.
/// Note: the percent sign is never escaped, so "%20" stays as it is; what follows a "?" is not
/// touched at all.
[[nodiscard]] UrlText UrlCombineA(std::optional<std::string_view> base,
                                  std::optional<std::string_view> relative, std::size_t capacity,
                                  UrlEscape escape);

/// The canonical form of a URL or, for a text without a scheme, of a path: lower-case scheme,
/// forward slashes where the scheme has them, "." and ".." elements simplified.
[[nodiscard]] std::string CanonicalizeUrl(std::string_view url);

/// `url`, which is canonical, with its unsafe characters written as % and two upper-case
/// hexadecimal digits.
[[nodiscard]] std::string EscapeUnsafe(std::string_view url);

}  // namespace kx::paths
