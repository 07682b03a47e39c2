// See file_settings_store.h.
#include "platform/settings/file_settings_store.h"

#include "platform/host/file_errors.h"
#include "platform/host/path_parts.h"
#include "platform/host/replacement_file.h"
#include "platform/host/user_folders.h"
#include "platform/runtime/error.h"

#include <array>
#include <chrono>
#include <memory>
#include <span>
#include <utility>

namespace kx::settings {
namespace {

using host::FileStatus;

constexpr std::chrono::seconds kLockPatience(10);
constexpr std::string_view kFileName = "settings.ini";
constexpr std::string_view kLockSuffix = ".lock";
constexpr std::string_view kNewSuffix = ".new";

[[noreturn]] void RaiseDamaged(const std::string& path, const std::string& what) {
  runtime::RaiseRuntimeError(kInvalidFileFormat,
                             "The settings file \"" + path + "\" is damaged: " + what);
}

// The bytes of an open file; kTooLarge when there are more than the bound.
FileStatus ReadBytes(host::OpenFile& file, std::string& bytes) {
  std::array<char, 4096> buffer{};
  while (bytes.size() <= kMostSettingsBytes) {
    std::size_t count = 0;
    const FileStatus status = file.ReadAt(bytes.size(), std::span<char>(buffer), count);
    if (status != FileStatus::kOk || count == 0) return status;
    bytes.append(buffer.data(), count);
  }
  return FileStatus::kTooLarge;
}

bool IsMissing(FileStatus status) {
  return status == FileStatus::kNotFound || status == FileStatus::kFolderNotFound;
}

}  // namespace

std::optional<std::string> SettingsFileName(host::Host& host) {
  std::optional<std::string> named = host.Environment("KX_SETTINGS");
  if (named && !named->empty()) return named;
  const std::optional<std::string> folder = host::UserConfigurationFolder(host);
  if (!folder) return std::nullopt;
  return *folder + "/" + std::string(kFileName);
}

FileSettingsStore::FileSettingsStore(host::Host& host, std::string path)
    : host_(host), path_(std::move(path)) {}

void FileSettingsStore::SetApplicationName(std::string_view name) {
  const std::lock_guard<std::mutex> guard(mutex_);
  application_ = name;
}

void FileSettingsStore::RequireOk(FileStatus status) const {
  if (status == FileStatus::kOk) return;
  const int number = host::RuntimeErrorOf(host::Statement::kOpenForOutput, status);
  runtime::RaiseRuntimeError(number, std::string(runtime::RuntimeErrorText(number)) +
                                         " (settings file \"" + path_ + "\")");
}

SettingsText FileSettingsStore::Load(const std::string& path) {
  if (path.empty()) return {};
  std::unique_ptr<host::OpenFile> file;
  std::string bytes;
  FileStatus status = host_.Files().Open(path, host::OpenMode::kRead, file);
  if (IsMissing(status)) return {};
  if (status == FileStatus::kOk) status = ReadBytes(*file, bytes);
  if (status == FileStatus::kTooLarge) RaiseDamaged(path_, "it is too long");
  RequireOk(status);
  SettingsDamage damage;
  std::optional<SettingsText> text = SettingsText::Parse(bytes, damage);
  if (!text) RaiseDamaged(path_, "line " + std::to_string(damage.line) + ": " + damage.reason);
  return *std::move(text);
}

// The content of the file, read again only when the file is another or was changed.
const SettingsText& FileSettingsStore::Current() {
  host::FileInfo info;
  const FileStatus status =
      path_.empty() ? FileStatus::kNotFound : host_.Files().Examine(path_, info);
  const bool known = status == FileStatus::kOk && info.kind == host::FileKind::kRegular;
  if (known && currentIdentity_ == info.identity) return current_;
  currentIdentity_.reset();
  current_ = IsMissing(status) ? SettingsText() : Load(path_);
  if (known) currentIdentity_ = info.identity;
  return current_;
}

std::optional<std::string> FileSettingsStore::Find(std::string_view name) {
  const std::lock_guard<std::mutex> guard(mutex_);
  return Current().Find(application_, name);
}

void FileSettingsStore::Write(std::string_view name, std::string_view text) {
  RequireStorable(name, text);
  const std::lock_guard<std::mutex> guard(mutex_);
  if (Current().Find(application_, name) == text) return;
  if (path_.empty()) RequireOk(FileStatus::kFolderNotFound);
  host::FileSystem& files = host_.Files();
  std::string target;
  RequireOk(files.FollowLinks(path_, target));
  RequireOk(files.MakeFolders(host::FolderOf(target, files.Rules())));
  std::unique_ptr<host::FileLock> lock;
  RequireOk(files.Lock(target + std::string(kLockSuffix), kLockPatience, lock));
  WriteLocked(target, name, text);
}

void FileSettingsStore::WriteLocked(const std::string& target, std::string_view name,
                                    std::string_view text) {
  SettingsText settings = Load(target);  // another process may have written since
  if (settings.Find(application_, name) == text) return;
  settings.Set(application_, name, text);
  const std::string content = settings.Text();
  if (content.size() > kMostSettingsBytes) RequireOk(FileStatus::kTooLarge);
  host::FileSystem& files = host_.Files();
  const std::string prefix = host::FolderPrefix(target, files.Rules());
  const std::string newName = target.substr(prefix.size()) + std::string(kNewSuffix);
  // A left-over of a writer that was stopped; nobody else writes while the lock is held.
  static_cast<void>(files.Remove(prefix + newName));
  host::ReplacementFile file(files, target, newName, host::DirectWriting::kNever);
  RequireOk(file.Write(content));
  RequireOk(file.Commit());
}

}  // namespace kx::settings
