// See schema_files.h.
#include "platform/xdr/schema_files.h"

#include "platform/host/files.h"
#include "platform/paths/url_combine.h"
#include "platform/paths/url_text.h"
#include "platform/text/code_page.h"
#include "platform/text/compare.h"
#include "platform/text/unicode.h"

#include <algorithm>
#include <utility>

namespace kx::xdr {

namespace {

constexpr std::size_t kMostLocation = 8192;

bool IsSlash(char c) { return c == '/' || c == '\\'; }

bool StartsWithCaseless(std::string_view text, std::string_view start) {
  return text.size() >= start.size() && text::EqualsCaseless(text.substr(0, start.size()), start);
}

bool IsHttp(std::string_view location) {
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

// Up to and including the last slash.
std::string_view FolderOf(std::string_view location) {
  const std::size_t slash = location.find_last_of("/\\");
  return slash == std::string_view::npos ? std::string_view() : location.substr(0, slash + 1);
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

// True when `url` begins with the prefix and is not led out of it by "..".
bool LiesUnder(std::string_view url, std::string_view prefix) {
  if (prefix.empty()) return false;
  const std::string canonical = paths::CanonicalizeUrl(url);
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
  return std::to_string(identity.device) + ":" + std::to_string(identity.inode) + ":" +
         std::to_string(identity.size) + ":" + std::to_string(identity.modifiedNanoseconds);
}

}  // namespace

// Where it leads
// -----------------------------------------------------------------------------------

SchemaFiles::Target SchemaFiles::Aim(std::string_view location, std::string_view base) const {
  Target target;
  if (base.empty()) base = options_.schemaBase;
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
    const text::CodePage page = *text::FindCodePage(text::kCodePageUtf8);
    const auto path = paths::LoaderPath(location, system, page);
    target.unknownProtocol = !path.has_value();
    target.name = path.value_or(std::string(location));
    if (path && IsRelative(target.name) && !base.empty()) {
      const auto folder = paths::LoaderPath(FolderOf(base), system, page);
      target.name = folder.value_or(std::string(FolderOf(base))) + target.name;
    }
  }
  // A native name may be written with either slash.
  if (!target.isUrl && !target.name.empty() && target.name.front() == '/') {
    std::replace(target.name.begin(), target.name.end(), '\\', '/');
  }
  target.refused = !target.unknownProtocol && !MayReach(target, base);
  return target;
}

bool SchemaFiles::MayReach(const Target& target, std::string_view base) const {
  const auto& prefixes = options_.allowedPrefixes;
  if (target.isUrl) {
    return LiesUnder(target.name, options_.schemaBase) ||
           (IsHttp(base) && LiesUnder(target.name, FolderOf(base))) ||
           std::any_of(prefixes.begin(), prefixes.end(),
                       [&](const std::string& prefix) { return LiesUnder(target.name, prefix); });
  }
  if (IsOtherMachine(target.name)) {
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
bool SchemaFiles::MayShowText(const std::string& path, std::string_view base) const {
  return LiesIn(path, options_.schemaBase) || base.empty() || LiesIn(path, FolderOf(base)) ||
         FolderOf(base).empty();
}

// Reading
// ------------------------------------------------------------------------------------------

SchemaText SchemaFiles::Read(std::string_view location, std::string_view base) const {
  const Target target = Aim(location, base);
  SchemaText text;
  text.url = target.name;
  const auto fail = [&](dom::ParseCode code) {
    dom::SetParseError(text.failure, code);
    text.failure.url = target.name;
    return text;
  };
  if (target.unknownProtocol) return fail(dom::ParseCode::kUnknownProtocol);
  if (target.refused) {
    static_cast<void>(fail(dom::ParseCode::kResourceNotFound));
    text.failure.reason = "The location '" + target.name + "' may not be read by a message; " +
                          (target.isUrl || IsOtherMachine(target.name) ? "Options::allowedPrefixes"
                                                                       : "Options::schemaFolders") +
                          " would allow it.\r\n";
    return text;
  }
  if (target.isUrl) {
    if (fetcher_ == nullptr) return fail(dom::ParseCode::kResourceNotFound);
    return fetcher_->Fetch(target.name, options_);
  }
  host::FileContent content =
      host::Files(host_, drives_).Read(target.name, options_.maxSchemaBytes);
  if (content.status != host::FileStatus::kOk) return fail(CodeOf(content.status));
  text.bytes = std::move(content.bytes);
  text.url = std::move(content.path);
  text.stamp = StampOf(content.identity);
  text.showText = MayShowText(text.url, base);
  return text;
}

SchemaPlace SchemaFiles::Identify(std::string_view location, std::string_view base) const {
  const Target target = Aim(location, base);
  if (target.unknownProtocol || target.refused || target.isUrl) return {};
  host::Files files(host_, drives_);
  const host::FoundName found = files.Find(target.name);
  if (found.status != host::FileStatus::kOk) return {};
  const auto identity = files.Identify(target.name);
  if (!identity) return {};
  return {found.path, StampOf(*identity)};
}

}  // namespace kx::xdr
