// See replacement_file.h.
#include "platform/host/replacement_file.h"

#include "platform/host/path_parts.h"

#include <array>
#include <span>
#include <utility>

namespace kx::host {
namespace {

// True for what may stand in the way of a new file in the target's folder, while the target itself
// may be written.
bool FolderMayRefuse(FileStatus status) {
  return status == FileStatus::kAccessDenied || status == FileStatus::kWriteProtected ||
         status == FileStatus::kReadOnly;
}

// True when renaming over the target is what cannot be done: something is mounted on it, or it is
// open in a way that forbids it.
bool RenameIsImpossible(FileStatus status) {
  return status == FileStatus::kLocked || status == FileStatus::kOtherDevice ||
         status == FileStatus::kAccessDenied;
}

}  // namespace

ReplacementFile::ReplacementFile(FileSystem& files, std::string path, std::string siblingName,
                                 DirectWriting directWriting)
    : files_(&files),
      target_(std::move(path)),
      siblingName_(std::move(siblingName)),
      mayWriteDirectly_(directWriting == DirectWriting::kAllowed) {
  status_ = Begin();
}

ReplacementFile::ReplacementFile(ReplacementFile&& other) noexcept
    : files_(other.files_),
      target_(std::move(other.target_)),
      siblingName_(std::move(other.siblingName_)),
      sibling_(std::exchange(other.sibling_, {})),
      file_(std::move(other.file_)),
      written_(other.written_),
      targetExists_(other.targetExists_),
      mayWriteDirectly_(other.mayWriteDirectly_),
      status_(other.status_) {}

ReplacementFile::~ReplacementFile() { Discard(); }

void ReplacementFile::Discard() noexcept {
  file_.reset();
  if (sibling_.empty()) return;
  static_cast<void>(files_->Remove(sibling_));  // nothing more can be done about a left-over
  sibling_.clear();
}

FileStatus ReplacementFile::Begin() {
  FileInfo info;
  const FileStatus examined = files_->Examine(target_, info);
  targetExists_ = examined == FileStatus::kOk;
  if (!targetExists_ && examined != FileStatus::kNotFound) return examined;
  if (targetExists_ && info.kind == FileKind::kFolder) return FileStatus::kIsFolder;
  if (targetExists_ && info.kind == FileKind::kOther) {
    return mayWriteDirectly_ ? BeginDirect() : FileStatus::kNotRegular;
  }
  if (targetExists_ && info.isReadOnly) return FileStatus::kReadOnly;
  if (targetExists_) {
    const FileStatus writable = files_->CheckWritable(target_);
    if (writable != FileStatus::kOk) return writable;
  }
  std::string followed;
  const FileStatus status = files_->FollowLinks(target_, followed);
  if (status != FileStatus::kOk) return status;
  target_ = std::move(followed);
  return BeginSibling(siblingName_);
}

FileStatus ReplacementFile::BeginSibling(const std::string& siblingName) {
  sibling_ = InSameFolder(target_, siblingName, files_->Rules());
  const OpenMode mode = targetExists_ ? OpenMode::kCreatePrivate : OpenMode::kCreateNew;
  FileStatus status = files_->Open(sibling_, mode, file_);
  if (status == FileStatus::kOk && targetExists_) {
    status = files_->CopyPermissions(target_, sibling_);
  } else if (status != FileStatus::kOk) {
    sibling_.clear();
  }
  const bool writesDirectly = mayWriteDirectly_ && targetExists_ && FolderMayRefuse(status);
  if (status != FileStatus::kOk) Discard();
  return writesDirectly ? BeginDirect() : status;
}

FileStatus ReplacementFile::BeginDirect() {
  return files_->Open(target_, OpenMode::kTruncate, file_);
}

FileStatus ReplacementFile::Write(std::string_view bytes) {
  if (status_ != FileStatus::kOk) return status_;
  status_ = file_->WriteAt(written_, bytes);
  written_ += bytes.size();
  return status_;
}

FileStatus ReplacementFile::Commit() {
  if (status_ == FileStatus::kOk) status_ = sibling_.empty() ? file_->Close() : CommitSibling();
  Discard();
  return status_;
}

FileStatus ReplacementFile::CommitSibling() {
  FileStatus status = file_->Sync();
  if (status == FileStatus::kOk) status = file_->Close();
  if (status != FileStatus::kOk) return status;
  file_.reset();
  status = files_->Rename(sibling_, target_);
  if (status == FileStatus::kOk) {
    sibling_.clear();
    return files_->SyncFolder(FolderOf(target_, files_->Rules()));
  }
  const bool copies = mayWriteDirectly_ && targetExists_ && RenameIsImpossible(status);
  return copies ? CopySiblingOverTarget() : status;
}

FileStatus ReplacementFile::CopySiblingOverTarget() {
  std::unique_ptr<OpenFile> source;
  FileStatus status = files_->Open(sibling_, OpenMode::kRead, source);
  if (status == FileStatus::kOk) status = BeginDirect();
  std::array<char, 65536> buffer{};
  std::uint64_t offset = 0;
  while (status == FileStatus::kOk && offset < written_) {
    std::size_t count = 0;
    status = source->ReadAt(offset, std::span<char>(buffer), count);
    if (status == FileStatus::kOk && count == 0) status = FileStatus::kIoError;
    if (status != FileStatus::kOk) break;
    status = file_->WriteAt(offset, std::string_view(buffer.data(), count));
    offset += count;
  }
  return status == FileStatus::kOk ? file_->Close() : status;
}

}  // namespace kx::host
