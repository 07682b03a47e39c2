// Files as the library's rules use them: opened for input, output and binary access, measured and
// removed, each failure with the run-time error of its statement. Names are looked up by
// name_lookup.h; contents are bytes, which callers convert through their code page.
//
// Reading accepts regular files only: never a folder, device, pipe or socket.
#pragma once

#include "platform/host/binary_file.h"
#include "platform/host/file_errors.h"
#include "platform/host/host.h"
#include "platform/host/name_lookup.h"
#include "platform/host/text_file.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace kx::host {

/// The longest file that is read when the caller sets no bound: positions are 32-bit numbers.
inline constexpr std::uint64_t kMostFileBytes = 0x7FFFFFFF;

/// A whole file as a loader sees it, or why there is none.
struct FileContent {
  FileStatus status = FileStatus::kNotFound;
  std::string bytes;
  std::string path;       ///< the host's name; what a cache is keyed by
  FileIdentity identity;  ///< taken before the bytes were read
};

/// The statements. Holds a reference to its host; cheap to copy.
class Files {
 public:
  /// Drives are where the environment says.
  explicit Files(Host& host);
  Files(Host& host, DriveFolders drives);

  /// Opens a text file to read. `mostBytes` bounds what is read. Raises: 53 when it is missing, 76
  /// when its folder is, 75 for a folder, a device or an empty name, 52 for a name that no file can
  /// have, 55 when it is open for output, 7 when it is longer than the bound.
  [[nodiscard]] InputFile OpenForInput(std::string_view name,
                                       std::uint64_t mostBytes = kMostFileBytes);

  /// Opens a text file to write from its start, made if missing. A regular file keeps its old
  /// content until OutputFile::Close. Raises: 76, 75 (also for a read-only file), 52, 55, 61, 70.
  [[nodiscard]] OutputFile OpenForOutput(std::string_view name);

  /// Opens for reading and writing bytes, made empty if missing. Raises: as OpenForOutput.
  /// Note: a read-only file is refused here, not at the first write.
  [[nodiscard]] BinaryFile OpenForBinary(std::string_view name);

  /// The length of a regular file in bytes. Raises: 53 for anything else.
  [[nodiscard]] std::int64_t FileLen(std::string_view name);

  /// Removes a file. Raises: 53 when it is missing, a folder, or the name empty; 76; 75 for a
  /// read-only file; 55 when this program has it open.
  void Kill(std::string_view name);

  /// Reads a whole regular file and raises nothing: the status says what is wrong.
  [[nodiscard]] FileContent Read(std::string_view name,
                                 std::uint64_t mostBytes = kMostFileBytes) const;

  /// The identity of the regular file that `name` leads to, for a cache to compare; nothing when
  /// there is none.
  [[nodiscard]] std::optional<FileIdentity> Identify(std::string_view name) const;

  /// Where `name` leads, without opening it.
  [[nodiscard]] FoundName Find(std::string_view name) const;

  /// Makes a new empty file, for this user only, under the first name of `nameOf` that is free:
  /// from the clock's lower 16 bits on, raised by one, never 0, as GetTempFileNameA does with the
  /// unique number 0. Names are the host's. Returns the name; nothing when the folder takes no file
  /// (the platform returns 0 then) or all names are taken.
  [[nodiscard]] std::optional<std::string> CreateTemporaryFile(
      const std::function<std::string(std::uint16_t number)>& nameOf);

 private:
  [[nodiscard]] FoundName FindToWrite(Statement statement, std::string_view name);

  Host* host_;
  DriveFolders drives_;
};

}  // namespace kx::host
