// See open_file_table.h.
#include "platform/host/open_file_table.h"

#include "platform/runtime/error.h"

#include <utility>

namespace kx::host {

void OpenFileTable::Add(const std::string& path, FileUse use) {
  const std::lock_guard<std::mutex> guard(mutex_);
  if (count_ >= kMostOpen) runtime::RaiseRuntimeError(runtime::kTooManyFiles);
  const auto found = files_.find(path);
  if (found != files_.end()) {
    const bool clashes = use == FileUse::kOutput || found->second.output > 0;
    if (clashes) runtime::RaiseRuntimeError(runtime::kFileAlreadyOpen);
  }
  Uses& uses = files_[path];
  ++(use == FileUse::kOutput ? uses.output : uses.other);
  ++count_;
}

void OpenFileTable::Remove(const std::string& path, FileUse use) noexcept {
  const std::lock_guard<std::mutex> guard(mutex_);
  const auto found = files_.find(path);
  if (found == files_.end()) return;
  Uses& uses = found->second;
  --(use == FileUse::kOutput ? uses.output : uses.other);
  --count_;
  if (uses.output == 0 && uses.other == 0) files_.erase(found);
}

bool OpenFileTable::IsOpen(const std::string& path) const {
  const std::lock_guard<std::mutex> guard(mutex_);
  return files_.contains(path);
}

OpenFileEntry::OpenFileEntry(OpenFileTable& table, std::string path, FileUse use)
    : path_(std::move(path)), use_(use) {
  table.Add(path_, use_);
  table_ = &table;
}

OpenFileEntry::OpenFileEntry(OpenFileEntry&& other) noexcept
    : table_(std::exchange(other.table_, nullptr)),
      path_(std::move(other.path_)),
      use_(other.use_) {}

OpenFileEntry& OpenFileEntry::operator=(OpenFileEntry&& other) noexcept {
  if (this == &other) return *this;
  Reset();
  table_ = std::exchange(other.table_, nullptr);
  path_ = std::move(other.path_);
  use_ = other.use_;
  return *this;
}

void OpenFileEntry::Reset() noexcept {
  if (table_ != nullptr) table_->Remove(path_, use_);
  table_ = nullptr;
}

}  // namespace kx::host
