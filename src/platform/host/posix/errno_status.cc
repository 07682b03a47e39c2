// See errno_status.h.
#include "platform/host/posix/errno_status.h"

#include <cerrno>

namespace kx::host {
namespace {

struct ErrnoRow {
  int error;
  FileStatus status;
};
constexpr ErrnoRow kErrnoRows[] = {
    {ENOENT, FileStatus::kNotFound},
    {ENOTDIR, FileStatus::kFolderNotFound},
    {EISDIR, FileStatus::kIsFolder},
    {EACCES, FileStatus::kAccessDenied},
    {EPERM, FileStatus::kAccessDenied},
    {EROFS, FileStatus::kWriteProtected},
    {EBUSY, FileStatus::kLocked},
    {ETXTBSY, FileStatus::kLocked},
    {EAGAIN, FileStatus::kLocked},
    {EEXIST, FileStatus::kExists},
    {ENOTEMPTY, FileStatus::kExists},
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
#ifdef ENOMEDIUM
    {ENOMEDIUM, FileStatus::kNotReady},
#endif
    {ENOMEM, FileStatus::kOutOfMemory},
    {EINVAL, FileStatus::kBadName},
    {EILSEQ, FileStatus::kBadName},
};

}  // namespace

FileStatus StatusOfErrno(int error) noexcept {
  for (const ErrnoRow& row : kErrnoRows) {
    if (row.error == error) return row.status;
  }
  return FileStatus::kIoError;
}

}  // namespace kx::host
