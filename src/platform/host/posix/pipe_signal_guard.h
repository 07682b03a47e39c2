// Writing to what nobody reads any more raises SIGPIPE, which would end the process.
#pragma once

#include <cerrno>
#include <ctime>
#include <pthread.h>
#include <signal.h>

namespace kx::host {

/// Keeps SIGPIPE from ending the process while a pipe or socket is written whose reader is gone:
/// blocks it for this thread, and swallows the one that the writing raised.
class PipeSignalGuard {
 public:
  PipeSignalGuard() {
    sigset_t pending;
    sigemptyset(&pipeSignal_);
    sigaddset(&pipeSignal_, SIGPIPE);
    sigpending(&pending);
    wasPending_ = sigismember(&pending, SIGPIPE) == 1;
    pthread_sigmask(SIG_BLOCK, &pipeSignal_, &before_);
  }
  ~PipeSignalGuard() {
    const int error = errno;  // of the writing, which the caller still asks for
    const timespec noWait{0, 0};
    while (!wasPending_ && sigtimedwait(&pipeSignal_, nullptr, &noWait) < 0 && errno == EINTR) {
    }
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    errno = error;
  }
  PipeSignalGuard(const PipeSignalGuard&) = delete;
  PipeSignalGuard& operator=(const PipeSignalGuard&) = delete;

 private:
  sigset_t pipeSignal_{};
  sigset_t before_{};
  bool wasPending_ = false;
};

}  // namespace kx::host
