// See schema_index.h.
#include "schema/schema_index.h"

#include "platform/runtime/counted.h"

#include <algorithm>
#include <tuple>

namespace kx::schema {

namespace {

using dom::Cursor;

bool IsNamed(const Cursor& node, std::string_view name) {
  return node && node.IsElement() && node.QualifiedName() == name;
}

bool HasText(const Cursor& attribute, std::string_view text) {
  if (!attribute) return false;
  return attribute.HasWholeText() ? attribute.OwnText() == text : attribute.TextContent() == text;
}

}  // namespace

const SchemaIndex& SchemaIndex::Of(const dom::DocumentData& frozen) {
  const dom::DerivedData* known = frozen.Derived();
  if (known == nullptr) known = &frozen.KeepDerived(runtime::MakeCounted<SchemaIndex>(frozen));
  return static_cast<const SchemaIndex&>(*known);  // nobody else keeps anything there
}

SchemaIndex::SchemaIndex(const dom::DocumentData& data) : data_(data) {
  const Cursor document(&data, dom::kDocumentNode);
  for (Cursor at = document.FirstChild(); at; at = at.NextInTree(document)) {
    if (at.IsElement()) ReadElement(at);
  }
  std::stable_sort(declarations_.begin(), declarations_.end(), Before);
}

bool SchemaIndex::Before(const Declaration& a, const Declaration& b) noexcept {
  return std::tie(a.in, a.kind, a.hash) < std::tie(b.in, b.kind, b.hash);
}

// Deliberate: names are compared as written. An element with a prefix is none of the schema's, even
// where its namespace is the schema's, and one of another namespace without prefix is.
void SchemaIndex::ReadElement(const Cursor& element) {
  const std::string_view name = element.QualifiedName();
  if (name == "ElementType") {
    AddElementType(element);
  } else if (name == "element") {
    AddChild(element);
  } else if (name == "attribute") {
    Add(element.Parent(), DeclarationKind::kAttribute, element.FindAttribute("type"), element);
  } else if (name == "AttributeType") {
    Add(element.Parent(), DeclarationKind::kAttributeType, element.FindAttribute("name"), element);
  }
}

// Deliberate: names that differ in case alone are one name, although a parse takes them for two.
void SchemaIndex::AddElementType(const Cursor& element) {
  if (fault_) return;
  const Cursor attribute = element.FindAttribute("name");
  std::string name = attribute ? attribute.TextContent() : std::string();
  if (!attribute || byName_.find(name) != byName_.end()) {
    fault_ = std::move(name);
    return;
  }
  byName_.emplace(std::move(name), element.Id());
  types_.push_back(element.Id());
}

void SchemaIndex::AddChild(const Cursor& element) {
  const Cursor name = element.FindAttribute("type");
  const Cursor parent = element.Parent();
  Add(parent, DeclarationKind::kElement, name, element);
  if (HasText(element.FindAttribute("minOccurs"), "0") ||
      HasText(element.FindAttribute("maxOccurs"), "*")) {
    Add(parent, DeclarationKind::kOptionalElement, name, element);
  }
  if (IsNamed(parent, "group")) Add(parent.Parent(), DeclarationKind::kGroup, name, parent);
}

void SchemaIndex::Add(const Cursor& in, DeclarationKind kind, const Cursor& name,
                      const Cursor& node) {
  if (!name) return;
  declarations_.push_back(
      {in.Id(), kind, text::HashExact(name.TextContent()), name.Id(), node.Id()});
}

dom::NodeId SchemaIndex::FindElementType(std::string_view name) const noexcept {
  const auto found = byName_.find(name);
  return found == byName_.end() ? dom::kNoNode : found->second;
}

dom::NodeId SchemaIndex::FindDeclaration(dom::NodeId in, DeclarationKind kind,
                                         std::string_view name) const noexcept {
  const Declaration wanted{in, kind, text::HashExact(name), dom::kNoNode, dom::kNoNode};
  auto at = std::lower_bound(declarations_.begin(), declarations_.end(), wanted, Before);
  for (; at != declarations_.end() && !Before(wanted, *at); ++at) {
    if (HasText(Cursor(&data_, at->name), name)) return at->node;
  }
  return dom::kNoNode;
}

}  // namespace kx::schema
