// A file in binary mode: bytes at 1-based positions.
#pragma once

#include "platform/host/file_system.h"
#include "platform/host/open_file_table.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

namespace kx::host {

/// See above. The position starts at 1 and moves behind what was read or written. Destruction
/// closes the file.
class BinaryFile {
 public:
  BinaryFile(OpenFileEntry entry, std::unique_ptr<OpenFile> file);
  BinaryFile(BinaryFile&&) noexcept = default;
  BinaryFile& operator=(BinaryFile&&) noexcept = default;
  ~BinaryFile() = default;

  /// Makes `position` the next to be read or written. Raises: HostError 63 when it is below 1.
  void Seek(std::int64_t position);
  [[nodiscard]] std::int64_t Position() const noexcept { return position_; }

  /// Reads into `bytes` at the position. What lies beyond the end of the file is left unchanged
  /// there, without an error. Raises: HostError 75 for what is no regular file, 57.
  void Get(std::span<char> bytes);
  /// Seek, then Get. Raises: 63 first.
  void Get(std::int64_t position, std::span<char> bytes);

  /// Writes `bytes` at the position; what follows them in the file stays. Raises: HostError 61, 57.
  void Put(std::string_view bytes);
  /// Seek, then Put. Raises: 63 first.
  void Put(std::int64_t position, std::string_view bytes);

  /// The length of the file in bytes. Raises: HostError 57.
  [[nodiscard]] std::int64_t Lof();
  /// Closes. Raises: HostError 61, 57 for a write that failed late.
  void Close();

 private:
  [[nodiscard]] std::uint64_t Offset() const noexcept {
    return static_cast<std::uint64_t>(position_ - 1);
  }

  OpenFileEntry entry_;
  std::unique_ptr<OpenFile> file_;
  std::int64_t position_ = 1;
};

}  // namespace kx::host
