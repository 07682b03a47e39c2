// Files of Windows. The system itself knows drives, machines and links, and ignores case.
#pragma once

#include "platform/host/file_system.h"

#include <memory>
#include <string>
#include <vector>

namespace kx::host {

/// See above. Holds no state; usable from any thread.
class Win32FileSystem final : public FileSystem {
 public:
  [[nodiscard]] NameRules Rules() const override { return NameRules::kWindows; }
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
};

}  // namespace kx::host
