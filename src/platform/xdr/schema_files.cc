// See schema_files.h.
#include "platform/xdr/schema_files.h"

#include "platform/host/files.h"
#include "platform/paths/url_combine.h"
#include "platform/paths/url_text.h"
#include "platform/text/code_page.h"
#include "platform/text/compare.h"
#include "platform/text/unicode.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace kx::xdr {

namespace {

constexpr std::size_t kMostLocation = 8192;

bool IsSlash(char c) { return c == '/' || c == '\\'; }

bool StartsWithCaseless(std::string_view text, std::string_view start) {
  return text.size() >= start.size() && text::EqualsCaseless(text.substr(0, start.size()), start);
}

bool IsHttp(std::string_view location) {
  if (!location.starts_with('h') && !location.starts_with('H')) return false;
  return StartsWithCaseless(location, "http://") || StartsWithCaseless(location, "https://");
}

bool IsOtherMachine(std::string_view path) {
  return path.size() > 1 && IsSlash(path[0]) && IsSlash(path[1]);
}

bool IsRelative(std::string_view path) {
  if (path.empty()) return true;
  const bool drive =
      path.size() > 1 && path[1] == ':' && text::IsAsciiLetter(static_cast<unsigned char>(path[0]));
  return !drive && !IsSlash(path[0]);
}

// Up to and including the last slash; of a URL, the last of its path.
std::string FolderOf(std::string_view location) {
  const bool isUrl = IsHttp(location);
  const std::size_t root = isUrl ? location.find("://") + 3 : 0;
  if (isUrl) location = location.substr(0, location.find_first_of("?#", root));
  const std::size_t slash = location.substr(root).find_last_of("/\\");
  if (slash != std::string_view::npos) return std::string(location.substr(0, root + slash + 1));
  return isUrl ? std::string(location) + '/' : std::string();
}

// A path with one kind of slash and without "." and ".." elements, to compare places by.
std::string PlainPath(std::string_view path) {
  std::vector<std::string_view> parts;
  const bool rooted = !path.empty() && IsSlash(path.front());
  while (!path.empty()) {
    const std::size_t slash = std::min(path.find_first_of("/\\"), path.size());
    const std::string_view part = path.substr(0, slash);
    path.remove_prefix(std::min(slash + 1, path.size()));
    if (part.empty() || part == ".") continue;
    if (part == ".." && !parts.empty() && parts.back() != "..") {
      parts.pop_back();
    } else {
      parts.push_back(part);
    }
  }
  std::string plain;
  for (const std::string_view part : parts) {
    if (rooted || !plain.empty()) plain += '/';
    plain += part;
  }
  return plain;
}

// True when `place` lies in the folder, whatever the letter case.
bool LiesIn(std::string_view place, std::string_view folder) {
  if (folder.empty()) return false;
  std::string inner = PlainPath(place);
  std::string outer = PlainPath(folder);
  if (outer.empty() || outer.back() != '/') outer += '/';
  return StartsWithCaseless(inner, outer);
}

// True for a path with a ".." that a server would find behind its %xx.
bool HidesParent(std::string_view url) {
  const std::string path = paths::DecodePercent(url.substr(0, url.find_first_of("?#")));
  std::string_view rest = path;
  while (!rest.empty()) {
    const std::size_t slash = std::min(rest.find_first_of("/\\"), rest.size());
    if (rest.substr(0, slash) == "..") return true;
    rest.remove_prefix(std::min(slash + 1, rest.size()));
  }
  return false;
}

// True when `url` begins with the prefix and is not led out of it by "..".
bool LiesUnder(std::string_view url, std::string_view prefix) {
  if (prefix.empty()) return false;
  const std::string canonical = paths::CanonicalizeUrl(url);
  if (HidesParent(canonical)) return false;
  std::string start = paths::CanonicalizeUrl(prefix);
  if (!StartsWithCaseless(canonical, start)) return false;
  return start.back() == '/' || canonical.size() == start.size() ||
         canonical[start.size()] == '/' || canonical[start.size()] == '?';
}

dom::ParseCode CodeOf(host::FileStatus status) {
  switch (status) {
    case host::FileStatus::kIsFolder:
    case host::FileStatus::kNotRegular:
    case host::FileStatus::kAccessDenied:
    case host::FileStatus::kLocked:
      return dom::ParseCode::kAccessDenied;
    case host::FileStatus::kTooLarge:
      return dom::ParseCode::kTooLarge;
    default:
      return dom::ParseCode::kObjectNotFound;
  }
}

std::string StampOf(const host::FileIdentity& identity) {
  std::array<char, 96> text{};
  char* at = text.data();
  char* const end = at + text.size();
  for (const std::uint64_t number : {identity.device, identity.inode, identity.size}) {
    at = std::to_chars(at, end, number).ptr;
    *at++ = ':';
  }
  return {text.data(), std::to_chars(at, end, identity.modifiedNanoseconds).ptr};
}

// What a server told, as one text and back. None of the parts holds a line end.
std::string StampOf(const host::UrlValidators& validators) {
  if (!validators.Tell()) return {};
  return validators.url + '\n' + validators.etag + '\n' + validators.lastModified;
}
host::UrlValidators ValidatorsOf(std::string_view stamp) {
  const std::size_t first = stamp.find('\n');
  const std::size_t second = stamp.find('\n', first + 1);
  if (first == std::string_view::npos || second == std::string_view::npos) return {};
  return {std::string(stamp.substr(0, first)),
          std::string(stamp.substr(first + 1, second - first - 1)),
          std::string(stamp.substr(second + 1))};
}

dom::ParseCode CodeOf(host::UrlStatus status) {
  switch (status) {
    case host::UrlStatus::kNotFound:
      return dom::ParseCode::kObjectNotFound;
    case host::UrlStatus::kAccessDenied:
      return dom::ParseCode::kAccessDenied;
    case host::UrlStatus::kTooLarge:
      return dom::ParseCode::kTooLarge;
    case host::UrlStatus::kUnknownProtocol:
      return dom::ParseCode::kUnknownProtocol;
    default:
      return dom::ParseCode::kResourceNotFound;
  }
}

// The failure of a location; `reason` empty: the published text.
SchemaText FailedText(const std::string& location, dom::ParseCode code, std::string reason = {}) {
  SchemaText text;
  text.url = location;
  dom::SetParseError(text.failure, code);
  if (!reason.empty()) text.failure.reason = std::move(reason) + "\r\n";
  text.failure.url = location;
  return text;
}

std::string Refusal(const std::string& location, const char* option) {
  return "The location '" + location + "' may not be read by a message; " + option +
         " would allow it.";
}

std::string TooLarge(const std::string& location, std::size_t limit) {
  return "The document at '" + location + "' is larger than the limit of " + std::to_string(limit) +
         " bytes; Options::maxSchemaBytes would allow it.";
}

constexpr const char* kPrefixOption = "Options::allowedPrefixes";
constexpr const char* kFolderOption = "Options::schemaFolders";

}  // namespace

