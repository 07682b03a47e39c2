// See posix_file_system.h.
#include "platform/host/posix/posix_file_system.h"

#include "platform/host/path_parts.h"
#include "platform/host/posix/errno_status.h"
#include "platform/host/posix/posix_open_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace kx::host {
namespace {

constexpr int kAlways = O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
constexpr mode_t kPublicMode = 0666;  // less what the user's mask takes
constexpr mode_t kPrivateMode = 0600;
constexpr mode_t kPrivateFolderMode = 0700;
constexpr int kMostLinks = 40;

FileStatus StatusOfCall(int result) { return result == 0 ? FileStatus::kOk : StatusOfErrno(errno); }

Descriptor OpenRetrying(const std::string& path, int flags, mode_t mode = 0) {
  int number = -1;
  do {
    number = open(path.c_str(), flags | kAlways, mode);
  } while (number < 0 && errno == EINTR);
  return Descriptor(number);
}

// Devices and pipes were opened without waiting, but are written like any other.
bool MakeBlocking(const Descriptor& descriptor) {
  const int flags = fcntl(descriptor.Number(), F_GETFL);
  return flags >= 0 && fcntl(descriptor.Number(), F_SETFL, flags & ~O_NONBLOCK) == 0;
}

FileStatus Finish(Descriptor descriptor, std::unique_ptr<OpenFile>& file) {
  if (!descriptor.IsOpen()) return StatusOfErrno(errno);
  struct stat data {};
  if (fstat(descriptor.Number(), &data) != 0) return StatusOfErrno(errno);
  if (!MakeBlocking(descriptor)) return StatusOfErrno(errno);
  file = std::make_unique<PosixOpenFile>(std::move(descriptor), InfoOfStat(data).kind);
  return FileStatus::kOk;
}

FileStatus OpenToRead(const std::string& path, const FileInfo& info,
                      std::unique_ptr<OpenFile>& file) {
  if (info.kind == FileKind::kOther) return FileStatus::kNotRegular;
  std::unique_ptr<OpenFile> opened;
  const FileStatus status = Finish(OpenRetrying(path, O_RDONLY), opened);
  if (status != FileStatus::kOk) return status;
  FileInfo now;  // the name may lead elsewhere by now
  const FileStatus examined = opened->Examine(now);
  if (examined != FileStatus::kOk) return examined;
  if (now.kind != FileKind::kRegular) return FileStatus::kNotRegular;
  file = std::move(opened);
  return FileStatus::kOk;
}

FileStatus OpenToWrite(const std::string& path, const FileInfo& info, int flags,
                       std::unique_ptr<OpenFile>& file) {
  if (info.kind == FileKind::kOther) return Finish(OpenRetrying(path, O_WRONLY), file);
  if (info.isReadOnly) return FileStatus::kReadOnly;
  return Finish(OpenRetrying(path, flags | O_CREAT, kPublicMode), file);
}

FileStatus CreateNew(const std::string& path, mode_t mode, std::unique_ptr<OpenFile>& file) {
  return Finish(OpenRetrying(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, mode), file);
}

// A file that could not be made because its folder is missing.
FileStatus AsCreation(FileStatus status) {
  return status == FileStatus::kNotFound ? FileStatus::kFolderNotFound : status;
}

class PosixLock final : public FileLock {
 public:
  explicit PosixLock(Descriptor descriptor) noexcept : descriptor_(std::move(descriptor)) {}

 private:
  Descriptor descriptor_;  // closing it gives the lock back
};

}  // namespace

FileStatus PosixFileSystem::Examine(const std::string& path, FileInfo& info) {
  struct stat data {};
  if (stat(path.c_str(), &data) != 0) return StatusOfErrno(errno);
  info = InfoOfStat(data);
  return FileStatus::kOk;
}

FileStatus PosixFileSystem::ListNames(const std::string& folder, std::vector<std::string>& names) {
  names.clear();
  const std::unique_ptr<DIR, int (*)(DIR*)> listing(opendir(folder.c_str()), closedir);
  if (!listing) return StatusOfErrno(errno);
  while (true) {
    errno = 0;  // readdir() tells an error from the end in no other way
    const dirent* const entry = readdir(listing.get());
    if (entry == nullptr) return errno == 0 ? FileStatus::kOk : StatusOfErrno(errno);
    std::string name = static_cast<const char*>(entry->d_name);
    if (name != "." && name != "..") names.push_back(std::move(name));
  }
}

