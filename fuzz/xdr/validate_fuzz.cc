// A schema and a document, separated by a NUL: the document is parsed and bound, and judged once
// more as a tree. A document that the parse accepts with validation is valid as a tree too.
#include "platform/dom/document_data.h"
#include "platform/dom/parser.h"
#include "platform/dom/writer.h"
#include "platform/xdr/parse_binder.h"
#include "platform/xdr/typing.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

using namespace kx;

class OneText final : public xdr::SchemaSource {
 public:
  explicit OneText(std::string_view text) : text_(text) {}
  [[nodiscard]] xdr::SchemaText Read(std::string_view location,
                                     std::string_view /*base*/) const override {
    xdr::SchemaText text;
    text.bytes = text_;
    text.url = location;
    return text;
  }

 private:
  std::string_view text_;
};

void Touch(const dom::DocumentData& data) {
  const dom::Cursor root(&data, data.DocumentElement());
  for (dom::Cursor at = root; at; at = at.NextInTree(root)) {
    static_cast<void>(xdr::FindTypedValue(at));
    for (dom::Cursor a = at.FirstAttribute(); a; a = a.Next()) {
      static_cast<void>(xdr::FindTypedValue(a));
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(bytes), size);
  const std::size_t split = input.find('\0');
  if (split == std::string_view::npos) return 0;
  const OneText source(input.substr(0, split));
  const xdr::PlainProvider provider(source);
  for (const xdr::Task task : {xdr::Task::kBindAndCheck, xdr::Task::kBind}) {
    dom::DocumentData data(nullptr);
    xdr::ParseBinder binder(provider, nullptr, task, {});
    dom::ParseOptions options;
    options.binder = &binder;
    dom::ParseError error;
    if (!dom::ParseText(data, input.substr(split + 1), options, error)) continue;
    Touch(data);
    const dom::ParseError verdict = xdr::ValidateBound(data);
    if (task == xdr::Task::kBindAndCheck && verdict) std::abort();
  }
  return 0;
}
