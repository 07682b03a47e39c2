// Files in text mode: lines that are read, and text that is printed. Bytes only; the code page is
// the caller's matter.
#pragma once

#include "platform/host/open_file_table.h"
#include "platform/host/replacement_file.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kx::host {

/// Cuts `bytes` into lines as a text file's are: a CR ends a line, and so does CR LF; a lone LF is
/// an ordinary character; Chr(26) ends the file. The last line may lack its end. Borrows its bytes.
class LineReader {
 public:
  explicit LineReader(std::string_view bytes) noexcept
      : rest_(bytes.substr(0, bytes.find('\x1A'))) {}

  [[nodiscard]] bool AtEnd() const noexcept { return rest_.empty(); }
  /// The next line without its end; not called at the end.
  [[nodiscard]] std::string_view Next() noexcept;

 private:
  std::string_view rest_;
};

/// What reading a text file line by line and adding CR LF to each line gives: every CR, CR LF and
/// missing last line end becomes CR LF. Empty for an empty file.
[[nodiscard]] std::string JoinLines(std::string_view bytes);

/// A text file opened for input. Its content was read when it was opened.
class InputFile {
 public:
  InputFile(OpenFileEntry entry, std::string bytes);
  InputFile(InputFile&&) noexcept = default;
  InputFile& operator=(InputFile&&) noexcept = default;
  ~InputFile() = default;

  [[nodiscard]] bool AtEnd() const noexcept;
  /// Line Input. Raises: HostError 62 at the end of the file.
  [[nodiscard]] std::string LineInput();
  /// The lines that are left, each followed by CR LF.
  [[nodiscard]] std::string RestOfLines();
  /// The length of the file in bytes.
  [[nodiscard]] std::int64_t Lof() const noexcept {
    return static_cast<std::int64_t>(bytes_.size());
  }

 private:
  OpenFileEntry entry_;
  std::string bytes_;
  std::size_t offset_ = 0;
};

/// Whether Print ends its text with CR LF.
enum class LineEnd : std::uint8_t { kYes, kNo };

/// A file opened for output. Destruction without Close leaves an existing regular file as it was.
class OutputFile {
 public:
  OutputFile(OpenFileEntry entry, ReplacementFile file);
  OutputFile(OutputFile&&) noexcept = default;
  OutputFile& operator=(OutputFile&&) = delete;
  ~OutputFile() = default;

  /// Writes `bytes` as they are, then CR LF unless told otherwise. Raises: HostError 61 when the
  /// disk is full, 57 when writing fails.
  void Print(std::string_view bytes, LineEnd lineEnd = LineEnd::kYes);
  /// Puts the written file in the place of the old one. Raises: as Print.
  void Close();

 private:
  OpenFileEntry entry_;
  ReplacementFile file_;
};

}  // namespace kx::host
