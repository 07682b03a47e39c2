// See name_lookup.h. One Examine answers for a name that exists as spelled; only then is it walked,
// one Examine and at most one listing per component.
#include "platform/host/name_lookup.h"

#include "platform/host/user_folders.h"
#include "platform/text/compare.h"
#include "platform/text/unicode.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace kx::host {
namespace {

using Components = std::vector<std::string_view>;

bool IsDriveLetter(char c) { return text::IsAsciiLetter(static_cast<unsigned char>(c)); }
bool IsBackslashOrSlash(char c) { return c == '/' || c == '\\'; }

std::size_t DriveIndex(char letter) {
  return static_cast<std::size_t>(text::AsciiToLower(letter) - 'a');
}

std::string Join(const std::string& folder, std::string_view name) {
  std::string path = folder;
  if (!path.empty() && path.back() != '/') path += '/';
  return path.append(name);
}

// Who wrote the name: a user of the host, or somebody who follows the rules of Windows.
enum class NameStyle : std::uint8_t { kNative, kWindows };

bool HoldsForbidden(std::string_view component, NameStyle style) {
  if (component.find_first_of("*?<>\"|") != std::string_view::npos) return true;
  if (style == NameStyle::kNative) return false;
  return std::any_of(component.begin(), component.end(),
                     [](char c) { return c == ':' || (c >= '\0' && c < ' '); });
}

// A name taken apart. `Exact` is the path as it is spelled.
struct ParsedName {
  std::string start;  // "" is the current folder
  Components components;
  NameStyle style = NameStyle::kWindows;
  bool endsInSeparator = false;

  [[nodiscard]] std::string Exact() const {
    std::string path = start;
    for (const std::string_view component : components) path = Join(path, component);
    return path;
  }
};

bool Separates(char c, NameStyle style) {
  return style == NameStyle::kNative ? c == '/' : IsBackslashOrSlash(c);
}

// The components of `rest`, empty ones left out.
ParsedName Parse(std::string start, std::string_view rest, NameStyle style) {
  ParsedName name{std::move(start), {}, style, !rest.empty() && Separates(rest.back(), style)};
  std::size_t begin = 0;
  for (std::size_t i = 0; i <= rest.size(); ++i) {
    if (i < rest.size() && !Separates(rest[i], style)) continue;
    if (i > begin) name.components.push_back(rest.substr(begin, i - begin));
    begin = i + 1;
  }
  return name;
}

// "." and ".." carried out on the text, never above the start: a drive is a world of its own.
void SimplifyDots(ParsedName& name) {
  Components kept;
  for (const std::string_view component : name.components) {
    if (component == ".") continue;
    if (component != "..") {
      kept.push_back(component);
    } else if (!kept.empty()) {
      kept.pop_back();
    }
  }
  name.components = std::move(kept);
}

bool AnyForbidden(const ParsedName& name, std::size_t from) {
  return std::any_of(name.components.begin() + static_cast<std::ptrdiff_t>(from),
                     name.components.end(),
                     [&](std::string_view c) { return HoldsForbidden(c, name.style); });
}

// Walks a parsed name component by component.
class Walk {
 public:
  Walk(FileSystem& files, const ParsedName& name) : files_(files), name_(name), path_(name.start) {}

  [[nodiscard]] FoundName Run() {
    for (std::size_t i = 0; i < name_.components.size(); ++i) {
      const bool isLast = i + 1 == name_.components.size();
      const FileStatus status = Step(name_.components[i]);
      if (status == FileStatus::kNotFound) return Missing(i, isLast);
      if (status != FileStatus::kOk) return {status, {}, {}};
      const bool mustBeFolder = !isLast || name_.endsInSeparator;
      if (mustBeFolder && info_.kind != FileKind::kFolder) {
        return {FileStatus::kFolderNotFound, {}, {}};
      }
    }
    return {FileStatus::kOk, path_, {}, info_};
  }

 private:
  // Goes to `component` as spelled or, failing that, in another case.
  FileStatus Step(std::string_view component) {
    const std::string exact = Join(path_, component);
    const FileStatus status = files_.Examine(exact, info_);
    if (status == FileStatus::kNotFound) {
      const std::string other = OtherCase(component);
      if (!other.empty()) {
        path_ = Join(path_, other);
        return files_.Examine(path_, info_);
      }
    }
    if (status == FileStatus::kOk) path_ = exact;
    return status;
  }

  // The name in the folder reached that differs from `component` in case only; of several the
  // first by its bytes. Empty when there is none, or the folder may not be listed.
  [[nodiscard]] std::string OtherCase(std::string_view component) const {
    std::vector<std::string> names;
    const std::string folder = path_.empty() ? "." : path_;
    if (files_.ListNames(folder, names) != FileStatus::kOk) return {};
    std::string best;
    for (std::string& name : names) {
      if (name == component || !text::EqualsCaseless(name, component)) continue;
      if (best.empty() || name < best) best = std::move(name);
    }
    return best;
  }

  [[nodiscard]] FoundName Missing(std::size_t index, bool isLast) const {
    if (AnyForbidden(name_, index)) return {FileStatus::kBadName, {}, {}};
    if (!isLast || name_.endsInSeparator) return {FileStatus::kFolderNotFound, {}, {}};
    return {FileStatus::kNotFound, Join(path_, name_.components[index]), {}};
  }

