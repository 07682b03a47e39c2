// Folder and neighbours of a host's name.
#pragma once

#include "platform/host/file_system.h"

#include <string>
#include <string_view>

namespace kx::host {

/// The part of `path` up to and including its last separator; empty for a bare name.
[[nodiscard]] inline std::string FolderPrefix(std::string_view path, NameRules rules) {
  const std::size_t last = path.find_last_of(rules == NameRules::kWindows ? "\\/:" : "/");
  return std::string(path.substr(0, last == std::string_view::npos ? 0 : last + 1));
}

/// The folder that holds `path`; "." for a bare name.
[[nodiscard]] inline std::string FolderOf(std::string_view path, NameRules rules) {
  std::string prefix = FolderPrefix(path, rules);
  return prefix.empty() ? "." : prefix;
}

/// `name` in the folder of `path`.
[[nodiscard]] inline std::string InSameFolder(std::string_view path, std::string_view name,
                                              NameRules rules) {
  return FolderPrefix(path, rules).append(name);
}

}  // namespace kx::host
