// The texts of the library's errors. They are published: their doubled blanks, their odd full stops
// and the missing ones stay as they are.
#include "core/msg_error.h"

#include <array>
#include <cstddef>

namespace kx::core {

namespace {

struct MsgText {
  kxMsgErrorEnum code;
  std::string_view text;
};

constexpr MsgText kMsgTexts[] = {
    {kxMsgErrorNotInitialized, "Message not initialized."},
    {kxMsgErrorNoSchema, "XML document must supply a schema."},
    {kxMsgErrorLoadingSchema,
     "Error loading Schema: Error %%0, %%1  Line %%2, Pos %%3, Source:%%4"},
    {kxMsgErrorInvalidMessage,
     "The KXMessage tag is not valid for an KX message.  All required attributes must exist."},
    {kxMsgErrorNoValue, "Element does not have a value."},
    {kxMsgErrorInvalidValue, "Value does not conform to data type '%%0'."},
    {kxMsgErrorNoChildren, "This element cannot contain children."},
    {kxMsgErrorOneElement, "Only one element of this type is allowed."},
    {kxMsgErrorInvalidChild, "Invalid child '%%0'"},
    {kxMsgErrorNoChild, "Child %%0 does not exist."},
    {kxMsgErrorRequiredChild, "This child is required."},
    {kxMsgErrorLoadingXML,
     "Error loading XML document: Error %%0, %%1  Line %%2, Pos %%3, Source:%%4"},
    {kxMsgErrorInvalidGroup, "Invalid group number specified."},
    {kxMsgErrorUnknownElement, "An ElementType named \"%%0\" does not exist in schema."},
    {kxMsgErrorInvalidSchema, "Invalid schema.  No ElementType definitions found."},
    {kxMsgErrorBadBinary,
     "Error accessing binary data in element \"%%0\".  Either element is empty or is not a "
     "compatible data type."},
    {kxMsgErrorWrongNameSpace, "Child '%%0' has a different namespace/schema than element '%%1'."},
    {kxMsgErrorInvalidOccurrence, "Occurrence %%0 of child '%%1' does not exist."},
    {kxMsgErrorDuplicateSchema, "Bad schema.  ElementType '%%0' exists more than once"},
    {kxMsgErrorInvalidMsgType, "Invalid characters found in %%0."},
    {kxMsgErrorUnknownAttribute, "An AttributeType named \"%%0\" does not exist in schema."},
    {kxMsgErrorNoAttribute, "Attribute '%%0' does not exist."},
    {kxMsgErrorBadAttributeValue,
     "Attribute '%%0' cannot have value '%%1' as it does not correspond to type '%%2.'"},
    {kxMsgErrorAttributeReadOnly, "Attribute '%%0' is read-only and must contain the value '%%1.'"},
    {kxMsgErrorAttributeExists, "Attribute '%%0' already exists."},
    {kxMsgErrorAttributeRequired, "Attribute '%%0' is required."},
};

constexpr std::int32_t kFirstCode = kxMsgErrorNotInitialized;

constexpr bool RunsFrom(std::int32_t first) {
  for (std::size_t i = 0; i < std::size(kMsgTexts); ++i) {
    if (kMsgTexts[i].code != first + static_cast<std::int32_t>(i)) return false;
  }
  return true;
}
static_assert(RunsFrom(kFirstCode) && std::size(kMsgTexts) == 26, "one text a code, in code order");

}  // namespace

std::string_view MsgTextOf(std::int32_t code) noexcept {
  const auto offset = static_cast<std::uint32_t>(code) - static_cast<std::uint32_t>(kFirstCode);
  return offset < std::size(kMsgTexts) ? kMsgTexts[offset].text : std::string_view();
}

}  // namespace kx::core
