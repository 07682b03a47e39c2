// A file system in front of another that makes one chosen call fail, so that a test can fail the
// 1st, 2nd, 3rd call in turn until the whole operation succeeds.
#pragma once

#include "platform/host/file_system.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace kx::host {

/// See above. Calls on files and locks that it opened count as well; closing by destruction does
/// not. One thread at a time.
class FailingFileSystem final : public FileSystem {
 public:
  explicit FailingFileSystem(FileSystem& inner) : inner_(inner) {}

  /// From now on the call number `call` (the next is 1) fails with `status`; 0 for none.
  void FailCall(std::size_t call, FileStatus status);
  /// From now on the call number `call` and all after it fail, as when the process ends there:
  /// nothing that comes later, cleaning up included, is done.
  void FailFrom(std::size_t call, FileStatus status);
  /// True when the chosen call came.
  [[nodiscard]] bool HasFailed() const { return hasFailed_; }
  /// How many calls came since FailCall.
  [[nodiscard]] std::size_t CallCount() const { return count_; }

  [[nodiscard]] NameRules Rules() const override { return inner_.Rules(); }
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

  /// Counts a call; kOk, or the status with which it must fail.
  [[nodiscard]] FileStatus Count();

 private:
  FileSystem& inner_;
  std::size_t count_ = 0;
  std::size_t failingCall_ = 0;
  FileStatus status_ = FileStatus::kIoError;
  bool failsOn_ = false;
  bool hasFailed_ = false;
};

}  // namespace kx::host
