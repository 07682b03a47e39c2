// KXMsgAttributes, and KXMsgElement::Attributes.
#include "kxmessage/attributes.h"

#include "kxmessage/element.h"
#include "kxmessage/error_codes.h"

#include "attributes/attributes_impl.h"
#include "core/handle_access.h"
#include "core/msg_error.h"
#include "element/element_impl.h"
#include "platform/runtime/conversions.h"
#include "platform/runtime/error.h"
#include "schema/declarations.h"
#include "schema/default_content.h"

#include <utility>
#include <vector>

namespace kx::attributes {

using runtime::Counted;
using schema::AttributeInfoImpl;
using schema::ValidAttributesImpl;

AttributesImpl::AttributesImpl(schema::SharedContext context, const dom::Node& element,
                               dom::Node elementType)
    : context_(std::move(context)),
      element_(element),
      elementType_(std::move(elementType)),
      map_(element) {}

const Counted<ValidAttributesImpl>& AttributesImpl::KnownValidAttributes() {
  if (!validAttributes_) {
    validAttributes_ = runtime::MakeCounted<ValidAttributesImpl>(context_, elementType_);
  }
  return validAttributes_;
}

Counted<AttributeImpl> AttributesImpl::Wrap(std::string_view name) const {
  return runtime::MakeCounted<AttributeImpl>(context_, elementType_, map_, name);
}

// ---- Looking ------------------------------------------------------------------------------------

// The declaration of the default namespace has no name; it is hidden where it is the first one.
bool AttributesImpl::FirstAttributeIsNameless() const {
  const dom::Node first = map_.Item(0);
  return first && first.BaseName().value_or(std::string()).empty();
}

std::int32_t AttributesImpl::Count() const {
  return map_.Length() - (FirstAttributeIsNameless() ? 1 : 0);
}

bool AttributesImpl::Exists(std::string_view name) const {
  return static_cast<bool>(map_.GetNamedItem(name));
}

Counted<AttributeImpl> AttributesImpl::LookupAttribute(const Variant& key) {
  const runtime::PositionOrName place = runtime::ReadKey(key);
  return place.IsPosition() ? AttributeAt(place, key) : AttributeNamed(place.name, key);
}

Counted<AttributeImpl> AttributesImpl::AttributeAt(const runtime::PositionOrName& place,
                                                   const Variant& key) const {
  if (!place.IsWithin(Count())) core::RaiseMsgError(kxMsgErrorNoAttribute, {key});
  const int leading = FirstAttributeIsNameless() ? 1 : 0;
  const dom::Node found = map_.Item(*runtime::FindRounded(*place.position - 1 + leading));
  // Deliberate: by its name without prefix it may not be found again.
  return Wrap(found.BaseName().value_or(std::string()));
}

// A name that the schema cannot be asked for is not known to it.
bool AttributesImpl::IsKnown(std::string_view name) {
  try {
    return KnownValidAttributes()->Exists(name);
  } catch (const Error&) {
    return false;
  }
}

// Deliberate: reading an attribute that the schema declares and that is not there adds it.
Counted<AttributeImpl> AttributesImpl::AttributeNamed(const std::string& name, const Variant& key) {
  if (Exists(name)) return Wrap(name);
  if (!IsKnown(name)) core::RaiseMsgError(kxMsgErrorNoAttribute, {key});
  try {
    std::string value;
    return AddAttribute(name, value);
  } catch (const Error&) {
    return nullptr;
  }
}

// ---- Editing ------------------------------------------------------------------------------------

// Deliberate: the value is checked, and the attribute has its default all the same; an enumeration
// that was made before keeps its members.
Counted<AttributeImpl> AttributesImpl::AddAttribute(const std::string& name, std::string& value) {
  using schema::ReadOnlyRule;
  using schema::Refusal;
  if (!KnownValidAttributes()->Exists(name)) {
    core::RaiseMsgError(kxMsgErrorUnknownAttribute, {name});
  }
  if (Exists(name)) core::RaiseMsgError(kxMsgErrorAttributeExists, {name});
  const Counted<AttributeInfoImpl> info = KnownValidAttributes()->Attrib(name);
  if (value.empty()) value = info->DefaultText();
  if (!info->ValidateValue(value, Refusal::kRaise, ReadOnlyRule::kWaived)) return nullptr;
  map_.SetNamedItem(schema::CreateDefaultAttribute(
      context_->document, element_, info->GetAttributeType(), info->GetAttributeDecl(), {}));
  return Wrap(name);
}

void AttributesImpl::RemoveAttribute(const Variant& key) {
  const Counted<AttributeImpl> attribute = LookupAttribute(key);
  if (!attribute) runtime::RaiseRuntimeError(runtime::kObjectNotSet);
  const std::string name = attribute->Name();
  if (!KnownValidAttributes()->Exists(name)) {
    core::RaiseMsgError(kxMsgErrorUnknownAttribute, {name});
  }
  if (!Exists(name)) core::RaiseMsgError(kxMsgErrorNoAttribute, {name});
  const Counted<AttributeInfoImpl> info = KnownValidAttributes()->Attrib(name);
  if (schema::IsAttributeFixed(info->GetAttributeDecl(), info->GetAttributeType())) {
    core::RaiseMsgError(kxMsgErrorAttributeRequired, {name});
  }
  map_.RemoveNamedItem(name);
  snapshot_.Reset();
}

// ---- Enumeration --------------------------------------------------------------------------------

// Deliberate: nameless attributes are not counted, but those behind the first one have a position,
// so that a list with such a one holds it in the place of its last member.
core::SharedSnapshot AttributesImpl::BuildAttributeSnapshot() const {
  const std::int32_t length = map_.Length();
  const std::int32_t leading = FirstAttributeIsNameless() ? 1 : 0;
  std::vector<ObjectRef> items;
  std::int32_t position = leading;
  for (std::int32_t i = 0; i < length; ++i) {
    if (map_.Item(i).BaseName().value_or(std::string()).empty()) continue;
    items.emplace_back(Wrap(map_.Item(position).BaseName().value_or(std::string())).Get());
    ++position;
  }
  return runtime::MakeCounted<const core::Snapshot>(std::move(items));
}

const core::SharedSnapshot& AttributesImpl::EnumerationList() {
  if (!snapshot_) snapshot_ = BuildAttributeSnapshot();
  return snapshot_;
}

}  // namespace kx::attributes

