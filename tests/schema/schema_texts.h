// Schemas of tests, as plain documents and as what messages are bound to.
#pragma once

#include "kxmessage/error.h"

#include "platform/dom/document.h"
#include "platform/xdr/schema_group.h"
#include "schema/element_type_index.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace kx::schema {

/// The text of a schema with these declarations.
[[nodiscard]] std::string SchemaText(std::string_view declarations);
/// That text as a document.
[[nodiscard]] dom::Document SchemaDocument(std::string_view declarations);
[[nodiscard]] ElementTypeIndex IndexOf(const dom::Document& schemaDocument);

/// A failure: its number, as a run-time error below 65536 or as it is, and its description; nothing
/// when the call raises nothing.
struct Failure {
  std::int64_t number = 0;
  std::string description;
  std::string source;
};
template <class Call>
[[nodiscard]] Failure FailureOf(const Call& call) {
  try {
    call();
  } catch (const Error& error) {
    const auto bits = static_cast<std::uint32_t>(error.Number());
    const bool runtime = (bits >> 16U) == 0x800AU;
    return {runtime ? bits & 0xFFFFU : bits, error.Description(), error.Source()};
  }
  return {};
}

/// Schemas by their location, each one relative to nothing.
class MemorySource final : public xdr::SchemaSource {
 public:
  void Put(std::string location, std::string text) {
    texts_[std::move(location)] = std::move(text);
    ++stamp_;
  }
  void Drop(const std::string& location) { texts_.erase(location); }
  /// How many texts were read.
  [[nodiscard]] int Reads() const { return reads_; }
  [[nodiscard]] xdr::SchemaText Read(std::string_view location,
                                     std::string_view base) const override;
  [[nodiscard]] xdr::SchemaPlace Identify(std::string_view location,
                                          std::string_view base) const override;

 private:
  std::map<std::string, std::string, std::less<>> texts_;
  int stamp_ = 0;
  mutable int reads_ = 0;
};

}  // namespace kx::schema
