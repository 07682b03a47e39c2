// See failing_file_system.h.
#include "platform/host/memory/failing_file_system.h"

#include <utility>

namespace kx::host {
namespace {

class FailingOpenFile final : public OpenFile {
 public:
  FailingOpenFile(FailingFileSystem& files, std::unique_ptr<OpenFile> inner)
      : files_(files), inner_(std::move(inner)) {}

  [[nodiscard]] FileStatus Examine(FileInfo& info) override {
    const FileStatus status = files_.Count();
    return status == FileStatus::kOk ? inner_->Examine(info) : status;
  }
  [[nodiscard]] FileStatus ReadAt(std::uint64_t offset, std::span<char> buffer,
                                  std::size_t& count) override {
    const FileStatus status = files_.Count();
    return status == FileStatus::kOk ? inner_->ReadAt(offset, buffer, count) : status;
  }
  [[nodiscard]] FileStatus WriteAt(std::uint64_t offset, std::string_view bytes) override {
    const FileStatus status = files_.Count();
    return status == FileStatus::kOk ? inner_->WriteAt(offset, bytes) : status;
  }
  [[nodiscard]] FileStatus Sync() override {
    const FileStatus status = files_.Count();
    return status == FileStatus::kOk ? inner_->Sync() : status;
  }
  [[nodiscard]] FileStatus Close() override {
    const FileStatus closed = inner_->Close();  // a close that fails has closed all the same
    const FileStatus status = files_.Count();
    return status == FileStatus::kOk ? closed : status;
  }

 private:
  FailingFileSystem& files_;
  std::unique_ptr<OpenFile> inner_;
};

}  // namespace

void FailingFileSystem::FailCall(std::size_t call, FileStatus status) {
  count_ = 0;
  failingCall_ = call;
  status_ = status;
  failsOn_ = false;
  hasFailed_ = false;
}

void FailingFileSystem::FailFrom(std::size_t call, FileStatus status) {
  FailCall(call, status);
  failsOn_ = true;
}

FileStatus FailingFileSystem::Count() {
  ++count_;
  const bool isAfter = failsOn_ && count_ > failingCall_;
  if (count_ != failingCall_ && !isAfter) return FileStatus::kOk;
  hasFailed_ = true;
  return status_;
}

FileStatus FailingFileSystem::Examine(const std::string& path, FileInfo& info) {
  const FileStatus status = Count();
  return status == FileStatus::kOk ? inner_.Examine(path, info) : status;
}

FileStatus FailingFileSystem::ListNames(const std::string& folder,
                                        std::vector<std::string>& names) {
  const FileStatus status = Count();
  return status == FileStatus::kOk ? inner_.ListNames(folder, names) : status;
}

FileStatus FailingFileSystem::Open(const std::string& path, OpenMode mode,
                                   std::unique_ptr<OpenFile>& file) {
  FileStatus status = Count();
  if (status != FileStatus::kOk) return status;
  std::unique_ptr<OpenFile> opened;
  status = inner_.Open(path, mode, opened);
  if (status == FileStatus::kOk) file = std::make_unique<FailingOpenFile>(*this, std::move(opened));
  return status;
}

FileStatus FailingFileSystem::CheckWritable(const std::string& path) {
  const FileStatus status = Count();
  return status == FileStatus::kOk ? inner_.CheckWritable(path) : status;
}

FileStatus FailingFileSystem::FollowLinks(const std::string& path, std::string& target) {
  const FileStatus status = Count();
  return status == FileStatus::kOk ? inner_.FollowLinks(path, target) : status;
}

FileStatus FailingFileSystem::CopyPermissions(const std::string& from, const std::string& to) {
  const FileStatus status = Count();
  return status == FileStatus::kOk ? inner_.CopyPermissions(from, to) : status;
}

FileStatus FailingFileSystem::Rename(const std::string& from, const std::string& to) {
  const FileStatus status = Count();
  return status == FileStatus::kOk ? inner_.Rename(from, to) : status;
}

FileStatus FailingFileSystem::Remove(const std::string& path) {
  const FileStatus status = Count();
  return status == FileStatus::kOk ? inner_.Remove(path) : status;
}

FileStatus FailingFileSystem::MakeFolders(const std::string& folder) {
  const FileStatus status = Count();
  return status == FileStatus::kOk ? inner_.MakeFolders(folder) : status;
}

FileStatus FailingFileSystem::SyncFolder(const std::string& folder) {
  const FileStatus status = Count();
  return status == FileStatus::kOk ? inner_.SyncFolder(folder) : status;
}

FileStatus FailingFileSystem::Lock(const std::string& path, std::chrono::milliseconds patience,
                                   std::unique_ptr<FileLock>& lock) {
  const FileStatus status = Count();
  return status == FileStatus::kOk ? inner_.Lock(path, patience, lock) : status;
}

}  // namespace kx::host
