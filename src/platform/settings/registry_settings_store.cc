// See registry_settings_store.h.
#include "platform/settings/registry_settings_store.h"

#include "platform/host/file_errors.h"
#include "platform/host/windows/registry.h"
#include "platform/runtime/error.h"
#include "platform/settings/file_settings_store.h"

#include <algorithm>

namespace kx::settings {

using host::FileStatus;

void RegistrySettingsStore::SetApplicationName(std::string_view name) {
  const std::lock_guard<std::mutex> guard(mutex_);
  std::string key(name);
  std::replace(key.begin(), key.end(), '\\', '/');  // a backslash would begin another key
  key_ = "Software\\" + key;
}

void RegistrySettingsStore::RequireOk(FileStatus status) const {
  if (status == FileStatus::kOk) return;
  const std::string place = "the registry key \"HKEY_CURRENT_USER\\" + key_ + "\"";
  if (status == FileStatus::kBadName) {
    runtime::RaiseRuntimeError(kInvalidFileFormat, "A value of " + place + " is no text");
  }
  const int number = host::RuntimeErrorOf(host::Statement::kOpenForOutput, status);
  runtime::RaiseRuntimeError(number,
                             std::string(runtime::RuntimeErrorText(number)) + " (" + place + ")");
}

std::optional<std::string> RegistrySettingsStore::Load(const std::string& name) const {
  std::optional<std::string> text;
  RequireOk(host::ReadRegistryText(key_, name, text));
  return text;
}

std::optional<std::string> RegistrySettingsStore::Find(std::string_view name) {
  const std::lock_guard<std::mutex> guard(mutex_);
  return Load(std::string(name));
}

void RegistrySettingsStore::Write(std::string_view name, std::string_view text) {
  RequireStorable(name, text);
  const std::lock_guard<std::mutex> guard(mutex_);
  const std::string valueName(name);
  if (Load(valueName) == text) return;
  RequireOk(host::WriteRegistryText(key_, valueName, std::string(text)));
}

}  // namespace kx::settings
