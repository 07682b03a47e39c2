// KXMsgElementInfo: the rules of element_rules.h, asked of one element.
#include "kxmessage/element_info.h"

#include "core/handle_access.h"
#include "schema/element_info_impl.h"
#include "schema/element_rules.h"

namespace kx {

namespace {

const schema::ElementInfoImpl& Of(const KXMsgElementInfo& info) {
  return HandleAccess::Of<schema::ElementInfoImpl>(info);
}

}  // namespace

std::string KXMsgElementInfo::Name() const {
  return Of(*this).Element().BaseName().value_or(std::string());
}

bool KXMsgElementInfo::CanHaveChildren() const {
  return schema::CanHaveChildren(Of(*this).ElementType());
}

bool KXMsgElementInfo::CanHaveValue() const {
  return schema::CanHaveValue(Of(*this).ElementType());
}

bool KXMsgElementInfo::IsOpenModel() const {
  return !schema::IsClosedModel(Of(*this).ElementType());
}

double KXMsgElementInfo::MinLength() const {
  return schema::LengthBound(Of(*this).ElementType(), "dt:minLength");
}

double KXMsgElementInfo::MaxLength() const {
  return schema::LengthBound(Of(*this).ElementType(), "dt:maxLength");
}

std::string KXMsgElementInfo::Description() const {
  return schema::DescriptionOf(Of(*this).ElementType());
}

std::string KXMsgElementInfo::DataType() const {
  return schema::SchemaDataType(Of(*this).ElementType());
}

std::int32_t KXMsgElementInfo::MaxOccurrences() const {
  return schema::MaxOccurrences(Of(*this).Element());
}

std::int32_t KXMsgElementInfo::MinOccurrences() const {
  return schema::MinOccurrences(Of(*this).Element());
}

}  // namespace kx
