// The file status that an error number of the system stands for.
#pragma once

#include "platform/host/file_system.h"

namespace kx::host {

/// `error` as errno holds it after a failed call on files.
[[nodiscard]] FileStatus StatusOfErrno(int error) noexcept;

}  // namespace kx::host
