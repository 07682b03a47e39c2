// The Windows that this process runs on.
#pragma once

#include "platform/host/host.h"
#include "platform/host/windows/win32_file_system.h"

#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace kx::host {

/// See Host.
class Win32Host final : public Host {
 public:
  Win32Host() = default;
  ~Win32Host() override;

  [[nodiscard]] CalendarTime LocalTime() override;
  [[nodiscard]] CalendarTime UtcTime() override;
  [[nodiscard]] std::uint64_t Ticks() override;
  [[nodiscard]] std::string NewGuid() override;
  [[nodiscard]] std::optional<std::string> Environment(std::string_view name) override;
  [[nodiscard]] std::optional<std::string> HomeFolder() override;
  [[nodiscard]] std::string SystemFolder() override;
  [[nodiscard]] std::string TemporaryFolder() override;
  [[nodiscard]] std::string PrivateTemporaryFolder() override;
  void YieldToUserInterface() override;
  [[nodiscard]] FileSystem& Files() override { return files_; }

 private:
  Win32FileSystem files_;
  std::mutex mutex_;           // guards the folder
  std::string privateFolder_;  // with its closing backslash; empty before first use
};

}  // namespace kx::host
