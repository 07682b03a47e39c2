// What messages stand on: the system, the settings, the options that they were given, and what
// reads and compiles the schemas that they name. Shared by all messages of the same options.
//
// Invariants:
//   - Immutable to its users; safe for threads. The settings are read anew at each use, so that a
//     changed base counts from the next load on.
//   - A document that was made here refers to what reads its schemas: whoever keeps a document
//     keeps the Environment.
#pragma once

#include "kxmessage/options.h"

#include "core/locations.h"
#include "platform/dom/document.h"
#include "platform/host/host.h"
#include "platform/host/name_lookup.h"
#include "platform/runtime/counted.h"
#include "platform/text/code_page.h"
#include "platform/xdr/parse_binder.h"
#include "platform/xdr/schema_cache.h"
#include "platform/xdr/schema_files.h"

#include <memory>
#include <string>
#include <string_view>

namespace kx::core {

class Environment final : public runtime::AtomicCounted {
 public:
  /// On the process's host and settings. Raises: 5 for a code page that is not known.
  [[nodiscard]] static runtime::Counted<const Environment> Make(const Options& options);
  /// The one of messages without options of their own, made anew when those were changed.
  /// Raises: as Options::OfProcess.
  [[nodiscard]] static runtime::Counted<const Environment> OfProcess();

  Environment(host::Host& host, const Options& options);

  [[nodiscard]] host::Host& Host() const noexcept { return host_; }
  [[nodiscard]] const Options& Settings() const noexcept { return options_; }
  [[nodiscard]] const text::CodePage& CodePage() const noexcept { return codePage_; }
  [[nodiscard]] const host::DriveFolders& Drives() const noexcept { return drives_; }
  /// Completes locations. Raises: the errors of a settings store that cannot be opened.
  [[nodiscard]] core::Locations Locations() const;

  /// A new document of the library's own kind (dom::NewDomDocument), within the bounds, whose
  /// loads read what the caller names, and whose schemas are what messages may name.
  [[nodiscard]] dom::Document NewDomDocument() const;
  /// Makes a document that came from elsewhere one of those.
  void Adopt(const dom::Document& document) const;
  /// What reads the schemas that the caller names, and what gives those that messages name.
  [[nodiscard]] const xdr::SchemaSource& CallersSchemas() const noexcept { return callersSchemas_; }
  [[nodiscard]] const xdr::SchemaProvider& MessagesSchemas() const noexcept {
    return messagesProvider_;
  }
  [[nodiscard]] xdr::SchemaLimits SchemaLimits() const;

 private:
  // Reads what the caller names.
  class CallersFiles final : public dom::ResourceReader {
   public:
    explicit CallersFiles(const Environment& environment) noexcept : environment_(environment) {}
    [[nodiscard]] dom::Resource Read(std::string_view location) const override;

   private:
    const Environment& environment_;
  };

  host::Host& host_;
  Options options_;
  text::CodePage codePage_;
  host::DriveFolders drives_;
  std::unique_ptr<settings::SettingsStore> ownSettings_;  // where the options name a base
  xdr::SchemaFiles callersSchemas_;
  CallersFiles callersFiles_;
  xdr::SchemaFiles messagesSchemas_;
  xdr::CachingProvider messagesProvider_;
  xdr::BindingService binding_;
};

}  // namespace kx::core
