// See parse_error.h.
#include "platform/dom/parse_error.h"

#include "platform/text/unicode.h"

#include <algorithm>
#include <iterator>

namespace kx::dom {

namespace {

struct ParseText {
  ParseCode code;
  std::string_view text;
};

// Kept in step with ParseCode by the test that asks for the text of every code.
constexpr ParseText kParseTexts[] = {
    {ParseCode::kAccessDenied, "Access is denied."},
    {ParseCode::kTooLarge,
     "The document, its entities expanded, is larger than the limit of %1 bytes."},
    {ParseCode::kResourceNotFound, "The system cannot locate the resource specified."},
    {ParseCode::kObjectNotFound, "The system cannot locate the object specified."},
    {ParseCode::kUnknownProtocol, "The specified protocol is unknown."},
    {ParseCode::kUndefinedEntity, "Reference to undefined entity '%1'."},
    {ParseCode::kEntityLoop, "Entity '%1' contains an infinite entity reference loop."},
    {ParseCode::kUnparsedEntityReference,
     "Cannot use unparsed entity '%1' in an entity reference."},
    {ParseCode::kExternalEntityInAttribute,
     "Cannot reference an external general parsed entity '%1' in an attribute value."},
    {ParseCode::kColonInName,
     "Entity, EntityRef, PI, Notation names, or NMToken cannot contain a colon."},
    {ParseCode::kReservedNamespace, "Reserved namespace '%1' can not be redeclared."},
    {ParseCode::kUndeclaredPrefix, "Reference to undeclared namespace prefix: '%1'."},
    {ParseCode::kEmptyPrefixBinding, "A namespace prefix cannot be declared with an empty URI."},
    {ParseCode::kTwoDataTypes, "Cannot have two datatype attributes on one element."},
    {ParseCode::kMissingEquals, "Missing equals sign between attribute and attribute value."},
    {ParseCode::kMissingQuote,
     "A string literal was expected, but no opening quote character was found."},
    {ParseCode::kCommentSyntax, "Incorrect syntax was used in a comment."},
    {ParseCode::kBadNameStart, "A name was started with an invalid character."},
    {ParseCode::kBadNameChar, "A name contained an invalid character."},
    {ParseCode::kLessThanInAttribute, "The character '<' cannot be used in an attribute value."},
    {ParseCode::kXmlDeclSyntax, "Invalid syntax for an xml declaration."},
    {ParseCode::kBadCharInText, "An invalid character was found in text content."},
    {ParseCode::kMissingWhiteSpace, "Required white space was missing."},
    {ParseCode::kExpectedGreaterThan, "The character '>' was expected."},
    {ParseCode::kBadCharInDtd, "Invalid character found in DTD."},
    {ParseCode::kBadCharInDeclaration, "An invalid character was found inside a DTD declaration."},
    {ParseCode::kMissingSemicolon, "A semi colon character was expected."},
    {ParseCode::kBadCharInEntityReference,
     "An invalid character was found inside an entity reference."},
    {ParseCode::kUnbalancedParentheses, "Unbalanced parentheses."},
    {ParseCode::kExpectedOpenBracket, "An opening '[' character was expected."},
    {ParseCode::kUnexpectedWhiteSpace, "Whitespace is not allowed at this location."},
    {ParseCode::kTruncatedCharacter, "End of file reached in invalid state for current encoding."},
    {ParseCode::kBadPiSyntax, "Invalid syntax in processing instruction declaration."},
    {ParseCode::kUnclosedQuote,
     "A single or double closing quote character (\\' or \\\") is missing."},
    {ParseCode::kMultipleColons, "Multiple colons are not allowed in a name."},
    {ParseCode::kBadDecimalDigit, "Invalid character for decimal digit."},
    {ParseCode::kBadHexDigit, "Invalid character for hexadecimal digit."},
    {ParseCode::kBadCharReference, "Invalid unicode character value for this platform."},
    {ParseCode::kExpectedWhiteSpaceOrQuestion, "Expecting whitespace or '?'."},
    {ParseCode::kUnexpectedEndTag, "End tag was not expected at this location."},
    {ParseCode::kUnclosedTags, "The following tags were not closed: %1."},
    {ParseCode::kDuplicateAttribute, "Duplicate attribute."},
    {ParseCode::kMultipleRoots, "Only one top level element is allowed in an XML document."},
    {ParseCode::kInvalidAtRoot, "Invalid at the top level of the document."},
    {ParseCode::kMisplacedXmlDecl, "Invalid xml declaration."},
    {ParseCode::kMissingRoot, "XML document must have a top level element."},
    {ParseCode::kUnexpectedEnd, "Unexpected end of file."},
    {ParseCode::kParameterEntityInMarkup,
     "Parameter entities cannot be used inside markup declarations in an internal subset."},
    {ParseCode::kParameterEntityNesting,
     "The replacement text for a parameter entity must be properly nested with parenthesized "
     "groups."},
    {ParseCode::kCDataCloseInText, "The literal string ']]>' is not allowed in element content."},
    {ParseCode::kUnclosedPi, "Processing instruction was not closed."},
    {ParseCode::kUnclosedStartTag, "Element was not closed."},
    {ParseCode::kUnclosedEndTag, "End element was missing the character '>'."},
    {ParseCode::kUnclosedString, "A string literal was not closed."},
    {ParseCode::kUnclosedComment, "A comment was not closed."},
    {ParseCode::kUnclosedDeclaration, "A declaration was not closed."},
    {ParseCode::kUnclosedMarkupDeclaration, "A markup declaration was not closed."},
    {ParseCode::kUnclosedCData, "A CDATA section was not closed."},
    {ParseCode::kBadDeclarationName, "Declaration has an invalid name."},
    {ParseCode::kBadExternalId, "External ID is invalid."},
    {ParseCode::kReservedPrefix,
     "The namespace prefix is not allowed to start with the reserved string \"xml\"."},
    {ParseCode::kVersionRequired, "The 'version' attribute is required at this location."},
    {ParseCode::kEncodingRequired, "The 'encoding' attribute is required at this location."},
    {ParseCode::kNameRequired, "At least one name is required at this location."},
    {ParseCode::kUnexpectedAttribute,
     "The specified attribute was not expected at this location. The attribute may be case "
     "sensitive."},
    {ParseCode::kTagMismatch, "End tag '%2' does not match the start tag '%1'."},
    {ParseCode::kUnknownEncoding, "System does not support the specified encoding."},
    {ParseCode::kEncodingSwitch,
     "Switch from current encoding to specified encoding not supported."},
    {ParseCode::kBadXmlSpace,
     "XML space attribute has invalid value. Must specify 'default' or 'preserve'."},
    {ParseCode::kReservedXmlName, "The name 'xml' is reserved and must be lower case."},
    {ParseCode::kCDataInDtd, "CDATA is not allowed in a DTD."},
    {ParseCode::kBadStandalone, "The standalone attribute must have the value 'yes' or 'no'."},
    {ParseCode::kStandaloneInEntity,
     "The standalone attribute cannot be used in external entities."},
    {ParseCode::kDoctypeInDtd, "Cannot have a DOCTYPE declaration in a DTD."},
    {ParseCode::kUndefinedEntityToken, "Reference to undefined entity."},
    {ParseCode::kDoctypeOutsideProlog, "Cannot have a DOCTYPE declaration outside of a prolog."},
    {ParseCode::kBadVersion, "Invalid version number."},
    {ParseCode::kDeclarationOutsideDtd, "Cannot have a DTD declaration outside of a DTD."},
    {ParseCode::kMultipleDoctypes, "Cannot have multiple DOCTYPE declarations."},
    {ParseCode::kDepthExceeded, "The maximum element depth was exceeded."},
};

constexpr bool IsSorted() {
  for (std::size_t i = 1; i < std::size(kParseTexts); ++i) {
    if (kParseTexts[i - 1].code >= kParseTexts[i].code) return false;
  }
  return true;
}
static_assert(IsSorted(), "one text per code, in code order");

std::string_view TextOf(ParseCode code) {
  const auto* found =
      std::lower_bound(std::begin(kParseTexts), std::end(kParseTexts), code,
                       [](const ParseText& row, ParseCode wanted) { return row.code < wanted; });
  return found != std::end(kParseTexts) && found->code == code ? found->text : std::string_view{};
}

}  // namespace

std::string ParseReason(ParseCode code, std::initializer_list<std::string_view> arguments) {
  std::string reason;
  const std::string_view text = TextOf(code);
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool placeholder = text[i] == '%' && i + 1 < text.size() && text[i + 1] >= '1' &&
                             static_cast<std::size_t>(text[i + 1] - '1') < arguments.size();
    if (!placeholder) {
      reason += text[i];
      continue;
    }
    reason += arguments.begin()[text[i + 1] - '1'];
    ++i;
  }
  reason += "\r\n";
  return reason;
}

