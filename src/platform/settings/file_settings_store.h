// Settings in a text file that several processes share.
//
// A write takes a lock beside the file, reads the file again, and replaces it in one step by a
// sibling that is on the disk before: a reader sees the old file or the new one, whenever the
// process or the machine stops, and no writer undoes another. The lock is a file of its own,
// because the settings file itself is replaced under it.
#pragma once

#include "platform/host/host.h"
#include "platform/settings/settings_store.h"
#include "platform/settings/settings_text.h"

#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace kx::settings {

/// A longer file is damaged.
inline constexpr std::size_t kMostSettingsBytes = 1 << 20;

/// The run-time error of a damaged file ("Invalid file format").
inline constexpr int kInvalidFileFormat = 321;

/// The file that KX_SETTINGS names, else "settings.ini" in the library's folder of the user's
/// configuration; nothing when there is no home.
[[nodiscard]] std::optional<std::string> SettingsFileName(host::Host& host);

/// See above. A file that is missing holds nothing; it is made, with its folder, by the first
/// write.
class FileSettingsStore final : public SettingsStore {
 public:
  /// `path`: the host's name of the file; empty when there is no place for it, so that every write
  /// fails.
  FileSettingsStore(host::Host& host, std::string path);

  void SetApplicationName(std::string_view name) override;
  /// Raises: HostError 321 with a text that names the file when it is damaged; the run-time error
  /// of the failure, with the file's name, when it cannot be read.
  [[nodiscard]] std::optional<std::string> Find(std::string_view name) override;
  /// Raises: 5; as Find; HostError 70 when another process holds the lock for ten seconds; 76, 75,
  /// 61 and so on, with the file's name, when the file cannot be written.
  void Write(std::string_view name, std::string_view text) override;

 private:
  [[nodiscard]] SettingsText Load(const std::string& path);
  [[nodiscard]] const SettingsText& Current();
  void WriteLocked(const std::string& target, std::string_view name, std::string_view text);
  void RequireOk(host::FileStatus status) const;

  host::Host& host_;
  std::string path_;
  std::mutex mutex_;  // guards what follows
  std::string application_;
  // What was read last, good while the file is still the one that it was.
  std::optional<host::FileIdentity> currentIdentity_;
  SettingsText current_;
};

}  // namespace kx::settings
