// A file system in memory, with folders, links, devices, permissions and a bounded disk, for tests
// and for tools that must not touch a disk. It follows the rules of a POSIX system.
#pragma once

#include "platform/host/file_system.h"
#include "platform/runtime/counted.h"

#include <algorithm>
#include <condition_variable>
#include <cstdint>
#include <limits>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace kx::host {

/// One file, folder, link or device. Its fields are guarded by the file system's mutex.
struct MemoryNode final : runtime::AtomicCounted {
  enum class Type : std::uint8_t { kFile, kFolder, kLink, kDevice };

  Type type = Type::kFile;
  std::string content;  // of a file, or where a link leads
  std::map<std::string, runtime::Counted<MemoryNode>, std::less<>> children;
  bool isReadOnly = false;  // of a folder: takes no new names
  bool isDenied = false;    // neither read nor written
  bool isFull = false;      // a device that takes nothing
  std::uint64_t inode = 0;
  std::int64_t modified = 0;
};

/// See above. Names without a leading slash are relative to the root.
class MemoryFileSystem final : public FileSystem {
 public:
  MemoryFileSystem();
  ~MemoryFileSystem() override;

  // What a test sets up and looks at. Folders above `path` are made.
  void AddFolder(std::string_view path);
  void AddFile(std::string_view path, std::string content);
  void AddLink(std::string_view path, std::string target);
  /// A device that takes and forgets every byte or, when `isFull`, none.
  void AddDevice(std::string_view path, bool isFull);
  void SetReadOnly(std::string_view path);
  void SetDenied(std::string_view path);
  /// From now on the disk takes so many bytes more.
  void SetFreeBytes(std::uint64_t bytes);
  /// The content of a file, or nothing when there is none.
  [[nodiscard]] std::optional<std::string> Content(std::string_view path);
  /// The full names of all files, in order.
  [[nodiscard]] std::vector<std::string> AllFiles();

  [[nodiscard]] NameRules Rules() const override { return NameRules::kPosix; }
  [[nodiscard]] FileStatus Examine(const std::string& path, FileInfo& info) override;
  [[nodiscard]] FileStatus ListNames(const std::string& folder,
                                     std::vector<std::string>& names) override;
  [[nodiscard]] FileStatus Open(const std::string& path, OpenMode mode,
                                std::unique_ptr<OpenFile>& file) override;
  [[nodiscard]] FileStatus CheckWritable(const std::string& path) override;
  [[nodiscard]] FileStatus FollowLinks(const std::string& path, std::string& target) override;
  [[nodiscard]] FileStatus CopyPermissions(const std::string& from, const std::string& to) override;
  [[nodiscard]] FileStatus Rename(const std::string& from, const std::string& to) override;
  [[nodiscard]] FileStatus Remove(const std::string& path) override;
  [[nodiscard]] FileStatus MakeFolders(const std::string& folder) override;
  [[nodiscard]] FileStatus SyncFolder(const std::string& folder) override;
  [[nodiscard]] FileStatus Lock(const std::string& path, std::chrono::milliseconds patience,
                                std::unique_ptr<FileLock>& lock) override;

 private:
  friend class MemoryOpenFile;
  friend class MemoryLock;
  using Node = runtime::Counted<MemoryNode>;

  // Where a path leads: the folder that holds its last name, that name, and what it names.
  struct Place {
    FileStatus status = FileStatus::kNotFound;
    Node folder;
    std::string name;
    Node node;  // set exactly when status is kOk
  };
  enum class LastLink : std::uint8_t { kFollow, kKeep };

  [[nodiscard]] Place Locate(std::string_view path, LastLink lastLink);
  [[nodiscard]] Node NewNode(MemoryNode::Type type);
  void AddNode(std::string_view path, Node node);
  void Touch(MemoryNode& node) { node.modified = ++clock_; }
  [[nodiscard]] FileStatus OpenExisting(const Node& node, OpenMode mode,
                                        std::unique_ptr<OpenFile>& file);
  [[nodiscard]] FileStatus OpenNew(const Place& place, std::unique_ptr<OpenFile>& file);
  void Unlock(const std::string& path);
  void GiveBack(std::uint64_t bytes) {
    freeBytes_ += std::min(bytes, std::numeric_limits<std::uint64_t>::max() - freeBytes_);
  }

  std::mutex mutex_;
  std::condition_variable unlocked_;
  std::set<std::string> locked_;
  Node root_;
  std::uint64_t nextInode_ = 1;
  std::int64_t clock_ = 0;
  std::uint64_t freeBytes_ = std::numeric_limits<std::uint64_t>::max();
};

}  // namespace kx::host
