// See path_text.h. The walk of each function is stated beside it, because the order of its steps
// shows in the results for unusual texts.
#include "platform/paths/path_text.h"

namespace kx::paths {
namespace {

// Where the extension of `path` begins: the last full stop after the last backslash or blank; npos
// when there is none. A full stop at the very end counts.
std::size_t FindExtension(std::string_view path) {
  std::size_t found = std::string_view::npos;
  for (std::size_t i = 0; i < path.size(); ++i) {
    if (path[i] == '\\' || path[i] == ' ') found = std::string_view::npos;
    if (path[i] == '.') found = i;
  }
  return found;
}

bool HasAt(std::string_view path, std::size_t index, char c) {
  return index < path.size() && path[index] == c;
}

// The number of characters of the root, which no removal touches.
std::size_t RootEnd(std::string_view path) {
  if (StartsWithDrive(path)) return HasAt(path, 2, '\\') ? 3 : 2;
  std::size_t end = 0;
  if (HasAt(path, end, '\\')) ++end;
  if (HasAt(path, end, '\\') && !HasAt(path, end + 1, '?')) ++end;
  if (end == 2 && StartsWithDrive(path.substr(end))) end += 2;
  const bool nameFollows = end + 1 < path.size() && path[end + 1] != '\\';
  if (HasAt(path, end, '\\') && nameFollows) ++end;
  return end;
}

}  // namespace

bool PathAddExtensionA(std::string& path, std::string_view extension) {
  path.resize(UpToNul(path).size());
  extension = UpToNul(extension);
  if (FindExtension(path) != std::string_view::npos) return false;
  if (path.size() + extension.size() >= kPathBufferSize) return false;
  path.append(extension);
  return true;
}

bool PathIsRelativeA(std::string_view path) noexcept {
  path = UpToNul(path);
  if (path.empty()) return true;
  return path[0] != '\\' && !(path.size() >= 2 && path[1] == ':');
}

bool PathRemoveFileSpecA(std::string& path) {
  path.resize(UpToNul(path).size());
  const std::size_t rootEnd = RootEnd(path);
  const std::size_t last = path.rfind('\\');
  if (last != std::string::npos && last > rootEnd) {
    path.resize(path[last - 1] == '\\' ? last - 1 : last);
    return true;
  }
  if (path.size() <= rootEnd) return false;
  path.resize(rootEnd);
  return true;
}

std::string_view PathFindFileNameA(std::string_view path) noexcept {
  path = UpToNul(path);
  std::size_t start = 0;
  for (std::size_t i = 0; i + 1 < path.size(); ++i) {
    const bool separates = IsSlash(path[i]) || path[i] == ':';
    if (separates && !IsSlash(path[i + 1])) start = i + 1;
  }
  return path.substr(start);
}

}  // namespace kx::paths
