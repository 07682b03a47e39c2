// See message_files.h.
#include "core/message_files.h"

#include "platform/host/files.h"
#include "platform/host/url_fetcher.h"
#include "platform/paths/temp_names.h"
#include "platform/paths/url_text.h"
#include "platform/runtime/error.h"

#include <optional>
#include <utility>

namespace kx::core {

namespace {

// The name to open: a file URL is made a path.
std::string FileNameOf(const Environment& environment, std::string_view location) {
  const std::string encoded = environment.CodePage().Encode(location);
  if (!paths::UrlIsA(encoded, paths::UrlTest::kFileUrl)) return std::string(location);
  const paths::UrlText path = paths::PathCreateFromUrlA(encoded, kMaxLocationLength + 1);
  if (path.status != paths::kUrlOk) runtime::RaiseRuntimeError(runtime::kBadFileName);
  return environment.CodePage().Decode(path.text);
}

int RuntimeErrorOf(host::UrlStatus status) {
  switch (status) {
    case host::UrlStatus::kNotFound:
      return runtime::kFileNotFound;
    case host::UrlStatus::kAccessDenied:
      return runtime::kPermissionDenied;
    case host::UrlStatus::kTooLarge:
      return runtime::kOutOfMemory;
    case host::UrlStatus::kUnknownProtocol:
      return runtime::kBadFileName;
    default:
      return runtime::kDeviceUnavailable;
  }
}

std::string Fetch(const Environment& environment, const std::string& url) {
  host::UrlRequest request;
  request.url = url;
  request.bounds = environment.Settings();
  host::UrlContent content = host::ProcessFetcher().Fetch(request);
  if (content.status == host::UrlStatus::kOk) return std::move(content.bytes);
  const int number = RuntimeErrorOf(content.status);
  std::string text(runtime::RuntimeErrorText(number));
  if (!content.reason.empty()) text += ": " + content.reason;
  runtime::RaiseRuntimeError(number, std::move(text));
}

void WriteFile(const Environment& environment, const std::string& name, std::string_view text) {
  host::Files files(environment.Host(), environment.Drives());
  host::OutputFile file = files.OpenForOutput(name);
  file.Print(environment.CodePage().Encode(text));
  file.Close();
}

}  // namespace

std::string ReadMessageFile(const Environment& environment, std::string_view location) {
  if (const std::string url(location); host::IsHttpUrl(url)) {
    return environment.CodePage().Decode(host::JoinLines(Fetch(environment, url)));
  }
  host::Files files(environment.Host(), environment.Drives());
  host::InputFile file = files.OpenForInput(FileNameOf(environment, location),
                                            environment.Settings().maxDocumentBytes);
  return environment.CodePage().Decode(file.RestOfLines());
}

void WriteMessageFile(const Environment& environment, std::string_view location,
                      std::string_view text) {
  WriteFile(environment, FileNameOf(environment, location), text);
}

std::string WriteTemporaryFile(const Environment& environment, std::string_view text) {
  host::Files files(environment.Host(), environment.Drives());
  const std::string folder = environment.Host().PrivateTemporaryFolder();
  const std::optional<std::string> name = files.CreateTemporaryFile(
      [&](std::uint16_t number) { return paths::TempFileNameA(folder, "MSG", number); });
  if (!name) runtime::RaiseRuntimeError(runtime::kPathFileAccessError);
  WriteFile(environment, *name, text);
  return *name;
}

}  // namespace kx::core
