// Schemas that a caller names: read, compiled for the documents that will be bound to them, and
// taken from the cache of the process while nothing has changed.
//
// A schema is used in two ways. Its document is read for the rules of messages, and needs to be no
// more than well-formed. Its compiled form binds and validates the message, and is asked for only
// when the message is parsed: a mistake in the schema is reported there.
#pragma once

#include "platform/dom/document.h"
#include "platform/dom/parse_error.h"
#include "platform/xdr/schema_cache.h"
#include "platform/xdr/schema_group.h"
#include "platform/xdr/schema_provider.h"

#include <string>
#include <string_view>

namespace kx::schema {

/// What loading a schema gave.
struct LoadedSchema {
  dom::Document document;     ///< frozen; nothing when `error` is one
  xdr::LoadedGroup compiled;  ///< what binds documents to it, or why nothing can be bound
  dom::ParseError error;      ///< why there is no document
};

/// Loads schemas. Safe for threads.
class SchemaLoader {
 public:
  /// `source` reads what the caller names, and what schemas refer to; both must outlive this.
  SchemaLoader(const xdr::SchemaSource& source, xdr::SchemaCache& cache,
               xdr::SchemaLimits limits = {}) noexcept
      : source_(source), limits_(limits), provider_(source, cache, limits) {}

  /// Loads the schema at a complete location.
  [[nodiscard]] LoadedSchema Load(std::string_view location) const;
  /// Takes `text`, whatever encoding it declares, as the schema of the namespace of `location`.
  [[nodiscard]] LoadedSchema LoadText(std::string_view text, std::string_view location) const;

 private:
  template <class Parse>
  [[nodiscard]] LoadedSchema LoadPlain(const Parse& parse) const;

  const xdr::SchemaSource& source_;
  xdr::SchemaLimits limits_;
  xdr::CachingProvider provider_;
};

/// Gives one parse a schema that is at hand already, without look-up, fetch and access check, and
/// every other from another provider.
class KnownSchemaProvider final : public xdr::SchemaProvider {
 public:
  /// `uri`: the namespace that `schema` is to serve, whatever location it was loaded under.
  /// `others` must outlive this.
  KnownSchemaProvider(std::string uri, xdr::LoadedGroup schema, const xdr::SchemaProvider& others);
  [[nodiscard]] xdr::LoadedGroup Load(std::string_view uri, std::string_view base) const override;

 private:
  std::string uri_;
  xdr::LoadedGroup schema_;
  const xdr::SchemaProvider& others_;
};

}  // namespace kx::schema
