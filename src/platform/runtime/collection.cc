// How the collection reads a look-up argument. Every failure here is the collection's own, whatever
// other conversions would raise.
#include "platform/runtime/collection.h"

#include "platform/runtime/conversions.h"

namespace kx::runtime {
namespace {

// An object as its default value. Unlike other conversions, one without is a type mismatch.
Variant ResolveIndex(const Variant& index) {
  if (!index.IsObject()) return index;
  const std::optional<Variant> value = FindScalar(index);
  if (!value) RaiseCollectionError(kTypeMismatch);
  return *value;
}

}  // namespace

CollectionIndex ReadCollectionIndex(const Variant& index) {
  const Variant value = ResolveIndex(index);
  if (value.IsMissing()) RaiseCollectionError(kInvalidProcedureCall);
  if (value.IsNull() || value.IsBytes() || value.IsError()) RaiseCollectionError(kTypeMismatch);
  if (const std::string* key = value.IfText()) return {std::nullopt, *key};
  const std::optional<std::int32_t> position = FindRounded(value.ToNumber());
  if (!position) RaiseCollectionError(kOverflow);
  return {position, {}};
}

}  // namespace kx::runtime
