// A system in memory: files, clock, identifiers and environment are what the test says.
#pragma once

#include "platform/host/host.h"
#include "platform/host/memory/memory_file_system.h"

#include <atomic>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace kx::host {

/// See above. What is set, by one thread at a time; the rest as every host.
class MemoryHost final : public Host {
 public:
  /// A host with the folder "/tmp", the home folder "/home/user", and the time given as 2008-03-14,
  /// 09:05:07.250 local time, one hour before UTC.
  MemoryHost();

  void SetLocalTime(const CalendarTime& time) { localTime_ = time; }
  void SetUtcTime(const CalendarTime& time) { utcTime_ = time; }
  void SetTicks(std::uint64_t ticks) { ticks_ = ticks; }
  void SetEnvironment(std::string name, std::string value);
  void ClearEnvironment(std::string_view name);
  void SetHomeFolder(std::optional<std::string> folder) { homeFolder_ = std::move(folder); }
  void SetSystemFolder(std::string folder) { systemFolder_ = std::move(folder); }
  /// How often the user interface was given a breath.
  [[nodiscard]] int YieldCount() const { return yieldCount_; }
  [[nodiscard]] MemoryFileSystem& Memory() { return files_; }
  /// From now on files are reached through `files`, which stands before Memory(); null takes it
  /// away again. `files` must outlive its use.
  void SetFiles(FileSystem* files) { replacement_ = files; }

  [[nodiscard]] CalendarTime LocalTime() override { return localTime_; }
  [[nodiscard]] CalendarTime UtcTime() override { return utcTime_; }
  [[nodiscard]] std::uint64_t Ticks() override { return ticks_; }
  /// "00000000-0000-4000-8000-000000000001" and so on.
  [[nodiscard]] std::string NewGuid() override;
  [[nodiscard]] std::optional<std::string> Environment(std::string_view name) override;
  [[nodiscard]] std::optional<std::string> HomeFolder() override { return homeFolder_; }
  [[nodiscard]] std::string SystemFolder() override { return systemFolder_; }
  [[nodiscard]] std::string TemporaryFolder() override { return "/tmp/"; }
  [[nodiscard]] std::string PrivateTemporaryFolder() override;
  void YieldToUserInterface() override { ++yieldCount_; }
  [[nodiscard]] FileSystem& Files() override;

 private:
  MemoryFileSystem files_;
  FileSystem* replacement_ = nullptr;
  std::map<std::string, std::string, std::less<>> environment_;
  std::optional<std::string> homeFolder_ = "/home/user";
  std::string systemFolder_ = "C:\\WINDOWS\\system32";
  CalendarTime localTime_{2008, 3, 14, 9, 5, 7, 250};
  CalendarTime utcTime_{2008, 3, 14, 10, 5, 7, 250};
  std::uint64_t ticks_ = 0x1A2;
  std::atomic<std::uint32_t> guidCount_ = 0;
  std::atomic<int> yieldCount_ = 0;
};

}  // namespace kx::host
