// A web server for tests: it listens on 127.0.0.1 at a port that the system chooses, answers in a
// thread of its own, one connection after the other, and ends with the test. What it does is
// bounded: in connections, in bytes, in the time that it waits for a client.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace kx::test {

/// A request as it came.
struct HttpRequest {
  std::string target;  ///< the path and the query, as they were written
  std::string head;    ///< all of it, the request line included

  /// The value of a header; empty without one.
  [[nodiscard]] std::string Header(std::string_view name) const;
};

/// The way back to the client.
class HttpClient {
 public:
  HttpClient(int socket, int stop) noexcept : socket_(socket), stop_(stop) {}

  /// Sends bytes; false when the client is gone, does not take them, or the server is to stop.
  bool Send(std::string_view bytes) const;
  /// Waits until the client gives up, the server is to stop, or some seconds have passed.
  void Stall() const;
  /// Sends `bytes` again and again until the client is gone, at most 256 MiB.
  void SendWithoutEnd(std::string_view bytes) const;

 private:
  [[nodiscard]] bool WaitFor(int events, int milliseconds) const;

  int socket_;
  int stop_;
};

/// See above. Paths are set before or between requests, from any thread.
class HttpServer {
 public:
  using Answer = std::function<void(const HttpRequest& request, const HttpClient& client)>;

  /// Raises: std::runtime_error when no port is to be had.
  HttpServer();
  ~HttpServer();
  HttpServer(const HttpServer&) = delete;
  HttpServer& operator=(const HttpServer&) = delete;

  /// What requests for exactly `target` get; all others get 404.
  void Put(const std::string& target, Answer answer);
  /// A whole answer, sent as it is.
  void PutRaw(const std::string& target, std::string bytes);
  /// A good document with further header lines, each ended by CR LF.
  void PutDocument(const std::string& target, const std::string& body,
                   const std::string& headers = {});
  void PutRedirect(const std::string& target, const std::string& location, int status = 302);

  /// The URL of a target.
  [[nodiscard]] std::string Url(std::string_view target) const;
  [[nodiscard]] std::uint16_t Port() const noexcept { return port_; }
  /// The requests that came so far.
  [[nodiscard]] std::vector<HttpRequest> Requests() const;
  [[nodiscard]] std::size_t CountRequests(std::string_view target) const;

 private:
  void Run();
  void Serve(int socket);

  int listener_ = -1;
  int stop_[2] = {-1, -1};
  std::uint16_t port_ = 0;
  mutable std::mutex mutex_;
  std::map<std::string, Answer, std::less<>> answers_;
  std::vector<HttpRequest> requests_;
  std::thread thread_;
};

/// A status line, headers and a body with its length.
[[nodiscard]] std::string HttpAnswer(std::string_view status, std::string_view headers,
                                     std::string_view body);

/// A port of 127.0.0.1 that is taken, and at which nobody listens.
class RefusingPort {
 public:
  /// Raises: std::runtime_error when no port is to be had.
  RefusingPort();
  ~RefusingPort();
  RefusingPort(const RefusingPort&) = delete;
  RefusingPort& operator=(const RefusingPort&) = delete;

  /// The URL of the server that is not there, with a slash at its end.
  [[nodiscard]] std::string Url() const;

 private:
  std::uint16_t port_ = 0;
  int socket_;
};

/// `text` as gzip, stored without compression.
[[nodiscard]] std::string GzipStored(std::string_view text);
/// The start of a gzip of very many letters "a": `bytes` compressed bytes of about 160 times as
/// many.
[[nodiscard]] std::string GzipBomb(std::size_t bytes);

}  // namespace kx::test
