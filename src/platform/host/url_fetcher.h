// What the library asks of the network: the document behind an http or https URL, within bounds.
//
// The fetcher decides nothing about who may name a URL: its caller does, and is asked again before
// a redirect is followed. Nothing is raised; each call gives a status and, where the status alone
// does not say it all, a sentence for people.
#pragma once

#include "kxmessage/options.h"

#include <cstdint>
#include <functional>
#include <string>

namespace kx::host {

/// How a fetch ended.
enum class UrlStatus : std::uint8_t {
  kOk,
  kUnchanged,        ///< still the document that the caller has
  kNotFound,         ///< the server knows no such document
  kAccessDenied,     ///< the server or a proxy wants to know who asks
  kUnreachable,      ///< no server, no answer in time, no good answer, a redirect that is refused
  kTooLarge,         ///< more bytes than allowed
  kUnknownProtocol,  ///< neither http nor https
};

/// What tells a server which document its client has already.
struct UrlValidators {
  std::string url;  ///< where it was found at last; they mean nothing to another URL
  std::string etag;
  std::string lastModified;

  /// False: nothing tells whether the document has changed.
  [[nodiscard]] bool Tell() const noexcept { return !etag.empty() || !lastModified.empty(); }
};

struct UrlRequest {
  std::string url;
  Options bounds;  ///< the download's bounds are looked at, nothing else
  /// Why a redirect to that URL must not be followed; empty text: it may. Empty function: it may.
  std::function<std::string(const std::string& url)> objection;
  UrlValidators known;  ///< empty: the caller has no such document
};

struct UrlContent {
  UrlStatus status = UrlStatus::kUnreachable;
  std::string bytes;         ///< uncompressed
  UrlValidators validators;  ///< its url is where the document was found after all redirects
  std::string reason;        ///< a sentence without line end; empty where the status says it all
};

/// Fetches documents. May be used by several threads at a time.
class UrlFetcher {
 public:
  UrlFetcher() = default;
  UrlFetcher(const UrlFetcher&) = delete;
  UrlFetcher& operator=(const UrlFetcher&) = delete;
  virtual ~UrlFetcher() = default;

  [[nodiscard]] virtual UrlContent Fetch(const UrlRequest& request) const = 0;
};

/// Says of every URL that this build cannot fetch it.
class NoFetcher final : public UrlFetcher {
 public:
  [[nodiscard]] UrlContent Fetch(const UrlRequest& request) const override;
};

/// True for a URL of the schemes http and https.
[[nodiscard]] bool IsHttpUrl(const std::string& url) noexcept;

/// `url` without the user name and password that it may hold: what may be shown.
[[nodiscard]] std::string WithoutCredentials(const std::string& url);

/// The fetcher of this build: libcurl where it was found, else a NoFetcher. Lives as long as the
/// process.
[[nodiscard]] const UrlFetcher& ProcessFetcher();
/// True when ProcessFetcher reaches the network.
[[nodiscard]] bool CanFetchUrls() noexcept;

}  // namespace kx::host
