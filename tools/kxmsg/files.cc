// See files.h.
#include "kxmsg/files.h"

#include "kxmessage/settings.h"
#include "kxmessage/text.h"

#include "kxmsg/console.h"
#include "kxmsg/failure.h"
#include "kxmsg/text_form.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <random>
#include <system_error>
#include <utility>

#if !defined(_WIN32)
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace kxmsg {

namespace fs = std::filesystem;

namespace {

constexpr int kUtf8CodePage = 65001;
constexpr int kBadFileName = 52;
constexpr int kPathNotFound = 76;

// What a name on the command line stands for.
enum class NameKind : unsigned char {
  kStandardStream,
  kLocation,  // the library takes it as it is
  kPath,      // a file of the host
};

bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool IsUrl(std::string_view name) {
  for (const std::string_view scheme : {"http:", "https:", "file:"}) {
    if (SameName(name.substr(0, scheme.size()), scheme)) return true;
  }
  return false;
}

bool IsHttp(std::string_view name) {
  return SameName(name.substr(0, 5), "http:") || SameName(name.substr(0, 6), "https:");
}

bool HasDrive(std::string_view name) {
  return name.size() > 2 && IsLetter(name[0]) && name[1] == ':' &&
         (name[2] == '\\' || name[2] == '/');
}

NameKind KindOf(std::string_view name, const Arguments& arguments) {
  if (name == "-") return NameKind::kStandardStream;
  if (arguments.base || IsUrl(name) || HasDrive(name)) return NameKind::kLocation;
  return NameKind::kPath;
}

fs::path PathOf(const std::string& utf8) {
#if defined(_WIN32)
  return fs::u8path(utf8);
#else
  return {utf8};
#endif
}

std::string AbsolutePath(const std::string& name) {
  std::error_code failed;
  const fs::path path = fs::absolute(PathOf(name), failed);
  if (failed) RaiseSystemError(failed.value());
#if defined(_WIN32)
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
#else
  return path.string();
#endif
}

// True when the library, asked for the location `path`, means that very file.
bool IsLocationOf(const std::string& path, const kx::Options& options) {
  try {
    return kx::Settings::MessageFile(path, options) == path;
  } catch (const kx::Error&) {
    return false;  // a path that is too long for a location
  }
}

// ---- Reading ---------------------------------------------------------------------------------

struct FileCloser {
  void operator()(std::FILE* file) const noexcept { static_cast<void>(std::fclose(file)); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

File Open(const std::string& path, const char* mode) {
#if defined(_WIN32)
  const std::wstring wideMode(mode, mode + std::strlen(mode));
  return File(_wfopen(PathOf(path).c_str(), wideMode.c_str()));
#else
  return File(std::fopen(path.c_str(), mode));
#endif
}

// How many bytes may be read, and what is said of more.
struct Bound {
  std::size_t most = 0;
  const char* advice = "";
};

Bound BoundOf(const kx::Options& options) {
  return {options.maxDocumentBytes, "; --max-document-bytes sets the bound"};
}

// All bytes of a stream, refused when they are more than the bound.
std::string ReadAll(std::FILE* file, const Bound& bound) {
  std::string bytes;
  std::array<char, 65536> buffer{};
  while (true) {
    const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), file);
    bytes.append(buffer.data(), count);
    if (bytes.size() > bound.most) {
      RaiseTooMuch("Longer than " + std::to_string(bound.most) + " bytes" + bound.advice + '.');
    }
    if (count < buffer.size()) break;
  }
  if (std::ferror(file) != 0) RaiseSystemError(errno);
  return bytes;
}

std::string ReadFile(const std::string& path, const Bound& bound) {
  std::error_code ignored;
  if (fs::is_directory(PathOf(path), ignored)) RaiseSystemError(EISDIR);
  const File file = Open(path, "rb");
  if (!file) RaiseSystemError(errno);
  return ReadAll(file.get(), bound);
}

// ---- The warning -----------------------------------------------------------------------------

bool DeclaresUtf8(std::string_view start) {
  const std::string encoding = kx::XmlEncodingOf(start);
  return SameName(encoding, "utf-8") || SameName(encoding, "utf8");
}

bool HasMoreThanAscii(std::string_view bytes) {
  for (const char c : bytes) {
    if (static_cast<unsigned char>(c) >= 0x80U) return true;
  }
  return false;
}

std::string CodePageWarning(const kx::Options& options) {
  return "the file declares UTF-8, but is read by the code page " +
         std::to_string(options.codePage) + "; --code-page 65001 reads it as UTF-8";
}

std::string WarnOfBytes(std::string_view bytes, const kx::Options& options) {
  const bool mistaken =
      options.codePage != kUtf8CodePage && DeclaresUtf8(bytes) && HasMoreThanAscii(bytes);
  return mistaken ? CodePageWarning(options) : std::string();
}

// The same for a file, which is read no further than needed to tell.
std::string WarnOfFile(const std::string& path, const kx::Options& options) {
  std::error_code ignored;
  if (options.codePage == kUtf8CodePage || !fs::is_regular_file(PathOf(path), ignored)) return {};
  const File file = Open(path, "rb");
  if (!file) return {};  // loading tells what is wrong
  std::array<char, 65536> buffer{};
  std::size_t count = std::fread(buffer.data(), 1, buffer.size(), file.get());
  if (!DeclaresUtf8({buffer.data(), count})) return {};
  for (; count != 0; count = std::fread(buffer.data(), 1, buffer.size(), file.get())) {
    if (HasMoreThanAscii({buffer.data(), count})) return CodePageWarning(options);
  }
  return {};
}

// The folder of the URL that the message was loaded from; empty when it was none.
std::string FolderOfUrl(const kx::KXMessage& message, const Arguments& arguments) {
  if (KindOf(arguments.file, arguments) != NameKind::kLocation) return {};
  std::string url = arguments.file;
  if (!IsHttp(url)) {
    url = message.MsgPath();  // with --base
    if (HasDrive(arguments.file) || IsUrl(arguments.file) || !IsHttp(url)) return {};
    url += arguments.file;
    std::replace(url.begin(), url.end(), '\\', '/');
  }
  url.resize(std::min(url.size(), url.find_first_of("?#")));
  return url.substr(0, url.rfind('/') + 1);
}

// ---- Writing ---------------------------------------------------------------------------------

void WriteAll(std::FILE* file, std::string_view bytes) {
  const bool isWritten =
      std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size() && std::fflush(file) == 0;
  if (!isWritten) RaiseSystemError(errno);
}

enum class Readers : unsigned char { kAll, kOwner };

// Creates a file. Its mode is its own from the first moment: what is private is nobody else's to
// read while it is being written.
File Create(const std::string& path, Readers readers) {
#if defined(_WIN32)
  static_cast<void>(readers);
  return Open(path, "wbx");
#else
  const mode_t mode = readers == Readers::kOwner ? 0600 : 0666;
  const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
  if (descriptor < 0) return nullptr;
  File file(fdopen(descriptor, "wb"));
  if (!file) static_cast<void>(close(descriptor));
  return file;
#endif
}

// A new file beside `target`, under a name that nobody has.
File CreateSibling(const fs::path& target, Readers readers, std::string& sibling) {
  std::random_device random;
  for (int tries = 0; tries < 100; ++tries) {
    sibling = target.string() + ".kxmsg" + std::to_string(random());
    File file = Create(sibling, readers);
    if (file || errno != EEXIST) return file;
  }
  return nullptr;
}

void ReplaceFile(const std::string& path, std::string_view bytes) {
  std::error_code failed;
  const fs::path target = fs::weakly_canonical(PathOf(path), failed);  // a link stays one
  if (failed) RaiseSystemError(failed.value());
  const fs::file_status old = fs::status(target, failed);
  std::string sibling;
  File file = CreateSibling(target, fs::exists(old) ? Readers::kOwner : Readers::kAll, sibling);
  if (!file && errno == ENOENT) RaiseFileError(kPathNotFound, "Path not found");
  if (!file) RaiseSystemError(errno);
  try {
    WriteAll(file.get(), bytes);
    file.reset();
    failed.clear();
    if (fs::exists(old)) fs::permissions(PathOf(sibling), old.permissions(), failed);
    if (failed) RaiseSystemError(failed.value());
    fs::rename(PathOf(sibling), target, failed);
    if (failed) RaiseSystemError(failed.value());
  } catch (...) {
    file.reset();
    fs::remove(PathOf(sibling), failed);
    throw;
  }
}

// What is lost of a text that a file holds by the code page; empty when nothing is.
std::string LossWarning(std::string_view text, int codePage) {
  if (codePage == kUtf8CodePage || !HasMoreThanAscii(text)) return {};
  const std::string kept = kx::DecodeCodePage(kx::EncodeCodePage(text, codePage), codePage);
  const auto [lost, ignored] = std::mismatch(text.begin(), text.end(), kept.begin(), kept.end());
  if (lost == text.end()) return {};
  return "the code page " + std::to_string(codePage) + " lacks " +
         CodePointName(text, static_cast<std::size_t>(lost - text.begin())) +
         ", and perhaps others: \"?\" stands in their place; --code-page 65001 keeps them";
}

void WriteFile(const std::string& path, std::string_view bytes) {
  std::error_code failed;
  const fs::file_status status = fs::status(PathOf(path), failed);
  if (!fs::exists(status) || fs::is_regular_file(status)) {
    ReplaceFile(path, bytes);
    return;
  }
  const File file = Open(path, "wb");  // a device or a pipe takes the bytes as they come
  if (!file) RaiseSystemError(errno);
  WriteAll(file.get(), bytes);
}

}  // namespace

std::string ShownName(std::string_view name) {
  return name == "-" ? "standard input" : std::string(name);
}

kx::KXMessage LoadMessage(const std::string& name, const Arguments& arguments,
                          std::string& warning) {
  const kx::Options& options = arguments.options;
  warning.clear();
  kx::KXMessage message(options);
  if (!arguments.defaultSchema.empty()) {
    message.DefaultSchemaURL(SchemaLocation(arguments.defaultSchema, arguments));
  }
  const NameKind kind = KindOf(name, arguments);
  if (kind == NameKind::kStandardStream) {
    message.LoadMessageFromString(kx::DecodeXmlBytes(ReadAll(stdin, BoundOf(options))));
    return message;
  }
  const bool isPath = kind == NameKind::kPath;
  const std::string location = isPath ? AbsolutePath(name) : name;
  if (isPath && !IsLocationOf(location, options)) {
    const std::string bytes = ReadFile(location, BoundOf(options));
    warning = WarnOfBytes(bytes, options);
    message.LoadMessageFromString(kx::DecodeCodePage(bytes, options.codePage));
    return message;
  }
  const std::string path = isPath ? location : kx::Settings::MessageFile(location, options);
  if (!path.empty()) warning = WarnOfFile(path, options);
  message.LoadMessage(location);
  return message;
}

kx::KXMessage LoadMessage(const std::string& name, const Arguments& arguments, Console& console) {
  std::string warning;
  const auto tell = [&] {
    if (!warning.empty()) console.PrintWarning(ShownName(name), warning);
  };
  try {
    kx::KXMessage message = LoadMessage(name, arguments, warning);
    tell();
    return message;
  } catch (const kx::Error&) {
    tell();
    throw;
  }
}

void SaveMessage(const kx::KXMessage& message, const std::string& name, const Arguments& arguments,
                 Console& console) {
  const NameKind kind = KindOf(name, arguments);
  if (kind == NameKind::kStandardStream) {
    console.Print(WithUtf8Declaration(message.XML(), message.Encoding()) + '\n');
    return;
  }
  try {
    const bool isPath = kind == NameKind::kPath;
    const std::string location = isPath ? AbsolutePath(name) : name;
    const std::string text = message.XML();
    if (isPath && !IsLocationOf(location, arguments.options)) {
      WriteFile(location, kx::EncodeCodePage(text + "\r\n", arguments.options.codePage));
    } else {
      message.SaveMessage(location);
    }
    const std::string warning = LossWarning(text, arguments.options.codePage);
    if (!warning.empty()) console.PrintWarning(name, warning);
  } catch (const kx::Error& error) {
    throw OutputFailure{name, DescribeError(error)};
  }
}

void SaveChange(const kx::KXMessage& message, const Arguments& arguments, Console& console) {
  if (!arguments.force) {
    kx::Options options = arguments.options;
    // A message from a URL may name schemas that lie below its folder; its text alone may not.
    if (std::string folder = FolderOfUrl(message, arguments); !folder.empty()) {
      options.allowedPrefixes.push_back(std::move(folder));
    }
    const kx::KXMessage again(options);
    again.LoadMessageFromString(message.XML());
  }
  SaveMessage(message, arguments.hasOutput ? arguments.output : arguments.file, arguments, console);
}

std::string ReadBytes(const std::string& name, std::size_t most) {
  return name == "-" ? ReadAll(stdin, {most}) : ReadFile(name, {most});
}

std::string SchemaLocation(const std::string& name, const Arguments& arguments) {
  switch (KindOf(name, arguments)) {
    case NameKind::kStandardStream:
      RaiseFileError(kBadFileName, "A schema is read from a file or URL, not from standard input.");
    case NameKind::kLocation:
      return name;
    case NameKind::kPath:
      break;
  }
  std::string path = AbsolutePath(name);
  std::error_code ignored;
  if (fs::exists(PathOf(path), ignored) && !IsLocationOf(path, arguments.options)) {
    RaiseFileError(kBadFileName,
                   "The name of a schema's file needs an extension and at most 259 characters.");
  }
  return path;
}

std::string BaseLocation(const std::string& name) {
  return IsUrl(name) || HasDrive(name) ? name : AbsolutePath(name);
}

}  // namespace kxmsg
