// See url_combine.h. A URL is taken apart once into views (UrlParts) and written again; elements of
// a path are simplified with a stack of their starts, so the work is linear in the text.
#include "platform/paths/url_combine.h"

#include "platform/paths/path_text.h"
#include "platform/text/unicode.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace kx::paths {
namespace {

// What the canonical form does with a scheme's backslashes and its ".." elements.
enum class SchemeKind : std::uint8_t {
  kNone,     // no scheme: a path
  kSlashed,  // backslashes become slashes
  kFile,     // the same, and the number of slashes after the scheme is regulated
  kOpaque,   // nothing is simplified
  kPlain,    // backslashes stay
  kUnknown,  // backslashes stay, and so does a ".." with nothing to remove
};

struct SchemeRow {
  std::string_view name;
  SchemeKind kind;
};
constexpr SchemeRow kSchemes[] = {
    {"about", SchemeKind::kOpaque},      {"file", SchemeKind::kFile},
    {"ftp", SchemeKind::kPlain},         {"gopher", SchemeKind::kSlashed},
    {"http", SchemeKind::kSlashed},      {"https", SchemeKind::kSlashed},
    {"javascript", SchemeKind::kOpaque}, {"local", SchemeKind::kPlain},
    {"mailto", SchemeKind::kOpaque},     {"news", SchemeKind::kSlashed},
    {"nntp", SchemeKind::kSlashed},      {"res", SchemeKind::kPlain},
    {"shell", SchemeKind::kOpaque},      {"snews", SchemeKind::kSlashed},
    {"telnet", SchemeKind::kSlashed},    {"vbscript", SchemeKind::kOpaque},
    {"wais", SchemeKind::kPlain},
};

SchemeKind KindOf(std::string_view lowerCaseScheme) {
  if (lowerCaseScheme.empty()) return SchemeKind::kNone;
  for (const SchemeRow& row : kSchemes) {
    if (row.name == lowerCaseScheme) return row.kind;
  }
  return SchemeKind::kUnknown;
}

// Without the characters 01 to 20 at both ends, and without tabs and line ends inside.
std::string Clean(std::string_view url) {
  const auto isEdge = [](char c) { return c > '\0' && c <= ' '; };
  while (!url.empty() && isEdge(url.front())) url.remove_prefix(1);
  while (!url.empty() && isEdge(url.back())) url.remove_suffix(1);
  std::string result(url);
  std::erase_if(result, [](char c) { return c == '\t' || c == '\r' || c == '\n'; });
  return result;
}

std::string WithSlashes(std::string text, std::size_t end) {
  const auto last = text.begin() + static_cast<std::ptrdiff_t>(std::min(end, text.size()));
  std::replace(text.begin(), last, '\\', '/');
  return text;
}

// A drive path or a path of another machine as a file URL; any other text as it is.
std::string PathAsUrl(std::string text) {
  const std::size_t length = text.size();
  if (StartsWithDrive(text)) return "file:///" + WithSlashes(std::move(text), length);
  if (text.starts_with("\\\\")) return "file:" + WithSlashes(std::move(text), length);
  return text;
}

// The lower-case scheme of `url` without its colon; empty when it has none.
std::string SchemeOf(std::string_view url) {
  return PathIsURLA(url) ? text::AsciiLowerCase(url.substr(0, url.find(':'))) : std::string();
}

// Where the part ends in which elements are simplified and characters escaped.
std::size_t PathLimit(std::string_view text, SchemeKind kind) {
  const std::size_t limit = text.find_first_of(kind == SchemeKind::kFile ? "?" : "?#");
  return std::min(limit, text.size());
}

std::size_t CountSlashes(std::string_view text) {
  return std::min(text.find_first_not_of('/'), text.size());
}

// What follows "file:": four or more slashes are two, and a drive has three before it.
std::string RegulateFileSlashes(std::string rest) {
  const std::size_t slashes = CountSlashes(rest);
  if (slashes >= 4) rest.erase(0, slashes - 2);
  const bool driveAfterTwo = CountSlashes(rest) == 2 && StartsWithDrive(rest.substr(2, 2));
  return driveAfterTwo ? "/" + rest : rest;
}

// Elements of a path written one by one; ".." takes the last one away again.
class ElementWriter {
 public:
  ElementWriter(std::string out, SchemeKind kind)
      : out_(std::move(out)), keepsUnmatched_(kind == SchemeKind::kUnknown) {}

