// A file that takes another's place in one step: what is written goes into a sibling, and Commit
// renames the sibling over the target. Until then, and when anything fails, the target is whole.
//
// Only a regular file can be replaced so. A device or pipe is written directly, and so is a file
// whose folder takes no new files, or that cannot be renamed over. The target keeps its
// permissions; a link keeps leading to it.
#pragma once

#include "platform/host/file_system.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace kx::host {

/// Whether a file that cannot be replaced in one step may be overwritten instead. Then neither a
/// crash nor another reader would find it whole.
enum class DirectWriting : std::uint8_t { kAllowed, kNever };

/// See above. Destruction without Commit leaves the target as it was. A call after a failed one
/// does nothing but give that failure again.
class ReplacementFile {
 public:
  /// `siblingName`: a name that no other writer uses, for the sibling in the target's folder.
  ReplacementFile(FileSystem& files, std::string path, std::string siblingName,
                  DirectWriting directWriting = DirectWriting::kAllowed);
  ~ReplacementFile();
  ReplacementFile(ReplacementFile&& other) noexcept;
  ReplacementFile& operator=(ReplacementFile&&) = delete;

  /// kOk when writing may begin.
  [[nodiscard]] FileStatus Status() const { return status_; }
  [[nodiscard]] FileStatus Write(std::string_view bytes);
  /// Puts the written file into place; kOk when it is there, and for a regular file durable.
  [[nodiscard]] FileStatus Commit();

 private:
  [[nodiscard]] FileStatus Begin();
  [[nodiscard]] FileStatus BeginSibling(const std::string& siblingName);
  [[nodiscard]] FileStatus BeginDirect();
  [[nodiscard]] FileStatus CommitSibling();
  [[nodiscard]] FileStatus CopySiblingOverTarget();
  void Discard() noexcept;

  FileSystem* files_;
  std::string target_;
  std::string siblingName_;
  std::string sibling_;  // empty when the target is written directly
  std::unique_ptr<OpenFile> file_;
  std::uint64_t written_ = 0;
  bool targetExists_ = false;
  bool mayWriteDirectly_ = true;
  FileStatus status_ = FileStatus::kOk;
};

}  // namespace kx::host