// Where it leads
// -----------------------------------------------------------------------------------

SchemaFiles::Target SchemaFiles::Aim(std::string_view location, std::string_view base) const {
  Target target;
  const bool isFree = namedBy_ == NamedBy::kCaller && base.empty();
  std::string schemaBase;
  if (base.empty() && IsRelative(location) && !paths::PathIsURLA(location)) {
    schemaBase = SchemaBase();
    base = schemaBase;
  }
  if (IsHttp(location) || (IsHttp(base) && !paths::PathIsURLA(location))) {
    target.isUrl = true;
    target.name =
        IsHttp(location)
            ? paths::CanonicalizeUrl(location)
            : paths::UrlCombineA(base, location, kMostLocation, paths::UrlEscape::kNone).text;
  } else {
    const auto system = host_.Files().Rules() == host::NameRules::kPosix
                            ? paths::PathSystem::kPosix
                            : paths::PathSystem::kWindows;
    static const text::CodePage page = *text::FindCodePage(text::kCodePageUtf8);
    const auto path = paths::LoaderPath(location, system, page);
    target.unknownProtocol = !path.has_value();
    target.name = path.value_or(std::string(location));
    if (path && IsRelative(target.name) && !base.empty()) {
      const std::string folder = FolderOf(base);
      target.name = paths::LoaderPath(folder, system, page).value_or(folder) + target.name;
    }
  }
  // A native name may be written with either slash.
  if (!target.isUrl && !target.name.empty() && target.name.front() == '/') {
    std::replace(target.name.begin(), target.name.end(), '\\', '/');
  }
  target.refused = !target.unknownProtocol && !isFree && !MayReach(target, base);
  target.isFree = isFree;
  return target;
}

std::string SchemaFiles::SchemaBase() const {
  return readSchemaBase_ ? readSchemaBase_() : options_.schemaBase;
}

bool SchemaFiles::MayReachUrl(const std::string& url, std::string_view base) const {
  const auto& prefixes = options_.allowedPrefixes;
  return LiesUnder(url, SchemaBase()) || (IsHttp(base) && LiesUnder(url, FolderOf(base))) ||
         std::any_of(prefixes.begin(), prefixes.end(),
                     [&](const std::string& prefix) { return LiesUnder(url, prefix); });
}

bool SchemaFiles::MayReach(const Target& target, std::string_view base) const {
  if (target.isUrl) return MayReachUrl(target.name, base);
  if (IsOtherMachine(target.name)) {
    const auto& prefixes = options_.allowedPrefixes;
    return std::any_of(prefixes.begin(), prefixes.end(), [&](const std::string& prefix) {
      return IsOtherMachine(prefix) && LiesIn(target.name, prefix);
    });
  }
  return options_.schemaFolders.empty() || IsWithinFolders(target.name);
}

