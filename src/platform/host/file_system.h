// What the library asks of a file system, in calls so small that a POSIX system, Windows and a
// model in memory give them alike. The rules of the library about files (which error, which case,
// how a save replaces a file) stand above this interface, in files.h and its neighbours, and are
// therefore the same everywhere.
//
// Names here are names of the host, as UTF-8: "/a/b" on POSIX and in memory, any Win32 path on
// Windows. No call raises an error; each gives a FileStatus.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kx::host {

/// How a call on files ended.
enum class FileStatus : std::uint8_t {
  kOk,
  kNotFound,           ///< the last component of the name does not exist
  kFolderNotFound,     ///< a folder, drive or machine in the name does not exist
  kEmptyName,          ///< no name was given
  kBadName,            ///< characters that no name may hold
  kIsFolder,           ///< the name is a folder's
  kNotRegular,         ///< a device, pipe or socket where only a file may be read
  kAccessDenied,       ///< the user may not do this
  kReadOnly,           ///< the file is marked read-only
  kWriteProtected,     ///< the medium is
  kLocked,             ///< in use by another program, or a lock was not given in time
  kExists,             ///< exclusive creation found something
  kOtherDevice,        ///< a rename would cross devices
  kAccessError,        ///< the path cannot be followed: too long, or a circle of links
  kDiskFull,           ///< no room
  kTooManyOpen,        ///< the process or system has no free descriptor
  kDeviceUnavailable,  ///< the device is gone
  kNotReady,           ///< the drive holds no medium
  kTooLarge,           ///< more bytes than the caller allowed
  kOutOfMemory,
  kIoError,
};

enum class FileKind : std::uint8_t { kRegular, kFolder, kOther };

/// What tells whether a name still leads to the same content. Equal identities of a regular file
/// mean that nobody changed it, as far as the system's time stamps tell.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::uint64_t size = 0;
  std::int64_t modifiedNanoseconds = 0;

  friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

struct FileInfo {
  FileKind kind = FileKind::kRegular;
  bool isReadOnly = false;  ///< nobody may write it, whatever the user's rights
  FileIdentity identity;
};

/// How Open opens.
enum class OpenMode : std::uint8_t {
  kRead,           ///< an existing regular file
  kReadWrite,      ///< made empty if missing, content kept; a device or pipe opens for writing
  kTruncate,       ///< for writing from the start, made if missing
  kCreateNew,      ///< for writing; fails when the name exists
  kCreatePrivate,  ///< the same, for this user only
};

/// An open file. Destruction closes it.
class OpenFile {
 public:
  virtual ~OpenFile() = default;
  OpenFile() = default;
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  [[nodiscard]] virtual FileStatus Examine(FileInfo& info) = 0;
  /// Reads up to `buffer.size()` bytes from byte `offset` on; `count` is 0 at the end of the file.
  [[nodiscard]] virtual FileStatus ReadAt(std::uint64_t offset, std::span<char> buffer,
                                          std::size_t& count) = 0;
  /// Writes all of `bytes` at byte `offset`; what knows no positions (a pipe) writes them next.
  [[nodiscard]] virtual FileStatus WriteAt(std::uint64_t offset, std::string_view bytes) = 0;
  /// Returns when what was written survives a loss of power.
  [[nodiscard]] virtual FileStatus Sync() = 0;
  /// Closes and tells of a write that failed late. Called at most once, last.
  [[nodiscard]] virtual FileStatus Close() = 0;
};

/// A held lock. Destruction gives it back.
class FileLock {
 public:
  virtual ~FileLock() = default;
  FileLock() = default;
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
};

/// Whose rules the names of a file system follow.
enum class NameRules : std::uint8_t {
  kPosix,    ///< "/" separates, case counts, and there are no drives
  kWindows,  ///< the system itself knows drives and ignores case
};

/// The calls. One file system serves all threads.
class FileSystem {
 public:
  virtual ~FileSystem() = default;
  FileSystem() = default;
  FileSystem(const FileSystem&) = delete;
  FileSystem& operator=(const FileSystem&) = delete;

  [[nodiscard]] virtual NameRules Rules() const = 0;

  /// What `path` is; links are followed.
  [[nodiscard]] virtual FileStatus Examine(const std::string& path, FileInfo& info) = 0;
  /// The names in a folder, in any order, "." and ".." left out.
  [[nodiscard]] virtual FileStatus ListNames(const std::string& folder,
                                             std::vector<std::string>& names) = 0;
  /// Opens; `file` is set exactly when the status is kOk.
  [[nodiscard]] virtual FileStatus Open(const std::string& path, OpenMode mode,
                                        std::unique_ptr<OpenFile>& file) = 0;
  /// kOk when the user may write the existing file `path`.
  [[nodiscard]] virtual FileStatus CheckWritable(const std::string& path) = 0;
  /// Where `path` leads: links in its last component followed, also to a file that is yet missing.
  [[nodiscard]] virtual FileStatus FollowLinks(const std::string& path, std::string& target) = 0;
  /// Gives the file `to` the permissions (on POSIX also the owner, where allowed) of `from`.
  [[nodiscard]] virtual FileStatus CopyPermissions(const std::string& from,
                                                   const std::string& to) = 0;
  /// Renames a file within its folder, in one step for every observer, replacing a file.
  [[nodiscard]] virtual FileStatus Rename(const std::string& from, const std::string& to) = 0;
  [[nodiscard]] virtual FileStatus Remove(const std::string& path) = 0;
  /// Makes the folder and the missing ones above it, for this user only; kOk when it exists.
  [[nodiscard]] virtual FileStatus MakeFolders(const std::string& folder) = 0;
  /// Returns when the names in the folder survive a loss of power.
  [[nodiscard]] virtual FileStatus SyncFolder(const std::string& folder) = 0;
  /// Takes the lock that the file `path` stands for, made if missing, against every other process
  /// and thread; kLocked when it was not free within `patience`.
  [[nodiscard]] virtual FileStatus Lock(const std::string& path, std::chrono::milliseconds patience,
                                        std::unique_ptr<FileLock>& lock) = 0;
};

}  // namespace kx::host
