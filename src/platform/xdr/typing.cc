// See typing.h; Validate is in validate.cc.
#include "platform/xdr/typing.h"

#include "platform/datatypes/lexical.h"
#include "platform/datatypes/typed_value.h"
#include "platform/dom/document_impl.h"
#include "platform/dom/dom_error.h"
#include "platform/xdr/schema_collection.h"
#include "platform/xdr/schema_names.h"
#include "platform/xdr/schema_set.h"

#include <string>
#include <unordered_set>
#include <utility>

namespace kx::xdr {

namespace {

using datatypes::DataType;
using dom::Cursor;
using dom::NodeType;

struct Served {
  SharedSchema schema;
  bool isInline = false;
};

// The document's collection first, then what its parse loaded.
Served FindServed(const dom::DocumentData& data, std::string_view uri) {
  if (const dom::DocumentImpl* owner = data.Owner(); owner != nullptr) {
    const auto* const collection =
        static_cast<const SchemaCollection*>(owner->settings.schemas.Get());
    if (collection != nullptr) {
      SharedSchema schema = collection->Find(uri);
      if (schema) return {std::move(schema), false};
    }
  }
  const SchemaSet* const set = SchemaSet::Of(data);
  const std::uint32_t place = set != nullptr ? set->Find(uri) : SchemaSet::kNone;
  if (place == SchemaSet::kNone) return {};
  return {set->At(place).schema, set->At(place).isInline};
}

Binding BindElement(const Cursor& element) {
  Served served = FindServed(element.Data(), element.NamespaceUri());
  if (!served.schema) return {};
  const ElementType* type = served.schema->FindElement(element.LocalName());
  if (type == nullptr) return {};
  return {std::move(served.schema), type, dom::kNoNode, type->rules.Get(), served.isInline};
}

// A global AttributeType of the schema that serves `uri`.
Binding BindGlobal(const dom::DocumentData& data, std::string_view uri, std::string_view name) {
  Served served = FindServed(data, uri);
  if (!served.schema) return {};
  const AttributeType* type = served.schema->FindAttributeType(name);
  if (type == nullptr) return {};
  return {std::move(served.schema), nullptr, type->node, type->rules.Get(), served.isInline};
}

bool IsDeclarationOfNamespace(const Cursor& attribute) {
  return (attribute.Data().Record(attribute.Id()).flags & dom::kNamespaceDeclaration) != 0;
}

// What the element type of `owner` says of an attribute; null when it does not name it.
const AttributeUse* FindUse(const Binding& owner, const dom::NameTable& names, dom::NameId name) {
  const std::string_view local = names.LocalText(name);
  const Symbol symbol =
      names.PrefixText(name).empty()
          ? owner.schema->AttributeSymbol(local)
          : owner.schema->ForeignAttributeSymbol(names.UriText(names.UriOf(name)), local);
  std::size_t hint = 0;
  return symbol == kNoSymbol ? nullptr : owner.element->FindAttribute(symbol, hint);
}

Binding BindAttribute(const Cursor& attribute) {
  const Cursor element = attribute.Parent();
  if (!element || !element.IsElement() || IsDeclarationOfNamespace(attribute)) return {};
  Binding owner = BindElement(element);
  if (!owner) return {};
  const bool plain = attribute.Prefix().empty();
  const AttributeUse* const use = FindUse(owner, attribute.Data().Names(), attribute.Name());
  const bool global = use != nullptr ? !plain : !plain && owner.element->TakesExtras();
  if (global) {
    return BindGlobal(attribute.Data(), attribute.NamespaceUri(), attribute.LocalName());
  }
  if (use == nullptr) return {};
  return {std::move(owner.schema), nullptr, use->node, use->rules.Get(), owner.isInline};
}

// The type that dt:dt gives an element.
DataType InstanceType(const Cursor& element) {
  if (IsSchemaNamespace(element.NamespaceUri())) return DataType::kNone;
  for (Cursor at = element.FirstAttribute(); at; at = at.Next()) {
    if (at.Prefix().empty() || at.LocalName() != "dt") continue;
    if (!IsDataTypeNamespace(at.NamespaceUri())) continue;
    return datatypes::FindDataType(at.TextContent()).value_or(DataType::kNone);
  }
  return DataType::kNone;
}

DataType DeclaredType(const Binding& binding) {
  return binding && binding.rules != nullptr ? binding.rules->type : DataType::kNone;
}

enum class ValueKind : unsigned char { kTyped, kData, kNone };

ValueKind KindOf(NodeType type) {
  switch (type) {
    case NodeType::kElement:
    case NodeType::kAttribute:
      return ValueKind::kTyped;
    case NodeType::kText:
    case NodeType::kCData:
    case NodeType::kComment:
    case NodeType::kProcessingInstruction:
      return ValueKind::kData;
    default:
      return ValueKind::kNone;
  }
}

// The text of an element or attribute as a value of its type.
std::optional<Variant> ReadValue(const Cursor& node, DataType type, const std::string& text) {
  const bool rich = datatypes::IsRichType(type);
  const bool empty = rich ? datatypes::TrimSpace(text).empty() : text.empty();
  if (!empty) return datatypes::ReadTyped(type, text);
  if (node.IsElement() || rich) return Variant::Null();
  return Variant(text);
}

}  // namespace

Binding FindBinding(const Cursor& node) {
  if (node.Type() == NodeType::kElement) return BindElement(node);
  if (node.Type() == NodeType::kAttribute) return BindAttribute(node);
  return {};
}

dom::Node Definition(const dom::Node& node) {
  const Binding binding = FindBinding(node.At());
  if (!binding || binding.isInline) return {};
  const dom::NodeId id = binding.element != nullptr ? binding.element->node : binding.attributeNode;
  return {&binding.schema->Document().Data(), id};
}

DataType TypeOf(const Cursor& node) {
  if (node.IsElement()) {
    const DataType given = InstanceType(node);
    if (given != DataType::kNone) return given;
  }
  return DeclaredType(FindBinding(node));
}

std::optional<std::string> DefaultOf(const Cursor& element, dom::NameId name) {
  const Binding owner = element.IsElement() ? BindElement(element) : Binding();
  if (!owner) return std::nullopt;
  const AttributeUse* const use = FindUse(owner, element.Data().Names(), name);
  if (use == nullptr || use->defaultText.empty()) return std::nullopt;
  return use->defaultText;
}

bool IsIdAttribute(const Cursor& attribute) {
  return attribute.Type() == NodeType::kAttribute &&
         DeclaredType(BindAttribute(attribute)) == DataType::kId;
}

std::optional<std::string_view> DataTypeNameOf(const dom::Node& node) {
  const Cursor at = node.At();
  DataType type = DataType::kNone;
  if (at.IsElement()) {
    type = InstanceType(at);
    if (type == DataType::kNone) {
      type = DeclaredType(BindElement(at));
      if (!datatypes::IsRichType(type)) type = DataType::kNone;
    }
  } else if (at.Type() == NodeType::kAttribute) {
    type = DeclaredType(BindAttribute(at));
    if (type == DataType::kString) type = DataType::kNone;
  }
  if (type == DataType::kNone) return std::nullopt;
  return datatypes::DataTypeName(type);
}

namespace {

/// What the prefixes in scope of an element tell.
struct PrefixesInScope {
  std::string dataTypes;                   ///< one that means that namespace; empty when none does
  std::unordered_set<std::string> others;  ///< those that have any meaning
};

PrefixesInScope FindPrefixes(const Cursor& element) {
  PrefixesInScope found;
  const dom::NameTable& names = element.Data().Names();
  // The innermost meaning counts.
  const auto note = [&found](std::string_view prefix, std::string_view uri) {
    const bool added = found.others.emplace(prefix).second;
    if (added && uri == kDataTypeNamespace && found.dataTypes.empty()) found.dataTypes = prefix;
  };
  for (Cursor at = element; at; at = at.Parent()) {
    if (!at.IsElement()) continue;
    for (Cursor a = at.FirstAttribute(); a; a = a.Next()) {
      if (a.Prefix().empty() || !IsDeclarationOfNamespace(a)) continue;
      note(a.LocalName(), a.HasWholeText() ? a.OwnText() : std::string_view(a.TextContent()));
    }
    // What was created with a namespace declares its prefix where it is written.
    const std::string_view own = names.PrefixText(at.Name());
    if (!own.empty()) note(own, at.NamespaceUri());
    for (Cursor a = at.FirstAttribute(); a; a = a.Next()) {
      if (!a.Prefix().empty() && !IsDeclarationOfNamespace(a)) note(a.Prefix(), a.NamespaceUri());
    }
  }
  return found;
}

std::string PrefixForDataTypes(const Cursor& element) {
  const PrefixesInScope scope = FindPrefixes(element);
  if (!scope.dataTypes.empty()) return scope.dataTypes;
  std::string prefix = "dt";
  for (int number = 0; scope.others.count(prefix) != 0; ++number) {
    prefix = "dt" + std::to_string(number);
  }
  return prefix;
}

dom::Node FindTypeAttribute(const dom::Node& element) {
  for (Cursor at = element.At().FirstAttribute(); at; at = at.Next()) {
    if (!at.Prefix().empty() && at.LocalName() == "dt" && IsDataTypeNamespace(at.NamespaceUri())) {
      return dom::Node(at);
    }
  }
  return {};
}

}  // namespace

void SetDataType(const dom::Node& node, std::string_view name) {
  if (name.data() == nullptr) dom::RaiseDomArgument();
  if (node.Type() != NodeType::kElement) {
    dom::RaiseDomFailure(dom::DomCode::kBadNodeType, {dom::NodeTypeCapitals(node.Type())});
  }
  if (!datatypes::FindDataType(name)) {
    dom::RaiseDomFailure(dom::DomCode::kDataTypeNotSupported, {name});
  }
  const dom::Node known = FindTypeAttribute(node);
  if (known) return known.SetNodeValue(name);
  const std::string prefix = PrefixForDataTypes(node.At());
  const dom::Node attribute =
      node.OwnerDocument().CreateNode(NodeType::kAttribute, prefix + ":dt", kDataTypeNamespace);
  attribute.SetNodeValue(name);
  node.SetAttributeNode(attribute);
}

std::optional<Variant> FindTypedValue(const Cursor& node) {
  switch (KindOf(node.Type())) {
    case ValueKind::kNone:
      return Variant::Null();
    case ValueKind::kData:
      return Variant(node.OwnText());
    default:
      break;
  }
  const DataType type = TypeOf(node);
  const std::string text = node.TextContent();
  if (type == DataType::kNone) return Variant(text);
  return ReadValue(node, type, text);
}

Variant TypedValue(const dom::Node& node) {
  const Cursor at = node.At();
  const bool typed = KindOf(at.Type()) == ValueKind::kTyped;
  const DataType type = typed ? TypeOf(at) : DataType::kNone;
  if (typed && type == DataType::kNone) return node.Text();
  if (!typed) return *FindTypedValue(at);
  const std::string text = at.TextContent();
  auto value = ReadValue(at, type, text);
  if (!value) {
    dom::RaiseDomFailure(dom::DomCode::kDataTypeParse, {text, datatypes::DataTypeName(type)});
  }
  return std::move(*value);
}

void SetTypedValue(const dom::Node& node, const Variant& value) {
  const ValueKind kind = KindOf(node.Type());
  if (kind == ValueKind::kNone) {
    dom::RaiseDomFailure(dom::DomCode::kBadNodeType, {dom::NodeTypeCapitals(node.Type())});
  }
  const DataType type = kind == ValueKind::kTyped ? TypeOf(node.At()) : DataType::kNone;
  const auto text = datatypes::WriteTyped(type, value);
  if (!text) {
    const DataType named = type == DataType::kNone ? DataType::kString : type;
    dom::RaiseDomFailure(dom::DomCode::kDataTypeParse,
                         {datatypes::QuotedValue(value), datatypes::DataTypeName(named)});
  }
  if (kind == ValueKind::kTyped) return node.SetText(*text);
  node.SetNodeValue(*text);
}

}  // namespace kx::xdr
