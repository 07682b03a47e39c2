// The store of Windows: the user's part of the registry.
#include "platform/settings/kept_defaults.h"
#include "platform/settings/process_settings.h"
#include "platform/settings/registry_settings_store.h"

namespace kx::settings {

std::unique_ptr<SettingsStore> MakeSystemSettings() {
  auto store = std::make_unique<KeptDefaults>(std::make_unique<RegistrySettingsStore>());
  store->SetApplicationName(kApplicationName);
  return store;
}

}  // namespace kx::settings
