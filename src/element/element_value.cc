// The typed value of an element; see element_impl.h.
#include "core/msg_error.h"
#include "element/element_impl.h"
#include "platform/runtime/error.h"
#include "platform/xdr/typing.h"
#include "schema/element_rules.h"

#include <optional>
#include <string>

namespace kx::element {

void ElementImpl::CheckHasValue() const {
  if (!schema::CanHaveValue(ElementType())) core::RaiseMsgError(kxMsgErrorNoValue);
}

Variant ElementImpl::Value() const {
  CheckHasValue();
  Variant value = xdr::TypedValue(node_);
  return value.IsNull() ? Variant() : value;
}

std::string ElementImpl::TextValue() const {
  CheckHasValue();
  return node_.Text();
}

// Whatever the reason that the value could not be stored, it is told by one error of ours.
bool ElementImpl::StoreValue(const Variant& value, bool typed) const {
  try {
    if (typed) {
      xdr::SetTypedValue(node_, value);
    } else {
      node_.SetText(value.ToText());
    }
    return true;
  } catch (const Error&) {
    return false;
  }
}

void ElementImpl::Value(const Variant& value) {
  CheckHasValue();
  // 1. The type that the node has; without one it is given the schema's, which stays.
  const bool hasType = xdr::DataTypeNameOf(node_).has_value();
  if (!hasType) {
    const std::string type = schema::SchemaDataType(ElementType(), {});
    if (!type.empty()) xdr::SetDataType(node_, type);
  }
  // 2. The children of a mixed element are remembered, because a new text replaces them.
  const bool mixed = schema::IsMixed(ElementType());
  if (mixed && !childSnapshot_) childSnapshot_ = BuildChildSnapshot();
  // 3. The value. Deliberate: a failure on a node that had no type ends in the error of giving back
  // the type that it did not have.
  if (!StoreValue(value, hasType)) {
    if (!hasType) runtime::RaiseRuntimeError(runtime::kInvalidUseOfNull);
    core::RaiseMsgError(kxMsgErrorInvalidValue, {schema::SchemaDataType(ElementType())});
  }
  // 4. The children come back behind the text.
  if (mixed && Count() == 0) RestoreChildren();
}

void ElementImpl::RestoreChildren() const {
  for (std::size_t i = 0; i < childSnapshot_->Size(); ++i) {
    const auto& child = static_cast<const ElementImpl&>(*childSnapshot_->At(i).Get());
    node_.AppendChild(child.GetElementNode());
  }
}

}  // namespace kx::element
