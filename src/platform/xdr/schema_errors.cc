// See schema_errors.h.
#include "platform/xdr/schema_errors.h"

#include <algorithm>
#include <iterator>

namespace kx::xdr {

namespace {

struct XdrText {
  XdrCode code;
  std::string_view text;
};

constexpr XdrText kTexts[] = {
    {XdrCode::kUndeclaredElement, "The element '%1' is used but not declared in the DTD/Schema."},
    {XdrCode::kDanglingIdref,
     "The attribute '%1' references the ID '%2' which is not defined anywhere in the document."},
    {XdrCode::kBadDefault, "Error in the default attribute value defined in DTD/Schema."},
    {XdrCode::kElementEmpty, "Element cannot be empty according to the DTD/Schema."},
    {XdrCode::kElementIncomplete, "Element content is incomplete according to the DTD/Schema."},
    {XdrCode::kElementInvalid, "Element content is invalid according to the DTD/Schema."},
    {XdrCode::kUndeclaredAttribute,
     "The attribute '%1' on this element is not defined in the DTD/Schema."},
    {XdrCode::kNotTheFixedValue,
     "Attribute '%1' has a value which does not match the fixed value defined in the DTD/Schema."},
    {XdrCode::kBadAttributeValue,
     "Attribute '%1' has an invalid value according to the DTD/Schema."},
    {XdrCode::kTextNotAllowed, "Text is not allowed in this context according to DTD/Schema."},
    {XdrCode::kElementDeclaredTwice, "The element '%1' is already declared."},
    {XdrCode::kReferenceToUndeclared, "Reference to undeclared element: '%1'."},
    {XdrCode::kUndeclaredPrefix, "Reference to undeclared namespace prefix: '%1'."},
    {XdrCode::kMissingAttribute, "Required attribute '%1' is missing."},
    {XdrCode::kTwoIds, "Cannot define multiple ID attributes on the same element."},
    {XdrCode::kBadRoot, "Incorrect definition for the root element in schema."},
    {XdrCode::kDuplicateId, "The ID '%1' is duplicated."},
    {XdrCode::kDataTypeParse, "Error parsing '%1' as %2 datatype."},
    {XdrCode::kTwoDataTypes, "Cannot have two datatype attributes on one element."},
    {XdrCode::kUnknownDataType, "Datatype '%1' is not supported."},
    {XdrCode::kNotOneRoot,
     "Validate failed because the document does not contain exactly one root node."},
    {XdrCode::kNoSchemaForRoot,
     "Validate failed because the root element had no associated DTD/schema."},
    {XdrCode::kSchemaMistake, "%1"},
    {XdrCode::kBadNameStart, "A name was started with an invalid character."},
    {XdrCode::kSeveralNames, "Multiple names found in attribute value when only one was expected."},
};

constexpr bool IsSorted() {
  for (std::size_t i = 1; i < std::size(kTexts); ++i) {
    if (kTexts[i - 1].code >= kTexts[i].code) return false;
  }
  return true;
}
static_assert(IsSorted(), "one text per code, in code order");

std::string_view TextOf(XdrCode code) {
  const auto* found =
      std::lower_bound(std::begin(kTexts), std::end(kTexts), code,
                       [](const XdrText& row, XdrCode wanted) { return row.code < wanted; });
  return found != std::end(kTexts) && found->code == code ? found->text : std::string_view();
}

}  // namespace

std::string XdrReason(XdrCode code, std::initializer_list<std::string_view> arguments) {
  std::string reason;
  const std::string_view text = TextOf(code);
  for (std::size_t at = 0; at < text.size(); ++at) {
    const std::size_t number = text[at] == '%' && at + 1 < text.size()
                                   ? static_cast<std::size_t>(text[at + 1] - '1')
                                   : arguments.size();
    if (number >= arguments.size()) {
      reason += text[at];
      continue;
    }
    reason += arguments.begin()[number];
    ++at;
  }
  return reason + "\r\n";
}

void SetXdrError(dom::ParseError& error, XdrCode code,
                 std::initializer_list<std::string_view> arguments) {
  error.code = static_cast<std::int32_t>(code);
  error.reason = XdrReason(code, arguments);
}

}  // namespace kx::xdr
