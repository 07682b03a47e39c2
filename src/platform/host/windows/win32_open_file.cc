// See win32_open_file.h.
#include "platform/host/windows/win32_open_file.h"

#include "platform/host/windows/wide_text.h"
#include "platform/host/windows/win32_status.h"

#include <algorithm>

namespace kx::host {
namespace {

constexpr std::size_t kMostAtOnce = 0x10000000;
constexpr std::uint64_t kMostOffset = 0x7FFFFFFF00000000;

std::uint64_t Join(DWORD high, DWORD low) {
  return (static_cast<std::uint64_t>(high) << 32U) | low;
}

OVERLAPPED AtOffset(std::uint64_t offset) {
  OVERLAPPED position{};
  position.Offset = static_cast<DWORD>(offset & 0xFFFFFFFFU);
  position.OffsetHigh = static_cast<DWORD>(offset >> 32U);
  return position;
}

// A file time counts 100 nanoseconds from the year 1601; only differences matter here.
std::int64_t Nanoseconds(const FILETIME& time) {
  constexpr std::uint64_t kFrom1601To1970 = 116444736000000000;
  const std::uint64_t units = Join(time.dwHighDateTime, time.dwLowDateTime);
  return static_cast<std::int64_t>(units - kFrom1601To1970) * 100;
}

}  // namespace

Handle& Handle::operator=(Handle&& other) noexcept {
  if (this == &other) return *this;
  static_cast<void>(Close());
  handle_ = std::exchange(other.handle_, nullptr);
  return *this;
}

bool Handle::IsOpen() const noexcept {
  return handle_ != nullptr && handle_ != INVALID_HANDLE_VALUE;
}

bool Handle::Close() noexcept {
  const bool wasOpen = IsOpen();
  void* const handle = std::exchange(handle_, nullptr);
  return !wasOpen || CloseHandle(handle) != 0;
}

FileStatus ExamineHandle(const Handle& handle, FileInfo& info) noexcept {
  info = {};
  if (GetFileType(handle.Get()) != FILE_TYPE_DISK) {
    info.kind = FileKind::kOther;
    return FileStatus::kOk;
  }
  BY_HANDLE_FILE_INFORMATION data{};
  if (GetFileInformationByHandle(handle.Get(), &data) == 0) return LastStatus();
  const bool isFolder = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  info.kind = isFolder ? FileKind::kFolder : FileKind::kRegular;
  info.isReadOnly = (data.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0;
  info.identity.device = data.dwVolumeSerialNumber;
  info.identity.inode = Join(data.nFileIndexHigh, data.nFileIndexLow);
  info.identity.size = Join(data.nFileSizeHigh, data.nFileSizeLow);
  info.identity.modifiedNanoseconds = Nanoseconds(data.ftLastWriteTime);
  return FileStatus::kOk;
}

FileStatus Win32OpenFile::Examine(FileInfo& info) { return ExamineHandle(handle_, info); }

FileStatus Win32OpenFile::ReadAt(std::uint64_t offset, std::span<char> buffer, std::size_t& count) {
  count = 0;
  if (kind_ != FileKind::kRegular) return FileStatus::kNotRegular;
  if (offset > kMostOffset) return FileStatus::kOk;  // no file reaches so far
  OVERLAPPED position = AtOffset(offset);
  const auto length = static_cast<DWORD>(std::min(buffer.size(), kMostAtOnce));
  DWORD got = 0;
  if (ReadFile(handle_.Get(), buffer.data(), length, &got, &position) == 0) {
    return GetLastError() == ERROR_HANDLE_EOF ? FileStatus::kOk : LastStatus();
  }
  count = got;
  return FileStatus::kOk;
}

FileStatus Win32OpenFile::WriteAt(std::uint64_t offset, std::string_view bytes) {
  while (!bytes.empty()) {
    if (offset > kMostOffset) return FileStatus::kDiskFull;
    OVERLAPPED position = AtOffset(offset);
    OVERLAPPED* const where = kind_ == FileKind::kRegular ? &position : nullptr;
    const auto length = static_cast<DWORD>(std::min(bytes.size(), kMostAtOnce));
    DWORD written = 0;
    if (WriteFile(handle_.Get(), bytes.data(), length, &written, where) == 0) return LastStatus();
    if (written == 0) return FileStatus::kDiskFull;
    bytes.remove_prefix(written);
    offset += written;
  }
  return FileStatus::kOk;
}

FileStatus Win32OpenFile::Sync() {
  if (kind_ != FileKind::kRegular) return FileStatus::kOk;
  return StatusOfCall(FlushFileBuffers(handle_.Get()));
}

FileStatus Win32OpenFile::Close() { return handle_.Close() ? FileStatus::kOk : LastStatus(); }

}  // namespace kx::host
