// Settings in the user's part of the registry: the key "Software\" and the application's name, one
// text value for each name. The registry itself serves several processes at once, ignores the case
// of names, and survives a writer that stops.
#pragma once

#include "platform/host/file_system.h"
#include "platform/settings/settings_store.h"

#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace kx::settings {

/// See above.
class RegistrySettingsStore final : public SettingsStore {
 public:
  void SetApplicationName(std::string_view name) override;
  /// Raises: HostError 321, naming the key, for a value that is no text; the run-time error of the
  /// failure when it cannot be read.
  [[nodiscard]] std::optional<std::string> Find(std::string_view name) override;
  void Write(std::string_view name, std::string_view text) override;

 private:
  [[nodiscard]] std::optional<std::string> Load(const std::string& name) const;
  void RequireOk(host::FileStatus status) const;

  std::mutex mutex_;  // guards the key
  std::string key_ = "Software";
};

}  // namespace kx::settings
