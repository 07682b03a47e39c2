// What schemas say about the nodes of a document: declaration, data type, typed value; and the
// validation of a whole document. Nothing of it is stored: it is looked up in the schemas that the
// node's document knows, those of its parse and those of its collection, by namespace and name.
#pragma once

#include "kxmessage/variant.h"

#include "platform/datatypes/data_type.h"
#include "platform/dom/cursor.h"
#include "platform/dom/document.h"
#include "platform/dom/node.h"
#include "platform/xdr/schema.h"

#include <optional>
#include <string>
#include <string_view>

namespace kx::xdr {

/// What a node is declared as.
struct Binding {
  SharedSchema schema;  ///< holds the rest; null for a node that is not bound
  const ElementType* element = nullptr;
  dom::NodeId attributeNode = dom::kNoNode;  ///< the AttributeType in `schema`
  const ValueRules* rules = nullptr;         ///< null without data type
  bool isInline = false;

  explicit operator bool() const noexcept { return static_cast<bool>(schema); }
};

/// The declaration of an element or attribute; an empty binding for everything else.
[[nodiscard]] Binding FindBinding(const dom::Cursor& node);

/// The ElementType or AttributeType node of a bound node, in the schema's own read-only document;
/// nothing for unbound nodes, and for those whose schema stands in their own document.
[[nodiscard]] dom::Node Definition(const dom::Node& node);

/// The type by which the node's text is read: dt:dt of the element first, then its declaration.
[[nodiscard]] datatypes::DataType TypeOf(const dom::Cursor& node);

/// True when a schema declares the attribute to be an ID.
[[nodiscard]] bool IsIdAttribute(const dom::Cursor& attribute);

/// The default that the declaration of `element` gives its attribute of that name.
[[nodiscard]] std::optional<std::string> DefaultOf(const dom::Cursor& element, dom::NameId name);

/// The canonical name of the node's data type; nothing when it has none, and for elements of type
/// string and of the name types.
[[nodiscard]] std::optional<std::string_view> DataTypeNameOf(const dom::Node& node);
/// Types an element by dt:dt. The content is not looked at.
/// Raises: E_INVALIDARG for null; E_FAIL for an unknown name, and for every other kind of node.
void SetDataType(const dom::Node& node, std::string_view name);

/// The typed value. Null for documents, document types and fragments, and for empty typed text.
/// Raises: E_FAIL when the text is none of the type.
[[nodiscard]] Variant TypedValue(const dom::Node& node);
/// The same while reading without handles, for engines; nothing where TypedValue raises.
[[nodiscard]] std::optional<Variant> FindTypedValue(const dom::Cursor& node);
/// Stores a value as text; an element's children are replaced.
/// Raises: E_FAIL, and no change, for a value that the type does not take and for kinds of nodes
/// that have no value.
void SetTypedValue(const dom::Node& node, const Variant& value);

/// Judges the document as it stands. The error has code 0 when it is valid, and never a place.
[[nodiscard]] dom::ParseError Validate(const dom::Document& document);
/// The same without the rule that the document element must have a schema: what has one is judged.
[[nodiscard]] dom::ParseError ValidateBound(const dom::DocumentData& data);
/// The same for a content that belongs to no document object.
[[nodiscard]] dom::ParseError Validate(const dom::DocumentData& data);

}  // namespace kx::xdr
