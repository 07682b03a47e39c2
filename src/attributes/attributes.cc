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

#include <unordered_map>
#include <utility>
#include <vector>

namespace kx::attributes {

using runtime::Counted;
using schema::AttributeInfoImpl;
using schema::ValidAttributesImpl;

namespace {

// The name without prefix; a declaration of the default namespace has none.
std::string_view BaseNameOf(const dom::Node& attribute) {
  const dom::Cursor at = attribute.At();
  return at.QualifiedName() == "xmlns" ? std::string_view("") : at.LocalName();
}

}  // namespace

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

Counted<AttributeImpl> AttributesImpl::Wrap(dom::Node attribute) const {
  return runtime::MakeCounted<AttributeImpl>(context_, elementType_, std::move(attribute));
}

// ---- Looking ------------------------------------------------------------------------------------

// The declaration of the default namespace has no name; it is hidden where it is the first one.
bool AttributesImpl::FirstAttributeIsNameless() const {
  const dom::Node first = map_.Item(0);
  return first && BaseNameOf(first).empty();
}

std::int32_t AttributesImpl::Count() const {
  return map_.Length() - (FirstAttributeIsNameless() ? 1 : 0);
}

bool AttributesImpl::Exists(std::string_view name) const {
  return static_cast<bool>(map_.GetNamedItem(name));
}

Counted<AttributeImpl> AttributesImpl::LookupAttribute(const Variant& key) {
  // What has no text form is the name of none.
  if (key.IsError()) core::RaiseMsgError(kxMsgErrorNoAttribute, {key});
  const runtime::PositionOrName place = runtime::ReadKey(key);
  return place.IsPosition() ? AttributeAt(place, key) : AttributeNamed(place.name, key);
}

Counted<AttributeImpl> AttributesImpl::AttributeAt(const runtime::PositionOrName& place,
                                                   const Variant& key) const {
  if (!place.IsWithin(Count())) core::RaiseMsgError(kxMsgErrorNoAttribute, {key});
  const int leading = FirstAttributeIsNameless() ? 1 : 0;
  return Wrap(FindByBaseName(map_.Item(*runtime::FindRounded(*place.position - 1 + leading))));
}

// The attribute that has the name of `item` without its prefix. Deliberate: that is what an object
// stands for that was asked for by its position. An item without prefix is that itself.
dom::Node AttributesImpl::FindByBaseName(const dom::Node& item) const {
  const std::string_view name = BaseNameOf(item);
  return item.At().QualifiedName() == name ? item : map_.GetNamedItem(name);
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
  if (dom::Node found = map_.GetNamedItem(name)) return Wrap(std::move(found));
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
  return Wrap(map_.GetNamedItem(name));
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
  const auto length = static_cast<std::size_t>(map_.Length());
  std::vector<dom::Node> all;
  std::unordered_map<std::string_view, std::size_t> byName;
  for (std::size_t i = 0; i < length; ++i) {
    all.push_back(map_.Item(static_cast<std::int32_t>(i)));
    byName.emplace(all.back().At().QualifiedName(), i);
  }
  std::vector<ObjectRef> items;
  std::size_t position = FirstAttributeIsNameless() ? 1 : 0;
  for (const dom::Node& each : all) {
    if (BaseNameOf(each).empty()) continue;
    const auto found = byName.find(BaseNameOf(all[position++]));
    items.emplace_back(Wrap(found == byName.end() ? dom::Node() : all[found->second]).Get());
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

bool KXMsgAttributes::Exists(std::string_view Name) const {
  return Of(*this).Exists(NotNull(Name));
}

KXMsgAttributes::Iterator KXMsgAttributes::begin() const {
  return Iterator(core::Enumerate(Of(*this).EnumerationList()));
}

}  // namespace kx
