// KXMsgValidAttributes.
#include "kxmessage/valid_attributes.h"

#include "kxmessage/error_codes.h"

#include "core/handle_access.h"
#include "core/msg_error.h"
#include "platform/runtime/conversions.h"
#include "schema/declarations.h"
#include "schema/node_property.h"
#include "schema/valid_attributes_impl.h"

#include <vector>

namespace kx::schema {

const dom::NodeList& ValidAttributesImpl::Declarations() const {
  if (!declarations_) declarations_ = AttributeDeclarations(elementType_);
  return declarations_;
}

std::int32_t ValidAttributesImpl::Count() const { return Declarations().Length(); }

bool ValidAttributesImpl::Exists(std::string_view name) const {
  return static_cast<bool>(FindAttributeDeclaration(elementType_, name));
}

dom::Node ValidAttributesImpl::FindDeclaration(const Variant& key) const {
  const runtime::PositionOrName place = runtime::ReadKey(key);
  dom::Node found;
  if (place.IsPosition()) {
    if (place.IsWithin(Count())) found = Declarations().Item(place.ZeroBased());
  } else {
    found = FindAttributeDeclaration(elementType_, place.name, Quotes::kDouble);
  }
  if (!found) core::RaiseMsgError(kxMsgErrorNoAttribute, {key});
  return found;
}

runtime::Counted<AttributeInfoImpl> ValidAttributesImpl::Describe(
    const dom::Node& declaration) const {
  return runtime::MakeCounted<AttributeInfoImpl>(context_, elementType_,
                                                 AttributeText(declaration, "type"));
}

runtime::Counted<AttributeInfoImpl> ValidAttributesImpl::Attrib(const Variant& key) const {
  return Describe(FindDeclaration(key));
}

const core::SharedSnapshot& ValidAttributesImpl::EnumerationList() {
  if (!snapshot_) {
    const std::int32_t count = Count();
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

schema::ValidAttributesImpl& Of(const KXMsgValidAttributes& attributes) {
  return HandleAccess::Of<schema::ValidAttributesImpl>(attributes);
}

}  // namespace

std::int32_t KXMsgValidAttributes::Count() const { return Of(*this).Count(); }

KXMsgAttributeInfo KXMsgValidAttributes::Attrib(const Variant& Key) const {
  return HandleAccess::Wrap<KXMsgAttributeInfo>(Of(*this).Attrib(Key));
}

bool KXMsgValidAttributes::Exists(std::string_view Name) const { return Of(*this).Exists(Name); }

KXMsgValidAttributes::Iterator KXMsgValidAttributes::begin() const {
  return Iterator(core::Enumerate(Of(*this).EnumerationList()));
}

}  // namespace kx
