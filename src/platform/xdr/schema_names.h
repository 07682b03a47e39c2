// The namespaces that matter here, and the rule by which the schema of a namespace is found: names
// that begin with "x-schema:" ignore case, all others are exact.
#pragma once

#include <cstddef>
#include <string_view>

namespace kx::xdr {

inline constexpr std::string_view kSchemaNamespace = "urn:schemas-microsoft-com:xml-data";
inline constexpr std::string_view kDataTypeNamespace = "urn:schemas-microsoft-com:datatypes";
inline constexpr std::string_view kXSchema = "x-schema:";

/// True for the schema namespace and its older alias.
[[nodiscard]] bool IsSchemaNamespace(std::string_view uri) noexcept;
/// True for the data type namespace and its older aliases.
[[nodiscard]] bool IsDataTypeNamespace(std::string_view uri) noexcept;

/// True for a name that begins with "x-schema:", lower case, and has something behind it.
[[nodiscard]] bool NamesSchema(std::string_view uri) noexcept;
/// True for "x-schema:#name": the schema stands in the document itself.
[[nodiscard]] bool NamesInlineSchema(std::string_view uri) noexcept;

/// True when both lead to the same schema.
[[nodiscard]] bool IsSameNamespace(std::string_view a, std::string_view b) noexcept;
[[nodiscard]] std::size_t HashNamespace(std::string_view uri) noexcept;

/// For unordered containers with namespaces as keys, looked up by std::string_view.
struct NamespaceHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view uri) const noexcept { return HashNamespace(uri); }
};
struct NamespaceEqual {
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const noexcept {
    return IsSameNamespace(a, b);
  }
};

}  // namespace kx::xdr
