// See environment.h.
#include "core/environment.h"

#include "platform/host/files.h"
#include "platform/host/system_codec.h"
#include "platform/host/url_fetcher.h"
#include "platform/runtime/error.h"
#include "platform/settings/memory_settings_store.h"
#include "platform/settings/process_settings.h"

#include <mutex>
#include <optional>
#include <string>
#include <utility>

namespace kx::core {

namespace {

// The process's settings, with the bases that the options name in their place; those are never
// stored.
class OverriddenSettings final : public settings::SettingsStore {
 public:
  explicit OverriddenSettings(const Options& options) {
    bases_.SetApplicationName(settings::kApplicationName);
    if (!options.schemaBase.empty()) bases_.Write(kSchemaPathSetting, options.schemaBase);
    if (!options.messageBase.empty()) bases_.Write(kMsgPathSetting, options.messageBase);
  }

  void SetApplicationName(std::string_view /*name*/) override {}
  [[nodiscard]] std::optional<std::string> Find(std::string_view name) override {
    std::optional<std::string> base = bases_.Find(name);
    return base ? base : settings::ProcessSettings().Find(name);
  }
  void Write(std::string_view name, std::string_view text) override {
    if (bases_.Find(name)) {
      bases_.Write(name, text);
    } else {
      settings::ProcessSettings().Write(name, text);
    }
  }

 private:
  settings::MemorySettingsStore bases_;
};

text::CodePage FindCodePage(int number) {
  std::optional<text::CodePage> page = text::FindCodePage(number, &host::SystemCodec());
  if (!page) {
    runtime::RaiseRuntimeError(runtime::kInvalidProcedureCall,
                               "There is no code page " + std::to_string(number) + ".");
  }
  return *std::move(page);
}

host::DriveFolders FindDrives(host::Host& host, const Options& options) {
  host::DriveFolders drives = host::DriveFolders::FromEnvironment(host);
  for (const auto& [letter, folder] : options.driveFolders) drives.Set(letter, folder);
  return drives;
}

std::unique_ptr<settings::SettingsStore> MakeOwnSettings(const Options& options) {
  if (options.schemaBase.empty() && options.messageBase.empty()) return nullptr;
  return std::make_unique<OverriddenSettings>(options);
}

}  // namespace

Environment::Environment(host::Host& host, const Options& options)
    : host_(host),
      options_(options),
      codePage_(FindCodePage(options.codePage)),
      drives_(FindDrives(host, options)),
      ownSettings_(MakeOwnSettings(options)),
      callersSchemas_(host, drives_, options, &host::ProcessFetcher(), xdr::NamedBy::kCaller),
      callersFiles_(*this),
      messagesSchemas_(host, drives_, options, &host::ProcessFetcher(), xdr::NamedBy::kMessage),
      messagesProvider_(messagesSchemas_, xdr::SchemaCache::OfProcess(), SchemaLimits()),
      binding_(messagesProvider_) {
  callersSchemas_.ReadSchemaBaseBy([this] { return Locations().SchemaBase(); });
  messagesSchemas_.ReadSchemaBaseBy([this] { return Locations().SchemaBase(); });
}

runtime::Counted<const Environment> Environment::Make(const Options& options) {
  return runtime::MakeCounted<const Environment>(host::ProcessHost(), options);
}

Locations Environment::Locations() const {
  return {host_, ownSettings_ ? *ownSettings_ : settings::ProcessSettings(), codePage_};
}

xdr::SchemaLimits Environment::SchemaLimits() const {
  xdr::SchemaLimits limits;
  limits.maxBytes = options_.maxSchemaBytes;
  limits.codec = &host::SystemCodec();
  return limits;
}

dom::Document Environment::NewDomDocument() const {
  dom::Document document = dom::NewDomDocument();
  Adopt(document);
  return document;
}

void Environment::Adopt(const dom::Document& document) const {
  dom::DocumentSettings& settings = document.EditSettings();
  settings.maxElementDepth = options_.maxDepth;
  settings.maxBytes = options_.maxDocumentBytes;
  settings.maxEntityBytes = options_.maxEntityBytes;
  settings.reader = &callersFiles_;
  settings.schemaService = &binding_;
  settings.codec = &host::SystemCodec();
}

dom::Resource Environment::CallersFiles::Read(std::string_view location) const {
  xdr::SchemaText text = environment_.callersSchemas_.Read(location, {});
  return {static_cast<dom::ParseCode>(text.failure.code), std::move(text.bytes),
          std::move(text.url)};
}

}  // namespace kx::core
