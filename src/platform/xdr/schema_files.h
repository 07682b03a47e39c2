// Schemas from files and from http servers: where a location leads, whether a message may draw from
// there, and the text behind it.
//
// A location is relative to the document or schema that names it; what has no base is relative to
// the current folder. Files are found by host/files.h, without regard to case where nothing is
// spelled so. Local regular files may be read, other machines only as the options say, and a
// redirect leads nowhere that could not have been named. What is refused fails like a resource that
// cannot be reached, with a text that says which option would allow it.
#pragma once

#include "kxmessage/options.h"

#include "platform/host/files.h"
#include "platform/host/host.h"
#include "platform/host/name_lookup.h"
#include "platform/host/url_fetcher.h"
#include "platform/xdr/schema_group.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace kx::xdr {

/// Who names the locations that have no base.
enum class NamedBy : std::uint8_t {
  kMessage,  ///< a message that came as text: it may reach what any message may
  kCaller,   ///< the program: it may reach every regular file and every http and https URL
};

class SchemaFiles final : public SchemaSource {
 public:
  /// `fetcher` null: no URL can be reached. All but `options` must outlive this.
  SchemaFiles(host::Host& host, host::DriveFolders drives, Options options,
              const host::UrlFetcher* fetcher, NamedBy namedBy = NamedBy::kMessage)
      : host_(host),
        files_(host, std::move(drives)),
        options_(std::move(options)),
        fetcher_(fetcher),
        namedBy_(namedBy) {}
  /// Makes the schema base what `read` gives at each use, in the place of that of the options.
  void ReadSchemaBaseBy(std::function<std::string()> read) { readSchemaBase_ = std::move(read); }

  [[nodiscard]] SchemaText Read(std::string_view location, std::string_view base) const override;
  [[nodiscard]] SchemaPlace Identify(std::string_view location,
                                     std::string_view base) const override;
  [[nodiscard]] SchemaText Reread(std::string_view location, std::string_view base,
                                  const std::string& stamp) const override;

 private:
  /// Where a location leads, before anything is opened.
  struct Target {
    std::string name;
    bool isUrl = false;
    bool isFree = false;  ///< the caller named it, and is not asked
    bool refused = false;
    bool unknownProtocol = false;
  };
  [[nodiscard]] Target Aim(std::string_view location, std::string_view base) const;
  [[nodiscard]] std::string SchemaBase() const;
  [[nodiscard]] bool MayReach(const Target& target, std::string_view base) const;
  [[nodiscard]] bool MayReachUrl(const std::string& url, std::string_view base) const;
  [[nodiscard]] SchemaText ReadFile(const Target& target, std::string_view base) const;
  [[nodiscard]] SchemaText ReadUrl(const Target& target, std::string_view base,
                                   const std::string& stamp) const;
  [[nodiscard]] bool IsWithinFolders(const std::string& path) const;
  [[nodiscard]] bool IsWithin(const std::string& path, const std::string& folder) const;
  [[nodiscard]] bool MayShowText(const Target& target, const std::string& path,
                                 std::string_view base) const;
  [[nodiscard]] bool MayShowUrlText(const Target& target, const std::string& url,
                                    std::string_view base) const;

  host::Host& host_;
  host::Files files_;
  Options options_;
  const host::UrlFetcher* fetcher_;
  NamedBy namedBy_;
  std::function<std::string()> readSchemaBase_;
};

}  // namespace kx::xdr
