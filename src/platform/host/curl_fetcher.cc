// The fetcher on libcurl: the only file of the library that knows it.
//
//   - Redirects are followed here and not by libcurl, so that each target is looked at first: http
//     or https, never from https back to http, and whatever the caller has against it.
//   - One clock runs over all hops. Sizes are counted as the bytes come, uncompressed; what a
//   server
//     says about its length is only believed where that refuses it sooner. Headers are bounded too.
//   - Every hop has a connection of its own. No cookies, no .netrc, no passwords but those in the
//     URL that the caller wrote, which only a relative redirect, to the same server, inherits.
//     Certificates are verified. A proxy is what the environment names in the usual variables
//     (http_proxy, https_proxy, no_proxy).
#include "platform/host/url_fetcher.h"

#if defined(_WIN32)
#include "platform/host/windows/pipe_signal_guard.h"
#else
#include "platform/host/posix/pipe_signal_guard.h"
#endif

#include "platform/text/compare.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <curl/curl.h>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace kx::host {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr std::size_t kMostHeaderBytes = std::size_t{256} << 10U;
constexpr std::size_t kMostValidator = 1024;
constexpr int kOk = 200;
constexpr int kNonAuthoritative = 203;  // a proxy's version of 200
constexpr int kNotModified = 304;

// libcurl's objects -------------------------------------------------------------------------------

using Easy = std::unique_ptr<CURL, decltype(&curl_easy_cleanup)>;
using UrlParts = std::unique_ptr<CURLU, decltype(&curl_url_cleanup)>;
using CurlText = std::unique_ptr<char, decltype(&curl_free)>;

class HeaderList {
 public:
  HeaderList() = default;
  HeaderList(const HeaderList&) = delete;
  HeaderList& operator=(const HeaderList&) = delete;
  ~HeaderList() { curl_slist_free_all(list_); }

  void Add(const std::string& line) {
    if (curl_slist* longer = curl_slist_append(list_, line.c_str())) list_ = longer;
  }
  [[nodiscard]] curl_slist* Get() const noexcept { return list_; }

 private:
  curl_slist* list_ = nullptr;
};

// Once for the process, by the first that needs it; the others wait. It is never undone: the
// program may use libcurl itself.
bool IsLibraryReady() {
  static const bool ready = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
  return ready;
}

// URLs --------------------------------------------------------------------------------------------

// What a URL may not hold is written as %XX; what is so written already stays.
std::string EncodeUnsafe(std::string_view text) {
  constexpr std::string_view kHexDigits = "0123456789ABCDEF";
  constexpr std::string_view kUnsafe = "\"<>\\^`{|}";
  std::string encoded;
  for (const char c : text) {
    const auto code = static_cast<unsigned char>(c);
    if (code > 0x20 && code < 0x7F && kUnsafe.find(c) == std::string_view::npos) {
      encoded += c;
    } else {
      encoded += {'%', kHexDigits[code >> 4U], kHexDigits[code & 15U]};
    }
  }
  return encoded;
}

// The URL as it goes to the server; empty when its host cannot be one.
std::string WireForm(const std::string& url) {
  const std::size_t host = url.find("://") + 3;
  const std::size_t end = std::min(url.find_first_of("/?#", host), url.size());
  const bool badHost =
      end == host || std::any_of(url.begin(), url.begin() + static_cast<std::ptrdiff_t>(end),
                                 [](char c) { return (c >= 0 && c <= ' ') || c == '\\'; });
  return badHost ? std::string() : url.substr(0, end) + EncodeUnsafe(url.substr(end));
}

// Where a redirect from `url` leads; empty when that is no URL.
std::string RedirectTarget(const std::string& url, const std::string& location) {
  const UrlParts parts(curl_url(), curl_url_cleanup);
  if (!parts) return {};
  constexpr unsigned kFlags = CURLU_NON_SUPPORT_SCHEME;  // to be refused by its name
  if (curl_url_set(parts.get(), CURLUPART_URL, url.c_str(), 0) != CURLUE_OK) return {};
  if (curl_url_set(parts.get(), CURLUPART_URL, EncodeUnsafe(location).c_str(), kFlags) !=
      CURLUE_OK) {
    return {};
  }
  char* text = nullptr;
  if (curl_url_get(parts.get(), CURLUPART_URL, &text, 0) != CURLUE_OK) return {};
  const CurlText owned(text, curl_free);
  return owned.get();
}

bool IsSecure(const std::string& url) {
  return text::EqualsCaseless(std::string_view(url).substr(0, 6), "https:");
}

std::string Quoted(const std::string& url) { return "'" + WithoutCredentials(url) + "'"; }

