// From a schema's document to its compiled form. References to other schemas need those compiled
// so far that their declarations are known, so a group of schemas is compiled in two steps: Declare
// for each, then Resolve for each.
#pragma once

#include "platform/xdr/schema.h"
#include "platform/xdr/schema_reader.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace kx::xdr {

class SchemaCompiler {
 public:
  /// `root` is the Schema element; `document` is kept by the schema, and is what `definition`
  /// shows: an empty handle for a schema that stands inside another document.
  SchemaCompiler(const dom::Cursor& root, dom::Document document, std::string url);

  /// The name of the schema itself.
  [[nodiscard]] std::string_view Name() const { return raw_.name; }
  /// The mistake found so far.
  [[nodiscard]] const std::optional<SchemaMistake>& Mistake() const { return raw_.mistake; }
  /// The schema; complete after Resolve.
  [[nodiscard]] const runtime::Counted<Schema>& Result() const { return schema_; }

  /// Resolves all references, those to other schemas by `find`, which gives null for a namespace
  /// without schema.
  using FindOther = std::function<const Schema*(std::string_view uri)>;
  void Resolve(const FindOther& find);

 private:
  void Declare();
  void ResolveElement(const RawElementType& raw, ElementType& type);
  void BuildModel(const RawElementType& raw, ElementType& type);
  void ResolveAttributes(const RawElementType& raw, ElementType& type);
  [[nodiscard]] Symbol ElementSymbol(const RawReference& reference);
  [[nodiscard]] const AttributeType* FindAttributeType(const RawAttribute& attribute,
                                                       const NameIndex& locals,
                                                       const RawElementType& raw,
                                                       AttributeUse& use);
  [[nodiscard]] const Schema* OtherSchema(const RawReference& reference, std::string& uri);
  void Report(dom::NodeId node, XdrCode code, std::string argument);

  RawSchema raw_;
  runtime::Counted<Schema> schema_;
  const FindOther* find_ = nullptr;
};

}  // namespace kx::xdr
