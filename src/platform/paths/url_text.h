// The URL functions of Win32 that look at one URL: what it is, and the path that a file URL names.
#pragma once

#include "platform/text/code_page.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kx::paths {

/// The status codes of the URL functions, as their callers see them.
inline constexpr std::int32_t kUrlOk = 0;
inline constexpr std::int32_t kUrlBufferTooSmall =
    static_cast<std::int32_t>(0x80004003);  // E_POINTER
inline constexpr std::int32_t kUrlBadArgument =
    static_cast<std::int32_t>(0x80070057);  // E_INVALIDARG

/// What a URL function leaves: its status, the text in the buffer, and the length that it reports.
struct UrlText {
  std::int32_t status = kUrlOk;
  /// kUrlOk: characters of `text` without the end mark. kUrlBufferTooSmall: characters needed with
  /// the end mark. kUrlBadArgument: 0.
  std::size_t length = 0;
  /// Empty unless `status` is kUrlOk; the caller's buffer keeps its content then.
  std::string text;
};

/// The tests of UrlIsA that the library uses.
enum class UrlTest : std::uint8_t { kFileUrl = 3 };

/// True when the text begins with two or more characters out of letters, digits, "+", "-" and "."
/// and a colon directly after them. One character before the colon is a drive.
[[nodiscard]] bool PathIsURLA(std::string_view text) noexcept;

/// kFileUrl: true when the text begins with "file:" in any case.
[[nodiscard]] bool UrlIsA(std::string_view text, UrlTest test) noexcept;

/// The path that a file URL names, written with backslashes, its %xx decoded except where the URL
/// holds a drive after two or four slashes. Nothing stands for a null argument.
/// `capacity`: characters of the caller's buffer, the end mark included.
/// Note: %00 gives a NUL within the text; the file functions refuse such a name.
[[nodiscard]] UrlText PathCreateFromUrlA(std::optional<std::string_view> url, std::size_t capacity);

/// `text` with each "%" and two hexadecimal digits made the byte they stand for; a "%" without two
/// digits stays.
[[nodiscard]] std::string DecodePercent(std::string_view text);

/// Whose paths a loader asks for: on a POSIX system the path of a file URL without a drive is
/// native, written with forward slashes.
enum class PathSystem : std::uint8_t { kWindows, kPosix };

/// The path, as UTF-8, that a document loader opens for `location`, a local path or a file URL with
/// any number of slashes of either kind: the URL is made a path as by PathCreateFromUrlA, and %xx
/// is decoded once in every form. Nothing for a location of another scheme.
/// Where the decoded bytes are not UTF-8, those written as %xx are characters of `codePage`.
/// Note: "C:\a%20b.xml" and "C:\a b.xml" name the same file for a loader.
[[nodiscard]] std::optional<std::string> LoaderPath(std::string_view location, PathSystem system,
                                                    const text::CodePage& codePage);

}  // namespace kx::paths
