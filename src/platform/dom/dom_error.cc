// See dom_error.h.
#include "platform/dom/dom_error.h"

#include <array>
#include <cstddef>
#include <iterator>
#include <string>

namespace kx::dom {

namespace {

struct DomText {
  DomCode code;
  std::string_view text;
};

// In the order of the codes. The texts are published: their punctuation stays as it is.
constexpr DomText kDomTexts[] = {
    {DomCode::kInvalidParameter, "The parameter is incorrect."},
    {DomCode::kDataTypeParse, "Error parsing '%1' as %2 datatype."},
    {DomCode::kInsertPositionNotFound, "Insert position node not found"},
    {DomCode::kBadNodeType, "This operation can not be performed with a Node of type %1."},
    {DomCode::kInsertUnderItself, "Inserting a Node or its ancestor under itself is not allowed."},
    {DomCode::kPositionNotAChild,
     "Insert position Node must be a Child of the Node to insert under."},
    {DomCode::kAttributesNotAllowed, "Attributes are not allowed on Nodes of type '%1'."},
    {DomCode::kNotAChild, "The parameter Node is not a child of this Node."},
    {DomCode::kNameRequired, "createNode requires a name for given NodeType."},
    {DomCode::kAccessDenied, "Access denied."},
    {DomCode::kAttributeInUse,
     "Attributes must be removed before adding them to a different node."},
    {DomCode::kInvalidData, "Invalid data for a node of type '%1'."},
    {DomCode::kBadOffset,
     "The offset must be 0 or a positive number that is not greater than the number of characters "
     "in the data."},
    {DomCode::kNotItsAttribute, "The provided node is not a specified attribute on this node."},
    {DomCode::kDataTypeNotSupported, "Datatype '%1' is not supported."},
};

constexpr bool InCodeOrder() {
  for (std::size_t i = 1; i < std::size(kDomTexts); ++i) {
    if (kDomTexts[i - 1].code >= kDomTexts[i].code) return false;
  }
  return true;
}
static_assert(InCodeOrder(), "one text for each code, in code order");

struct TypeNames {
  std::string_view name;
  std::string_view capitals;
};

// By the number of the kind.
constexpr std::array<TypeNames, 14> kTypeNames = {{
    {"", ""},
    {"element", "ELEMENT"},
    {"attribute", "ATTRIBUTE"},
    {"text", "TEXT"},
    {"cdatasection", "CDATASECTION"},
    {"entityreference", "ENTITYREFERENCE"},
    {"entity", "ENTITY"},
    {"processinginstruction", "PROCESSINGINSTRUCTION"},
    {"comment", "COMMENT"},
    {"document", "DOCUMENT"},
    {"documenttype", "DOCUMENTTYPE"},
    {"documentfragment", "DOCUMENTFRAGMENT"},
    {"notation", "NOTATION"},
    {"", ""},
}};

std::string_view PatternOf(DomCode code) {
  for (const DomText& entry : kDomTexts) {
    if (entry.code == code) return entry.text;
  }
  return {};
}

}  // namespace

std::string DomErrorText(DomCode code, std::initializer_list<std::string_view> arguments) {
  const std::string_view pattern = PatternOf(code);
  std::string text;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    if (pattern[i] != '%' || i + 1 == pattern.size()) {
      text += pattern[i];
      continue;
    }
    const auto number = static_cast<std::size_t>(pattern[++i] - '1');
    if (number < arguments.size()) text += arguments.begin()[number];
  }
  return text += "\r\n";
}

void RaiseDomFailure(DomCode code, std::initializer_list<std::string_view> arguments) {
  throw DomError(kStatusFail, std::string(kDomErrorSource), DomErrorText(code, arguments));
}

void RaiseDomFailure(ParseCode code, std::initializer_list<std::string_view> arguments) {
  throw DomError(kStatusFail, std::string(kDomErrorSource), ParseReason(code, arguments));
}

void RaiseDomArgument(DomCode code, std::initializer_list<std::string_view> arguments) {
  throw DomError(kStatusInvalidArgument, std::string(kDomErrorSource),
                 DomErrorText(code, arguments));
}

std::string_view NodeTypeName(NodeType type) noexcept {
  return kTypeNames[static_cast<std::size_t>(type)].name;
}

std::string_view NodeTypeCapitals(NodeType type) noexcept {
  return kTypeNames[static_cast<std::size_t>(type)].capitals;
}

}  // namespace kx::dom
