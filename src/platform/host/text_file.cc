// See text_file.h.
#include "platform/host/text_file.h"

#include "platform/host/file_errors.h"
#include "platform/runtime/error.h"

#include <algorithm>
#include <utility>

namespace kx::host {
namespace {

constexpr std::string_view kLineEnd = "\r\n";

}  // namespace

std::string_view LineReader::Next() noexcept {
  const std::size_t end = std::min(rest_.find('\r'), rest_.size());
  const std::string_view line = rest_.substr(0, end);
  rest_.remove_prefix(end);
  rest_.remove_prefix(rest_.starts_with(kLineEnd) ? 2 : std::min<std::size_t>(rest_.size(), 1));
  return line;
}

std::string JoinLines(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size() + kLineEnd.size());
  for (LineReader reader(bytes); !reader.AtEnd();) text.append(reader.Next()).append(kLineEnd);
  return text;
}

InputFile::InputFile(OpenFileEntry entry, std::string bytes)
    : entry_(std::move(entry)), bytes_(std::move(bytes)) {}

bool InputFile::AtEnd() const noexcept {
  return offset_ >= bytes_.size() || bytes_[offset_] == '\x1A';
}

std::string InputFile::LineInput() {
  if (AtEnd()) runtime::RaiseRuntimeError(runtime::kInputPastEndOfFile);
  const std::string_view rest = std::string_view(bytes_).substr(offset_);
  const std::string_view line = rest.substr(0, rest.find_first_of("\r\x1A"));
  const std::string_view after = rest.substr(line.size());
  const std::size_t lineEnd = after.starts_with(kLineEnd) ? 2 : after.starts_with('\r') ? 1 : 0;
  offset_ += line.size() + lineEnd;
  return std::string(line);
}

std::string InputFile::RestOfLines() {
  const std::size_t from = std::min(offset_, bytes_.size());
  offset_ = bytes_.size();
  return JoinLines(std::string_view(bytes_).substr(from));
}

OutputFile::OutputFile(OpenFileEntry entry, ReplacementFile file)
    : entry_(std::move(entry)), file_(std::move(file)) {}

void OutputFile::Print(std::string_view bytes, LineEnd lineEnd) {
  RequireOk(Statement::kTransfer, file_.Write(bytes));
  if (lineEnd == LineEnd::kYes) RequireOk(Statement::kTransfer, file_.Write(kLineEnd));
}

void OutputFile::Close() {
  const FileStatus status = file_.Commit();
  entry_.Reset();
  RequireOk(Statement::kTransfer, status);
}

}  // namespace kx::host
