// The store of a POSIX system: the user's settings file.
#include "platform/host/host.h"
#include "platform/settings/file_settings_store.h"
#include "platform/settings/kept_defaults.h"
#include "platform/settings/process_settings.h"

namespace kx::settings {

std::unique_ptr<SettingsStore> MakeSystemSettings() {
  host::Host& host = host::ProcessHost();
  auto file = std::make_unique<FileSettingsStore>(host, SettingsFileName(host).value_or(""));
  auto store = std::make_unique<KeptDefaults>(std::move(file));
  store->SetApplicationName(kApplicationName);
  return store;
}

}  // namespace kx::settings