  // `isLast`: no slash follows the element.
  void Add(std::string_view element, bool isLast) {
    if (element == ".") return;
    if (element == ".." && !starts_.empty()) {
      out_.resize(starts_.back());
      starts_.pop_back();
      return;
    }
    if (element == ".." && !keepsUnmatched_) return;
    if (element != "..") starts_.push_back(out_.size());
    out_.append(element);
    if (!isLast) out_ += '/';
  }

  [[nodiscard]] std::string Finish() && { return std::move(out_); }

 private:
  std::string out_;
  std::vector<std::size_t> starts_;
  bool keepsUnmatched_;
};

std::string SimplifyElements(std::string_view path, SchemeKind kind) {
  const std::size_t prefix = path.starts_with('/') ? 1 : 0;
  ElementWriter writer(std::string(path.substr(0, prefix)), kind);
  std::size_t start = prefix;
  while (start < path.size()) {
    const std::size_t end = std::min(path.find('/', start), path.size());
    writer.Add(path.substr(start, end - start), end == path.size());
    start = end + 1;
  }
  return std::move(writer).Finish();
}

bool FirstElementIsDots(std::string_view path) {
  const std::string_view first = path.substr(1, std::min(path.find('/', 1), path.size()) - 1);
  return first == "." || first == "..";
}

// What follows "scheme:", up to the limit: the host with its slash added, the path simplified.
std::string CanonicalHierarchy(std::string_view text, SchemeKind kind) {
  if (!text.starts_with("//")) return SimplifyElements(text, kind);
  const std::size_t hostEnd = std::min(text.find('/', 2), text.size());
  std::string result(text.substr(0, hostEnd));
  const std::string_view path = text.substr(hostEnd);
  if (path.empty()) return result + "/";
  // Deliberate: a path that begins with dots is left as written.
  return FirstElementIsDots(path) ? std::string(text) : result + SimplifyElements(path, kind);
}

std::string CanonicalRest(std::string rest, SchemeKind kind) {
  if (kind == SchemeKind::kOpaque) return rest;
  if (kind == SchemeKind::kSlashed || kind == SchemeKind::kFile) {
    const std::size_t end = rest.find_first_of("?#");
    rest = WithSlashes(std::move(rest), end);
  }
  if (kind == SchemeKind::kFile) rest = RegulateFileSlashes(std::move(rest));
  const std::size_t limit = PathLimit(rest, kind);
  return CanonicalHierarchy(std::string_view(rest).substr(0, limit), kind) + rest.substr(limit);
}

// A canonical base taken apart: `all` is prefix (scheme, colon and host) and path.
struct Base {
  explicit Base(std::string canonical) : all(std::move(canonical)), scheme(SchemeOf(all)) {
    const std::size_t afterScheme = scheme.size() + 1;
    hasSlash = all.substr(std::min(afterScheme, all.size()), 1) == "/";
    prefixLength = afterScheme;
    if (all.compare(afterScheme, 2, "//") == 0) {
      prefixLength = std::min(all.find_first_of("/?#", afterScheme + 2), all.size());
    }
  }

  [[nodiscard]] std::string Prefix() const { return all.substr(0, prefixLength); }

  // Where the fragment begins: at the first "#" for http and https, behind ".htm" or ".html" for
  // all others.
  [[nodiscard]] std::size_t FragmentStart() const {
    const bool anywhere = scheme == "http" || scheme == "https";
    std::size_t mark = all.find('#', prefixLength);
    while (mark != std::string::npos && !anywhere && !FollowsPage(mark))
      mark = all.find('#', mark + 1);
    return std::min(mark, all.size());
  }

  // Everything up to the last slash of the path, that slash included.
  [[nodiscard]] std::string Folder() const {
    const std::size_t end = std::min(all.find('?', prefixLength), FragmentStart());
    const std::size_t slash = std::string_view(all).substr(0, end).rfind('/');
    const bool inPath = slash != std::string::npos && slash >= prefixLength;
    return inPath ? all.substr(0, slash + 1) : Prefix();
  }

  [[nodiscard]] bool FollowsPage(std::size_t mark) const {
    const auto endsIn = [&](std::string_view page) {
      return mark >= page.size() &&
             text::EqualsAsciiCaseless(
                 std::string_view(all).substr(mark - page.size(), page.size()), page);
    };
    return endsIn(".htm") || endsIn(".html");
  }

