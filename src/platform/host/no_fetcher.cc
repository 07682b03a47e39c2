// The fetcher of a build without libcurl.
#include "platform/host/url_fetcher.h"

namespace kx::host {

const UrlFetcher& ProcessFetcher() {
  static const NoFetcher fetcher;
  return fetcher;
}

bool CanFetchUrls() noexcept { return false; }

}  // namespace kx::host
