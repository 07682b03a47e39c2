// See http_server.h.
#include "http_server.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <netinet/in.h>
#include <poll.h>
#include <stdexcept>
#include <strings.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace kx::test {

namespace {

constexpr int kMostConnections = 20000;
constexpr int kPatience = 20000;       // milliseconds, for a client that says or takes nothing
constexpr int kLifetime = 250 * 1000;  // milliseconds between two connections
constexpr std::size_t kMostHead = 65536;
constexpr std::size_t kMostSent = std::size_t{256} << 20U;

// Binds a new socket to a free port of 127.0.0.1.
int BindToLoopback(std::uint16_t& port) {
  const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  auto* const plain = reinterpret_cast<sockaddr*>(&address);
  if (socket < 0 || bind(socket, plain, length) != 0 || getsockname(socket, plain, &length) != 0) {
    throw std::runtime_error("no port of 127.0.0.1 is to be had");
  }
  port = ntohs(address.sin_port);
  return socket;
}

}  // namespace

std::string HttpRequest::Header(std::string_view name) const {
  std::size_t line = head.find("\r\n");
  while (line != std::string::npos) {
    line += 2;
    const std::size_t colon = head.find(':', line);
    if (colon == std::string::npos) break;
    const std::size_t end = std::min(head.find("\r\n", line), head.size());
    if (colon - line == name.size() &&
        strncasecmp(head.data() + line, name.data(), name.size()) == 0) {
      return head.substr(colon + 2, end - colon - 2);
    }
    line = head.find("\r\n", line);
  }
  return {};
}

// The client -------------------------------------------------------------------------------------

// False when the time is over or the server is to stop.
bool HttpClient::WaitFor(int events, int milliseconds) const {
  std::array<pollfd, 2> waits = {{{socket_, static_cast<short>(events), 0}, {stop_, POLLIN, 0}}};
  return poll(waits.data(), waits.size(), milliseconds) > 0 && waits[1].revents == 0;
}

bool HttpClient::Send(std::string_view bytes) const {
  while (!bytes.empty()) {
    if (!WaitFor(POLLOUT, kPatience)) return false;
    const ssize_t sent = send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    if (sent < 0 && (errno == EAGAIN || errno == EINTR)) continue;
    if (sent <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

void HttpClient::Stall() const {
  std::array<char, 1024> buffer{};
  while (WaitFor(POLLIN, kPatience)) {
    if (recv(socket_, buffer.data(), buffer.size(), 0) <= 0) return;
  }
}

void HttpClient::SendWithoutEnd(std::string_view bytes) const {
  for (std::size_t sent = 0; sent < kMostSent && Send(bytes); sent += bytes.size()) {
  }
}

// The server -------------------------------------------------------------------------------------

HttpServer::HttpServer() {
  listener_ = BindToLoopback(port_);
  if (listen(listener_, SOMAXCONN) != 0 || pipe(stop_) != 0) {
    close(listener_);
    throw std::runtime_error("the test server cannot listen");
  }
  thread_ = std::thread([this] { Run(); });
}

HttpServer::~HttpServer() {
  close(stop_[1]);  // what everything waits for
  thread_.join();
  close(stop_[0]);
  close(listener_);
}

void HttpServer::Run() {
  for (int count = 0; count < kMostConnections; ++count) {
    std::array<pollfd, 2> waits = {{{listener_, POLLIN, 0}, {stop_[0], POLLIN, 0}}};
    if (poll(waits.data(), waits.size(), kLifetime) <= 0 || waits[1].revents != 0) return;
    const int socket = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (socket < 0) continue;
    Serve(socket);
    close(socket);
  }
}

void HttpServer::Serve(int socket) {
  HttpRequest request;
  std::array<char, 4096> buffer{};
  while (request.head.find("\r\n\r\n") == std::string::npos) {
    std::array<pollfd, 2> waits = {{{socket, POLLIN, 0}, {stop_[0], POLLIN, 0}}};
    if (poll(waits.data(), waits.size(), kPatience) <= 0 || waits[1].revents != 0) return;
    const ssize_t count = recv(socket, buffer.data(), buffer.size(), 0);
    if (count <= 0 || request.head.size() > kMostHead) return;
    request.head.append(buffer.data(), static_cast<std::size_t>(count));
    if (request.head.front() == '\x16') return;  // the first byte of TLS, which is not spoken here
  }
  const std::size_t target = request.head.find(' ') + 1;
  request.target = request.head.substr(target, request.head.find(' ', target) - target);
  Answer answer;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    requests_.push_back(request);
    const auto found = answers_.find(request.target);
    if (found != answers_.end()) answer = found->second;
  }
  const HttpClient client(socket, stop_[0]);
  if (answer) {
    answer(request, client);
  } else {
    client.Send(HttpAnswer("404 Not Found", "", "nothing here"));
  }
  // What the client still sends is taken, so that closing does not throw away what it has not read.
  shutdown(socket, SHUT_WR);
  client.Stall();
}

void HttpServer::Put(const std::string& target, Answer answer) {
  const std::lock_guard<std::mutex> lock(mutex_);
  answers_[target] = std::move(answer);
}

void HttpServer::PutRaw(const std::string& target, std::string bytes) {
  Put(target, [bytes = std::move(bytes)](const HttpRequest& /*request*/, const HttpClient& client) {
    client.Send(bytes);
  });
}

void HttpServer::PutDocument(const std::string& target, const std::string& body,
                             const std::string& headers) {
  PutRaw(target, HttpAnswer("200 OK", headers, body));
}

void HttpServer::PutRedirect(const std::string& target, const std::string& location, int status) {
  PutRaw(target, HttpAnswer(std::to_string(status) + " Elsewhere", "Location: " + location + "\r\n",
                            "moved"));
}

std::string HttpServer::Url(std::string_view target) const {
  return "http://127.0.0.1:" + std::to_string(port_) + std::string(target);
}

std::vector<HttpRequest> HttpServer::Requests() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return requests_;
}

std::size_t HttpServer::CountRequests(std::string_view target) const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return static_cast<std::size_t>(
      std::count_if(requests_.begin(), requests_.end(),
                    [&](const HttpRequest& request) { return request.target == target; }));
}