void SetParseError(ParseError& error, ParseCode code,
                   std::initializer_list<std::string_view> arguments) {
  error.code = static_cast<std::int32_t>(code);
  error.reason = ParseReason(code, arguments);
}

void SetParsePlace(ParseError& error, std::string_view text, std::size_t offset) {
  offset = std::min(offset, text.size());
  std::size_t lineStart = 0;
  std::int32_t line = 1;
  for (std::size_t at = 0; at < offset; ++at) {
    const bool loneCr = text[at] == '\r' && (at + 1 >= text.size() || text[at + 1] != '\n');
    if (text[at] != '\n' && !loneCr) continue;
    ++line;
    lineStart = at + 1;
  }
  const std::size_t lineEnd = std::min(text.find_first_of("\r\n", lineStart), text.size());
  error.line = line;
  error.linePos =
      static_cast<std::int32_t>(text::CountUtf16Units(text.substr(lineStart, offset - lineStart))) +
      1;
  error.filePos = static_cast<std::int32_t>(text::CountUtf16Units(text.substr(0, offset)));
  error.srcText = text.substr(lineStart, lineEnd - lineStart);
  if (!text::IsValidUtf8(error.srcText)) error.srcText = text::ToUtf8(text::ToUtf16(error.srcText));
}

}  // namespace kx::dom
