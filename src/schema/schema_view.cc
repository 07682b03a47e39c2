// kx::Schema: a schema as tools show it, read from its document.
#include "kxmessage/error_codes.h"
#include "kxmessage/schema.h"

#include "core/environment.h"
#include "core/handle_access.h"
#include "core/load_error.h"
#include "platform/dom/node_list.h"
#include "platform/runtime/counted.h"
#include "platform/runtime/strings.h"
#include "schema/declarations.h"
#include "schema/element_rules.h"
#include "schema/element_type_index.h"
#include "schema/node_property.h"
#include "schema/schema_loader.h"

#include <utility>

namespace kx {

namespace schema {

namespace {

class SchemaImpl final : public runtime::AtomicObject, private runtime::LiveObject {
 public:
  SchemaImpl(std::string location, dom::Document document, ElementTypeIndex elementTypes)
      : location_(std::move(location)),
        document_(std::move(document)),
        elementTypes_(std::move(elementTypes)) {}

  [[nodiscard]] const std::string& Location() const noexcept { return location_; }
  [[nodiscard]] const dom::Document& Document() const noexcept { return document_; }
  [[nodiscard]] const ElementTypeIndex& ElementTypes() const noexcept { return elementTypes_; }

 private:
  std::string location_;
  dom::Document document_;
  ElementTypeIndex elementTypes_;
};

// The attribute of the declaration, else of its type.
std::string Inherited(const dom::Node& declaration, const dom::Node& type, std::string_view name) {
  std::string text = AttributeText(declaration, name);
  return text.empty() && type ? AttributeText(type, name) : text;
}

SchemaAttribute ReadAttribute(const dom::Node& declaration, const dom::Node& elementType,
                              const dom::Document& document) {
  SchemaAttribute attribute;
  attribute.name = AttributeText(declaration, "type");
  const dom::Node type = FindAttributeType(attribute.name, document, elementType);
  attribute.required = Inherited(declaration, type, "required") == "yes";
  attribute.defaultText = Inherited(declaration, type, "default");
  if (type) {
    attribute.dataType = AttributeText(type, "dt:type");
    attribute.values = runtime::Split(AttributeText(type, "dt:values"));
  }
  return attribute;
}

std::optional<double> Length(const dom::Node& elementType, std::string_view name) {
  const double length = LengthBound(elementType, name);
  return length < 0 ? std::nullopt : std::optional<double>(length);
}

void ReadOccurrences(const dom::Node& declaration, std::string& least, std::string& most) {
  least = AttributeText(declaration, "minOccurs", "1");
  most = AttributeText(declaration, "maxOccurs", "1");
}

// The children of an element type, those of its groups, at any depth, in their places.
class ChildReader {
 public:
  explicit ChildReader(SchemaElement& element) noexcept : element_(element) {}

  void Read(const dom::Node& elementType) {
    const dom::Cursor top = elementType.At();
    for (dom::Cursor at = top.FirstChild(); at; at = Next(at, top)) {
      if (at.QualifiedName() == "element") {
        AddChild(dom::Node(at));
      } else if (IsGroup(at)) {
        Enter(at);
      }
    }
  }

 private:
  // Down into groups only; a group's number counts until its end.
  dom::Cursor Next(dom::Cursor at, const dom::Cursor& top) {
    if (IsGroup(at) && at.FirstChild()) return at.FirstChild();
    for (;;) {
      if (IsGroup(at)) open_.pop_back();
      if (at.Next()) return at.Next();
      at = at.Parent();
      if (at == top) return {};
    }
  }

  static bool IsGroup(const dom::Cursor& at) { return at.QualifiedName() == "group"; }

  void Enter(const dom::Cursor& at) {
    const dom::Node group(at);
    SchemaGroup& added = element_.groups.emplace_back();
    added.order = AttributeText(group, "order", element_.order);
    ReadOccurrences(group, added.minOccurs, added.maxOccurs);
    open_.push_back(static_cast<std::int32_t>(element_.groups.size()));
  }

