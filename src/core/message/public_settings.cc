// See kxmessage/settings.h.
#include "kxmessage/settings.h"

#include "core/environment.h"
#include "core/locations.h"
#include "platform/host/files.h"
#include "platform/paths/url_text.h"
#include "platform/runtime/error.h"
#include "platform/settings/process_settings.h"
#include "platform/settings/settings_store.h"
#include "platform/text/code_page.h"

#if !defined(_WIN32)
#include "platform/settings/file_settings_store.h"
#endif

namespace kx {

namespace {

// What is stored, whatever single messages are told.
core::Locations StoredLocations() {
  return {host::ProcessHost(), settings::ProcessSettings(), text::Windows1252()};
}

void Store(std::string_view name, std::string_view value) {
  if (value.empty()) runtime::RaiseRuntimeError(runtime::kInvalidProcedureCall);
  settings::ProcessSettings().Store(name, value);
}

std::string HostName(const core::Environment& environment, const std::string& location) {
  if (location.empty() || paths::PathIsURLA(location)) return {};
  const host::FoundName found =
      host::Files(environment.Host(), environment.Drives()).Find(location);
  const bool isName =
      found.status == host::FileStatus::kOk || found.status == host::FileStatus::kNotFound;
  return isName ? found.path : std::string();
}

}  // namespace

std::string Settings::SchemaPath() { return StoredLocations().SchemaBase(); }

void Settings::SchemaPath(std::string_view Value) { Store(core::kSchemaPathSetting, Value); }

std::string Settings::MsgPath() { return StoredLocations().MessageBase(); }

void Settings::MsgPath(std::string_view Value) { Store(core::kMsgPathSetting, Value); }

std::string Settings::Storage() {
#if defined(_WIN32)
  return "HKEY_CURRENT_USER\\Software\\" + std::string(settings::kApplicationName);
#else
  return settings::SettingsFileName(host::ProcessHost()).value_or("");
#endif
}

// The base itself is not completed: that would store it.
std::string Settings::MessageFile(std::string_view location, const Options& options) {
  const auto environment = core::Environment::Make(options);
  const core::Locations locations = environment->Locations();
  return HostName(*environment, location.empty() ? locations.MessageBase()
                                                 : locations.ResolveMessageLocation(location));
}

std::string Settings::SchemaFile(std::string_view location, const Options& options) {
  const auto environment = core::Environment::Make(options);
  const core::Locations locations = environment->Locations();
  return HostName(*environment, location.empty() ? locations.SchemaBase()
                                                 : locations.ResolveSchemaLocation(location));
}

}  // namespace kx