  std::string all;
  std::string scheme;
  std::size_t prefixLength = 0;
  bool hasSlash = false;
};

bool StartsWithTwoSlashes(std::string_view text) {
  return text.size() >= 2 && IsSlash(text[0]) && IsSlash(text[1]);
}

// `relative`, which has the base's scheme, completed by what it leaves out.
std::string JoinSameScheme(const Base& base, const std::string& relative) {
  const std::string rest = relative.substr(base.scheme.size() + 1);
  if (StartsWithTwoSlashes(rest)) return relative;
  if (!rest.empty() && IsSlash(rest[0])) return base.Prefix() + rest;
  return base.hasSlash ? base.Folder() + rest : relative;
}

std::string Join(const Base& base, const std::string& relative) {
  const std::string scheme = SchemeOf(relative);
  if (!scheme.empty()) return scheme == base.scheme ? JoinSameScheme(base, relative) : relative;
  if (StartsWithDrive(relative)) return "file:///" + relative;
  if (StartsWithTwoSlashes(relative)) return base.scheme + ":" + relative;
  if (!relative.empty() && IsSlash(relative[0])) return base.Prefix() + relative;
  if (relative.starts_with('#')) return base.all.substr(0, base.FragmentStart()) + relative;
  const std::string folder = base.Folder();
  return folder.ends_with('/') ? folder + relative : folder + "/" + relative;
}

bool IsUnsafe(char c, SchemeKind kind) {
  const auto code = static_cast<unsigned char>(c);
  if (code <= 0x20 || code >= 0x7F) return true;
  if (c == '#') return kind == SchemeKind::kFile;
  return std::string_view("<>\"{}|\\^][`&").find(c) != std::string_view::npos;
}

// The slashes of a file URL as escaping leaves them: three, or two before a host that is not the
// local one.
std::string EscapedFileSlashes(std::string_view url) {
  constexpr std::string_view kLocal = "//localhost/";
  const std::string_view rest = url.substr(url.find(':') + 1);
  if (text::EqualsAsciiCaseless(rest.substr(0, kLocal.size()), kLocal)) {
    return "file:///" + std::string(rest.substr(kLocal.size()));
  }
  const std::size_t slashes = CountSlashes(rest);
  if (slashes != 1) return std::string(url);
  return "file:///" + std::string(rest.substr(slashes));
}

}  // namespace

std::string CanonicalizeUrl(std::string_view url) {
  std::string text = PathAsUrl(Clean(UpToNul(url)));
  const std::string scheme = SchemeOf(text);
  if (scheme.empty()) return CanonicalRest(std::move(text), SchemeKind::kNone);
  return scheme + ":" + CanonicalRest(text.substr(scheme.size() + 1), KindOf(scheme));
}

std::string EscapeUnsafe(std::string_view url) {
  constexpr std::string_view kHexDigits = "0123456789ABCDEF";
  const SchemeKind kind = KindOf(SchemeOf(url));
  const std::string source = kind == SchemeKind::kFile ? EscapedFileSlashes(url) : std::string(url);
  const std::size_t limit = PathLimit(source, kind);
  std::string result;
  for (const char c : std::string_view(source).substr(0, limit)) {
    if (!IsUnsafe(c, kind)) {
      result += c;
      continue;
    }
    const auto code = static_cast<unsigned char>(c);
    result += {'%', kHexDigits[code >> 4], kHexDigits[code & 15]};
  }
  return result.append(source, limit);
}

UrlText UrlCombineA(std::optional<std::string_view> base, std::optional<std::string_view> relative,
                    std::size_t capacity, UrlEscape escape) {
  if (!base || !relative) return {kUrlBadArgument, 0, {}};
  const std::string cleanRelative = Clean(UpToNul(*relative));
  const std::string canonicalBase = CanonicalizeUrl(*base);
  const bool hasBase = PathIsURLA(canonicalBase);
  std::string url =
      CanonicalizeUrl(hasBase ? Join(Base(canonicalBase), cleanRelative) : cleanRelative);
  if (escape == UrlEscape::kUnsafe) url = EscapeUnsafe(url);
  const std::size_t length = url.size();
  if (length + 1 > capacity) return {kUrlBufferTooSmall, length + 1, {}};
  return {kUrlOk, length, std::move(url)};
}

}  // namespace kx::paths
