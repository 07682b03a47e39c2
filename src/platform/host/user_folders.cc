// See user_folders.h.
#include "platform/host/user_folders.h"

namespace kx::host {
namespace {

std::optional<std::string> LibraryFolderIn(Host& host, std::string_view variable,
                                           std::string_view underHome) {
  const std::optional<std::string> named = host.Environment(variable);
  if (named && named->starts_with('/')) return *named + "/" + std::string(kLibraryFolder);
  const std::optional<std::string> home = host.HomeFolder();
  if (!home) return std::nullopt;
  return *home + "/" + std::string(underHome) + "/" + std::string(kLibraryFolder);
}

}  // namespace

std::optional<std::string> UserDataFolder(Host& host) {
  return LibraryFolderIn(host, "XDG_DATA_HOME", ".local/share");
}

std::optional<std::string> UserConfigurationFolder(Host& host) {
  return LibraryFolderIn(host, "XDG_CONFIG_HOME", ".config");
}

}  // namespace kx::host
