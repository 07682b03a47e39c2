// The one settings store of the process.
#pragma once

#include "platform/settings/settings_store.h"

#include <memory>

namespace kx::settings {

/// The title under which the library keeps its settings.
inline constexpr std::string_view kApplicationName = "KXXMLMessageLib";

/// The store that all messages share, made on first use and kept until the process ends: a file on
/// POSIX systems, the registry on Windows, with defaults kept in memory where they cannot be
/// stored. Note: a reference to it must not be kept across ReplaceProcessSettings.
[[nodiscard]] SettingsStore& ProcessSettings();

/// Puts `store` in its place, for tests, and returns the one before (null when none was made yet).
/// Null makes the next use make a new one. No other thread may use settings meanwhile.
std::unique_ptr<SettingsStore> ReplaceProcessSettings(std::unique_ptr<SettingsStore> store);

/// Makes the system's own store, under the library's title.
[[nodiscard]] std::unique_ptr<SettingsStore> MakeSystemSettings();

}  // namespace kx::settings
