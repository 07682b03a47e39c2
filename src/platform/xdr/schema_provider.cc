// See schema_provider.h.
#include "platform/xdr/schema_provider.h"

#include "platform/xdr/schema_names.h"

#include <utility>

namespace kx::xdr {

LoadedGroup PlainProvider::Load(std::string_view uri, std::string_view base) const {
  SchemaText text = source_.Read(uri.substr(kXSchema.size()), base);
  if (text.failure) return {{}, std::move(text.failure)};
  return CompileGroup(uri, std::move(text), source_, limits_);
}

}  // namespace kx::xdr
