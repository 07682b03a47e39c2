// The file status that an error code of Win32 stands for.
#pragma once

#include "platform/host/file_system.h"

#include <cstdint>

namespace kx::host {

/// `error` as GetLastError() gives it.
[[nodiscard]] FileStatus StatusOfWin32Error(std::uint32_t error) noexcept;

/// The status of the call that failed last on this thread.
[[nodiscard]] FileStatus LastStatus() noexcept;

/// kOk for a call that succeeded, else LastStatus().
[[nodiscard]] FileStatus StatusOfCall(int succeeded) noexcept;

}  // namespace kx::host
