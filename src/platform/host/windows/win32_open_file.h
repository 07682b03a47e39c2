// An open file of Windows, and the handle that owns itself.
#pragma once

#include "platform/host/file_system.h"

#include <utility>

namespace kx::host {

/// Owns a file handle.
class Handle {
 public:
  Handle() = default;
  explicit Handle(void* handle) noexcept : handle_(handle) {}
  ~Handle() { static_cast<void>(Close()); }
  Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Handle& operator=(Handle&& other) noexcept;

  [[nodiscard]] bool IsOpen() const noexcept;
  [[nodiscard]] void* Get() const noexcept { return handle_; }
  /// Closes, if open; false when that failed.
  bool Close() noexcept;

 private:
  void* handle_ = nullptr;
};

/// What the system tells about an open file or folder.
[[nodiscard]] FileStatus ExamineHandle(const Handle& handle, FileInfo& info) noexcept;

/// See above.
class Win32OpenFile final : public OpenFile {
 public:
  /// `kind`: what the handle leads to; only a regular file has positions.
  Win32OpenFile(Handle handle, FileKind kind) noexcept : handle_(std::move(handle)), kind_(kind) {}

  [[nodiscard]] FileStatus Examine(FileInfo& info) override;
  [[nodiscard]] FileStatus ReadAt(std::uint64_t offset, std::span<char> buffer,
                                  std::size_t& count) override;
  [[nodiscard]] FileStatus WriteAt(std::uint64_t offset, std::string_view bytes) override;
  [[nodiscard]] FileStatus Sync() override;
  [[nodiscard]] FileStatus Close() override;

 private:
  Handle handle_;
  FileKind kind_;
};

}  // namespace kx::host
