// See win32_file_system.h.
#include "platform/host/windows/win32_file_system.h"

#include "platform/host/windows/wide_text.h"
#include "platform/host/windows/win32_open_file.h"
#include "platform/host/windows/win32_status.h"

#include <algorithm>
#include <utility>

namespace kx::host {
namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

Handle OpenHandle(const std::string& path, DWORD access, DWORD disposition, DWORD flags = 0) {
  return Handle(CreateFileW(ToWide(path).c_str(), access, kShareAll, nullptr, disposition,
                            FILE_ATTRIBUTE_NORMAL | flags, nullptr));
}

// A handle that only tells about a file or folder.
Handle OpenToExamine(const std::string& path) {
  return OpenHandle(path, FILE_READ_ATTRIBUTES, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
}

FileStatus Finish(Handle handle, std::unique_ptr<OpenFile>& file) {
  if (!handle.IsOpen()) return LastStatus();
  FileInfo info;
  const FileStatus status = ExamineHandle(handle, info);
  if (status != FileStatus::kOk) return status;
  file = std::make_unique<Win32OpenFile>(std::move(handle), info.kind);
  return FileStatus::kOk;
}

FileStatus OpenToRead(const std::string& path, std::unique_ptr<OpenFile>& file) {
  Handle handle = OpenHandle(path, GENERIC_READ, OPEN_EXISTING);
  if (!handle.IsOpen()) return LastStatus();
  FileInfo info;
  const FileStatus status = ExamineHandle(handle, info);
  if (status != FileStatus::kOk) return status;
  if (info.kind != FileKind::kRegular) return FileStatus::kNotRegular;
  file = std::make_unique<Win32OpenFile>(std::move(handle), info.kind);
  return FileStatus::kOk;
}

FileStatus OpenToTruncate(const std::string& path, const FileInfo& info,
                          std::unique_ptr<OpenFile>& file) {
  // Not CREATE_ALWAYS: that refuses hidden files and forgets attributes.
  Handle handle = OpenHandle(path, GENERIC_WRITE, OPEN_ALWAYS);
  const bool cuts = handle.IsOpen() && info.kind == FileKind::kRegular;
  if (cuts && SetEndOfFile(handle.Get()) == 0) return LastStatus();
  return Finish(std::move(handle), file);
}

// A file that could not be made because its folder is missing.
FileStatus AsCreation(FileStatus status) {
  return status == FileStatus::kNotFound ? FileStatus::kFolderNotFound : status;
}

class Win32Lock final : public FileLock {
 public:
  explicit Win32Lock(Handle handle) noexcept : handle_(std::move(handle)) {}

 private:
  Handle handle_;  // closing it gives the lock back
};

}  // namespace

FileStatus Win32FileSystem::Examine(const std::string& path, FileInfo& info) {
  const Handle handle = OpenToExamine(path);
  if (!handle.IsOpen()) return LastStatus();
  return ExamineHandle(handle, info);
}

FileStatus Win32FileSystem::ListNames(const std::string& folder, std::vector<std::string>& names) {
  names.clear();
  FileInfo info;
  const FileStatus examined = Examine(folder, info);
  if (examined != FileStatus::kOk) return examined;
  if (info.kind != FileKind::kFolder) return FileStatus::kFolderNotFound;
  WIN32_FIND_DATAW data{};
  const HANDLE listing = FindFirstFileW(ToWide(folder + "\\*").c_str(), &data);
  if (listing == INVALID_HANDLE_VALUE) return LastStatus();
  do {
    std::string name = FromWide(static_cast<const wchar_t*>(data.cFileName));
    if (name != "." && name != "..") names.push_back(std::move(name));
  } while (FindNextFileW(listing, &data) != 0);
  const DWORD error = GetLastError();
  FindClose(listing);
  return error == ERROR_NO_MORE_FILES ? FileStatus::kOk : StatusOfWin32Error(error);
}

FileStatus Win32FileSystem::Open(const std::string& path, OpenMode mode,
                                 std::unique_ptr<OpenFile>& file) {
  if (mode == OpenMode::kCreateNew || mode == OpenMode::kCreatePrivate) {
    // The folders of a user are private by the access list that new files inherit.
    return AsCreation(Finish(OpenHandle(path, GENERIC_WRITE, CREATE_NEW), file));
  }
  FileInfo info;
  const FileStatus status = Examine(path, info);
  const bool exists = status == FileStatus::kOk;
  if (exists && info.kind == FileKind::kFolder) return FileStatus::kIsFolder;
  if (mode == OpenMode::kRead) return exists ? OpenToRead(path, file) : status;
  if (!exists && status != FileStatus::kNotFound) return status;
  if (exists && info.isReadOnly) return FileStatus::kReadOnly;
  if (mode == OpenMode::kTruncate) return AsCreation(OpenToTruncate(path, info, file));
  const DWORD access = info.kind == FileKind::kOther ? GENERIC_WRITE : GENERIC_READ | GENERIC_WRITE;
  return AsCreation(Finish(OpenHandle(path, access, OPEN_ALWAYS), file));
}

FileStatus Win32FileSystem::CheckWritable(const std::string& path) {
  return OpenHandle(path, GENERIC_WRITE, OPEN_EXISTING).IsOpen() ? FileStatus::kOk : LastStatus();
}

FileStatus Win32FileSystem::FollowLinks(const std::string& path, std::string& target) {
  target = path;
  const DWORD attributes = GetFileAttributesW(ToWide(path).c_str());
  const bool isLink =
      attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  if (!isLink) return FileStatus::kOk;
  const Handle handle = OpenToExamine(path);
  if (!handle.IsOpen()) return LastStatus();
  std::wstring final(32768, L'\0');
  const DWORD length = GetFinalPathNameByHandleW(
      handle.Get(), final.data(), static_cast<DWORD>(final.size()), FILE_NAME_NORMALIZED);
  if (length == 0 || length >= final.size()) return LastStatus();
  target = FromWide(std::wstring_view(final).substr(0, length));
  return FileStatus::kOk;
}

FileStatus Win32FileSystem::CopyPermissions(const std::string& from, const std::string& to) {
  constexpr DWORD kKeptAttributes = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM |
                                    FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
  const std::wstring source = ToWide(from);
  const std::wstring copy = ToWide(to);
  const DWORD attributes = GetFileAttributesW(source.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return LastStatus();
  DWORD needed = 0;
  GetFileSecurityW(source.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &needed);
  std::vector<unsigned char> descriptor(needed);
  if (needed > 0 && GetFileSecurityW(source.c_str(), DACL_SECURITY_INFORMATION, descriptor.data(),
                                     needed, &needed) != 0) {
    // A file system without access lists has none to keep.
    SetFileSecurityW(copy.c_str(), DACL_SECURITY_INFORMATION, descriptor.data());
  }
  const DWORD kept = attributes & kKeptAttributes;
  return StatusOfCall(SetFileAttributesW(copy.c_str(), kept == 0 ? FILE_ATTRIBUTE_NORMAL : kept));
}

FileStatus Win32FileSystem::Rename(const std::string& from, const std::string& to) {
  return StatusOfCall(MoveFileExW(ToWide(from).c_str(), ToWide(to).c_str(),
                                  MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH));
}

FileStatus Win32FileSystem::Remove(const std::string& path) {
  return StatusOfCall(DeleteFileW(ToWide(path).c_str()));
}

FileStatus Win32FileSystem::MakeFolders(const std::string& folder) {
  for (std::size_t end = folder.find_first_of("\\/", 1); end != std::string::npos;
       end = folder.find_first_of("\\/", end + 1)) {
    // Whether it worked shows at the last folder.
    CreateDirectoryW(ToWide(folder.substr(0, end)).c_str(), nullptr);
  }
  if (CreateDirectoryW(ToWide(folder).c_str(), nullptr) != 0) return FileStatus::kOk;
  const FileStatus status = LastStatus();
  FileInfo info;
  const bool exists = Examine(folder, info) == FileStatus::kOk;
  if (exists && info.kind == FileKind::kFolder) return FileStatus::kOk;
  return exists ? FileStatus::kFolderNotFound : AsCreation(status);
}

FileStatus Win32FileSystem::SyncFolder(const std::string& folder) {
  // Renaming was told to write through; a folder has nothing to flush.
  FileInfo info;
  return Examine(folder, info);
}

FileStatus Win32FileSystem::Lock(const std::string& path, std::chrono::milliseconds patience,
                                 std::unique_ptr<FileLock>& lock) {
  Handle handle = OpenHandle(path, GENERIC_READ | GENERIC_WRITE, OPEN_ALWAYS);
  if (!handle.IsOpen()) return AsCreation(LastStatus());
  const auto deadline = std::chrono::steady_clock::now() + patience;
  DWORD pause = 1;
  while (true) {
    OVERLAPPED range{};
    if (LockFileEx(handle.Get(), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0,
                   &range) != 0) {
      break;
    }
    if (LastStatus() != FileStatus::kLocked) return LastStatus();
    if (std::chrono::steady_clock::now() >= deadline) return FileStatus::kLocked;
    Sleep(pause);
    pause = std::min<DWORD>(pause * 2, 16);
  }
  lock = std::make_unique<Win32Lock>(std::move(handle));
  return FileStatus::kOk;
}

}  // namespace kx::host
