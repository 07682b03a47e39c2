// See file_errors.h. A status has one error for every statement, except those of kExceptions.
#include "platform/host/file_errors.h"

#include "platform/runtime/error.h"

namespace kx::host {
namespace {

constexpr int kFileNotFound = 53;
constexpr int kDeviceIoError = 57;
constexpr int kDiskFull = 61;
constexpr int kPermissionDenied = 70;
constexpr int kPathFileAccessError = 75;
constexpr int kPathNotFound = 76;

int UsualError(FileStatus status) {
  switch (status) {
    case FileStatus::kNotFound:
      return kFileNotFound;
    case FileStatus::kFolderNotFound:
      return kPathNotFound;
    case FileStatus::kBadName:
      return 52;
    case FileStatus::kEmptyName:
    case FileStatus::kIsFolder:
    case FileStatus::kNotRegular:
    case FileStatus::kAccessDenied:
    case FileStatus::kReadOnly:
    case FileStatus::kAccessError:
      return kPathFileAccessError;
    case FileStatus::kWriteProtected:
    case FileStatus::kLocked:
      return kPermissionDenied;
    case FileStatus::kExists:
      return 58;
    case FileStatus::kOtherDevice:
      return 74;
    case FileStatus::kDiskFull:
      return kDiskFull;
    case FileStatus::kTooManyOpen:
      return 67;
    case FileStatus::kDeviceUnavailable:
      return 68;
    case FileStatus::kNotReady:
      return 71;
    case FileStatus::kTooLarge:
    case FileStatus::kOutOfMemory:
      return 7;
    case FileStatus::kOk:
    case FileStatus::kIoError:
      break;
  }
  return kDeviceIoError;
}

struct Exception {
  Statement statement;
  FileStatus status;
  int error;
};
// The length of what is no file is that of a missing file; so is the removal of a folder.
constexpr Exception kExceptions[] = {
    {Statement::kFileLen, FileStatus::kFolderNotFound, kFileNotFound},
    {Statement::kFileLen, FileStatus::kIsFolder, kFileNotFound},
    {Statement::kFileLen, FileStatus::kNotRegular, kFileNotFound},
    {Statement::kFileLen, FileStatus::kEmptyName, kFileNotFound},
    {Statement::kKill, FileStatus::kIsFolder, kFileNotFound},
    {Statement::kKill, FileStatus::kEmptyName, kFileNotFound},
};

}  // namespace

int RuntimeErrorOf(Statement statement, FileStatus status) noexcept {
  for (const Exception& row : kExceptions) {
    if (row.statement == statement && row.status == status) return row.error;
  }
  return UsualError(status);
}

void RaiseFileError(Statement statement, FileStatus status) {
  runtime::RaiseRuntimeError(RuntimeErrorOf(statement, status));
}

void RequireOk(Statement statement, FileStatus status) {
  if (status != FileStatus::kOk) RaiseFileError(statement, status);
}

}  // namespace kx::host
