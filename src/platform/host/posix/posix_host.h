// The POSIX system that this process runs on.
#pragma once

#include "platform/host/host.h"
#include "platform/host/posix/posix_file_system.h"

#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace kx::host {

/// See Host. The private temporary folder belongs to the process that made it: after a fork, the
/// child makes its own and leaves its parent's alone.
class PosixHost final : public Host {
 public:
  PosixHost() = default;
  ~PosixHost() override;

  [[nodiscard]] CalendarTime LocalTime() override;
  [[nodiscard]] CalendarTime UtcTime() override;
  [[nodiscard]] std::uint64_t Ticks() override;
  [[nodiscard]] std::string NewGuid() override;
  [[nodiscard]] std::optional<std::string> Environment(std::string_view name) override;
  [[nodiscard]] std::optional<std::string> HomeFolder() override;
  [[nodiscard]] std::string SystemFolder() override;
  [[nodiscard]] std::string TemporaryFolder() override;
  [[nodiscard]] std::string PrivateTemporaryFolder() override;
  void YieldToUserInterface() override {}
  [[nodiscard]] FileSystem& Files() override { return files_; }

 private:
  PosixFileSystem files_;
  std::mutex mutex_;            // guards the two below
  std::string privateFolder_;   // with its closing slash; empty before first use
  int privateFolderOwner_ = 0;  // the process that made it
};

}  // namespace kx::host
