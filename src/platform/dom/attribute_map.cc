// See attribute_map.h.
#include "platform/dom/attribute_map.h"

#include "platform/dom/child_positions.h"
#include "platform/dom/dom_error.h"
#include "platform/dom/node_rules.h"
#include "platform/dom/xml_declaration.h"

namespace kx::dom {

AttributeMap::AttributeMap(const Node& owner) {
  const Cursor at = owner.At();
  if (at.IsElement() || IsXmlDeclaration(at)) owner_ = owner;
}

std::int32_t AttributeMap::Length() const {
  return static_cast<std::int32_t>(CountItems(owner_.Data(), AttributesOf(owner_.At().Id())));
}

Node AttributeMap::Item(std::int32_t index) const {
  DocumentData& data = owner_.Data();
  if (index < 0) return {};
  return {&data, FindItem(data, AttributesOf(owner_.At().Id()), static_cast<std::uint32_t>(index))};
}

Node AttributeMap::GetNamedItem(std::string_view name) const {
  const Cursor at = owner_.At();
  if (name.data() == nullptr) RaiseDomArgument();
  return Node(at.FindAttribute(name));
}

Cursor AttributeMap::FindQualified(std::string_view baseName, std::string_view uri) const {
  Cursor at = owner_.At();
  if (baseName.data() == nullptr) RaiseDomArgument();
  for (at = at.FirstAttribute(); at; at = at.Next()) {
    const bool isDefault = at.QualifiedName() == "xmlns";
    const std::string_view local = isDefault ? std::string_view("") : at.LocalName();
    if (local == baseName && at.NamespaceUri() == uri) break;
  }
  return at;
}

Node AttributeMap::GetQualifiedItem(std::string_view baseName, std::string_view uri) const {
  return Node(FindQualified(baseName, uri));
}

Node AttributeMap::SetNamedItem(const Node& attribute) const {
  owner_.SetAttributeNode(attribute);
  return attribute;
}

Node AttributeMap::Remove(const Cursor& attribute) const {
  DocumentData& data = owner_.Editable();
  Node removed(attribute);
  if (!removed) return removed;
  const NodeId id = removed.At().Id();
  if (owner_.Type() == NodeType::kProcessingInstruction) {
    RemoveXmlDeclarationAttribute(data, id);
  } else {
    const NameId name = data.Record(id).name;
    data.RemoveAttribute(id);
    SupplyDefault(data, owner_.At().Id(), name);
  }
  return removed;
}

Node AttributeMap::RemoveNamedItem(std::string_view name) const {
  const Cursor at = owner_.At();
  if (name.data() == nullptr) RaiseDomArgument();
  return Remove(at.FindAttribute(name));
}

Node AttributeMap::RemoveQualifiedItem(std::string_view baseName, std::string_view uri) const {
  return Remove(FindQualified(baseName, uri));
}

Node AttributeMap::NextNode() {
  Node node = Item(next_);
  if (node) ++next_;
  return node;
}

}  // namespace kx::dom
