// See process_options.h and kxmessage/options.h.
#include "core/process_options.h"

#include "core/environment.h"
#include "platform/runtime/error.h"
#include "platform/runtime/strings.h"

#include <charconv>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace kx {

namespace {

struct Holder {
  std::mutex mutex;
  std::optional<Options> options;
  // Made of the options; dropped when they change.
  runtime::Counted<const core::Environment> environment;
};

Holder& TheHolder() {
  static Holder holder;
  return holder;
}

Options& LockedOptions(Holder& holder) {
  if (!holder.options) holder.options = core::ReadOptions(host::ProcessHost());
  return *holder.options;
}

}  // namespace

Options Options::OfProcess() {
  Holder& holder = TheHolder();
  const std::lock_guard<std::mutex> lock(holder.mutex);
  return LockedOptions(holder);
}

void Options::SetOfProcess(Options options) {
  Holder& holder = TheHolder();
  runtime::Counted<const core::Environment> dropped;  // ends outside the lock
  const std::lock_guard<std::mutex> lock(holder.mutex);
  holder.options = std::move(options);
  holder.environment.Swap(dropped);
}

namespace core {

namespace {

class Reader {
 public:
  explicit Reader(host::Host& host) noexcept : host_(host) {}

  void Text(const char* name, std::string& value) {
    if (std::optional<std::string> text = host_.Environment(name)) value = *std::move(text);
  }

  void List(const char* name, std::vector<std::string>& values) {
    const std::optional<std::string> text = host_.Environment(name);
    if (!text) return;
    values.clear();
    for (std::string& item : runtime::Split(*text, ";")) {
      if (!item.empty()) values.push_back(std::move(item));
    }
  }

  template <typename T>
  void Number(const char* name, T& value) {
    const std::optional<std::string> text = host_.Environment(name);
    if (!text || text->empty()) return;
    T number{};
    const char* const end = text->data() + text->size();
    const auto [stop, error] = std::from_chars(text->data(), end, number);
    if (error != std::errc() || stop != end || number < 0) {
      runtime::RaiseRuntimeError(
          runtime::kInvalidProcedureCall,
          "The environment variable " + std::string(name) + " is not a number: " + *text);
    }
    value = number;
  }

 private:
  host::Host& host_;
};

}  // namespace

Options ReadOptions(host::Host& host) {
  Options options;
  Reader reader(host);
  reader.Number("KX_CODE_PAGE", options.codePage);
  reader.Text("KX_SCHEMA_BASE", options.schemaBase);
  reader.Text("KX_MESSAGE_BASE", options.messageBase);
  reader.List("KX_ALLOWED_PREFIXES", options.allowedPrefixes);
  reader.List("KX_SCHEMA_FOLDERS", options.schemaFolders);
  reader.Number("KX_MAX_DOCUMENT_BYTES", options.maxDocumentBytes);
  reader.Number("KX_MAX_DEPTH", options.maxDepth);
  reader.Number("KX_MAX_ENTITY_BYTES", options.maxEntityBytes);
  reader.Number("KX_MAX_SCHEMA_BYTES", options.maxSchemaBytes);
  reader.Number("KX_MAX_DEFAULT_ELEMENTS", options.maxDefaultElements);
  reader.Number("KX_MAX_DEFAULT_DEPTH", options.maxDefaultDepth);
  reader.Number("KX_MAX_DOWNLOAD_BYTES", options.maxDownloadBytes);
  reader.Number("KX_DOWNLOAD_SECONDS", options.downloadSeconds);
  reader.Number("KX_CONNECT_SECONDS", options.connectSeconds);
  reader.Number("KX_STALL_SECONDS", options.stallSeconds);
  reader.Number("KX_MAX_REDIRECTS", options.maxRedirects);
  return options;
}

runtime::Counted<const Environment> Environment::OfProcess() {
  Holder& holder = TheHolder();
  const std::lock_guard<std::mutex> lock(holder.mutex);
  if (!holder.environment) holder.environment = Make(LockedOptions(holder));
  return holder.environment;
}

}  // namespace core

}  // namespace kx