bool SchemaFiles::IsWithinFolders(const std::string& path) const {
  return std::any_of(options_.schemaFolders.begin(), options_.schemaFolders.end(),
                     [&](const std::string& folder) { return LiesIn(path, folder); });
}

// An error in a file from elsewhere must not show what stands in it.
bool SchemaFiles::MayShowText(const Target& target, const std::string& path,
                              std::string_view base) const {
  if (target.isFree) return true;
  const std::string folder = FolderOf(base);
  // A document without a folder lies in the current one; a text lies nowhere.
  if (!base.empty() && folder.empty() && FolderOf(path).empty()) return true;
  return IsWithin(path, folder) || IsWithin(path, SchemaBase());
}

// The folder may be named by a drive, the file is named as the host names it.
bool SchemaFiles::IsWithin(const std::string& path, const std::string& folder) const {
  return LiesIn(path, folder) || LiesIn(path, files_.Find(folder).path);
}

bool SchemaFiles::MayShowUrlText(const Target& target, const std::string& url,
                                 std::string_view base) const {
  return target.isFree || LiesUnder(url, SchemaBase()) ||
         (IsHttp(base) && LiesUnder(url, FolderOf(base)));
}

// Reading
// ------------------------------------------------------------------------------------------

SchemaText SchemaFiles::Read(std::string_view location, std::string_view base) const {
  return Reread(location, base, {});
}

SchemaText SchemaFiles::Reread(std::string_view location, std::string_view base,
                               const std::string& stamp) const {
  const Target target = Aim(location, base);
  if (target.unknownProtocol) return FailedText(target.name, dom::ParseCode::kUnknownProtocol);
  if (target.refused) {
    const bool isFar = target.isUrl || IsOtherMachine(target.name);
    return FailedText(target.name, dom::ParseCode::kResourceNotFound,
                      Refusal(target.name, isFar ? kPrefixOption : kFolderOption));
  }
  return target.isUrl ? ReadUrl(target, base, stamp) : ReadFile(target, base);
}

SchemaText SchemaFiles::ReadFile(const Target& target, std::string_view base) const {
  host::FileContent content = files_.Read(target.name, options_.maxSchemaBytes);
  if (content.status == host::FileStatus::kTooLarge) {
    return FailedText(target.name, dom::ParseCode::kTooLarge,
                      TooLarge(target.name, options_.maxSchemaBytes));
  }
  if (content.status != host::FileStatus::kOk) {
    return FailedText(target.name, CodeOf(content.status));
  }
  SchemaText text;
  text.bytes = std::move(content.bytes);
  text.url = std::move(content.path);
  text.stamp = StampOf(content.identity);
  text.showText = MayShowText(target, text.url, base);
  return text;
}

SchemaText SchemaFiles::ReadUrl(const Target& target, std::string_view base,
                                const std::string& stamp) const {
  if (fetcher_ == nullptr) return FailedText(target.name, dom::ParseCode::kResourceNotFound);
  const std::string from = base.empty() ? SchemaBase() : std::string(base);
  host::UrlRequest request;
  request.url = target.name;
  request.bounds = options_;
  request.known = ValidatorsOf(stamp);
  if (!target.isFree) {
    request.objection = [this, &from](const std::string& url) {
      return MayReachUrl(url, from) ? std::string() : Refusal(url, kPrefixOption);
    };
  }
  host::UrlContent content = fetcher_->Fetch(request);
  SchemaText text;
  if (content.status == host::UrlStatus::kUnchanged) {
    text.unchanged = true;
    return text;
  }
  if (content.status != host::UrlStatus::kOk) {
    return FailedText(target.name, CodeOf(content.status), std::move(content.reason));
  }
  if (content.bytes.size() > options_.maxSchemaBytes) {
    return FailedText(target.name, dom::ParseCode::kTooLarge,
                      TooLarge(target.name, options_.maxSchemaBytes));
  }
  text.bytes = std::move(content.bytes);
  text.stamp = StampOf(content.validators);
  text.url = std::move(content.validators.url);
  text.showText = MayShowUrlText(target, text.url, base);
  return text;
}

SchemaPlace SchemaFiles::Identify(std::string_view location, std::string_view base) const {
  const Target target = Aim(location, base);
  if (target.unknownProtocol || target.refused) return {};
  if (target.isUrl) return {target.name, {}};
  host::FoundName found = files_.Find(target.name);
  const bool isFile =
      found.status == host::FileStatus::kOk && found.info.kind == host::FileKind::kRegular;
  if (!isFile) return {};
  return {std::move(found.path), StampOf(found.info.identity)};
}

}  // namespace kx::xdr
