// Where the library keeps a user's data and configuration on a POSIX system, after the XDG base
// directory rules.
#pragma once

#include "platform/host/host.h"

#include <optional>
#include <string>

namespace kx::host {

/// The name of the library's own folders.
inline constexpr std::string_view kLibraryFolder = "KXXMLMessageLib";

/// XDG_DATA_HOME, else ".local/share" in the home folder, and in it the library's folder. Nothing
/// when there is no home. A value that is not absolute is ignored, as the rules want it.
[[nodiscard]] std::optional<std::string> UserDataFolder(Host& host);

/// The same with XDG_CONFIG_HOME and ".config".
[[nodiscard]] std::optional<std::string> UserConfigurationFolder(Host& host);

}  // namespace kx::host
