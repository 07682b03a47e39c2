// KXMsgAttribute.
#include "kxmessage/attribute.h"

#include "attributes/attributes_impl.h"
#include "core/handle_access.h"
#include "platform/xdr/typing.h"

namespace kx::attributes {

using schema::AttributeInfoImpl;

std::string AttributeImpl::Name() const { return attribute_.BaseName().value_or(std::string()); }

std::string AttributeImpl::Value() const { return xdr::TypedValue(attribute_).ToText(); }

void AttributeImpl::Value(const std::string& value) {
  using schema::ReadOnlyRule;
  using schema::Refusal;
  if (Info()->ValidateValue(value, Refusal::kRaise, ReadOnlyRule::kInForce)) {
    xdr::SetTypedValue(attribute_, value);
  }
}

std::string AttributeImpl::TextValue() const { return attribute_.Text(); }

const runtime::Counted<AttributeInfoImpl>& AttributeImpl::Info() {
  if (!info_) info_ = runtime::MakeCounted<AttributeInfoImpl>(context_, elementType_, Name());
  return info_;
}

}  // namespace kx::attributes

namespace kx {

namespace {

attributes::AttributeImpl& Of(const KXMsgAttribute& attribute) {
  return HandleAccess::Of<attributes::AttributeImpl>(attribute);
}

}  // namespace

std::string KXMsgAttribute::Name() const { return Of(*this).Name(); }

std::string KXMsgAttribute::Value() const { return Of(*this).Value(); }

void KXMsgAttribute::Value(std::string_view NewValue) const {
  Of(*this).Value(std::string(NewValue));
}

std::string KXMsgAttribute::TextValue() const { return Of(*this).TextValue(); }

KXMsgAttributeInfo KXMsgAttribute::Info() const {
  return HandleAccess::Wrap<KXMsgAttributeInfo>(Of(*this).Info());
}

}  // namespace kx
