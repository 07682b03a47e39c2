// See win32_status.h.
#include "platform/host/windows/win32_status.h"

#include "platform/host/windows/wide_text.h"

namespace kx::host {
namespace {

struct ErrorRow {
  DWORD error;
  FileStatus status;
};
constexpr ErrorRow kErrorRows[] = {
    {ERROR_FILE_NOT_FOUND, FileStatus::kNotFound},
    {ERROR_PATH_NOT_FOUND, FileStatus::kFolderNotFound},
    {ERROR_INVALID_DRIVE, FileStatus::kFolderNotFound},
    {ERROR_DIRECTORY, FileStatus::kFolderNotFound},
    {ERROR_BAD_NETPATH, FileStatus::kFolderNotFound},
    {ERROR_BAD_NET_NAME, FileStatus::kFolderNotFound},
    {ERROR_INVALID_NAME, FileStatus::kBadName},
    {ERROR_BAD_PATHNAME, FileStatus::kBadName},
    {ERROR_ACCESS_DENIED, FileStatus::kAccessDenied},
    {ERROR_PRIVILEGE_NOT_HELD, FileStatus::kAccessDenied},
    {ERROR_WRITE_PROTECT, FileStatus::kWriteProtected},
    {ERROR_SHARING_VIOLATION, FileStatus::kLocked},
    {ERROR_LOCK_VIOLATION, FileStatus::kLocked},
    {ERROR_BUSY, FileStatus::kLocked},
    {ERROR_DELETE_PENDING, FileStatus::kLocked},
    {ERROR_USER_MAPPED_FILE, FileStatus::kLocked},
    {ERROR_FILE_EXISTS, FileStatus::kExists},
    {ERROR_ALREADY_EXISTS, FileStatus::kExists},
    {ERROR_DIR_NOT_EMPTY, FileStatus::kExists},
    {ERROR_NOT_SAME_DEVICE, FileStatus::kOtherDevice},
    {ERROR_FILENAME_EXCED_RANGE, FileStatus::kAccessError},
    {ERROR_CANT_RESOLVE_FILENAME, FileStatus::kAccessError},
    {ERROR_DISK_FULL, FileStatus::kDiskFull},
    {ERROR_HANDLE_DISK_FULL, FileStatus::kDiskFull},
    {ERROR_TOO_MANY_OPEN_FILES, FileStatus::kTooManyOpen},
    {ERROR_DEV_NOT_EXIST, FileStatus::kDeviceUnavailable},
    {ERROR_BAD_UNIT, FileStatus::kDeviceUnavailable},
    {ERROR_NOT_READY, FileStatus::kNotReady},
    {ERROR_NO_MEDIA_IN_DRIVE, FileStatus::kNotReady},
    {ERROR_NOT_ENOUGH_MEMORY, FileStatus::kOutOfMemory},
    {ERROR_OUTOFMEMORY, FileStatus::kOutOfMemory},
};

}  // namespace

FileStatus StatusOfWin32Error(std::uint32_t error) noexcept {
  for (const ErrorRow& row : kErrorRows) {
    if (row.error == error) return row.status;
  }
  return FileStatus::kIoError;
}

FileStatus LastStatus() noexcept { return StatusOfWin32Error(GetLastError()); }

FileStatus StatusOfCall(int succeeded) noexcept {
  return succeeded != 0 ? FileStatus::kOk : LastStatus();
}

}  // namespace kx::host
