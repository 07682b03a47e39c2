// Schemas from files and from http servers: where a location leads, whether a message may draw from
// there, and the text behind it.
//
// A location is relative to the document or schema that names it; what has no base is relative to
// the current folder. Files are found by host/files.h, without regard to case where nothing is
// spelled so. Local regular files may be read, other machines only as the options say. What is
// refused fails like a resource that cannot be reached, with a text that says which option would
// allow it.
#pragma once

#include "kxmessage/options.h"

#include "platform/host/host.h"
#include "platform/host/name_lookup.h"
#include "platform/xdr/schema_group.h"

#include <string>
#include <string_view>

namespace kx::xdr {

/// Fetches what http and https URLs name. May be used by several threads at a time.
class UrlFetcher {
 public:
  UrlFetcher() = default;
  UrlFetcher(const UrlFetcher&) = delete;
  UrlFetcher& operator=(const UrlFetcher&) = delete;
  virtual ~UrlFetcher() = default;

  /// Reads `url`, within the bounds of `options`.
  [[nodiscard]] virtual SchemaText Fetch(const std::string& url, const Options& options) const = 0;
};

class SchemaFiles final : public SchemaSource {
 public:
  /// `fetcher` null: no URL can be reached. All but `options` must outlive this.
  SchemaFiles(host::Host& host, host::DriveFolders drives, Options options,
              const UrlFetcher* fetcher)
      : host_(host), drives_(std::move(drives)), options_(std::move(options)), fetcher_(fetcher) {}

  [[nodiscard]] SchemaText Read(std::string_view location, std::string_view base) const override;
  [[nodiscard]] SchemaPlace Identify(std::string_view location,
                                     std::string_view base) const override;

 private:
  /// Where a location leads, before anything is opened.
  struct Target {
    std::string name;
    bool isUrl = false;
    bool refused = false;
    bool unknownProtocol = false;
  };
  [[nodiscard]] Target Aim(std::string_view location, std::string_view base) const;
  [[nodiscard]] bool MayReach(const Target& target, std::string_view base) const;
  [[nodiscard]] bool IsWithinFolders(const std::string& path) const;
  [[nodiscard]] bool MayShowText(const std::string& path, std::string_view base) const;

  host::Host& host_;
  host::DriveFolders drives_;
  Options options_;
  const UrlFetcher* fetcher_;
};

}  // namespace kx::xdr
