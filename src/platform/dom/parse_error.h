// Why and where a document could not be loaded: the codes and texts that the DOM publishes, and
// the record that a failed load leaves behind.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace kx::dom {

/// The numbers of load failures. The texts are in parse_error.cc; a test keeps the two in step.
enum class ParseCode : std::uint32_t {
  kNone = 0,
  kUndefinedEntity = 0xC00CE002,
  kEntityLoop = 0xC00CE003,
  kUnparsedEntityReference = 0xC00CE006,
  kExternalEntityInAttribute = 0xC00CE007,
  kColonInName = 0xC00CE00C,
  kReservedNamespace = 0xC00CE010,
  kUndeclaredPrefix = 0xC00CE01D,
  kEmptyPrefixBinding = 0xC00CE027,
  kTwoDataTypes = 0xC00CE205,
  kMissingEquals = 0xC00CE501,
  kMissingQuote = 0xC00CE502,
  kCommentSyntax = 0xC00CE503,
  kBadNameStart = 0xC00CE504,
  kBadNameChar = 0xC00CE505,
  kLessThanInAttribute = 0xC00CE506,
  kXmlDeclSyntax = 0xC00CE507,
  kBadCharInText = 0xC00CE508,
  kMissingWhiteSpace = 0xC00CE509,
  kExpectedGreaterThan = 0xC00CE50A,
  kBadCharInDtd = 0xC00CE50B,
  kBadCharInDeclaration = 0xC00CE50C,
  kMissingSemicolon = 0xC00CE50D,
  kBadCharInEntityReference = 0xC00CE50E,
  kUnbalancedParentheses = 0xC00CE50F,
  kExpectedOpenBracket = 0xC00CE510,
  kUnexpectedWhiteSpace = 0xC00CE513,
  kTruncatedCharacter = 0xC00CE514,
  kBadPiSyntax = 0xC00CE51A,
  kUnclosedQuote = 0xC00CE51B,
  kMultipleColons = 0xC00CE51C,
  kBadDecimalDigit = 0xC00CE51D,
  kBadHexDigit = 0xC00CE51E,
  kBadCharReference = 0xC00CE51F,
  kExpectedWhiteSpaceOrQuestion = 0xC00CE520,
  kUnexpectedEndTag = 0xC00CE552,
  kUnclosedTags = 0xC00CE553,
  kDuplicateAttribute = 0xC00CE554,
  kMultipleRoots = 0xC00CE555,
  kInvalidAtRoot = 0xC00CE556,
  kMisplacedXmlDecl = 0xC00CE557,
  kMissingRoot = 0xC00CE558,
  kUnexpectedEnd = 0xC00CE559,
  kParameterEntityInMarkup = 0xC00CE55A,
  kParameterEntityNesting = 0xC00CE55B,
  kCDataCloseInText = 0xC00CE55C,
  kUnclosedPi = 0xC00CE55D,
  kUnclosedStartTag = 0xC00CE55E,
  kUnclosedEndTag = 0xC00CE55F,
  kUnclosedString = 0xC00CE560,
  kUnclosedComment = 0xC00CE561,
  kUnclosedDeclaration = 0xC00CE562,
  kUnclosedMarkupDeclaration = 0xC00CE563,
  kUnclosedCData = 0xC00CE564,
  kBadDeclarationName = 0xC00CE565,
  kBadExternalId = 0xC00CE566,
  kReservedPrefix = 0xC00CE568,
  kVersionRequired = 0xC00CE569,
  kEncodingRequired = 0xC00CE56A,
  kNameRequired = 0xC00CE56B,
  kUnexpectedAttribute = 0xC00CE56C,
  kTagMismatch = 0xC00CE56D,
  kUnknownEncoding = 0xC00CE56E,
  kEncodingSwitch = 0xC00CE56F,
  kBadXmlSpace = 0xC00CE573,
  kReservedXmlName = 0xC00CE576,
  kCDataInDtd = 0xC00CE578,
  kBadStandalone = 0xC00CE579,
  kStandaloneInEntity = 0xC00CE57A,
  kDoctypeInDtd = 0xC00CE57B,
  kUndefinedEntityToken = 0xC00CE57C,
  kDoctypeOutsideProlog = 0xC00CE57E,
  kBadVersion = 0xC00CE57F,
  kDeclarationOutsideDtd = 0xC00CE580,
  kMultipleDoctypes = 0xC00CE581,
  kDepthExceeded = 0xC00CE586,
  kObjectNotFound = 0x800C0006,
  kResourceNotFound = 0x800C0005,
  kAccessDenied = 0x80070005,
  kUnknownProtocol = 0x800C000D,
  kTooLarge = 0x8007000E,
};

/// What a load left behind. `code` 0 means that it went well; then everything else is empty.
struct ParseError {
  std::int32_t code = 0;     ///< the failure's number as a signed 32-bit value
  std::string reason;        ///< the text with its arguments filled in, ended by CR LF
  std::string srcText;       ///< the whole source line that holds the position, without its end
  std::string url;           ///< the location given to the load; empty for text
  std::int32_t line = 0;     ///< 1 for the first; 0 when the failure has no place
  std::int32_t linePos = 0;  ///< 1 for the first character; counted in UTF-16 units
  std::int32_t filePos = 0;  ///< 0 for the first; UTF-16 units of the text as it was handed in

  explicit operator bool() const noexcept { return code != 0; }
};

/// The published text of a code with its %1 and %2 filled in, CR LF included.
std::string ParseReason(ParseCode code, std::initializer_list<std::string_view> arguments = {});

/// Fills in the code and text; the place stays as it is.
void SetParseError(ParseError& error, ParseCode code,
                   std::initializer_list<std::string_view> arguments = {});

/// Fills in line, position and source line for the failure found at byte `offset` of `text`
/// (UTF-8, as it was handed in, line ends not folded).
void SetParsePlace(ParseError& error, std::string_view text, std::size_t offset);

}  // namespace kx::dom
