// See node_property.h.
#include "schema/node_property.h"

#include "kxmessage/variant.h"

#include "platform/runtime/error.h"
#include "platform/text/compare.h"
#include "platform/xdr/typing.h"

namespace kx::schema {

namespace {

using dom::Node;
using dom::NodeType;

Variant OrNull(std::optional<std::string> text) {
  return text ? Variant(std::move(*text)) : Variant::Null();
}

[[noreturn]] Variant RaiseNoSuchMember() { runtime::RaiseRuntimeError(runtime::kNoSuchMember); }

// A member that only one kind of nodes has.
template <class Read>
Variant OfKind(const Node& node, NodeType type, const Read& read) {
  if (node.Type() != type) RaiseNoSuchMember();
  return read();
}

/// A member of the DOM interfaces whose value may have a text form.
struct Property {
  std::string_view name;
  Variant (*read)(const Node& node);
};

constexpr Property kProperties[] = {
    {"text", [](const Node& node) { return Variant(node.Text()); }},
    {"baseName", [](const Node& node) { return OrNull(node.BaseName()); }},
    {"nodeName", [](const Node& node) { return Variant(node.NodeName()); }},
    {"nodeValue", [](const Node& node) { return OrNull(node.NodeValue()); }},
    {"nodeType", [](const Node& node) { return Variant(static_cast<std::int32_t>(node.Type())); }},
    {"nodeTypeString", [](const Node& node) { return Variant(node.TypeName()); }},
    {"namespaceURI", [](const Node& node) { return OrNull(node.NamespaceUri()); }},
    {"prefix", [](const Node& node) { return OrNull(node.Prefix()); }},
    {"xml", [](const Node& node) { return Variant(node.Xml()); }},
    {"specified", [](const Node& node) { return Variant(node.Specified()); }},
    {"nodeTypedValue", [](const Node& node) { return xdr::TypedValue(node); }},
    {"dataType",
     [](const Node& node) {
       const auto name = xdr::DataTypeNameOf(node);
       return name ? Variant(*name) : Variant::Null();
     }},
    {"name",
     [](const Node& node) {
       return OfKind(node, NodeType::kAttribute, [&] { return Variant(node.NodeName()); });
     }},
    {"value",
     [](const Node& node) {
       return OfKind(node, NodeType::kAttribute, [&] { return Variant(node.Text()); });
     }},
    {"tagName",
     [](const Node& node) {
       return OfKind(node, NodeType::kElement, [&] { return Variant(node.NodeName()); });
     }},
};

Variant ReadProperty(const Node& node, std::string_view name) {
  for (const Property& property : kProperties) {
    if (text::EqualsCaseless(property.name, name)) return property.read(node);
  }
  return RaiseNoSuchMember();
}

}  // namespace

std::string NodeProperty(const Node& node, std::string_view defaultText,
                         std::string_view propertyName) {
  std::string value;
  if (node) {
    try {
      value = ReadProperty(node, propertyName.empty() ? "text" : propertyName).ToText();
    } catch (const Error&) {  // what cannot be read has the default
    }
  }
  return value.empty() ? std::string(defaultText) : value;
}

std::string AttributeText(const Node& node, std::string_view name, std::string_view defaultText) {
  const dom::Cursor attribute = node.At().FindAttribute(name);
  std::string value = attribute ? attribute.TextContent() : std::string();
  if (value.empty()) value = defaultText;
  return value;
}

}  // namespace kx::schema
