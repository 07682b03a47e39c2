// See url_text.h. Which form of a file URL is decoded follows from the number of its slashes; the
// table is in FileUrlRest.
#include "platform/paths/url_text.h"

#include "platform/paths/path_text.h"
#include "platform/text/unicode.h"

#include <algorithm>
#include <utility>

namespace kx::paths {
namespace {

constexpr std::string_view kFileScheme = "file:";
constexpr std::string_view kLocalHost = "localhost";

bool IsSchemeCharacter(char c) {
  const auto code = static_cast<unsigned char>(c);
  return text::IsAsciiLetter(code) || text::IsAsciiDigit(code) || c == '+' || c == '-' || c == '.';
}

// A letter with ":" or "|" behind it, as file URLs write a drive.
bool StartsWithUrlDrive(std::string_view rest) {
  return rest.size() >= 2 && text::IsAsciiLetter(static_cast<unsigned char>(rest[0])) &&
         (rest[1] == ':' || rest[1] == '|');
}

bool StartsWithLocalHost(std::string_view rest) {
  return rest.size() > kLocalHost.size() && IsSlash(rest[kLocalHost.size()]) &&
         text::EqualsAsciiCaseless(rest.substr(0, kLocalHost.size()), kLocalHost);
}

struct PathBeforeDecoding {
  std::string text;
  bool decode = true;
};

// `rest` follows "file://": a host, the local host, or a drive.
PathBeforeDecoding AfterTwoSlashes(std::string_view rest) {
  if (StartsWithLocalHost(rest)) return {std::string(rest.substr(kLocalHost.size() + 1)), true};
  if (StartsWithUrlDrive(rest)) return {std::string(rest), false};
  std::string path = "\\\\";
  const auto hostEnd =
      static_cast<std::size_t>(std::find_if(rest.begin(), rest.end(), IsSlash) - rest.begin());
  path.append(rest.substr(0, hostEnd));
  if (hostEnd == rest.size()) return {std::move(path), true};
  const std::string_view remainder = rest.substr(hostEnd + 1);
  // Deliberate: the slash between a host and a drive is lost, as on the platform.
  if (!StartsWithUrlDrive(remainder)) path += '\\';
  path.append(remainder);
  return {std::move(path), true};
}

// `rest` follows "file:" and `slashes` slashes of either kind.
PathBeforeDecoding FileUrlRest(std::size_t slashes, std::string_view rest) {
  const bool drive = StartsWithUrlDrive(rest);
  const std::string rooted = "\\" + std::string(rest);
  switch (slashes) {
    case 0:
      return {std::string(rest), true};
    case 1:
    case 3:
      return {drive ? std::string(rest) : rooted, true};
    case 2:
      return AfterTwoSlashes(rest);
    case 4:
      return {drive ? std::string(rest) : "\\" + rooted, false};
    default:
      return {"\\" + rooted, true};
  }
}

PathBeforeDecoding PathOfFileUrl(std::string_view url) {
  const std::string_view rest = url.substr(kFileScheme.size());
  const auto slashes =
      static_cast<std::size_t>(std::find_if_not(rest.begin(), rest.end(), IsSlash) - rest.begin());
  PathBeforeDecoding path = FileUrlRest(slashes, rest.substr(slashes));
  std::replace(path.text.begin(), path.text.end(), '/', '\\');
  if (StartsWithUrlDrive(path.text)) path.text[1] = ':';
  return path;
}

// The byte that "%" and two hexadecimal digits at `index` stand for, or -1.
int PercentByteAt(std::string_view text, std::size_t index) {
  if (text[index] != '%' || index + 2 >= text.size()) return -1;
  const int high = text::HexDigitValue(static_cast<unsigned char>(text[index + 1]));
  const int low = text::HexDigitValue(static_cast<unsigned char>(text[index + 2]));
  return high < 0 || low < 0 ? -1 : high * 16 + low;
}

// DecodePercent to UTF-8, with the characters of a code page for the bytes written as %xx.
std::string DecodePercentAs(std::string_view text, const text::CodePage& codePage) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const int byte = PercentByteAt(text, i);
    if (byte < 0) {
      result += text[i];
      continue;
    }
    const char single = static_cast<char>(byte);
    result += codePage.Decode(std::string_view(&single, 1));
    i += 2;
  }
  return result;
}

bool IsRootedWithoutDrive(std::string_view path) {
  return path.starts_with('\\') && !path.starts_with("\\\\");
}

}  // namespace

bool PathIsURLA(std::string_view text) noexcept {
  const auto end = std::find_if_not(text.begin(), text.end(), IsSchemeCharacter);
  return end != text.end() && *end == ':' && end - text.begin() >= 2;
}

bool UrlIsA(std::string_view text, UrlTest test) noexcept {
  return test == UrlTest::kFileUrl &&
         text::EqualsAsciiCaseless(text.substr(0, kFileScheme.size()), kFileScheme);
}

UrlText PathCreateFromUrlA(std::optional<std::string_view> url, std::size_t capacity) {
  if (!url || capacity == 0) return {kUrlBadArgument, 0, {}};
  const std::string_view text = UpToNul(*url);
  if (!UrlIsA(text, UrlTest::kFileUrl)) return {kUrlBadArgument, 0, {}};
  PathBeforeDecoding before = PathOfFileUrl(text);
  std::string path = before.decode ? DecodePercent(before.text) : std::move(before.text);
  const std::size_t length = path.size();
  if (length + 1 > capacity) return {kUrlBufferTooSmall, length + 1, {}};
  return {kUrlOk, length, std::move(path)};
}

std::string DecodePercent(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const int byte = PercentByteAt(text, i);
    result += byte < 0 ? text[i] : static_cast<char>(byte);
    if (byte >= 0) i += 2;
  }
  return result;
}

std::optional<std::string> LoaderPath(std::string_view location, PathSystem system,
                                      const text::CodePage& codePage) {
  const bool isFileUrl = UrlIsA(location, UrlTest::kFileUrl);
  if (!isFileUrl && PathIsURLA(location)) return std::nullopt;
  std::string path(location);
  if (isFileUrl) path = PathOfFileUrl(location).text;
  if (isFileUrl && system == PathSystem::kPosix && IsRootedWithoutDrive(path)) {
    std::replace(path.begin(), path.end(), '\\', '/');
  }
  if (path.find('%') == std::string::npos) return path;
  std::string decoded = DecodePercent(path);
  return text::IsValidUtf8(decoded) ? decoded : DecodePercentAs(path, codePage);
}

}  // namespace kx::paths
