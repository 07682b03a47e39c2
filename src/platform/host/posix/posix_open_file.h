// An open file of a POSIX system, and the descriptor that owns itself.
#pragma once

#include "platform/host/file_system.h"

#include <utility>

struct stat;

namespace kx::host {

/// Owns a file descriptor.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) noexcept : number_(number) {}
  ~Descriptor() { static_cast<void>(Close()); }
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept;

  [[nodiscard]] bool IsOpen() const noexcept { return number_ >= 0; }
  [[nodiscard]] int Number() const noexcept { return number_; }
  /// Closes, if open; the result of close().
  int Close() noexcept;

 private:
  int number_ = -1;
};

/// What stat() told about a file.
[[nodiscard]] FileInfo InfoOfStat(const struct stat& data) noexcept;

/// See above.
class PosixOpenFile final : public OpenFile {
 public:
  /// `kind`: what the descriptor leads to; only a regular file has positions.
  PosixOpenFile(Descriptor descriptor, FileKind kind) noexcept
      : descriptor_(std::move(descriptor)), kind_(kind) {}

  [[nodiscard]] FileStatus Examine(FileInfo& info) override;
  [[nodiscard]] FileStatus ReadAt(std::uint64_t offset, std::span<char> buffer,
                                  std::size_t& count) override;
  [[nodiscard]] FileStatus WriteAt(std::uint64_t offset, std::string_view bytes) override;
  [[nodiscard]] FileStatus Sync() override;
  [[nodiscard]] FileStatus Close() override;

 private:
  Descriptor descriptor_;
  FileKind kind_;
};

}  // namespace kx::host
