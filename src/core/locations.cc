// See locations.h.
#include "core/locations.h"

#include "platform/paths/path_combine.h"
#include "platform/paths/path_text.h"
#include "platform/paths/url_combine.h"
#include "platform/paths/url_text.h"
#include "platform/runtime/error.h"
#include "platform/text/unicode.h"

#include <algorithm>
#include <optional>

namespace kx::core {

namespace {

constexpr std::size_t kBufferLength = kMaxLocationLength + 1;
constexpr std::string_view kExtension = ".xml";

std::string TrimBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

// A location of which the buffer shows nothing: not cut, not trimmed, the same in every code page.
bool IsOrdinary(std::string_view location) {
  constexpr std::size_t kShort = 200;
  if (location.empty() || location.size() > kShort) return false;
  if (location.front() == ' ' || location.back() == ' ') return false;
  return std::all_of(location.begin(), location.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

// A native location is an error where another one would be cut.
std::string CheckedNative(std::string location) {
  if (text::CountUtf16Units(location) > kMaxLocationLength) {
    runtime::RaiseRuntimeError(runtime::kBadFileName);
  }
  return location;
}

std::string CompleteNative(std::string_view location) {
  std::string completed(location);
  const std::string_view name = location.substr(location.rfind('/') + 1);
  // As with every path, a full stop before a blank begins no extension.
  const std::size_t mark = name.find_last_of(". ");
  const bool hasExtension = mark != std::string_view::npos && name[mark] == '.';
  if (!name.empty() && !hasExtension) completed += kExtension;  // an empty name: a folder
  return CheckedNative(std::move(completed));
}

std::string JoinToNative(std::string& base, std::string location, const text::CodePage& codePage) {
  if (base.back() != '/') base += '/';
  location = codePage.Decode(location);
  std::replace(location.begin(), location.end(), '\\', '/');
  return CheckedNative(base + location);
}

}  // namespace

bool IsFileUrl(std::string_view text) noexcept {
  return paths::UrlIsA(text, paths::UrlTest::kFileUrl);
}

std::string Locations::GetSystemDrive() const {
  const std::string folder = host_.SystemFolder();
  const std::size_t colon = folder.find(':');
  return colon == std::string::npos ? "C" : folder.substr(0, colon);
}

std::string Locations::ResolveSchemaLocation(std::string_view location) const {
  return ResolveLocation(kSchemaPathSetting, location, DefaultSchemaBase());
}

std::string Locations::SchemaBase() const {
  return settings_.Read(kSchemaPathSetting, DefaultSchemaBase());
}

std::string Locations::DefaultSchemaBase() const {
  return GetSystemDrive() + ":\\Program Files\\Halcyra\\KXMessageSchemas\\";
}

std::string Locations::ResolveMessageLocation(std::string_view location) const {
  return ResolveLocation(kMsgPathSetting, location, DefaultMessageBase());
}

std::string Locations::MessageBase() const {
  return settings_.Read(kMsgPathSetting, DefaultMessageBase());
}

std::string Locations::DefaultMessageBase() const {
  return GetSystemDrive() + ":\\Program Files\\Halcyra\\Messages";
}

bool Locations::IsNative(std::string_view location) const {
  return host_.Files().Rules() == host::NameRules::kPosix && !location.empty() &&
         location.front() == '/';
}

// The location as the platform's buffer of 260 characters would hold it: cut to what fits, ended by
// a null character, padded with blanks; the extension is written over the end.
std::string Locations::CompleteExtension(std::string_view location) const {
  if (IsOrdinary(location)) {
    std::string name(location);
    static_cast<void>(paths::PathAddExtensionA(name, kExtension));
    return name;
  }
  const std::size_t cut = text::OffsetOfUtf16Unit(location, kMaxLocationLength);
  std::string buffer = codePage_.Encode(location.substr(0, cut));
  const bool wanted = !buffer.empty();
  buffer += '\0';
  buffer.resize(std::max(buffer.size(), kBufferLength), ' ');
  std::string name(paths::UpToNul(buffer));
  if (wanted && paths::PathAddExtensionA(name, kExtension)) {
    std::copy(name.begin(), name.end(), buffer.begin());
    buffer[name.size()] = '\0';
  }
  std::string completed = TrimBlanks(buffer);
  if (!completed.empty()) completed.pop_back();  // the null character
  return completed;
}

std::string Locations::ResolveLocation(std::string_view settingName, std::string_view location,
                                       std::string_view defaultBase) const {
  if (IsNative(location)) return CompleteNative(location);
  const std::string completed = CompleteExtension(location);
  if (!paths::PathIsRelativeA(completed) || paths::PathIsURLA(completed)) {
    return codePage_.Decode(completed);
  }
  const std::optional<std::string> stored = settings_.Find(settingName);
  std::string base = stored ? *stored : std::string(defaultBase);
  std::string result;
  if (IsNative(base)) {
    result = JoinToNative(base, completed, codePage_);
  } else {
    std::string encoded = codePage_.Encode(base);
    const bool isUrl = paths::PathIsURLA(encoded);
    const char separator = isUrl ? '/' : '\\';
    if (encoded.empty() || encoded.back() != separator) {
      encoded += separator;
      base += separator;
    }
    result =
        codePage_.Decode(isUrl ? JoinToUrl(encoded, completed) : JoinToPath(encoded, completed));
  }
  if (stored != base) settings_.Write(settingName, base);
  return result;
}

// Deliberate: what does not fit leaves the buffer's blanks behind, as many as the needed length,
// and at most all of them.
std::string Locations::JoinToUrl(std::string& base, const std::string& location) const {
  const paths::UrlText combined =
      paths::UrlCombineA(base, location, kBufferLength, paths::UrlEscape::kUnsafe);
  if (combined.status == paths::kUrlOk) return combined.text;
  return std::string(std::min(combined.length, kBufferLength), ' ');
}

std::string Locations::JoinToPath(std::string& base, const std::string& location) const {
  return TrimBlanks(paths::PathCombineA(base, location).value_or(std::string()));
}

std::string Locations::GetLocationFolder(std::string_view location) const {
  if (IsNative(location)) return std::string(location.substr(0, location.rfind('/') + 1));
  std::string path = codePage_.Encode(location);
  if (paths::PathIsURLA(path)) {
    if (!IsFileUrl(path)) {
      // Deliberate: the folder of a URL has no closing slash, that of a path has one.
      return std::string(location.substr(0, location.rfind('/')));
    }
    path = paths::PathCreateFromUrlA(path, kBufferLength).text;
  }
  path = std::string(paths::UpToNul(path));
  paths::PathRemoveFileSpecA(path);
  if (path.empty() || path.back() != '\\') path += '\\';
  return codePage_.Decode(path);
}

std::string Locations::GetLocationFileName(std::string_view path) const {
  if (IsNative(path)) return std::string(path.substr(path.rfind('/') + 1));
  const std::string encoded = codePage_.Encode(path);
  return codePage_.Decode(paths::PathFindFileNameA(paths::UpToNul(encoded)));
}

}  // namespace kx::core