// One request and its answer ----------------------------------------------------------------------

/// The headers of an answer that matter here.
struct AnswerHead {
  int status = 0;
  bool complete = false;
  std::string location;
  std::string etag;
  std::string lastModified;
  std::string date;
  bool mayNotBeKept = false;
};

std::string_view TrimBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

bool ContainsCaseless(std::string_view text, std::string_view part) {
  for (std::size_t i = 0; i + part.size() <= text.size(); ++i) {
    if (text::EqualsCaseless(text.substr(i, part.size()), part)) return true;
  }
  return false;
}

/// Collects the answer of one hop.
class Answer {
 public:
  explicit Answer(std::size_t mostBytes) noexcept : mostBytes_(mostBytes) {}

  [[nodiscard]] const AnswerHead& Head() const noexcept { return head_; }
  [[nodiscard]] bool HasBody() const noexcept {
    return head_.status == kOk || head_.status == kNonAuthoritative;
  }
  /// The headers said all there is to know, so the transfer was ended.
  [[nodiscard]] bool WasCut() const noexcept { return head_.complete && !HasBody(); }
  [[nodiscard]] bool IsTooLarge() const noexcept { return tooLarge_; }
  [[nodiscard]] bool HasEndlessHead() const noexcept { return headerBytes_ > kMostHeaderBytes; }
  [[nodiscard]] std::string TakeBody() noexcept { return std::move(body_); }

  // What libcurl calls. A result other than the number of bytes ends the transfer.
  static std::size_t OnHeader(char* data, std::size_t one, std::size_t count, void* self) {
    return static_cast<Answer*>(self)->TakeHeader({data, one * count}) ? one * count : 0;
  }
  static std::size_t OnBody(char* data, std::size_t one, std::size_t count, void* self) {
    return static_cast<Answer*>(self)->TakeBytes({data, one * count}) ? one * count : 0;
  }

 private:
  bool TakeHeader(std::string_view line) {
    headerBytes_ += line.size();
    if (HasEndlessHead()) return false;
    if (head_.complete) return true;  // a trailer says nothing that we believe
    const std::string_view text = TrimBlanks(line);
    if (line.starts_with("HTTP/")) {
      head_ = {};
      const std::size_t blank = text.find(' ');
      for (std::size_t i = blank; i < text.size() && i < blank + 4; ++i) {
        if (text[i] >= '0' && text[i] <= '9') head_.status = head_.status * 10 + (text[i] - '0');
      }
    } else if (text.empty()) {
      head_.complete = head_.status >= kOk;  // what is below comes before the answer itself
      return !WasCut();
    } else {
      TakeField(text);
    }
    return true;
  }

  void TakeField(std::string_view line) {
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos) return;
    const std::string_view name = line.substr(0, colon);
    const std::string_view value = TrimBlanks(line.substr(colon + 1));
    const auto is = [name](std::string_view wanted) { return text::EqualsCaseless(name, wanted); };
    if (is("Location")) head_.location = value;
    if (is("ETag") && value.size() <= kMostValidator) head_.etag = value;
    if (is("Last-Modified") && value.size() <= kMostValidator) head_.lastModified = value;
    if (is("Date")) head_.date = value;
    if (is("Cache-Control") && ContainsCaseless(value, "no-store")) head_.mayNotBeKept = true;
  }

  bool TakeBytes(std::string_view bytes) {
    tooLarge_ = bytes.size() > mostBytes_ - body_.size();
    if (!tooLarge_) body_.append(bytes);
    return !tooLarge_;
  }

  std::size_t mostBytes_;
  std::size_t headerBytes_ = 0;
  AnswerHead head_;
  std::string body_;
  bool tooLarge_ = false;
};

// A modification time counts in seconds: it tells of every later change only when the second in
// which it lies was over before the answer was made.
bool TellsOfChanges(const AnswerHead& head) {
  if (!head.etag.empty()) return true;
  const time_t modified = curl_getdate(head.lastModified.c_str(), nullptr);
  const time_t date = curl_getdate(head.date.c_str(), nullptr);
  return modified != -1 && date != -1 && modified < date;
}

// A time as libcurl takes it: 0 would be no bound, and a long has 32 bits on some systems.
long LongOf(std::int64_t count) {
  constexpr std::int64_t kMost = 0x7FFFFFFF;
  return static_cast<long>(std::clamp<std::int64_t>(count, 1, kMost));
}

void AllowOnlyHttp(CURL* easy) {
#if LIBCURL_VERSION_NUM >= 0x075500
  curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
#else
  curl_easy_setopt(easy, CURLOPT_PROTOCOLS, static_cast<long>(CURLPROTO_HTTP | CURLPROTO_HTTPS));
#endif
}

