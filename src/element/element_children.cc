// Adding, removing, inserting and replacing children; see element_impl.h.
//
// Each edit asks the element type first and changes the document last. The rules read occurrences
// as texts: maxOccurs allows one child only when it is exactly "1", minOccurs demands one only when
// it is exactly "1"; both are "1" when absent. The whole document need not be validated after an
// insertion or a replacement: nobody would see the verdict, and it changes nothing.
#include "kxmessage/error_codes.h"

#include "core/msg_error.h"
#include "core/queries.h"
#include "element/element_impl.h"
#include "platform/dom/node_list.h"
#include "platform/runtime/error.h"
#include "schema/declarations.h"
#include "schema/element_rules.h"
#include "schema/node_property.h"

#include <string>

namespace kx::element {

using runtime::Counted;

namespace {

const ElementImpl& Required(const ElementImpl* argument) {
  if (argument == nullptr) runtime::RaiseRuntimeError(runtime::kObjectNotSet);
  return *argument;
}

bool HasSingle(const dom::Node& declaration, std::string_view occurrences) {
  return schema::AttributeText(declaration, occurrences, "1") == "1";
}

}  // namespace

// ---- The rules ----------------------------------------------------------------------------------

void ElementImpl::CheckCanHaveChildren() const {
  if (!schema::CanHaveChildren(ElementType())) core::RaiseMsgError(kxMsgErrorNoChildren);
}

// There may be one more child of that name.
void ElementImpl::CheckNotPresent(const dom::Node& declaration, const std::string& name) const {
  if (HasSingle(declaration, "maxOccurs") && core::SelectSingleNode(node_, name)) {
    core::RaiseMsgError(kxMsgErrorOneElement);
  }
}

// The child number `occurrence`, from 1, of those whose written name is `name`, a name without
// prefix; nothing when there are fewer. Looks no further than that one.
dom::Node ElementImpl::FindOccurrence(const std::string& name, std::int32_t occurrence) const {
  const dom::Node first = core::SelectSingleNode(node_, name);
  if (!first || occurrence < 1) return {};
  dom::Cursor at = first.At();
  while (at && occurrence > 1) {
    at = at.NextElement();
    if (at && at.QualifiedName() == first.At().QualifiedName()) --occurrence;
  }
  return dom::Node(at);
}

// A child of that name may go; the declaration may be nothing.
void ElementImpl::CheckNotRequired(const dom::Node& declaration, const std::string& name) const {
  if (!declaration || !HasSingle(declaration, "minOccurs")) return;
  if (!FindOccurrence(name, 2)) core::RaiseMsgError(kxMsgErrorRequiredChild);
}

bool ElementImpl::IsForeign(const ElementImpl& child) const {
  return child.node_.At().NamespaceUri() != node_.At().NamespaceUri();
}

// A child of another namespace may be here.
void ElementImpl::CheckForeign(const std::string& name) const {
  if (schema::IsClosedModel(ElementType())) {
    core::RaiseMsgError(kxMsgErrorWrongNameSpace, {name, BaseName()});
  }
}

// ---- Adding and removing ------------------------------------------------------------------------

std::string ElementImpl::NameOfOnlyChild() const {
  const dom::NodeList declarations = schema::ElementDeclarations(ElementType());
  if (declarations.Length() != 1) {
    core::RaiseMsgError(kxMsgErrorInvalidChild, {"<Unspecified>"});
  }
  return schema::AttributeText(declarations.Item(0), "type");
}

Counted<ElementImpl> ElementImpl::AddChild(std::string& name) {
  CheckCanHaveChildren();
  if (name.empty()) {
    // Deliberate: there may be such a child already, whatever its maxOccurs.
    name = NameOfOnlyChild();
  } else {
    const dom::Node declaration = schema::FindElementDeclaration(ElementType(), name);
    if (!declaration) core::RaiseMsgError(kxMsgErrorInvalidChild, {name});
    CheckNotPresent(declaration, name);
  }
  const dom::Node type = context_->elementTypes.RequireElementType(name);
  Counted<ElementImpl> added = Wrap(context_, AppendNew(type), type);
  childSnapshot_.Reset();
  return added;
}

void ElementImpl::Remove(const dom::Node& child) {
  node_.RemoveChild(child);
  childSnapshot_.Reset();
}

void ElementImpl::RemoveChildKey(const Variant& key) {
  Counted<ElementImpl> child;
  try {
    child = LookupChild(key);
  } catch (const Error&) {  // NOLINT(bugprone-empty-catch): told as a missing child
  }
  if (!child) core::RaiseMsgError(kxMsgErrorNoChild, {key});
  const std::string name = child->BaseName();
  CheckNotRequired(schema::FindElementDeclaration(ElementType(), name), name);
  Remove(child->node_);
}

void ElementImpl::RemoveChild(const ElementImpl* argument) {
  CheckCanHaveChildren();
  const ElementImpl& child = Required(argument);
  const std::string name = child.BaseName();
  const dom::Node declaration = schema::FindElementDeclaration(ElementType(), name);
  if (!declaration && child.node_.ParentNode() != node_) {
    core::RaiseMsgError(kxMsgErrorInvalidChild, {name});
  }
  CheckNotRequired(declaration, name);
  Remove(child.node_);
}

// ---- Copies of elements that are there already --------------------------------------------------

Counted<ElementImpl> ElementImpl::InsertChild(const ElementImpl* argument) {
  CheckCanHaveChildren();
  const ElementImpl& child = Required(argument);
  const std::string name = child.BaseName();
  if (IsForeign(child)) {
    CheckForeign(name);
  } else {
    const dom::Node declaration = schema::FindElementDeclaration(ElementType(), name);
    if (!declaration) core::RaiseMsgError(kxMsgErrorInvalidChild, {name});
    CheckNotPresent(declaration, name);
  }
  const dom::Node copy = node_.AppendChild(child.node_.CloneNode(dom::CloneDepth::kDeep));
  Counted<ElementImpl> inserted = WrapAs(context_, copy, child.node_);
  childSnapshot_.Reset();
  return inserted;
}

Counted<ElementImpl> ElementImpl::ReplaceChild(const ElementImpl* argument,
                                               std::int32_t occurrence) {
  CheckCanHaveChildren();
  const ElementImpl& replacement = Required(argument);
  const std::string name = replacement.BaseName();
  if (IsForeign(replacement)) {
    CheckForeign(name);
  } else if (!schema::FindElementDeclaration(ElementType(), name)) {
    core::RaiseMsgError(kxMsgErrorNoChild, {name});
  }
  const dom::Node old = FindOccurrence(name, occurrence);
  if (!old) core::RaiseMsgError(kxMsgErrorInvalidOccurrence, {occurrence, name});
  const dom::Node copy = replacement.node_.CloneNode(dom::CloneDepth::kDeep);
  node_.ReplaceChild(copy, old);
  Counted<ElementImpl> wrapped = WrapAs(context_, copy, replacement.node_);
  childSnapshot_.Reset();
  return wrapped;
}

}  // namespace kx::element
