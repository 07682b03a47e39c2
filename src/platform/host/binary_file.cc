// See binary_file.h.
#include "platform/host/binary_file.h"

#include "platform/host/file_errors.h"
#include "platform/runtime/error.h"

#include <utility>

namespace kx::host {

BinaryFile::BinaryFile(OpenFileEntry entry, std::unique_ptr<OpenFile> file)
    : entry_(std::move(entry)), file_(std::move(file)) {}

void BinaryFile::Seek(std::int64_t position) {
  if (position < 1) runtime::RaiseRuntimeError(runtime::kBadRecordNumber);
  position_ = position;
}

void BinaryFile::Get(std::span<char> bytes) {
  while (!bytes.empty()) {
    std::size_t count = 0;
    RequireOk(Statement::kTransfer, file_->ReadAt(Offset(), bytes, count));
    if (count == 0) return;
    position_ += static_cast<std::int64_t>(count);
    bytes = bytes.subspan(count);
  }
}

void BinaryFile::Get(std::int64_t position, std::span<char> bytes) {
  Seek(position);
  Get(bytes);
}

void BinaryFile::Put(std::string_view bytes) {
  if (bytes.empty()) return;
  RequireOk(Statement::kTransfer, file_->WriteAt(Offset(), bytes));
  position_ += static_cast<std::int64_t>(bytes.size());
}

void BinaryFile::Put(std::int64_t position, std::string_view bytes) {
  Seek(position);
  Put(bytes);
}

std::int64_t BinaryFile::Lof() {
  FileInfo info;
  RequireOk(Statement::kTransfer, file_->Examine(info));
  return static_cast<std::int64_t>(info.identity.size);
}

void BinaryFile::Close() {
  const FileStatus status = file_->Close();
  entry_.Reset();
  RequireOk(Statement::kTransfer, status);
}

}  // namespace kx::host