  void AddChild(const dom::Node& declaration) {
    SchemaChild& child = element_.children.emplace_back();
    child.name = AttributeText(declaration, "type");
    ReadOccurrences(declaration, child.minOccurs, child.maxOccurs);
    child.group = open_.empty() ? 0 : open_.back();
  }

  SchemaElement& element_;
  std::vector<std::int32_t> open_;  // the numbers of the groups around
};

SchemaElement ReadElement(const dom::Node& elementType, const dom::Document& document) {
  SchemaElement element;
  element.name = AttributeText(elementType, "name");
  element.description = DescriptionOf(elementType);
  element.dataType = SchemaDataType(elementType, {});
  element.content =
      AttributeText(elementType, "content", element.dataType.empty() ? "mixed" : "textOnly");
  element.order = AttributeText(elementType, "order", element.content == "mixed" ? "many" : "seq");
  element.open = AttributeText(elementType, "model", "open") != "closed";
  element.topLevel = elementType.ParentNode() == document.DocumentElement();
  element.minLength = Length(elementType, "dt:minLength");
  element.maxLength = Length(elementType, "dt:maxLength");
  const dom::NodeList attributes = AttributeDeclarations(elementType);
  for (std::int32_t i = 0; i < attributes.Length(); ++i) {
    element.attributes.push_back(ReadAttribute(attributes.Item(i), elementType, document));
  }
  ChildReader(element).Read(elementType);
  return element;
}

runtime::Counted<SchemaImpl> LoadView(std::string_view location,
                                      const core::Environment& environment) {
  const std::string complete = environment.Locations().ResolveSchemaLocation(location);
  const SchemaLoader loader(environment.CallersSchemas(), xdr::SchemaCache::OfProcess(),
                            environment.SchemaLimits());
  const LoadedSchema loaded = loader.Load(complete);
  if (loaded.error) core::RaiseLoadError(kxMsgErrorLoadingSchema, loaded.error);
  ElementTypeIndex elementTypes;
  IndexElementTypes(loaded.document, elementTypes);
  if (loaded.compiled.error) {
    core::RaiseLoadError(kxMsgErrorLoadingSchema, loaded.compiled.error);
  }
  return runtime::MakeCounted<SchemaImpl>(complete, loaded.document, std::move(elementTypes));
}

const SchemaImpl& Of(const Schema& schema) { return HandleAccess::Of<SchemaImpl>(schema); }

}  // namespace

}  // namespace schema

Schema Schema::Load(std::string_view SchemaURL) {
  return HandleAccess::Wrap<Schema>(schema::LoadView(SchemaURL, *core::Environment::OfProcess()));
}

Schema Schema::Load(std::string_view SchemaURL, const Options& options) {
  return HandleAccess::Wrap<Schema>(schema::LoadView(SchemaURL, *core::Environment::Make(options)));
}

std::string Schema::Location() const { return schema::Of(*this).Location(); }

std::string Schema::Description() const {
  return schema::DescriptionOf(schema::Of(*this).Document().DocumentElement());
}

std::vector<SchemaElement> Schema::Elements() const {
  const schema::SchemaImpl& schema = schema::Of(*this);
  std::vector<SchemaElement> elements;
  elements.reserve(static_cast<std::size_t>(schema.ElementTypes().Count()));
  for (std::int32_t i = 1; i <= schema.ElementTypes().Count(); ++i) {
    elements.push_back(schema::ReadElement(schema.ElementTypes().At(i), schema.Document()));
  }
  return elements;
}

std::optional<SchemaElement> Schema::FindElement(std::string_view name) const {
  const schema::SchemaImpl& schema = schema::Of(*this);
  const dom::Node found = schema.ElementTypes().GetElementType(name);
  if (!found || schema::AttributeText(found, "name") != name) return std::nullopt;
  return schema::ReadElement(found, schema.Document());
}

}  // namespace kx
