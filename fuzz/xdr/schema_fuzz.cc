// Any text as a schema: it compiles or is refused, and what it declares can be asked for. The same
// text answers every reference to another schema.
#include "platform/xdr/schema_provider.h"

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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const OneText source({reinterpret_cast<const char*>(data), size});
  const xdr::LoadedGroup loaded = xdr::PlainProvider(source).Load("x-schema:s", "");
  if (static_cast<bool>(loaded.group) == static_cast<bool>(loaded.error)) std::abort();
  if (!loaded.group) return 0;
  for (const xdr::SchemaGroup::Member& member : loaded.group->members) {
    for (const xdr::ElementType& type : member.schema->Elements()) {
      if (member.schema->FindElement(type.name) == nullptr) std::abort();
      const auto start = xdr::ContentModel::kStart;
      if (type.model.Expected({&start, 1}).size() > 1000000) std::abort();
    }
  }
  return 0;
}
