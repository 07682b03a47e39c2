// Queries: KXMsgElement::FindElements and KXMsgFoundElements.
#include "kxmessage/found_elements.h"

#include "content/found_elements_impl.h"
#include "core/handle_access.h"
#include "core/msg_error.h"
#include "core/queries.h"
#include "element/element_impl.h"
#include "platform/runtime/conversions.h"

#include <vector>

namespace kx::content {

using element::ElementImpl;
using runtime::Counted;

Counted<ElementImpl> FoundElementsImpl::FindFoundElement(const Variant& key) const {
  const runtime::PositionOrName place = runtime::ReadKey(key);
  if (place.IsPosition()) {
    if (!place.IsWithin(Count())) core::RaiseMsgError(kxMsgErrorNoChild, {key});
    return ElementImpl::Wrap(context_, nodes_.Item(place.ZeroBased()));
  }
  for (std::int32_t i = 0; i < Count(); ++i) {
    const dom::Node node = nodes_.Item(i);
    if (node.BaseName() == place.name) return ElementImpl::Wrap(context_, node);
  }
  core::RaiseMsgError(kxMsgErrorNoChild, {key});
}

core::SharedSnapshot FoundElementsImpl::EnumerationList() {
  if (!snapshot_) {
    const std::int16_t count = core::SnapshotCount(Count());
    std::vector<ObjectRef> items;
    items.reserve(static_cast<std::size_t>(count));
    for (std::int32_t i = 0; i < count; ++i) {
      items.emplace_back(ElementImpl::Wrap(context_, nodes_.Item(i)).Get());
    }
    snapshot_ = runtime::MakeCounted<const core::Snapshot>(std::move(items));
  }
  return snapshot_;
}

}  // namespace kx::content

namespace kx {

namespace {

content::FoundElementsImpl& Of(const KXMsgFoundElements& elements) {
  return HandleAccess::Of<content::FoundElementsImpl>(elements);
}

}  // namespace

KXMsgFoundElements KXMsgElement::FindElements(std::string_view XSLQueryString) const {
  const auto& element = HandleAccess::Of<element::ElementImpl>(*this);
  return HandleAccess::Wrap<KXMsgFoundElements>(runtime::MakeCounted<content::FoundElementsImpl>(
      element.Context(), core::SelectNodes(element.GetElementNode(), NotNull(XSLQueryString))));
}

std::int32_t KXMsgFoundElements::Count() const { return Of(*this).Count(); }

KXMsgElement KXMsgFoundElements::Element(const Variant& Key) const {
  return HandleAccess::Wrap<KXMsgElement>(Of(*this).FindFoundElement(Key));
}

KXMsgFoundElements::Iterator KXMsgFoundElements::begin() const {
  return Iterator(core::Enumerate(Of(*this).EnumerationList()));
}

}  // namespace kx