/// One fetch: its hops, one after the other, and what came of them.
class Fetching {
 public:
  explicit Fetching(const UrlRequest& request)
      : request_(request),
        url_(request.url),
        deadline_(Clock::now() +
                  std::chrono::seconds(std::max(request.bounds.downloadSeconds, 1U))) {}

  UrlContent Run() {
    if (!IsHttpUrl(url_)) return Failed(UrlStatus::kUnknownProtocol, {});
    if (!IsLibraryReady()) return Failed(UrlStatus::kUnreachable, "libcurl could not be started.");
    for (std::uint32_t redirects = 0; !done_; ++redirects) {
      if (redirects > request_.bounds.maxRedirects) {
        return Failed(UrlStatus::kUnreachable,
                      "The location " + Quoted(request_.url) +
                          " was redirected too often; Options::maxRedirects would allow more.");
      }
      Hop();
    }
    return std::move(content_);
  }

 private:
  UrlContent Failed(UrlStatus status, std::string reason) {
    Fail(status, std::move(reason));
    return std::move(content_);
  }

  void Fail(UrlStatus status, std::string reason) {
    content_ = {};
    content_.status = status;
    content_.reason = std::move(reason);
    done_ = true;
  }

  void Hop() {
    const Easy easy(curl_easy_init(), curl_easy_cleanup);
    const std::string wire = WireForm(url_);
    if (!easy || wire.empty()) {
      Fail(UrlStatus::kUnreachable, "The location " + Quoted(url_) + " is not a good URL.");
      return;
    }
    HeaderList headers;
    AddHeaders(headers);
    Answer answer(request_.bounds.maxDownloadBytes);
    Configure(easy.get(), wire, headers, answer);
    const CURLcode result = [&] {
      const PipeSignalGuard guard;
      return curl_easy_perform(easy.get());
    }();
    // An error of the transfer behind a head that says it all is no matter: we cut it ourselves.
    if (result != CURLE_OK && !answer.WasCut()) {
      FailTransfer(easy.get(), result, answer);
    } else {
      TakeAnswer(answer);
    }
  }

  void AddHeaders(HeaderList& headers) const {
    // A cache on the way asks the server again, too.
    headers.Add("Cache-Control: max-age=0");
    if (!AsksForChanges()) return;
    if (!request_.known.etag.empty()) headers.Add("If-None-Match: " + request_.known.etag);
    if (!request_.known.lastModified.empty()) {
      headers.Add("If-Modified-Since: " + request_.known.lastModified);
    }
  }

  [[nodiscard]] bool AsksForChanges() const {
    return request_.known.Tell() && request_.known.url == url_;
  }

