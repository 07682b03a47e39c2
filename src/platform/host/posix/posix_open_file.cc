// See posix_open_file.h.
#include "platform/host/posix/posix_open_file.h"

#include "platform/host/posix/errno_status.h"
#include "platform/host/posix/pipe_signal_guard.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>

namespace kx::host {
namespace {

constexpr std::size_t kMostAtOnce = 0x40000000;
constexpr std::uint64_t kMostOffset = std::numeric_limits<off_t>::max() - kMostAtOnce;

ssize_t WriteOnce(int descriptor, FileKind kind, std::uint64_t offset, std::string_view bytes) {
  const std::size_t length = std::min(bytes.size(), kMostAtOnce);
  if (kind == FileKind::kRegular) {
    return pwrite(descriptor, bytes.data(), length, static_cast<off_t>(offset));
  }
  const PipeSignalGuard guard;
  return write(descriptor, bytes.data(), length);
}

}  // namespace

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
  if (this == &other) return *this;
  static_cast<void>(Close());
  number_ = std::exchange(other.number_, -1);
  return *this;
}

int Descriptor::Close() noexcept {
  const int number = std::exchange(number_, -1);
  return number < 0 ? 0 : close(number);
}

FileInfo InfoOfStat(const struct stat& data) noexcept {
  FileInfo info;
  info.kind = S_ISREG(data.st_mode)   ? FileKind::kRegular
              : S_ISDIR(data.st_mode) ? FileKind::kFolder
                                      : FileKind::kOther;
  info.isReadOnly = (data.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0;
  info.identity.device = data.st_dev;
  info.identity.inode = data.st_ino;
  info.identity.size = static_cast<std::uint64_t>(data.st_size);
  info.identity.modifiedNanoseconds =
      static_cast<std::int64_t>(data.st_mtim.tv_sec) * 1000000000 + data.st_mtim.tv_nsec;
  return info;
}

FileStatus PosixOpenFile::Examine(FileInfo& info) {
  struct stat data {};
  if (fstat(descriptor_.Number(), &data) != 0) return StatusOfErrno(errno);
  info = InfoOfStat(data);
  return FileStatus::kOk;
}

FileStatus PosixOpenFile::ReadAt(std::uint64_t offset, std::span<char> buffer, std::size_t& count) {
  count = 0;
  if (kind_ != FileKind::kRegular) return FileStatus::kNotRegular;
  if (offset > kMostOffset) return FileStatus::kOk;  // no file reaches so far
  const std::size_t length = std::min(buffer.size(), kMostAtOnce);
  ssize_t got = -1;
  do {
    got = pread(descriptor_.Number(), buffer.data(), length, static_cast<off_t>(offset));
  } while (got < 0 && errno == EINTR);
  if (got < 0) return StatusOfErrno(errno);
  count = static_cast<std::size_t>(got);
  return FileStatus::kOk;
}

FileStatus PosixOpenFile::WriteAt(std::uint64_t offset, std::string_view bytes) {
  while (!bytes.empty()) {
    if (offset > kMostOffset) return FileStatus::kDiskFull;
    const ssize_t written = WriteOnce(descriptor_.Number(), kind_, offset, bytes);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return StatusOfErrno(errno);
    if (written == 0) return FileStatus::kDiskFull;
    bytes.remove_prefix(static_cast<std::size_t>(written));
    offset += static_cast<std::uint64_t>(written);
  }
  return FileStatus::kOk;
}

FileStatus PosixOpenFile::Sync() {
  if (kind_ != FileKind::kRegular) return FileStatus::kOk;
  if (fsync(descriptor_.Number()) == 0) return FileStatus::kOk;
  // Some file systems know no such call; then nothing better can be had.
  return errno == EINVAL || errno == ENOSYS ? FileStatus::kOk : StatusOfErrno(errno);
}

FileStatus PosixOpenFile::Close() {
  // An interrupted close() has closed the descriptor all the same.
  const bool closed = descriptor_.Close() == 0 || errno == EINTR;
  return closed ? FileStatus::kOk : StatusOfErrno(errno);
}

}  // namespace kx::host
