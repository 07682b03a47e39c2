// KXMsgValidElements. Every item describes a scratch element with its minimum content, in a scratch
// parent that has the real one's name, namespace and attributes: what an item tells depends on no
// more of its parent, so the parent's children are not copied.
#include "kxmessage/valid_elements.h"

#include "core/handle_access.h"
#include "core/msg_error.h"
#include "platform/runtime/conversions.h"
#include "schema/declarations.h"
#include "schema/default_content.h"
#include "schema/node_property.h"
#include "schema/valid_elements_impl.h"

#include <vector>

namespace kx::schema {

const dom::NodeList& ValidElementsImpl::Declarations() const {
  if (!declarations_) declarations_ = ElementDeclarations(declaration_);
  return declarations_;
}

std::int32_t ValidElementsImpl::Count() const { return Declarations().Length(); }

bool ValidElementsImpl::Exists(std::string_view name) const {
  return static_cast<bool>(FindElementDeclaration(declaration_, name));
}

dom::Node ValidElementsImpl::FindDeclaration(const Variant& key) const {
  const runtime::PositionOrName place = runtime::ReadKey(key);
  dom::Node found;
  if (place.IsPosition()) {
    if (place.IsWithin(Count())) found = Declarations().Item(place.ZeroBased());
  } else {
    found = FindElementDeclaration(declaration_, place.name, Quotes::kDouble);
  }
  if (!found) core::RaiseMsgError(kxMsgErrorNoChild, {key});
  return found;
}

runtime::Counted<ElementInfoImpl> ValidElementsImpl::Element(const Variant& key) const {
  return Describe(FindDeclaration(key));
}

runtime::Counted<ElementInfoImpl> ValidElementsImpl::Describe(const dom::Node& declaration) const {
  const dom::Node type =
      context_->elementTypes.RequireElementType(AttributeText(declaration, "type"));
  const dom::Node scratch = BuildDefaultContent(context_->document, parent_, type,
                                                context_->elementTypes, {}, BuildBounds(*context_));
  const dom::Node scratchParent = parent_.CloneNode(dom::CloneDepth::kShallow);
  // A parent that takes no such child leaves the scratch element without one.
  try {
    scratchParent.AppendChild(scratch);
  } catch (const DomError&) {  // NOLINT(bugprone-empty-catch)
  }
  return runtime::MakeCounted<ElementInfoImpl>(context_, scratch, type);
}

const core::SharedSnapshot& ValidElementsImpl::EnumerationList() {
  if (!snapshot_) {
    const std::int16_t count = core::SnapshotCount(Count());
    std::vector<ObjectRef> items;
    items.reserve(static_cast<std::size_t>(count));
    for (std::int32_t i = 0; i < count; ++i) {
      items.emplace_back(Describe(Declarations().Item(i)).Get());
    }
    snapshot_ = runtime::MakeCounted<const core::Snapshot>(std::move(items));
  }
  return snapshot_;
}

}  // namespace kx::schema

namespace kx {

namespace {

schema::ValidElementsImpl& Of(const KXMsgValidElements& elements) {
  return HandleAccess::Of<schema::ValidElementsImpl>(elements);
}

}  // namespace

std::int32_t KXMsgValidElements::Count() const { return Of(*this).Count(); }

KXMsgElementInfo KXMsgValidElements::Element(const Variant& Key) const {
  return HandleAccess::Wrap<KXMsgElementInfo>(Of(*this).Element(Key));
}

bool KXMsgValidElements::Exists(std::string_view Name) const { return Of(*this).Exists(Name); }

KXMsgValidElements::Iterator KXMsgValidElements::begin() const {
  return Iterator(core::Enumerate(Of(*this).EnumerationList()));
}

}  // namespace kx
