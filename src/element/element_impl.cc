// Navigation of the wrapper; see element_impl.h. Values are in element_value.cc, the editing of
// children in element_children.cc, groups in element_groups.cc.
#include "element/element_impl.h"

#include "core/envelope.h"
#include "core/msg_error.h"
#include "core/queries.h"
#include "core/text_form.h"
#include "platform/dom/child_positions.h"
#include "platform/dom/node_list.h"
#include "platform/runtime/conversions.h"
#include "platform/runtime/error.h"
#include "platform/xdr/typing.h"
#include "schema/declarations.h"

#include <cmath>
#include <utility>
#include <vector>

namespace kx::element {

using runtime::Counted;

ElementImpl::ElementImpl(schema::SharedContext context, dom::Node element, dom::Cursor elementType,
                         xdr::SharedSchema otherSchema) noexcept
    : context_(std::move(context)),
      node_(std::move(element)),
      elementType_(elementType),
      otherSchema_(std::move(otherSchema)) {}

Counted<ElementImpl> ElementImpl::Wrap(const schema::SharedContext& context,
                                       const dom::Node& element) {
  if (!element || element.Type() != dom::NodeType::kElement) {
    runtime::RaiseRuntimeError(runtime::kObjectNotSet);
  }
  return WrapAs(context, element, element);
}

// A wrapper of `element` by the definition of the element `declared`.
Counted<ElementImpl> ElementImpl::WrapAs(const schema::SharedContext& context,
                                         const dom::Node& element, const dom::Node& declared) {
  const xdr::Binding binding = xdr::FindBinding(declared.At());
  if (!binding || binding.isInline) runtime::RaiseRuntimeError(runtime::kObjectNotSet);
  const dom::Document& schema = binding.schema->Document();
  const dom::Cursor type(&schema.Data(), binding.element->node);
  if (schema == context->schemaDocument) {
    return runtime::MakeCounted<ElementImpl>(context, element, type);
  }
  return runtime::MakeCounted<ElementImpl>(context, element, type, binding.schema);
}

Counted<ElementImpl> ElementImpl::Wrap(const schema::SharedContext& context,
                                       const dom::Node& element, const dom::Node& elementType) {
  return runtime::MakeCounted<ElementImpl>(context, element, elementType.At());
}

Counted<ElementImpl> ElementImpl::Parent() const {
  const dom::Node parent = node_.ParentNode();
  if (!parent) runtime::RaiseRuntimeError(runtime::kObjectNotSet);
  if (parent.At().LocalName() == core::kEnvelopeName) return nullptr;
  return Wrap(context_, parent);
}

Counted<ElementImpl> ElementImpl::LookupChild(const Variant& key) const {
  const runtime::PositionOrName place = runtime::ReadKey(key);
  if (!place.IsPosition()) return ChildNamed(place.name, key);
  // Deliberate: all nodes are counted, of which only the elements can be had.
  if (!place.IsWithin(node_.ChildNodes().Length())) {
    core::RaiseMsgError(kxMsgErrorNoChild, {key});
  }
  // A position between two elements is that of none.
  if (*place.position != std::floor(*place.position)) {
    runtime::RaiseRuntimeError(runtime::kObjectNotSet);
  }
  return ChildAt(place.ZeroBased());
}

Counted<ElementImpl> ElementImpl::ChildAt(std::int32_t zeroBased) const {
  const dom::Cursor at = node_.At();
  dom::DocumentData& data = node_.Data();
  const dom::NodeId found = dom::FindElement(data, at.Id(), static_cast<std::uint32_t>(zeroBased));
  return Wrap(context_, dom::Node(&data, found));
}

Counted<ElementImpl> ElementImpl::ChildNamed(const std::string& name, const Variant& key) const {
  const dom::Node found = core::SelectSingleNode(node_, name);
  if (found) return Wrap(context_, found);
  const dom::Node definition = xdr::Definition(node_);
  if (!definition) runtime::RaiseRuntimeError(runtime::kObjectNotSet);
  if (!schema::FindOptionalDeclaration(definition, name)) {
    core::RaiseMsgError(kxMsgErrorNoChild, {key});
  }
  return CreateChild(name);
}

// Deliberate: reading an optional or repeatable child that is not there creates it.
Counted<ElementImpl> ElementImpl::CreateChild(const std::string& name) const {
  return Wrap(context_, AppendNew(context_->elementTypes.RequireElementType(name)));
}

// A new child with its minimum content, behind all others.
dom::Node ElementImpl::AppendNew(const dom::Node& elementType) const {
  return node_.AppendChild(schema::BuildDefaultContent(context_->document, node_, elementType,
                                                       context_->elementTypes, {},
                                                       schema::BuildBounds(*context_)));
}

std::string ElementImpl::BaseName() const { return node_.BaseName().value_or(std::string()); }

std::int32_t ElementImpl::Count() const {
  return static_cast<std::int32_t>(dom::CountElements(node_.Data(), node_.At().Id()));
}

bool ElementImpl::Exists(std::string_view childName) const {
  return static_cast<bool>(core::SelectSingleNode(node_, childName));
}

const Counted<schema::ElementInfoImpl>& ElementImpl::Info() {
  if (!info_) {
    info_ = runtime::MakeCounted<schema::ElementInfoImpl>(context_, node_, ElementType());
  }
  return info_;
}

std::string ElementImpl::Xml() const {
  return core::CanonicalizeSchemaRefs(node_.Xml(), {}, *context_->environment).text;
}

core::SharedSnapshot ElementImpl::BuildChildSnapshot() const {
  const std::int16_t count = core::SnapshotCount(Count());
  std::vector<ObjectRef> children;
  children.reserve(static_cast<std::size_t>(count));
  for (std::int32_t i = 0; i < count; ++i) children.emplace_back(ChildAt(i).Get());
  return runtime::MakeCounted<const core::Snapshot>(std::move(children));
}

core::SharedSnapshot ElementImpl::EnumerationList() {
  if (!childSnapshot_) childSnapshot_ = BuildChildSnapshot();
  core::SharedSnapshot list = childSnapshot_;
  if (list->Size() == 0) childSnapshot_.Reset();
  return list;
}

}  // namespace kx::element
