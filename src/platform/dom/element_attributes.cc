// The attributes of an element through the element itself. See node.h; the collection is in
// attribute_map.h.
#include "platform/dom/attribute_map.h"
#include "platform/dom/document_impl.h"
#include "platform/dom/dom_error.h"
#include "platform/dom/node.h"
#include "platform/dom/node_rules.h"

namespace kx::dom {

namespace {

void CheckIsElement(const Cursor& at) {
  if (!at.IsElement()) {
    RaiseDomFailure(DomCode::kAttributesNotAllowed, {NodeTypeCapitals(at.Type())});
  }
}

// The namespace of an attribute that is made by its name alone: what its prefix means here.
NameId NameInScope(DocumentData& data, const Cursor& element, std::string_view name) {
  const std::size_t colon = name.find(':');
  const bool bound = colon != std::string_view::npos && !IsDeclarationName(name);
  const UriId uri = bound ? FindNamespace(element, name.substr(0, colon)) : kNoUri;
  if (uri != kNoUri) return data.Names().InternName(name, uri);
  return BindName(data, NodeType::kAttribute, name, {});
}

void MarkDeclaration(DocumentData& data, NodeId attribute, std::string_view name) {
  if (IsDeclarationName(name)) data.Record(attribute).flags |= kNamespaceDeclaration;
}

}  // namespace

std::optional<std::string> Node::GetAttribute(std::string_view name) const {
  const Cursor at = At();
  CheckQualifiedName(name);
  const Cursor attribute = at.FindAttribute(name);
  if (!attribute) return std::nullopt;
  return attribute.TextContent();
}

Node Node::GetAttributeNode(std::string_view name) const {
  const Cursor at = At();
  CheckQualifiedName(name);
  return Node(at.FindAttribute(name));
}

void Node::SetAttribute(std::string_view name, std::string_view value) const {
  DocumentData& data = Editable();
  const Cursor element(&data, id_);
  CheckIsElement(element);
  CheckQualifiedName(name);
  if (const Cursor present = element.FindAttribute(name)) {
    Node(present).SetText(value);
    return;
  }
  CheckCharacters(value);
  CheckChangeable(element);
  std::string scratch;
  value = FoldLineEnds(value, scratch);
  if (IsDeclarationName(name)) CheckDeclaration(element, name, value);
  // The name may be a part of the names that the next line adds to.
  const std::string ownName(name);
  const NameId bound = NameInScope(data, element, ownName);
  const NodeId attribute = data.NewNode(NodeType::kAttribute, bound);
  MarkDeclaration(data, attribute, ownName);
  data.SetOwnText(attribute, value);
  data.AppendAttribute(id_, attribute);
}

void Node::SetAttributeFrom(std::string_view name, const Variant& value) const {
  SetAttribute(name, TextOfValue(value));
}

bool Node::RemoveAttribute(std::string_view name) const {
  Require();
  return static_cast<bool>(AttributeMap(*this).RemoveNamedItem(name));
}

Node Node::SetAttributeNode(const Node& attribute) const {
  if (!attribute) RaiseDomArgument();
  DocumentData& data = Editable();
  const Cursor element(&data, id_);
  CheckIsElement(element);
  DocumentData& source = attribute.Editable();
  const Cursor at = attribute.At();
  if (at.Type() != NodeType::kAttribute) {
    RaiseDomFailure(DomCode::kBadNodeType, {NodeTypeCapitals(at.Type())});
  }
  if (at.Parent()) RaiseDomFailure(DomCode::kAttributeInUse);
  CheckChangeable(element);
  Node replaced(element.FindAttribute(at.QualifiedName()));
  if (IsDeclarationName(at.QualifiedName())) {
    if (replaced) RaiseDomFailure(DomCode::kAccessDenied);
    CheckDeclaration(element, at.QualifiedName(), at.TextContent());
  }
  NodeId id = at.Id();
  if (&source != &data) id = data.AdoptSubtree(source, id);
  data.InsertAttribute(id_, id, replaced ? replaced.id_ : kNoNode);
  if (replaced) data.RemoveAttribute(replaced.id_);
  return replaced;
}

Node Node::RemoveAttributeNode(const Node& attribute) const {
  DocumentData& data = Editable();
  const Cursor element(&data, id_);
  CheckIsElement(element);
  const bool own =
      attribute && attribute.Type() == NodeType::kAttribute && attribute.At().Parent() == element;
  if (!own) RaiseDomArgument(DomCode::kNotItsAttribute);
  CheckChangeable(element);
  const NameId name = attribute.At().Name();
  data.RemoveAttribute(attribute.At().Id());
  SupplyDefault(data, id_, name);
  return attribute;
}

void SupplyDefault(DocumentData& data, NodeId element, NameId name) {
  const DocumentImpl* const owner = data.Owner();
  if (owner == nullptr || owner->settings.schemaService == nullptr) return;
  const auto value = owner->settings.schemaService->FindDefault(data, element, name);
  if (!value) return;
  const NodeId attribute = data.NewNode(NodeType::kAttribute, name);
  data.SetOwnText(attribute, *value);
  data.Record(attribute).flags |= kDefaulted;
  data.AppendAttribute(element, attribute);
}

}  // namespace kx::dom
