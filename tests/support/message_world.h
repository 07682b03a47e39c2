// A world of its own for messages: a host in memory with the drive C: as /c, settings in memory
// with the bases C:\s\ (schemas) and C:\m\ (messages), and no schema in the cache of the process.
#pragma once

#include "kxmessage/message.h"

#include "core/environment.h"
#include "core/handle_access.h"
#include "core/message/message_impl.h"
#include "platform/host/memory/memory_host.h"
#include "platform/runtime/counted.h"
#include "platform/settings/memory_settings_store.h"
#include "platform/settings/process_settings.h"
#include "platform/xdr/schema_cache.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace kx::test {

class MessageWorld {
 public:
  MessageWorld() {
    auto store = std::make_unique<settings::MemorySettingsStore>();
    store->SetApplicationName(settings::kApplicationName);
    store->Write("SchemaPath", "C:\\s\\");
    store->Write("MsgPath", "C:\\m\\");
    settings_ = store.get();
    former_ = settings::ReplaceProcessSettings(std::move(store));
    xdr::SchemaCache::OfProcess().Clear();
    host_.SetEnvironment("KX_DRIVE_C", "/c");
    host_.Memory().AddFolder("/c/s");
    host_.Memory().AddFolder("/c/m");
  }
  MessageWorld(const MessageWorld&) = delete;
  MessageWorld& operator=(const MessageWorld&) = delete;
  ~MessageWorld() {
    static_cast<void>(settings::ReplaceProcessSettings(std::move(former_)));
    xdr::SchemaCache::OfProcess().Clear();
  }

  [[nodiscard]] host::MemoryHost& Host() { return host_; }
  [[nodiscard]] settings::SettingsStore& Settings() { return *settings_; }
  void AddSchema(std::string_view name, std::string_view declarations) {
    host_.Memory().AddFile("/c/s/" + std::string(name), SchemaText(declarations));
  }
  /// A schema document around `declarations`.
  [[nodiscard]] static std::string SchemaText(std::string_view declarations) {
    return "<Schema xmlns='urn:schemas-microsoft-com:xml-data' "
           "xmlns:dt='urn:schemas-microsoft-com:datatypes'>" +
           std::string(declarations) + "</Schema>";
  }

  [[nodiscard]] runtime::Counted<const core::Environment> Environment(const Options& options = {}) {
    return runtime::MakeCounted<const core::Environment>(host_, options);
  }
  /// A new, empty message of this world.
  [[nodiscard]] KXMessage NewMessage(const Options& options = {}) {
    return HandleAccess::Wrap<KXMessage>(
        runtime::MakeCounted<core::MessageImpl>(Environment(options)));
  }
  /// A message of the text `content`, a content root without namespace, bound to the schema `name`.
  [[nodiscard]] KXMessage Loaded(std::string_view name, std::string_view content) {
    KXMessage message = NewMessage();
    message.DefaultSchemaURL(name);
    message.LoadMessageFromString(content);
    return message;
  }

 private:
  host::MemoryHost host_;
  settings::MemorySettingsStore* settings_ = nullptr;
  std::unique_ptr<settings::SettingsStore> former_;
};

/// The number of the error that `action` raises, 0 when it raises none. Text goes to `description`.
inline std::uint32_t ErrorOf(const std::function<void()>& action,
                             std::string* description = nullptr) {
  try {
    action();
  } catch (const Error& error) {
    if (description != nullptr) *description = error.Description();
    return static_cast<std::uint32_t>(error.Number());
  }
  return 0;
}

/// The status of run-time error `number`, to compare with ErrorOf.
constexpr std::uint32_t RuntimeError(int number) {
  return 0x800A0000U + static_cast<std::uint32_t>(number);
}

}  // namespace kx::test
