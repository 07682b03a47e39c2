// Statuses of error numbers.
#include "platform/host/posix/errno_status.h"

#include <cerrno>
#include <gtest/gtest.h>

namespace kx::host {
namespace {

struct ErrnoCase {
  int error;
  FileStatus status;
};

constexpr ErrnoCase kErrnoCases[] = {
    {ENOENT, FileStatus::kNotFound},
    {ENOTDIR, FileStatus::kFolderNotFound},
    {EISDIR, FileStatus::kIsFolder},
    {EACCES, FileStatus::kAccessDenied},
    {EPERM, FileStatus::kAccessDenied},
    {EROFS, FileStatus::kWriteProtected},
    {EBUSY, FileStatus::kLocked},
    {ETXTBSY, FileStatus::kLocked},
    {EWOULDBLOCK, FileStatus::kLocked},
    {EEXIST, FileStatus::kExists},
    {EXDEV, FileStatus::kOtherDevice},
    {ENAMETOOLONG, FileStatus::kAccessError},
    {ELOOP, FileStatus::kAccessError},
    {ENOSPC, FileStatus::kDiskFull},
    {EDQUOT, FileStatus::kDiskFull},
    {EFBIG, FileStatus::kDiskFull},
    {EMFILE, FileStatus::kTooManyOpen},
    {ENFILE, FileStatus::kTooManyOpen},
    {ENXIO, FileStatus::kDeviceUnavailable},
    {ENODEV, FileStatus::kDeviceUnavailable},
    {ENOMEM, FileStatus::kOutOfMemory},
    {EINVAL, FileStatus::kBadName},
    {EIO, FileStatus::kIoError},
    {EPIPE, FileStatus::kIoError},
};

TEST(ErrnoStatus, TellsWhatWentWrong) {
  for (const ErrnoCase& row : kErrnoCases) {
    SCOPED_TRACE(row.error);
    EXPECT_EQ(StatusOfErrno(row.error), row.status);
  }
}

}  // namespace
}  // namespace kx::host
