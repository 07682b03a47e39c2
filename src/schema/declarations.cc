// See declarations.h.
#include "schema/declarations.h"

#include "core/queries.h"
#include "platform/dom/xml_names.h"
#include "schema/node_property.h"
#include "schema/schema_index.h"

#include <string>

namespace kx::schema {

namespace {

using dom::Node;
using patterns::Pattern;

/// A question as a pattern: what stands before the quoted name, and what behind it.
struct Question {
  DeclarationKind kind;
  std::string_view before;
  std::string_view after;
};
constexpr Question kElement{DeclarationKind::kElement, "element[@type=", "]"};
constexpr Question kOptionalElement{DeclarationKind::kOptionalElement,
                                    "element[@type=", " && (@minOccurs='0' || @maxOccurs='*')]"};
constexpr Question kAttribute{DeclarationKind::kAttribute, "attribute[@type=", "]"};
constexpr Question kAttributeType{DeclarationKind::kAttributeType, "AttributeType[@name=", "]"};
constexpr Question kGroup{DeclarationKind::kGroup, "group[element[@type=", "]]"};

// A name as XML has it is a literal between either quotes, so the index knows the answer.
Node Find(const Node& in, const Question& question, std::string_view name,
          Quotes quotes = Quotes::kSingle) {
  if (in && in.Data().Frozen() && dom::IsName(name)) {
    dom::DocumentData& data = in.Data();
    return {&data, SchemaIndex::Of(data).FindDeclaration(in.At().Id(), question.kind, name)};
  }
  const char quote = quotes == Quotes::kSingle ? '\'' : '"';
  std::string pattern(question.before);
  pattern += quote;
  pattern += name;
  pattern += quote;
  pattern += question.after;
  return core::SelectSingleNode(in, pattern);
}

}  // namespace

dom::NodeList ElementDeclarations(const Node& declarationNode) {
  static const Pattern pattern = patterns::Compile("element");
  return core::SelectNodes(declarationNode, pattern);
}

dom::NodeList AttributeDeclarations(const Node& elementTypeNode) {
  static const Pattern pattern = patterns::Compile("attribute");
  return core::SelectNodes(elementTypeNode, pattern);
}

dom::NodeList Groups(const Node& elementTypeNode) {
  static const Pattern pattern = patterns::Compile("group");
  return core::SelectNodes(elementTypeNode, pattern);
}

Node FindElementDeclaration(const Node& declarationNode, std::string_view name, Quotes quotes) {
  return Find(declarationNode, kElement, name, quotes);
}

Node FindOptionalDeclaration(const Node& elementTypeNode, std::string_view name) {
  return Find(elementTypeNode, kOptionalElement, name);
}

Node FindAttributeDeclaration(const Node& elementTypeNode, std::string_view name, Quotes quotes) {
  return Find(elementTypeNode, kAttribute, name, quotes);
}

Node FindGroupOf(const Node& elementTypeNode, std::string_view name) {
  return Find(elementTypeNode, kGroup, name);
}

Node FindAttributeType(std::string_view name, const dom::Document& schemaDocument,
                       const Node& elementTypeNode) {
  if (elementTypeNode) {
    Node local = Find(elementTypeNode, kAttributeType, name);
    if (local) return local;
  }
  return Find(schemaDocument.DocumentElement(), kAttributeType, name);
}

bool IsAttributeFixed(const Node& attributeDeclaration, const Node& attributeType) {
  const auto read = [&](std::string_view name) {
    std::string own = AttributeText(attributeDeclaration, name);
    return own.empty() ? AttributeText(attributeType, name) : own;
  };
  return read("required") == "yes" || !read("default").empty();
}

}  // namespace kx::schema
