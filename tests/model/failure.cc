// See failure.h.
#include "model/failure.h"

#include "kxmessage/error_codes.h"

#include <map>

namespace kx::model {

namespace {

const std::map<std::int32_t, std::string>& Texts() {
  static const std::map<std::int32_t, std::string> texts = {
      {kxMsgErrorNoChildren, "This element cannot contain children."},
      {kxMsgErrorOneElement, "Only one element of this type is allowed."},
      {kxMsgErrorInvalidChild, "Invalid child '%%0'"},
      {kxMsgErrorNoChild, "Child %%0 does not exist."},
      {kxMsgErrorRequiredChild, "This child is required."},
      {kxMsgErrorInvalidGroup, "Invalid group number specified."},
      {kxMsgErrorWrongNameSpace,
       "Child '%%0' has a different namespace/schema than element '%%1'."},
      {kxMsgErrorInvalidOccurrence, "Occurrence %%0 of child '%%1' does not exist."},
      {kxMsgErrorUnknownAttribute, "An AttributeType named \"%%0\" does not exist in schema."},
      {kxMsgErrorNoAttribute, "Attribute '%%0' does not exist."},
      {kxMsgErrorBadAttributeValue,
       "Attribute '%%0' cannot have value '%%1' as it does not correspond to type '%%2.'"},
      {kxMsgErrorAttributeReadOnly,
       "Attribute '%%0' is read-only and must contain the value '%%1.'"},
      {kxMsgErrorAttributeExists, "Attribute '%%0' already exists."},
      {kxMsgErrorAttributeRequired, "Attribute '%%0' is required."},
  };
  return texts;
}

}  // namespace

Failure LibraryFailure(std::int32_t code, const std::vector<std::string>& arguments) {
  std::string text = Texts().at(code);
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string token = "%%" + std::to_string(i);
    const std::size_t at = text.find(token);
    if (at != std::string::npos) text.replace(at, token.size(), arguments[i]);
  }
  return {static_cast<std::uint32_t>(code), text};
}

Failure InvalidCall() { return {0x800A0005U, "Invalid procedure call or argument"}; }
Failure ObjectNotSet() { return {0x800A005BU, "Object variable or With block variable not set"}; }
Failure InvalidNull() { return {0x800A005EU, "Invalid use of Null"}; }
Failure NotAChild() { return {0x80070057U, "The parameter Node is not a child of this Node.\r\n"}; }
Failure UnsuitableText(const std::string& text, const std::string& dataType) {
  return {0x80004005U, "Error parsing '" + text + "' as " + dataType + " datatype.\r\n"};
}

}  // namespace kx::model
