// See posix_host.h.
#include "platform/host/posix/posix_host.h"

#include "platform/host/guid_text.h"
#include "platform/runtime/error.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <pwd.h>
#include <sys/random.h>
#include <unistd.h>
#include <vector>

namespace kx::host {
namespace {

struct Now {
  std::time_t seconds;
  int millisecond;
};

Now ReadClock() {
  using namespace std::chrono;
  const auto sinceEpoch =
      duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
  return {static_cast<std::time_t>(sinceEpoch / 1000), static_cast<int>(sinceEpoch % 1000)};
}

CalendarTime FromParts(const std::tm& parts, int millisecond) {
  return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour,
          parts.tm_min,         parts.tm_sec,     millisecond};
}

GuidBytes RandomBytes() {
  GuidBytes bytes{};
  std::size_t filled = 0;
  while (filled < bytes.size()) {
    const ssize_t got = getrandom(bytes.data() + filled, bytes.size() - filled, 0);
    if (got < 0 && errno != EINTR) runtime::RaiseRuntimeError(runtime::kDeviceIoError);
    if (got > 0) filled += static_cast<std::size_t>(got);
  }
  return bytes;
}

// Removes the files in a folder of our own, and the folder.
void RemoveFolder(PosixFileSystem& files, const std::string& folder) {
  std::vector<std::string> names;
  static_cast<void>(files.ListNames(folder, names));
  for (const std::string& name : names) static_cast<void>(files.Remove(folder + name));
  static_cast<void>(rmdir(folder.c_str()));
}

}  // namespace

PosixHost::~PosixHost() {
  if (privateFolder_.empty() || privateFolderOwner_ != getpid()) return;
  RemoveFolder(files_, privateFolder_);
}

CalendarTime PosixHost::LocalTime() {
  const Now now = ReadClock();
  std::tm parts{};
  localtime_r(&now.seconds, &parts);
  return FromParts(parts, now.millisecond);
}

CalendarTime PosixHost::UtcTime() {
  const Now now = ReadClock();
  std::tm parts{};
  gmtime_r(&now.seconds, &parts);
  return FromParts(parts, now.millisecond);
}

std::uint64_t PosixHost::Ticks() {
  using namespace std::chrono;
  const auto ticks = duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
  return static_cast<std::uint64_t>(ticks);
}

std::string PosixHost::NewGuid() { return RandomGuidText(RandomBytes()); }

std::optional<std::string> PosixHost::Environment(std::string_view name) {
  const char* const value = std::getenv(std::string(name).c_str());
  if (value == nullptr) return std::nullopt;
  return std::string(value);
}

std::optional<std::string> PosixHost::HomeFolder() {
  std::optional<std::string> home = Environment("HOME");
  if (home && !home->empty()) return home;
  std::array<char, 16384> buffer{};
  passwd entry{};
  passwd* found = nullptr;
  getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found);
  if (found == nullptr || found->pw_dir == nullptr) return std::nullopt;
  return std::string(found->pw_dir);
}

std::string PosixHost::SystemFolder() { return "C:\\WINDOWS\\system32"; }

std::string PosixHost::TemporaryFolder() {
  std::string folder = Environment("TMPDIR").value_or("");
  if (folder.empty()) folder = "/tmp";
  if (folder.back() != '/') folder += '/';
  return folder;
}

std::string PosixHost::PrivateTemporaryFolder() {
  const std::lock_guard<std::mutex> guard(mutex_);
  if (!privateFolder_.empty() && privateFolderOwner_ == getpid()) return privateFolder_;
  std::string pattern = TemporaryFolder() + "kxmessage-XXXXXX";
  if (mkdtemp(pattern.data()) == nullptr) {
    runtime::RaiseRuntimeError(runtime::kPathFileAccessError);
  }
  privateFolder_ = pattern + "/";
  privateFolderOwner_ = getpid();
  return privateFolder_;
}

Host& ProcessHost() {
  static PosixHost host;
  return host;
}

}  // namespace kx::host
