// See url_fetcher.h. ProcessFetcher and CanFetchUrls are in curl_fetcher.cc or no_fetcher.cc.
#include "platform/host/url_fetcher.h"

#include "platform/text/compare.h"

#include <algorithm>
#include <string_view>

namespace kx::host {

bool IsHttpUrl(const std::string& url) noexcept {
  const std::size_t colon = url.find("://");
  if (colon == std::string::npos) return false;
  const std::string_view scheme = std::string_view(url).substr(0, colon);
  return text::EqualsCaseless(scheme, "http") || text::EqualsCaseless(scheme, "https");
}

std::string WithoutCredentials(const std::string& url) {
  const std::size_t colon = url.find("://");
  if (colon == std::string::npos) return url;
  const std::size_t host = colon + 3;
  const std::size_t end = std::min(url.find_first_of("/\\?#", host), url.size());
  const std::size_t at = std::string_view(url).substr(0, end).rfind('@');
  return at == std::string::npos || at < host ? url : url.substr(0, host) + url.substr(at + 1);
}

UrlContent NoFetcher::Fetch(const UrlRequest& request) const {
  UrlContent content;
  if (!IsHttpUrl(request.url)) {
    content.status = UrlStatus::kUnknownProtocol;
    return content;
  }
  content.reason = "The location '" + WithoutCredentials(request.url) +
                   "' cannot be read: this library was built without libcurl (KX_WITH_CURL).";
  return content;
}

}  // namespace kx::host