  FileSystem& files_;
  const ParsedName& name_;
  std::string path_;
  FileInfo info_;
};

FoundName FindParsed(FileSystem& files, const ParsedName& name) {
  const std::string exact = name.Exact();
  FileInfo info;
  if (!name.endsInSeparator && files.Examine(exact, info) == FileStatus::kOk) {
    return {FileStatus::kOk, exact, {}, info};
  }
  return Walk(files, name).Run();
}

// On Windows the system follows drives and ignores case itself.
FoundName FindOnWindows(FileSystem& files, std::string_view name) {
  constexpr std::string_view kLongPrefix = "\\\\?\\";
  const std::string_view checked = name.starts_with(kLongPrefix) ? name.substr(4) : name;
  if (checked.find_first_of("*?<>\"|") != std::string_view::npos) {
    return {FileStatus::kBadName, {}, {}};
  }
  FileInfo info;
  const FileStatus status = files.Examine(std::string(name), info);
  const bool reachable = status == FileStatus::kOk || status == FileStatus::kNotFound;
  return {status, reachable ? std::string(name) : std::string(), {}, info};
}

}  // namespace

DriveFolders DriveFolders::FromEnvironment(Host& host) {
  DriveFolders result;
  const std::optional<std::string> dataFolder = UserDataFolder(host);
  for (char letter = 'a'; letter <= 'z'; ++letter) {
    const std::string variable = std::string("KX_DRIVE_") + text::AsciiToUpper(letter);
    const std::optional<std::string> named = host.Environment(variable);
    Drive& drive = result.drives_[DriveIndex(letter)];
    if (named && !named->empty()) {
      drive = {*named, true};
    } else if (dataFolder) {
      drive = {*dataFolder + "/drive_" + letter, letter == 'c'};
    }
  }
  return result;
}

void DriveFolders::Set(char letter, std::string folder) {
  if (IsDriveLetter(letter)) drives_[DriveIndex(letter)] = {std::move(folder), true};
}

std::optional<std::string> DriveFolders::Find(char letter) const {
  if (!IsDriveLetter(letter)) return std::nullopt;
  const Drive& drive = drives_[DriveIndex(letter)];
  if (drive.folder.empty()) return std::nullopt;
  return drive.folder;
}

bool DriveFolders::IsPromised(char letter) const {
  return IsDriveLetter(letter) && drives_[DriveIndex(letter)].isPromised;
}

FoundName NameLookup::Find(std::string_view name) const {
  if (name.empty()) return {FileStatus::kEmptyName, {}, {}};
  if (name.find('\0') != std::string_view::npos) return {FileStatus::kBadName, {}, {}};
  if (files_.Rules() == NameRules::kWindows) return FindOnWindows(files_, name);
  return FindPosix(name);
}

FoundName NameLookup::FindPosix(std::string_view name) const {
  if (name.starts_with('/')) {
    // Most names are spelled as the file is, and need not be taken apart.
    const bool isPlain = !name.ends_with('/') && name.find("//") == std::string_view::npos &&
                         name.find("/.") == std::string_view::npos;
    FoundName found{FileStatus::kOk, std::string(name), {}, {}};
    if (isPlain && files_.Examine(found.path, found.info) == FileStatus::kOk) return found;
    return FindParsed(files_, Parse("/", name, NameStyle::kNative));
  }
  constexpr std::string_view kLongPrefix = "\\\\?\\";
  if (name.starts_with(kLongPrefix)) name.remove_prefix(kLongPrefix.size());
  if (name.empty()) return {FileStatus::kBadName, {}, {}};
  if (name.size() >= 2 && IsDriveLetter(name[0]) && name[1] == ':') {
    return FindOnDrive(name[0], name.substr(2));
  }
  const bool rooted = IsBackslashOrSlash(name[0]);
  // Another machine or a device: neither can be reached from here.
  if (rooted && name.size() >= 2 && IsBackslashOrSlash(name[1])) {
    return {FileStatus::kFolderNotFound, {}, {}};
  }
  ParsedName parsed = Parse(rooted ? "/" : "", name, NameStyle::kWindows);
  if (rooted) SimplifyDots(parsed);
  return FindParsed(files_, parsed);
}

FoundName NameLookup::FindOnDrive(char letter, std::string_view rest) const {
  const std::optional<std::string> folder = drives_.Find(letter);
  if (!folder) return {FileStatus::kFolderNotFound, {}, {}};
  ParsedName parsed = Parse(*folder, rest, NameStyle::kWindows);
  SimplifyDots(parsed);
  FileInfo info;
  const FileStatus status = files_.Examine(*folder, info);
  if (status == FileStatus::kOk) return FindParsed(files_, parsed);
  const bool driveIsEmpty = drives_.IsPromised(letter) && (status == FileStatus::kNotFound);
  if (!driveIsEmpty) {
    return {status == FileStatus::kNotFound ? FileStatus::kFolderNotFound : status, {}, {}};
  }
  if (AnyForbidden(parsed, 0)) return {FileStatus::kBadName, {}, {}};
  if (parsed.components.size() != 1 || parsed.endsInSeparator) {
    return {FileStatus::kFolderNotFound, {}, {}};
  }
  return {FileStatus::kNotFound, parsed.Exact(), *folder};
}

}  // namespace kx::host
