// A caller's collection of schemas by namespace. A document that holds one takes from it, before
// looking anywhere else, the schema of any namespace that it knows, the empty one included.
#pragma once

#include "platform/dom/schema_binder.h"
#include "platform/xdr/schema_provider.h"
#include "platform/xdr/validator.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kx::xdr {

class SchemaCollection final : public dom::SchemaHoldings, public ServedNamespaces {
 public:
  /// `source` reads the locations of Add and what schemas refer to; it must outlive this.
  explicit SchemaCollection(const SchemaSource& source, SchemaLimits limits = {}) noexcept
      : source_(source), limits_(limits) {}

  /// Loads the schema at `location` for the namespace `uri`, in the place of an entry of the same
  /// namespace. White space in `uri` is normalised as in an attribute value.
  /// Raises: E_FAIL with the reason of the parse, and no change, when it is not a good schema.
  void Add(std::string_view uri, std::string_view location);
  /// The same for a copy of a document. Raises: E_INVALIDARG for nothing.
  void Add(std::string_view uri, const dom::Document& document);
  /// Shares a schema that is compiled already.
  void Add(std::string_view uri, SharedSchema schema);
  /// Takes an entry out; does nothing when there is none.
  void Remove(std::string_view uri);
  /// A new read-only document each time; nothing for an unknown namespace.
  [[nodiscard]] dom::Document Get(std::string_view uri) const;
  [[nodiscard]] std::int32_t Length() const noexcept {
    return static_cast<std::int32_t>(entries_.size());
  }
  /// The namespaces in the order added, from 0. Raises: E_FAIL outside 0 to Length() - 1.
  [[nodiscard]] const std::string& NamespaceUri(std::int32_t index) const;
  /// Copies every entry of `other`, replacing those of equal namespaces.
  void AddCollection(const SchemaCollection& other);

  [[nodiscard]] SharedSchema Find(std::string_view uri) const override;

 private:
  struct Entry {
    std::string uri;
    SharedSchema schema;
  };
  void Put(std::string uri, SharedSchema schema);
  void Put(std::string uri, LoadedGroup loaded);

  const SchemaSource& source_;
  SchemaLimits limits_;
  std::vector<Entry> entries_;
  std::unordered_map<std::string, std::size_t, NamespaceHash, NamespaceEqual> index_;
};

}  // namespace kx::xdr
