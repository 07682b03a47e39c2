// See memory_settings_store.h.
#include "platform/settings/memory_settings_store.h"

namespace kx::settings {

void MemorySettingsStore::SetApplicationName(std::string_view name) {
  const std::lock_guard<std::mutex> guard(mutex_);
  application_ = name;
}

std::optional<std::string> MemorySettingsStore::Find(std::string_view name) {
  const std::lock_guard<std::mutex> guard(mutex_);
  const Texts& texts = applications_[application_];
  const auto found = texts.find(name);
  if (found == texts.end()) return std::nullopt;
  return found->second;
}

void MemorySettingsStore::Write(std::string_view name, std::string_view text) {
  RequireStorable(name, text);
  const std::lock_guard<std::mutex> guard(mutex_);
  const auto [entry, isNew] = applications_[application_].try_emplace(std::string(name), text);
  if (!isNew && entry->second == text) return;
  entry->second = text;
  ++writeCount_;
}

int MemorySettingsStore::WriteCount() const {
  const std::lock_guard<std::mutex> guard(mutex_);
  return writeCount_;
}

}  // namespace kx::settings
