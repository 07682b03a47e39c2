// Joining a folder and a file name as Win32 does, with the canonical form that the result has.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kx::paths {

/// `file` completed by `directory`, in canonical form. Nothing stands for a null argument or, as
/// the result, for failure (then the platform's buffer holds the empty text): both null, or a
/// joined text of 260 characters or more before it is made canonical.
/// `file`: one backslash in front keeps the root of `directory`; a drive or two backslashes in
/// front keep nothing of it.
/// Note: "C:\base\" with "/Order.xml" is "C:\base\/Order.xml": only the backslash separates.
[[nodiscard]] std::optional<std::string> PathCombineA(std::optional<std::string_view> directory,
                                                      std::optional<std::string_view> file);

/// The canonical form: "." components go, ".." goes back over the component before it and stops
/// at a root, the empty text is a backslash, and a bare drive gets one.
/// Note: a "." in the last place stays as written, and so does a closing backslash.
[[nodiscard]] std::string CanonicalizePath(std::string_view path);

}  // namespace kx::paths
