// See kept_defaults.h.
#include "platform/settings/kept_defaults.h"

#include "platform/runtime/error.h"

#include <utility>

namespace kx::settings {

KeptDefaults::KeptDefaults(std::unique_ptr<SettingsStore> store) : store_(std::move(store)) {}

void KeptDefaults::SetApplicationName(std::string_view name) {
  const std::lock_guard<std::mutex> guard(mutex_);
  kept_.clear();
  store_->SetApplicationName(name);
}

std::optional<std::string> KeptDefaults::Find(std::string_view name) {
  const std::lock_guard<std::mutex> guard(mutex_);
  if (std::optional<std::string> stored = store_->Find(name)) return stored;
  const auto found = kept_.find(name);
  if (found == kept_.end()) return std::nullopt;
  return found->second;
}

void KeptDefaults::Write(std::string_view name, std::string_view text) {
  RequireStorable(name, text);
  const std::lock_guard<std::mutex> guard(mutex_);
  if (store_->Find(name)) {
    store_->Write(name, text);
    return;
  }
  const auto found = kept_.find(name);
  // What could not be stored once is not tried again with every read.
  if (found != kept_.end() && found->second == text) return;
  try {
    store_->Write(name, text);
    if (found != kept_.end()) kept_.erase(found);
  } catch (const HostError&) {
    // The value serves this process; see the head of the header.
    kept_.insert_or_assign(std::string(name), std::string(text));
  }
}

void KeptDefaults::Store(std::string_view name, std::string_view text) {
  RequireStorable(name, text);
  const std::lock_guard<std::mutex> guard(mutex_);
  store_->Store(name, text);
  if (const auto found = kept_.find(name); found != kept_.end()) kept_.erase(found);
}

}  // namespace kx::settings
