// Schemas of tests: texts by location, and documents that are bound to them.
#pragma once

#include "platform/dom/document.h"
#include "platform/xdr/parse_binder.h"
#include "platform/xdr/schema_provider.h"

#include <map>
#include <string>
#include <string_view>

namespace kx::xdr {

/// Texts in memory. A location is looked up as it is, relative to nothing.
class MemorySchemas final : public SchemaSource {
 public:
  void Put(std::string location, std::string text) {
    texts_[std::move(location)] = std::move(text);
  }
  /// Puts a Schema element around `declarations`.
  void PutBody(std::string location, std::string_view declarations);
  [[nodiscard]] SchemaText Read(std::string_view location, std::string_view base) const override;
  [[nodiscard]] int Reads() const noexcept { return reads_; }

 private:
  std::map<std::string, std::string, std::less<>> texts_;
  mutable int reads_ = 0;
};

/// A place where documents are bound.
struct Workshop {
  MemorySchemas schemas;
  PlainProvider provider{schemas};
  BindingService service{provider};

  /// A document with the library's own settings that binds to `schemas`.
  [[nodiscard]] dom::Document NewDocument() const {
    dom::Document document = dom::NewDomDocument();
    document.EditSettings().schemaService = &service;
    return document;
  }
};

/// What parsing `instance` gives when "x-schema:s" is a schema of these declarations.
[[nodiscard]] dom::ParseError ParseAgainst(std::string_view declarations,
                                           std::string_view instance);

/// The number of an error as it is published, "0" for none.
[[nodiscard]] std::string Hex(std::int32_t code);

}  // namespace kx::xdr
