// Which run-time error a file status is, statement by statement.
#pragma once

#include "platform/host/file_system.h"

#include <cstdint>

namespace kx::host {

/// What was being done to a file.
enum class Statement : std::uint8_t {
  kOpenForInput,
  kOpenForOutput,
  kOpenForBinary,
  kFileLen,
  kKill,
  kTransfer,  ///< reading, writing or closing an open file
};

/// The number of the run-time error, such as 53 or 75. `status` is not kOk.
[[nodiscard]] int RuntimeErrorOf(Statement statement, FileStatus status) noexcept;

/// Raises that error as a HostError with its text.
[[noreturn]] void RaiseFileError(Statement statement, FileStatus status);

/// Raises unless `status` is kOk.
void RequireOk(Statement statement, FileStatus status);

}  // namespace kx::host