namespace kx {

namespace {

using attributes::AttributesImpl;

AttributesImpl& Of(const KXMsgAttributes& attributes) {
  return HandleAccess::Of<AttributesImpl>(attributes);
}

}  // namespace

KXMsgAttributes KXMsgElement::Attributes() const {
  auto& element = HandleAccess::Of<element::ElementImpl>(*this);
  ObjectRef& kept = element.KeptAttributes();
  if (!kept) {
    kept = ObjectRef(runtime::MakeCounted<AttributesImpl>(
                         element.Context(), element.GetElementNode(), element.ElementType())
                         .Get());
  }
  return HandleAccess::Wrap<KXMsgAttributes>(kept);
}

KXMsgValidAttributes KXMsgAttributes::KnownValidAttributes() const {
  return HandleAccess::Wrap<KXMsgValidAttributes>(Of(*this).KnownValidAttributes());
}

KXMsgAttribute KXMsgAttributes::AddAttribute(std::string_view Name, std::string& Value) const {
  return HandleAccess::Wrap<KXMsgAttribute>(Of(*this).AddAttribute(std::string(Name), Value));
}

void KXMsgAttributes::RemoveAttribute(const Variant& Key) const { Of(*this).RemoveAttribute(Key); }

std::int32_t KXMsgAttributes::Count() const { return Of(*this).Count(); }

KXMsgAttribute KXMsgAttributes::Attrib(const Variant& Key) const {
  return HandleAccess::Wrap<KXMsgAttribute>(Of(*this).LookupAttribute(Key));
}

bool KXMsgAttributes::Exists(std::string_view Name) const { return Of(*this).Exists(Name); }

KXMsgAttributes::Iterator KXMsgAttributes::begin() const {
  return Iterator(core::Enumerate(Of(*this).EnumerationList()));
}

}  // namespace kx
