// See process_settings.h. MakeSystemSettings is in system_settings_*.cc.
#include "platform/settings/process_settings.h"

#include <mutex>
#include <utility>

namespace kx::settings {
namespace {

struct Holder {
  std::mutex mutex;
  std::unique_ptr<SettingsStore> store;
};

Holder& TheHolder() {
  static Holder holder;
  return holder;
}

}  // namespace

SettingsStore& ProcessSettings() {
  Holder& holder = TheHolder();
  const std::lock_guard<std::mutex> guard(holder.mutex);
  if (!holder.store) holder.store = MakeSystemSettings();
  return *holder.store;
}

std::unique_ptr<SettingsStore> ReplaceProcessSettings(std::unique_ptr<SettingsStore> store) {
  Holder& holder = TheHolder();
  const std::lock_guard<std::mutex> guard(holder.mutex);
  return std::exchange(holder.store, std::move(store));
}

}  // namespace kx::settings