  void Configure(CURL* easy, const std::string& wire, const HeaderList& headers, Answer& answer) {
    const Options& bounds = request_.bounds;
    AllowOnlyHttp(easy);
    curl_easy_setopt(easy, CURLOPT_URL, wire.c_str());
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, headers.Get());
    curl_easy_setopt(easy, CURLOPT_USERAGENT, "KXXMLMessageLib");
    curl_easy_setopt(easy, CURLOPT_ACCEPT_ENCODING, "gzip, deflate");
    curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 0L);
    curl_easy_setopt(easy, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    curl_easy_setopt(easy, CURLOPT_HTTP09_ALLOWED, 0L);
    curl_easy_setopt(easy, CURLOPT_NETRC, static_cast<long>(CURL_NETRC_IGNORED));
    curl_easy_setopt(easy, CURLOPT_SSL_VERIFYPEER, 1L);
    curl_easy_setopt(easy, CURLOPT_SSL_VERIFYHOST, 2L);
    // Timeouts raise no signal: other threads run.
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    const auto left = std::chrono::duration_cast<milliseconds>(deadline_ - Clock::now());
    const std::chrono::seconds connecting(std::max(bounds.connectSeconds, 1U));
    curl_easy_setopt(easy, CURLOPT_TIMEOUT_MS, LongOf(left.count()));
    curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS,
                     LongOf(std::min<milliseconds>(left, connecting).count()));
    curl_easy_setopt(easy, CURLOPT_LOW_SPEED_LIMIT, 1L);
    curl_easy_setopt(easy, CURLOPT_LOW_SPEED_TIME, LongOf(bounds.stallSeconds));
    curl_easy_setopt(easy, CURLOPT_MAXFILESIZE_LARGE,
                     static_cast<curl_off_t>(bounds.maxDownloadBytes));
    curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, &Answer::OnHeader);
    curl_easy_setopt(easy, CURLOPT_HEADERDATA, &answer);
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &Answer::OnBody);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, &answer);
  }

  // No answer, or no whole one.
  void FailTransfer(CURL* easy, CURLcode result, const Answer& answer) {
    const std::string place = Quoted(url_);
    if (answer.IsTooLarge() || result == CURLE_FILESIZE_EXCEEDED) {
      Fail(UrlStatus::kTooLarge, "The document at " + place + " is larger than the limit of " +
                                     std::to_string(request_.bounds.maxDownloadBytes) +
                                     " bytes; Options::maxDownloadBytes would allow it.");
      return;
    }
    if (answer.HasEndlessHead()) {
      Fail(UrlStatus::kUnreachable, "The server of " + place + " sends headers without end.");
      return;
    }
    switch (result) {
      case CURLE_COULDNT_RESOLVE_HOST:
      case CURLE_COULDNT_RESOLVE_PROXY:
      case CURLE_COULDNT_CONNECT:
        return Fail(UrlStatus::kUnreachable, {});
      case CURLE_OPERATION_TIMEDOUT:
        return Fail(UrlStatus::kUnreachable, "The server of " + place +
                                                 " did not answer in time; " +
                                                 BoundThatEnded(easy) + " would wait longer.");
      case CURLE_BAD_CONTENT_ENCODING:
        return Fail(UrlStatus::kUnreachable,
                    "The document at " + place + " is not compressed as its server says.");
      default:
        return Fail(UrlStatus::kUnreachable,
                    "Reading " + place + " failed: " + curl_easy_strerror(result) + ".");
    }
  }

  [[nodiscard]] std::string BoundThatEnded(CURL* easy) const {
    // libcurl's clock is not ours, and may be ahead of it.
    if (Clock::now() + milliseconds(20) >= deadline_) return "Options::downloadSeconds";
    curl_off_t connected = 0;
    curl_easy_getinfo(easy, CURLINFO_PRETRANSFER_TIME_T, &connected);
    return connected > 0 ? "Options::stallSeconds" : "Options::connectSeconds";
  }

  void TakeAnswer(Answer& answer) {
    const AnswerHead& head = answer.Head();
    if (!head.complete) {
      Fail(UrlStatus::kUnreachable, "Reading " + Quoted(url_) + " failed: the answer breaks off.");
    } else if (answer.HasBody()) {
      done_ = true;
      content_.status = UrlStatus::kOk;
      content_.bytes = answer.TakeBody();
      content_.validators.url = url_;
      if (head.mayNotBeKept || !TellsOfChanges(head)) return;
      content_.validators.etag = head.etag;
      content_.validators.lastModified = head.lastModified;
    } else if (head.status == kNotModified && AsksForChanges()) {
      done_ = true;
      content_.status = UrlStatus::kUnchanged;
      content_.validators = request_.known;
    } else if (head.status / 100 == 3 && head.status != kNotModified && !head.location.empty()) {
      Follow(head.location);
    } else {
      FailStatus(head.status);
    }
  }

  void FailStatus(int status) {
    if (status == 404 || status == 410) return Fail(UrlStatus::kNotFound, {});
    if (status == 401 || status == 403 || status == 407) {
      return Fail(UrlStatus::kAccessDenied, {});
    }
    Fail(UrlStatus::kUnreachable, "The server answered " + Quoted(url_) + " with the status " +
                                      std::to_string(status) + ".");
  }

  void Follow(const std::string& location) {
    std::string target = RedirectTarget(WireForm(url_), location);
    const std::string from = "The location " + Quoted(url_) + " was redirected to ";
    if (target.empty()) return Fail(UrlStatus::kUnreachable, from + "what is no URL.");
    if (!IsHttpUrl(target)) {
      return Fail(UrlStatus::kUnreachable,
                  from + Quoted(target) + ", which is neither http nor https.");
    }
    if (IsSecure(url_) && !IsSecure(target)) {
      return Fail(UrlStatus::kUnreachable, from + Quoted(target) + ", which is not secure.");
    }
    std::string objection = request_.objection ? request_.objection(target) : std::string();
    if (!objection.empty()) return Fail(UrlStatus::kUnreachable, std::move(objection));
    url_ = std::move(target);
  }

  const UrlRequest& request_;
  std::string url_;
  Clock::time_point deadline_;
  UrlContent content_;
  bool done_ = false;
};

class CurlFetcher final : public UrlFetcher {
 public:
  [[nodiscard]] UrlContent Fetch(const UrlRequest& request) const override {
    return Fetching(request).Run();
  }
};

}  // namespace

const UrlFetcher& ProcessFetcher() {
  static const CurlFetcher fetcher;
  return fetcher;
}

bool CanFetchUrls() noexcept { return true; }

}  // namespace kx::host
