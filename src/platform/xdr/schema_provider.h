// Who gives a parse the schema that a namespace names: from files, from http servers, from a cache.
#pragma once

#include "platform/xdr/schema_group.h"

#include <string_view>

namespace kx::xdr {

/// Loads schemas. May be used by several threads at a time.
class SchemaProvider {
 public:
  SchemaProvider() = default;
  SchemaProvider(const SchemaProvider&) = delete;
  SchemaProvider& operator=(const SchemaProvider&) = delete;
  virtual ~SchemaProvider() = default;

  /// The schema that the namespace `uri` ("x-schema:" and a location) names in a document at
  /// `base`, with all that it leads to.
  [[nodiscard]] virtual LoadedGroup Load(std::string_view uri, std::string_view base) const = 0;
};

/// Compiles each time anew what a source reads.
class PlainProvider final : public SchemaProvider {
 public:
  explicit PlainProvider(const SchemaSource& source, SchemaLimits limits = {}) noexcept
      : source_(source), limits_(limits) {}
  [[nodiscard]] LoadedGroup Load(std::string_view uri, std::string_view base) const override;

 private:
  const SchemaSource& source_;
  SchemaLimits limits_;
};

}  // namespace kx::xdr
