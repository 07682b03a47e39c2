// KXMsgAttributeInfo, and the check of values.
#include "kxmessage/attribute_info.h"

#include "kxmessage/error_codes.h"

#include "core/handle_access.h"
#include "core/msg_error.h"
#include "schema/attribute_info_impl.h"
#include "schema/declarations.h"
#include "schema/node_property.h"

#include <utility>

namespace kx::schema {

AttributeInfoImpl::AttributeInfoImpl(SharedContext context, const dom::Node& elementType,
                                     std::string_view name)
    : context_(std::move(context)),
      attributeType_(FindAttributeType(name, context_->schemaDocument, elementType)),
      declaration_(FindAttributeDeclaration(elementType, name)) {}

std::string AttributeInfoImpl::Name() const { return AttributeText(attributeType_, "name"); }

bool AttributeInfoImpl::Required() const {
  std::string required = AttributeText(declaration_, "required");
  if (required.empty()) required = AttributeText(attributeType_, "required", "no");
  return required == "yes";
}

std::string AttributeInfoImpl::DefaultText() const {
  std::string value = AttributeText(declaration_, "default");
  return value.empty() ? AttributeText(attributeType_, "default") : value;
}

bool AttributeInfoImpl::ReadOnly() const { return Required() && !DefaultText().empty(); }

std::string AttributeInfoImpl::DataType() const {
  return AttributeText(attributeType_, "dt:type", "none");
}

std::vector<std::string> AttributeInfoImpl::Values() const {
  const std::string text = AttributeText(attributeType_, "dt:values");
  std::vector<std::string> values;
  if (text.empty()) return values;
  std::size_t start = 0;
  for (std::size_t blank = text.find(' '); blank != std::string::npos;
       blank = text.find(' ', start)) {
    values.push_back(text.substr(start, blank - start));
    start = blank + 1;
  }
  values.push_back(text.substr(start));
  return values;
}

bool AttributeInfoImpl::IsEnumerated(const std::string& value) {
  if (!enumeration_) {
    auto values = runtime::MakeCounted<runtime::KeyedCollection<std::string>>();
    for (const std::string& each : Values()) values->Add(each, each);
    enumeration_ = std::move(values);
  }
  return enumeration_->Find(value) != nullptr;
}

// Deliberate: the characters of name tokens are not examined.
bool AttributeInfoImpl::IsAccepted(const std::string& value, std::string_view dataType) {
  if (dataType == "nmtoken" || dataType == "nmtokens") return !value.empty();
  if (dataType == "enumeration") return IsEnumerated(value);
  return true;
}

bool AttributeInfoImpl::ValidateValue(const std::string& value, Refusal refusal,
                                      ReadOnlyRule rule) {
  // Deliberate: a read-only attribute refuses its own value too.
  if (rule == ReadOnlyRule::kInForce && ReadOnly()) {
    if (refusal == Refusal::kRaise) {
      core::RaiseMsgError(kxMsgErrorAttributeReadOnly, {Name(), DefaultText()});
    }
    return false;
  }
  const std::string dataType = DataType();
  if (IsAccepted(value, dataType)) return true;
  if (refusal == Refusal::kRaise) {
    core::RaiseMsgError(kxMsgErrorBadAttributeValue, {Name(), value, dataType});
  }
  return false;
}

}  // namespace kx::schema

namespace kx {

namespace {

const schema::AttributeInfoImpl& Of(const KXMsgAttributeInfo& info) {
  return HandleAccess::Of<schema::AttributeInfoImpl>(info);
}

}  // namespace

std::string KXMsgAttributeInfo::Name() const { return Of(*this).Name(); }

bool KXMsgAttributeInfo::Required() const { return Of(*this).Required(); }

std::string KXMsgAttributeInfo::DefaultValue() const { return Of(*this).DefaultText(); }

bool KXMsgAttributeInfo::ReadOnly() const { return Of(*this).ReadOnly(); }

std::string KXMsgAttributeInfo::DataType() const { return Of(*this).DataType(); }

std::vector<std::string> KXMsgAttributeInfo::Values() const { return Of(*this).Values(); }

}  // namespace kx
