// See files.h.
#include "platform/host/files.h"

#include <algorithm>
#include <array>
#include <memory>
#include <span>
#include <utility>

namespace kx::host {
namespace {

// Reads an open file to its end, or gives kTooLarge. The size that the system tells is only a hint:
// files of /proc have none.
FileStatus ReadToEnd(OpenFile& file, std::uint64_t mostBytes, FileContent& content) {
  FileInfo info;
  const FileStatus status = file.Examine(info);
  if (status != FileStatus::kOk) return status;
  content.identity = info.identity;
  if (info.identity.size > mostBytes) return FileStatus::kTooLarge;
  content.bytes.reserve(info.identity.size);
  std::array<char, 65536> buffer{};
  while (true) {
    std::size_t count = 0;
    const FileStatus read = file.ReadAt(content.bytes.size(), std::span<char>(buffer), count);
    if (read != FileStatus::kOk) return read;
    if (count == 0) return FileStatus::kOk;
    if (count > mostBytes - content.bytes.size()) return FileStatus::kTooLarge;
    content.bytes.append(buffer.data(), count);
  }
}

}  // namespace

Files::Files(Host& host) : Files(host, DriveFolders::FromEnvironment(host)) {}

Files::Files(Host& host, DriveFolders drives) : host_(&host), drives_(std::move(drives)) {}

FoundName Files::Find(std::string_view name) const {
  return NameLookup(host_->Files(), drives_).Find(name);
}

FileContent Files::Read(std::string_view name, std::uint64_t mostBytes) const {
  FileContent content;
  FoundName found = Find(name);
  content.status = found.status;
  if (content.status != FileStatus::kOk) return content;
  std::unique_ptr<OpenFile> file;
  content.path = std::move(found.path);
  content.status = host_->Files().Open(content.path, OpenMode::kRead, file);
  if (content.status == FileStatus::kOk) content.status = ReadToEnd(*file, mostBytes, content);
  if (content.status != FileStatus::kOk) content.bytes.clear();
  return content;
}

InputFile Files::OpenForInput(std::string_view name, std::uint64_t mostBytes) {
  const FoundName found = Find(name);
  RequireOk(Statement::kOpenForInput, found.status);
  OpenFileEntry entry(host_->OpenFiles(), found.path, FileUse::kInput);
  FileContent content = Read(name, mostBytes);
  RequireOk(Statement::kOpenForInput, content.status);
  return {std::move(entry), std::move(content.bytes)};
}

// Where to write: an existing file or folder, or a name that can be made. Makes a drive's folder.
FoundName Files::FindToWrite(Statement statement, std::string_view name) {
  FoundName found = Find(name);
  if (found.status != FileStatus::kNotFound) RequireOk(statement, found.status);
  if (!found.missingDriveFolder.empty()) {
    RequireOk(statement, host_->Files().MakeFolders(found.missingDriveFolder));
  }
  return found;
}

OutputFile Files::OpenForOutput(std::string_view name) {
  const FoundName found = FindToWrite(Statement::kOpenForOutput, name);
  OpenFileEntry entry(host_->OpenFiles(), found.path, FileUse::kOutput);
  ReplacementFile file(host_->Files(), found.path, ".kx-" + host_->NewGuid() + ".tmp");
  RequireOk(Statement::kOpenForOutput, file.Status());
  return {std::move(entry), std::move(file)};
}

BinaryFile Files::OpenForBinary(std::string_view name) {
  const FoundName found = FindToWrite(Statement::kOpenForBinary, name);
  OpenFileEntry entry(host_->OpenFiles(), found.path, FileUse::kBinary);
  std::unique_ptr<OpenFile> file;
  RequireOk(Statement::kOpenForBinary, host_->Files().Open(found.path, OpenMode::kReadWrite, file));
  return {std::move(entry), std::move(file)};
}

std::optional<FileIdentity> Files::Identify(std::string_view name) const {
  const FoundName found = Find(name);
  if (found.status != FileStatus::kOk || found.info.kind != FileKind::kRegular) {
    return std::nullopt;
  }
  return found.info.identity;
}

std::int64_t Files::FileLen(std::string_view name) {
  const FoundName found = Find(name);
  RequireOk(Statement::kFileLen, found.status);
  FileInfo info;
  RequireOk(Statement::kFileLen, host_->Files().Examine(found.path, info));
  if (info.kind == FileKind::kFolder) RaiseFileError(Statement::kFileLen, FileStatus::kIsFolder);
  if (info.kind == FileKind::kOther) RaiseFileError(Statement::kFileLen, FileStatus::kNotRegular);
  return static_cast<std::int64_t>(info.identity.size);
}

void Files::Kill(std::string_view name) {
  const FoundName found = Find(name);
  RequireOk(Statement::kKill, found.status);
  FileInfo info;
  RequireOk(Statement::kKill, host_->Files().Examine(found.path, info));
  if (info.kind == FileKind::kFolder) RaiseFileError(Statement::kKill, FileStatus::kIsFolder);
  if (info.isReadOnly) RaiseFileError(Statement::kKill, FileStatus::kReadOnly);
  // While it lives, the entry is the program's only use of the file.
  const OpenFileEntry entry(host_->OpenFiles(), found.path, FileUse::kOutput);
  RequireOk(Statement::kKill, host_->Files().Remove(found.path));
}

std::optional<std::string> Files::CreateTemporaryFile(
    const std::function<std::string(std::uint16_t number)>& nameOf) {
  auto number = static_cast<std::uint16_t>(host_->Ticks());
  for (int tries = 0; tries < 0xFFFF; ++tries, ++number) {
    if (number == 0) number = 1;  // the platform's 0 means failure
    std::string path = nameOf(number);
    std::unique_ptr<OpenFile> file;
    const FileStatus status = host_->Files().Open(path, OpenMode::kCreatePrivate, file);
    if (status == FileStatus::kOk) {
      if (file->Close() == FileStatus::kOk) return path;
      return std::nullopt;
    }
    if (status != FileStatus::kExists) return std::nullopt;
  }
  return std::nullopt;
}

}  // namespace kx::host
