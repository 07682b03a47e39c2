// Which files this program has open, so that a file that is open for output is not opened a second
// time, and no more files are open than there are file numbers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

namespace kx::host {

/// What a program opened a file for.
enum class FileUse : std::uint8_t { kInput, kOutput, kBinary };

/// The table. Usable from any thread.
class OpenFileTable {
 public:
  static constexpr std::size_t kMostOpen = 511;

  /// Notes that the file of the host's name `path` is open. Raises: HostError 67 when 511 are;
  /// HostError 55 when it is open for output, or `use` is output and it is open at all.
  void Add(const std::string& path, FileUse use);
  /// Takes back one Add of the same arguments.
  void Remove(const std::string& path, FileUse use) noexcept;
  [[nodiscard]] bool IsOpen(const std::string& path) const;

 private:
  struct Uses {
    std::size_t output = 0;
    std::size_t other = 0;
  };
  mutable std::mutex mutex_;
  std::map<std::string, Uses, std::less<>> files_;
  std::size_t count_ = 0;
};

/// One entry of the table, for as long as it lives.
class OpenFileEntry {
 public:
  OpenFileEntry() = default;
  /// Raises: as OpenFileTable::Add.
  OpenFileEntry(OpenFileTable& table, std::string path, FileUse use);
  ~OpenFileEntry() { Reset(); }
  OpenFileEntry(OpenFileEntry&& other) noexcept;
  OpenFileEntry& operator=(OpenFileEntry&& other) noexcept;

  /// Ends the entry.
  void Reset() noexcept;

 private:
  OpenFileTable* table_ = nullptr;
  std::string path_;
  FileUse use_ = FileUse::kInput;
};

}  // namespace kx::host