FileStatus PosixFileSystem::Open(const std::string& path, OpenMode mode,
                                 std::unique_ptr<OpenFile>& file) {
  if (mode == OpenMode::kCreateNew) return AsCreation(CreateNew(path, kPublicMode, file));
  if (mode == OpenMode::kCreatePrivate) return AsCreation(CreateNew(path, kPrivateMode, file));
  FileInfo info;
  const FileStatus status = Examine(path, info);
  const bool exists = status == FileStatus::kOk;
  if (exists && info.kind == FileKind::kFolder) return FileStatus::kIsFolder;
  if (mode == OpenMode::kRead) return exists ? OpenToRead(path, info, file) : status;
  if (!exists && status != FileStatus::kNotFound) return status;
  const int flags = mode == OpenMode::kTruncate ? O_WRONLY | O_TRUNC : O_RDWR;
  return AsCreation(OpenToWrite(path, info, flags, file));
}

FileStatus PosixFileSystem::CheckWritable(const std::string& path) {
  return StatusOfCall(faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS));
}

FileStatus PosixFileSystem::FollowLinks(const std::string& path, std::string& target) {
  target = path;
  std::string buffer(4096, '\0');
  for (int links = 0; links <= kMostLinks; ++links) {
    const ssize_t length = readlink(target.c_str(), buffer.data(), buffer.size());
    // What is no link, or does not exist yet, is where the path leads.
    if (length < 0) {
      return errno == EINVAL || errno == ENOENT ? FileStatus::kOk : StatusOfErrno(errno);
    }
    if (static_cast<std::size_t>(length) == buffer.size()) return FileStatus::kAccessError;
    const std::string link = buffer.substr(0, static_cast<std::size_t>(length));
    target = link.starts_with('/') ? link : InSameFolder(target, link, NameRules::kPosix);
  }
  return FileStatus::kAccessError;
}

FileStatus PosixFileSystem::CopyPermissions(const std::string& from, const std::string& to) {
  struct stat wanted {};
  struct stat present {};
  if (stat(from.c_str(), &wanted) != 0 || stat(to.c_str(), &present) != 0) {
    return StatusOfErrno(errno);
  }
  const bool sameOwner = wanted.st_uid == present.st_uid && wanted.st_gid == present.st_gid;
  mode_t mode = wanted.st_mode & 07777;
  if (!sameOwner && chown(to.c_str(), wanted.st_uid, wanted.st_gid) != 0) {
    mode &= 0777;  // only the superuser may give files away; never run as somebody else then
  }
  return StatusOfCall(chmod(to.c_str(), mode));
}

FileStatus PosixFileSystem::Rename(const std::string& from, const std::string& to) {
  return StatusOfCall(rename(from.c_str(), to.c_str()));
}

FileStatus PosixFileSystem::Remove(const std::string& path) {
  return StatusOfCall(unlink(path.c_str()));
}

FileStatus PosixFileSystem::MakeFolders(const std::string& folder) {
  for (std::size_t end = folder.find('/', 1); end != std::string::npos;
       end = folder.find('/', end + 1)) {
    // Whether it worked shows at the last folder.
    static_cast<void>(mkdir(folder.substr(0, end).c_str(), kPrivateFolderMode));
  }
  if (mkdir(folder.c_str(), kPrivateFolderMode) == 0) return FileStatus::kOk;
  const int error = errno;
  FileInfo info;
  const bool exists = Examine(folder, info) == FileStatus::kOk;
  if (exists && info.kind == FileKind::kFolder) return FileStatus::kOk;
  // A file that stands in the folder's place.
  if (error == EEXIST) return FileStatus::kFolderNotFound;
  return AsCreation(StatusOfErrno(error));
}

FileStatus PosixFileSystem::SyncFolder(const std::string& folder) {
  const Descriptor descriptor = OpenRetrying(folder, O_RDONLY | O_DIRECTORY);
  // A folder that may be written but not read cannot be synchronised; its files still are.
  if (!descriptor.IsOpen()) return errno == EACCES ? FileStatus::kOk : StatusOfErrno(errno);
  if (fsync(descriptor.Number()) == 0) return FileStatus::kOk;
  return errno == EIO ? FileStatus::kIoError : FileStatus::kOk;
}

FileStatus PosixFileSystem::Lock(const std::string& path, std::chrono::milliseconds patience,
                                 std::unique_ptr<FileLock>& lock) {
  Descriptor descriptor = OpenRetrying(path, O_RDWR | O_CREAT | O_NOFOLLOW, kPrivateMode);
  if (!descriptor.IsOpen()) return AsCreation(StatusOfErrno(errno));
  const auto deadline = std::chrono::steady_clock::now() + patience;
  auto pause = std::chrono::milliseconds(1);
  while (flock(descriptor.Number(), LOCK_EX | LOCK_NB) != 0) {
    if (errno != EWOULDBLOCK && errno != EINTR) return StatusOfErrno(errno);
    if (std::chrono::steady_clock::now() >= deadline) return FileStatus::kLocked;
    std::this_thread::sleep_for(pause);
    pause = std::min(pause * 2, std::chrono::milliseconds(16));
  }
  lock = std::make_unique<PosixLock>(std::move(descriptor));
  return FileStatus::kOk;
}

}  // namespace kx::host
