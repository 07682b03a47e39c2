// See element_type_index.h.
#include "schema/element_type_index.h"

#include "core/msg_error.h"
#include "platform/runtime/error.h"
#include "schema/schema_index.h"

namespace kx::schema {

std::int32_t ElementTypeIndex::Count() const noexcept {
  return shared_ == nullptr ? 0 : static_cast<std::int32_t>(shared_->ElementTypes().size());
}

dom::Node ElementTypeIndex::GetElementType(std::string_view name) const {
  if (shared_ == nullptr) return {};
  return {&document_.Data(), shared_->FindElementType(name)};
}

dom::Node ElementTypeIndex::RequireElementType(std::string_view name) const {
  dom::Node elementType = GetElementType(name);
  if (!elementType) runtime::RaiseCollectionError(runtime::kInvalidProcedureCall);
  return elementType;
}

dom::Node ElementTypeIndex::At(std::int32_t position) const {
  if (position < 1 || position > Count()) {
    runtime::RaiseCollectionError(runtime::kSubscriptOutOfRange);
  }
  return {&document_.Data(), shared_->ElementTypes()[static_cast<std::size_t>(position) - 1]};
}

void IndexElementTypes(const dom::Document& schemaDocument, ElementTypeIndex& index) {
  index = ElementTypeIndex();
  if (!schemaDocument.Frozen()) schemaDocument.Freeze();
  index.document_ = schemaDocument;
  index.shared_ = &SchemaIndex::Of(schemaDocument.Data());
  if (const auto& name = index.shared_->Fault()) {
    core::RaiseMsgError(kxMsgErrorDuplicateSchema, {*name});
  }
}

void CheckNotEmpty(const ElementTypeIndex& index) {
  if (index.Count() == 0) core::RaiseMsgError(kxMsgErrorInvalidSchema);
}

}  // namespace kx::schema
