// What the library asks of the system it runs on besides files: time, identifiers, environment,
// folders, and a breath for the user interface. One implementation for POSIX, one for Windows, one
// in memory for tests.
#pragma once

#include "platform/host/file_system.h"
#include "platform/host/open_file_table.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kx::host {

/// A date and time of the Gregorian calendar.
struct CalendarTime {
  int year = 1970;
  int month = 1;  ///< 1 to 12
  int day = 1;
  int hour = 0;
  int minute = 0;
  int second = 0;  ///< 60 in a leap second
  int millisecond = 0;

  friend bool operator==(const CalendarTime&, const CalendarTime&) = default;
};

/// The system. Every member may be called from any thread. Texts are UTF-8.
class Host {
 public:
  virtual ~Host() = default;
  Host() = default;
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  [[nodiscard]] virtual CalendarTime LocalTime() = 0;
  [[nodiscard]] virtual CalendarTime UtcTime() = 0;
  /// Milliseconds of a clock that only goes forward.
  [[nodiscard]] virtual std::uint64_t Ticks() = 0;
  /// A new identifier: 32 lower-case hexadecimal digits in groups of 8, 4, 4, 4 and 12.
  [[nodiscard]] virtual std::string NewGuid() = 0;
  /// The value of an environment variable, or nothing when it is not set.
  [[nodiscard]] virtual std::optional<std::string> Environment(std::string_view name) = 0;
  /// The user's folder, or nothing when the system knows none.
  [[nodiscard]] virtual std::optional<std::string> HomeFolder() = 0;
  /// The system folder without a closing backslash; elsewhere than on Windows always
  /// "C:\WINDOWS\system32".
  [[nodiscard]] virtual std::string SystemFolder() = 0;
  /// The folder for temporary files of everybody, with its closing separator. Whether it exists is
  /// not asked.
  [[nodiscard]] virtual std::string TemporaryFolder() = 0;
  /// A folder for temporary files of this process, which nobody else may read, with its closing
  /// separator. Made on first use, removed when the host ends. Raises: HostError 75 when it cannot
  /// be made.
  [[nodiscard]] virtual std::string PrivateTemporaryFolder() = 0;
  /// Lets pending messages of a user interface be worked on, where there is one.
  virtual void YieldToUserInterface() = 0;
  [[nodiscard]] virtual FileSystem& Files() = 0;

  /// The files that this program has open.
  [[nodiscard]] OpenFileTable& OpenFiles() noexcept { return openFiles_; }

 private:
  OpenFileTable openFiles_;
};

/// The system that this process runs on, made on first use and kept until the process ends.
[[nodiscard]] Host& ProcessHost();

}  // namespace kx::host
