// Texts in the user's part of the registry.
#pragma once

#include "platform/host/file_system.h"

#include <optional>
#include <string>

namespace kx::host {

/// Reads the text `name` of the key `key` below HKEY_CURRENT_USER. kOk with nothing when there is
/// none; kBadName when it is no text.
[[nodiscard]] FileStatus ReadRegistryText(const std::string& key, const std::string& name,
                                          std::optional<std::string>& text);

/// Stores a text; returns when it survives a loss of power. Makes the key if it is missing.
[[nodiscard]] FileStatus WriteRegistryText(const std::string& key, const std::string& name,
                                           const std::string& text);

}  // namespace kx::host