std::string HttpAnswer(std::string_view status, std::string_view headers, std::string_view body) {
  std::string answer = "HTTP/1.1 ";
  answer.append(status).append("\r\nConnection: close\r\n").append(headers);
  answer += "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n";
  return answer.append(body);
}

RefusingPort::RefusingPort() : socket_(BindToLoopback(port_)) {}

RefusingPort::~RefusingPort() { close(socket_); }

std::string RefusingPort::Url() const { return "http://127.0.0.1:" + std::to_string(port_) + "/"; }

// gzip (RFC 1952) --------------------------------------------------------------------------------

namespace {

constexpr std::string_view kGzipHead("\x1F\x8B\x08\0\0\0\0\0\0\x03", 10);

void AppendLittleEndian(std::string& text, std::uint32_t value, int bytes) {
  for (int i = 0; i < bytes; ++i) text += static_cast<char>(value >> (8 * i));
}

std::uint32_t Crc32(std::string_view text) {
  std::uint32_t crc = ~0U;
  for (const char c : text) {
    crc ^= static_cast<unsigned char>(c);
    for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1U) ^ ((crc & 1U) != 0 ? 0xEDB88320U : 0U);
  }
  return ~crc;
}

}  // namespace

std::string GzipStored(std::string_view text) {
  std::string gzip(kGzipHead);
  gzip += '\x01';  // one block, the last, stored
  const auto length = static_cast<std::uint32_t>(text.size());
  AppendLittleEndian(gzip, length, 2);
  AppendLittleEndian(gzip, ~length, 2);
  gzip += text;
  AppendLittleEndian(gzip, Crc32(text), 4);
  AppendLittleEndian(gzip, length, 4);
  return gzip;
}

// One block under the fixed codes: an "a", then "the 258 bytes that begin one byte back" for ever,
// which are the eight bits 11000101 and five bits of 0, codes from their highest bit on.
std::string GzipBomb(std::size_t bytes) {
  std::string gzip(kGzipHead);
  std::uint32_t bits = 0;
  unsigned count = 0;
  const auto put = [&](std::string_view code) {
    for (const char bit : code) {
      bits |= (bit == '1' ? 1U : 0U) << count;
      if (++count < 8) continue;
      gzip += static_cast<char>(bits);
      bits = 0;
      count = 0;
    }
  };
  put("1");         // the last block
  put("10");        // fixed codes: 01, from its lowest bit on
  put("10010001");  // a
  while (gzip.size() < bytes) put("1100010100000");
  return gzip;
}

}  // namespace kx::test
