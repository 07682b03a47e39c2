// Settings whose first value may have nowhere to go.
//
// A default that completes a first read is written back. Where it cannot be stored (a read-only
// home, a container), the value stays in memory and nothing is raised: the user asked for nothing
// to be stored. A value that replaces a stored one is different: when it cannot be stored, the
// failure is raised.
#pragma once

#include "platform/settings/settings_store.h"
#include "platform/text/compare.h"

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace kx::settings {

/// A store in front of another that keeps what the other could not store. See above.
class KeptDefaults final : public SettingsStore {
 public:
  explicit KeptDefaults(std::unique_ptr<SettingsStore> store);

  /// Forgets what is kept.
  void SetApplicationName(std::string_view name) override;
  /// The stored text, else the kept one. Raises: as the other store.
  [[nodiscard]] std::optional<std::string> Find(std::string_view name) override;
  /// Raises: HostError 5; as the other store when it holds a text under `name`, or cannot be read.
  void Write(std::string_view name, std::string_view text) override;
  /// Raises: as the other store.
  void Store(std::string_view name, std::string_view text) override;

 private:
  std::unique_ptr<SettingsStore> store_;
  std::mutex mutex_;
  std::map<std::string, std::string, text::CaselessLess> kept_;
};

}  // namespace kx::settings
