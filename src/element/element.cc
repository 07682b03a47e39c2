// KXMsgElement: the handle of an ElementImpl.
#include "kxmessage/element.h"

#include "core/handle_access.h"
#include "element/element_impl.h"
#include "schema/valid_elements_impl.h"

namespace kx {

namespace {

element::ElementImpl& Of(const KXMsgElement& element) {
  return HandleAccess::Of<element::ElementImpl>(element);
}

// An argument, which may be nothing.
const element::ElementImpl* Find(const KXMsgElement& element) {
  return HandleAccess::Find<element::ElementImpl>(element);
}

}  // namespace

KXMsgElement KXMsgElement::Parent() const {
  return HandleAccess::Wrap<KXMsgElement>(Of(*this).Parent());
}

KXMsgElement KXMsgElement::ChildElements(const Variant& Key) const {
  return HandleAccess::Wrap<KXMsgElement>(Of(*this).LookupChild(Key));
}

std::int32_t KXMsgElement::Count() const { return Of(*this).Count(); }

bool KXMsgElement::Exists(std::string_view ChildName) const {
  return Of(*this).Exists(NotNull(ChildName));
}

KXMsgElement::Iterator KXMsgElement::begin() const {
  return Iterator(core::Enumerate(Of(*this).EnumerationList()));
}

KXMsgElementInfo KXMsgElement::Info() const {
  return HandleAccess::Wrap<KXMsgElementInfo>(Of(*this).Info());
}

KXMsgValidElements KXMsgElement::KnownValidChildren() const {
  const element::ElementImpl& element = Of(*this);
  return HandleAccess::Wrap<KXMsgValidElements>(runtime::MakeCounted<schema::ValidElementsImpl>(
      element.Context(), element.GetElementNode(), element.ElementType()));
}

Variant KXMsgElement::Value() const { return Of(*this).Value(); }

void KXMsgElement::Value(const Variant& NewValue) const { Of(*this).Value(NewValue); }

std::string KXMsgElement::TextValue() const { return Of(*this).TextValue(); }

std::string KXMsgElement::XML() const { return Of(*this).Xml(); }

KXMsgElement KXMsgElement::AddChild(std::string& NodeName) const {
  return HandleAccess::Wrap<KXMsgElement>(Of(*this).AddChild(NodeName));
}

void KXMsgElement::RemoveChildKey(const Variant& Key) const { Of(*this).RemoveChildKey(Key); }

KXMsgElement KXMsgElement::RemoveChild(const KXMsgElement& Child) const {
  Of(*this).RemoveChild(Find(Child));
  return nullptr;
}

KXMsgElement KXMsgElement::InsertChild(const KXMsgElement& Child) const {
  return HandleAccess::Wrap<KXMsgElement>(Of(*this).InsertChild(Find(Child)));
}

KXMsgElement KXMsgElement::ReplaceChild(const KXMsgElement& ReplacementChild,
                                        std::int32_t Occurrence) const {
  return HandleAccess::Wrap<KXMsgElement>(
      Of(*this).ReplaceChild(Find(ReplacementChild), Occurrence));
}

std::int16_t KXMsgElement::GroupNumber() const { return Of(*this).GroupNumber(); }

std::int16_t KXMsgElement::NumberOfGroups() const { return Of(*this).NumberOfGroups(); }

std::int16_t KXMsgElement::CurrentGroup() const { return Of(*this).CurrentGroup(); }

KXMsgValidElements KXMsgElement::KnownGroupElements(std::int16_t GroupNumber) const {
  return HandleAccess::Wrap<KXMsgValidElements>(Of(*this).KnownGroupElements(GroupNumber));
}

void KXMsgElement::ReplaceGroup(std::int16_t GroupNumber) const {
  Of(*this).ReplaceGroup(GroupNumber);
}

}  // namespace kx
