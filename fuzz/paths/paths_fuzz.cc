// The path and URL functions on any two texts: the input's first line and the rest of it. Nothing
// may crash, and what each function promises for every text is checked.
#include "platform/paths/path_combine.h"
#include "platform/paths/path_text.h"
#include "platform/paths/url_combine.h"
#include "platform/paths/url_text.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

using namespace kx::paths;

void Check(bool holds, const char* promise) {
  if (holds) return;
  std::fprintf(stderr, "broken promise: %s\n", promise);
  std::abort();
}

void CheckPath(std::string_view text) {
  std::string extended(text);
  if (PathAddExtensionA(extended, ".xml")) {
    Check(extended.size() < kPathBufferSize, "an extended path fits the buffer");
    Check(!PathAddExtensionA(extended, ".xml"), "an extended path is not extended again");
  }
  const std::string_view name = PathFindFileNameA(text);
  Check(UpToNul(text).ends_with(name), "the file name ends the path");
  Check(PathFindFileNameA(name) == name, "the file name of a file name is itself");
  std::string folder(text);
  while (PathRemoveFileSpecA(folder)) {
    Check(text.substr(0, folder.size()) == folder, "a folder begins its path");
  }
}

void CheckCombined(std::string_view directory, std::string_view file) {
  const auto combined = PathCombineA(directory, file);
  if (combined) {
    Check(!combined->empty(), "a combined path is not empty");
    Check(combined->size() < kPathBufferSize, "a combined path fits the buffer");
  }
  const std::string canonical = CanonicalizePath(file);
  if (file.find("..") == std::string_view::npos) {
    Check(CanonicalizePath(canonical) == canonical, "a canonical path without dots stays");
  }
}

void CheckReported(const UrlText& result, std::size_t capacity) {
  if (result.status == kUrlOk) {
    Check(result.length == result.text.size(), "the length is the text's");
    Check(result.length < capacity, "the text fits the buffer");
  } else {
    Check(result.text.empty(), "a failure leaves no text");
    Check(result.status != kUrlBufferTooSmall || result.length > capacity, "the size is needed");
  }
}

void CheckUrls(std::string_view base, std::string_view relative) {
  CheckReported(UrlCombineA(base, relative, kPathBufferSize, UrlEscape::kNone), kPathBufferSize);
  const UrlText escaped = UrlCombineA(base, relative, kPathBufferSize, UrlEscape::kUnsafe);
  CheckReported(escaped, kPathBufferSize);
  Check(EscapeUnsafe(escaped.text) == escaped.text, "an escaped URL holds nothing to escape");
  CheckReported(PathCreateFromUrlA(base, kPathBufferSize), kPathBufferSize);
  const std::string fileUrl = "file:" + std::string(relative);
  CheckReported(PathCreateFromUrlA(fileUrl, kPathBufferSize), kPathBufferSize);
  for (const PathSystem system : {PathSystem::kWindows, PathSystem::kPosix}) {
    const auto path = LoaderPath(fileUrl, system, kx::text::Windows1252());
    Check(path.has_value(), "a file URL has a path");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input(data, data + size);
  const std::size_t lineEnd = input.find('\n');
  const std::string_view first = std::string_view(input).substr(0, lineEnd);
  const std::string_view second =
      lineEnd == std::string::npos ? "" : std::string_view(input).substr(lineEnd + 1);
  CheckPath(first);
  CheckPath(second);
  CheckCombined(first, second);
  CheckUrls(first, second);
  return 0;
}
