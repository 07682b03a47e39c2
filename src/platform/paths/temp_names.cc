// See temp_names.h.
#include "platform/paths/temp_names.h"

#include "platform/paths/path_text.h"

#include <array>
#include <charconv>

namespace kx::paths {
namespace {

std::string UpperHex(std::uint16_t number) {
  std::array<char, 4> digits{};
  char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), number, 16).ptr;
  std::string result(digits.data(), end);
  for (char& c : result) {
    if (c >= 'a') c = static_cast<char>(c - 'a' + 'A');
  }
  return result;
}

bool IsDriveRoot(std::string_view folder) {
  return folder.size() == 3 && StartsWithDrive(folder) && folder[2] == '\\';
}

}  // namespace

std::string GetTempPathA(const EnvironmentLookup& environment, std::string_view windowsFolder) {
  std::string folder(windowsFolder);
  for (const std::string_view name : {"TMP", "TEMP", "USERPROFILE"}) {
    const std::optional<std::string> value = environment(name);
    if (!value || value->empty()) continue;
    folder = *value;
    break;
  }
  if (!folder.ends_with('\\')) folder += '\\';
  return folder;
}

std::string TempFileNameA(std::string_view folder, std::string_view prefix, std::uint16_t number) {
  std::string name(UpToNul(folder));
  const char separator = name.starts_with('/') ? '/' : '\\';
  if (name.empty() || name.back() != separator) name += separator;
  name.append(UpToNul(prefix).substr(0, 3));
  return name + UpperHex(number) + ".tmp";
}

BufferText GetSystemDirectoryA(std::string_view systemFolder, std::size_t capacity) {
  std::string text(systemFolder);
  if (text.ends_with('\\') && !IsDriveRoot(text) && text.size() > 1) text.pop_back();
  if (text.size() + 1 > capacity) return {text.size() + 1, {}};
  const std::size_t length = text.size();
  return {length, std::move(text)};
}

}  // namespace kx::paths
