// See path_combine.h. CanonicalizePath reads its input once; every character of the output is
// removed at most once, so hostile input costs linear time.
#include "platform/paths/path_combine.h"

#include "platform/paths/path_text.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace kx::paths {
namespace {

std::string WithBackslash(std::string_view path) {
  std::string result(path);
  if (result.empty() || result.back() != '\\') result += '\\';
  return result;
}

// What stays of `directory` under a file that begins with one backslash: the drive, the server and
// share, or the single backslash; empty for a relative folder.
std::string_view RootOf(std::string_view directory) {
  if (StartsWithDrive(directory)) return directory.substr(0, 2);
  if (!directory.starts_with("\\\\")) return directory.substr(0, directory.starts_with('\\'));
  const std::size_t shareMark = directory.find('\\', 2);
  if (shareMark == std::string_view::npos) return directory;
  const std::size_t shareEnd = std::min(directory.find('\\', shareMark + 1), directory.size());
  const bool shareIsEmpty = shareEnd == shareMark + 1;
  return directory.substr(0, shareIsEmpty ? shareMark : shareEnd);
}

std::string JoinUnderRoot(std::string_view directory, std::string_view file) {
  const std::string_view root = RootOf(directory);
  file.remove_prefix(1);
  if (root.empty()) return std::string(file);
  return WithBackslash(root).append(file);
}

std::string Join(std::string_view directory, std::string_view file) {
  if (file.empty()) return std::string(directory);
  if (directory.empty()) return std::string(file);
  if (PathIsRelativeA(file)) return WithBackslash(directory).append(file);
  const bool oneBackslash = file.starts_with('\\') && !file.starts_with("\\\\");
  return oneBackslash ? JoinUnderRoot(directory, file) : std::string(file);
}

// The output of CanonicalizePath and what ".." may not remove from it.
class CanonicalOutput {
 public:
  // Copies the root of `path`: one backslash, or the drive with its backslash. Returns its length.
  std::size_t CopyRoot(std::string_view path) {
    std::size_t length = path.starts_with('\\') ? 1 : 0;
    if (StartsWithDrive(path)) length = path.substr(2).starts_with('\\') ? 3 : 2;
    text_ = path.substr(0, length);
    isUnc_ = path.starts_with("\\\\");
    return length;
  }

  void Add(char c) { text_ += c; }
  [[nodiscard]] bool EndsInBackslash() const { return !text_.empty() && text_.back() == '\\'; }

  // Goes back over the last component; the output ends in a backslash. True when it is at a root
  // then, so that the backslash after the ".." must not be added again.
  bool GoUp() {
    if (isUnc_ && text_.size() <= 2) return true;
    if (StartsWithDrive(text_) && text_.size() == 3) return true;
    const std::size_t before =
        text_.size() < 2 ? std::string::npos : text_.rfind('\\', text_.size() - 2);
    text_.resize(before == std::string::npos ? 0 : before);
    if (isUnc_ && text_.size() < 2) text_ = "\\\\";
    if (text_.empty()) text_ = "\\";
    return text_.back() == '\\';
  }

  [[nodiscard]] std::string Finish() && {
    const bool bareDrive = text_.size() == 2 && StartsWithDrive(text_);
    if (bareDrive || text_.empty()) text_ += '\\';
    return std::move(text_);
  }

 private:
  std::string text_;
  bool isUnc_ = false;
};

// True when a "." component that is to be dropped begins at `index`: it follows the start, a
// backslash or a colon, and a backslash follows it.
bool IsDroppedDot(std::string_view path, std::size_t index) {
  if (path.substr(index, 2) != ".\\") return false;
  return index == 0 || path[index - 1] == '\\' || path[index - 1] == ':';
}

}  // namespace

std::optional<std::string> PathCombineA(std::optional<std::string_view> directory,
                                        std::optional<std::string_view> file) {
  if (!directory && !file) return std::nullopt;
  const std::string joined = Join(UpToNul(directory.value_or("")), UpToNul(file.value_or("")));
  if (joined.size() >= kPathBufferSize) return std::nullopt;
  return CanonicalizePath(joined);
}

std::string CanonicalizePath(std::string_view path) {
  path = UpToNul(path);
  if (path.empty()) return "\\";
  CanonicalOutput output;
  std::size_t i = output.CopyRoot(path);
  while (i < path.size()) {
    if (IsDroppedDot(path, i)) {
      i += 2;
    } else if (path.substr(i, 2) == ".." && output.EndsInBackslash()) {
      i += 2;
      const bool atRoot = output.GoUp();
      if (atRoot && i < path.size() && path[i] == '\\') ++i;
    } else {
      output.Add(path[i++]);
    }
  }
  return std::move(output).Finish();
}

}  // namespace kx::paths
