// Windows has no signal that writing to a closed socket raises.
#pragma once

namespace kx::host {

/// Does nothing; see its namesake for POSIX.
class PipeSignalGuard {
 public:
  PipeSignalGuard() noexcept {}  // NOLINT(modernize-use-equals-default): an object with a use
};

}  // namespace kx::host
