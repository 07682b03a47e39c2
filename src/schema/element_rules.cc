// See element_rules.h.
#include "schema/element_rules.h"

#include "core/envelope.h"
#include "platform/runtime/conversions.h"
#include "platform/xdr/typing.h"
#include "schema/declarations.h"
#include "schema/node_property.h"

namespace kx::schema {

namespace {

bool HasBaseName(const dom::Node& node, std::string_view name) {
  return node && node.At().LocalName() == name;
}

// The declaration of `element` in the type of the element that it stands in; nothing when there is
// none.
dom::Node FindOwnDeclaration(const dom::Node& element) {
  const dom::Node parent = element.ParentNode();
  if (!parent || HasBaseName(parent, core::kEnvelopeName)) return {};
  const dom::Node parentType = xdr::Definition(parent);
  if (!parentType) return {};
  return FindElementDeclaration(parentType, element.BaseName().value_or(std::string()));
}

std::int32_t Occurrences(const dom::Node& element, std::string_view attribute) {
  const dom::Node declaration = FindOwnDeclaration(element);
  if (!declaration) return 1;
  const std::string text = AttributeText(declaration, attribute, "1");
  if (attribute == "maxOccurs" && text == "*") return -1;
  // A number that no integer can hold is as good as none.
  const double number = runtime::Val(text);
  return runtime::FindRounded(number).value_or(number < 0
                                                   ? std::numeric_limits<std::int32_t>::min()
                                                   : std::numeric_limits<std::int32_t>::max());
}

}  // namespace

bool CanHaveChildren(const dom::Node& elementType) {
  const std::string content = AttributeText(elementType, "content", "textOnly");
  return content != "empty" && content != "textOnly";
}

bool CanHaveValue(const dom::Node& elementType) {
  const std::string content = AttributeText(elementType, "content", "empty");
  return content != "eltOnly" && content != "empty";
}

bool IsMixed(const dom::Node& elementType) {
  return AttributeText(elementType, "content") == "mixed";
}

bool IsClosedModel(const dom::Node& elementType) {
  return AttributeText(elementType, "model", "closed") == "closed";
}

double LengthBound(const dom::Node& elementType, std::string_view attribute) {
  return runtime::TextToNumber(AttributeText(elementType, attribute, "-1"));
}

std::string DescriptionOf(const dom::Node& elementType) {
  for (dom::Cursor at = elementType.At().FirstChildElement(); at; at = at.NextElement()) {
    if (at.QualifiedName() == "description") return dom::Node(at).Text();
  }
  return {};
}

std::string SchemaDataType(const dom::Node& elementType, std::string_view defaultText) {
  return AttributeText(elementType, "dt:type", defaultText);
}

std::int32_t MaxOccurrences(const dom::Node& element) { return Occurrences(element, "maxOccurs"); }
std::int32_t MinOccurrences(const dom::Node& element) { return Occurrences(element, "minOccurs"); }

}  // namespace kx::schema
