// See schema_names.h.
#include "platform/xdr/schema_names.h"

#include "platform/text/compare.h"
#include "platform/text/unicode.h"

namespace kx::xdr {

namespace {

constexpr std::string_view kOldSchemaId = "BDC6E3F0-6DA3-11D1-A2A3-00AA00C14882";
constexpr std::string_view kOldDataTypeId = "C2F41010-65B3-11D1-A29F-00AA00C14882";

bool StartsWith(std::string_view text, std::string_view start) noexcept {
  return text.substr(0, start.size()) == start;
}

}  // namespace

bool IsSchemaNamespace(std::string_view uri) noexcept {
  if (uri == kSchemaNamespace) return true;
  return StartsWith(uri, "uuid:") && text::EqualsAsciiCaseless(uri.substr(5), kOldSchemaId);
}

bool IsDataTypeNamespace(std::string_view uri) noexcept {
  if (uri == kDataTypeNamespace) return true;
  if (StartsWith(uri, "uuid:")) {
    return text::EqualsAsciiCaseless(uri.substr(5), kOldDataTypeId);
  }
  return StartsWith(uri, "urn:uuid:") && uri.back() == '/' &&
         text::EqualsAsciiCaseless(uri.substr(9, uri.size() - 10), kOldDataTypeId);
}

bool NamesSchema(std::string_view uri) noexcept {
  return StartsWith(uri, kXSchema) && uri.size() > kXSchema.size();
}

bool NamesInlineSchema(std::string_view uri) noexcept {
  return NamesSchema(uri) && uri[kXSchema.size()] == '#';
}

bool IsSameNamespace(std::string_view a, std::string_view b) noexcept {
  if (a == b) return true;
  return NamesSchema(a) && NamesSchema(b) && text::EqualsCaseless(a, b);
}

std::size_t HashNamespace(std::string_view uri) noexcept {
  return NamesSchema(uri) ? text::HashCaseless(uri) : text::HashExact(uri);
}

}  // namespace kx::xdr
