// Every way in which a document fails to load: the code, the whole reason, and the place, row by
// row. A row's document is one line unless the row says otherwise.
#include "platform/dom/parse_error.h"

#include "platform/dom/parser.h"

#include <gtest/gtest.h>
#include <set>
#include <string>
#include <string_view>

namespace kx::dom {
namespace {

ParseError ErrorOf(std::string_view text, const ParseOptions& options = {}) {
  DocumentData document(nullptr);
  ParseError error;
  EXPECT_FALSE(ParseText(document, text, options, error)) << text;
  return error;
}

ParseError ErrorOfBytes(std::string_view bytes) {
  DocumentData document(nullptr);
  ParseError error;
  EXPECT_FALSE(ParseBytes(document, bytes, {}, error));
  return error;
}

// A failure in a document of one line: `position` is that of the failure in it.
struct LineCase {
  std::string_view text;
  std::uint32_t code;
  std::string_view reason;
  std::int32_t position;
  const char* why;
};

void ExpectFailure(const LineCase& row, const ParseError& error) {
  SCOPED_TRACE(std::string(row.why) + ": " + std::string(row.text));
  EXPECT_EQ(static_cast<std::uint32_t>(error.code), row.code)
      << std::hex << static_cast<std::uint32_t>(error.code) << " " << error.reason;
  EXPECT_EQ(error.reason, std::string(row.reason) + "\r\n");
  EXPECT_EQ(error.line, 1);
  EXPECT_EQ(error.linePos, row.position);
  EXPECT_EQ(error.filePos, row.position - 1);
  EXPECT_EQ(error.srcText, row.text);
  EXPECT_EQ(error.url, "");
}

template <std::size_t kCount>
void ExpectFailures(const LineCase (&rows)[kCount]) {
  for (const LineCase& row : rows) ExpectFailure(row, ErrorOf(row.text));
}

constexpr LineCase kTagCases[] = {
    {"<a b/>", 0xC00CE501, "Missing equals sign between attribute and attribute value.", 5,
     "the tag ends instead"},
    {"<a b>", 0xC00CE501, "Missing equals sign between attribute and attribute value.", 5,
     "the tag ends instead"},
    {"<a b \"1\"/>", 0xC00CE501, "Missing equals sign between attribute and attribute value.", 6,
     "the value follows at once"},
    {"<a b c='1'/>", 0xC00CE501, "Missing equals sign between attribute and attribute value.", 6,
     "another name follows"},
    {"<a b=1/>", 0xC00CE502,
     "A string literal was expected, but no opening quote character was found.", 6,
     "a value without quotes"},
    {"<a b=/>", 0xC00CE502,
     "A string literal was expected, but no opening quote character was found.", 6, "no value"},
    {"<a b = >", 0xC00CE502,
     "A string literal was expected, but no opening quote character was found.", 8,
     "white space around the sign is allowed, the value still missing"},
    {"<1a/>", 0xC00CE504, "A name was started with an invalid character.", 2, "a digit"},
    {"<-a/>", 0xC00CE504, "A name was started with an invalid character.", 2, "a hyphen"},
    {"<a><.b/></a>", 0xC00CE504, "A name was started with an invalid character.", 5,
     "a dot, in content"},
    {"<a 1b=\"\"/>", 0xC00CE504, "A name was started with an invalid character.", 4,
     "a digit in an attribute's name"},
    {"< a/>", 0xC00CE504, "A name was started with an invalid character.", 2,
     "white space after the bracket"},
    {"<a>< b/></a>", 0xC00CE504, "A name was started with an invalid character.", 5,
     "white space after the bracket, in content"},
    {"<a></1></a>", 0xC00CE504, "A name was started with an invalid character.", 6,
     "a digit in an end tag"},
    {"<>", 0xC00CE504, "A name was started with an invalid character.", 2, "no name"},
    {"<:a/>", 0xC00CE504, "A name was started with an invalid character.", 2,
     "a prefix without characters"},
    {"<a$b/>", 0xC00CE505, "A name contained an invalid character.", 3, "in an element's name"},
    {"<a b$='1'/>", 0xC00CE505, "A name contained an invalid character.", 5,
     "in an attribute's name"},
    {"<a\xC2\xA0/>", 0xC00CE505, "A name contained an invalid character.", 3,
     "a no-break space does not end a name"},
    {"<a b=\"<\"/>", 0xC00CE506, "The character '<' cannot be used in an attribute value.", 7,
     "inside the value"},
    {"<a b='x<y'/>", 0xC00CE506, "The character '<' cannot be used in an attribute value.", 8,
     "inside the value"},
    {"<a b=\"1><c/></a>", 0xC00CE506, "The character '<' cannot be used in an attribute value.", 9,
     "what an unclosed value meets first"},
    {"<a b=\"1\"c=\"2\"/>", 0xC00CE509, "Required white space was missing.", 9,
     "between attributes"},
    {"<a / >", 0xC00CE50A, "The character '>' was expected.", 5, "white space after the slash"},
    {"<a/b>", 0xC00CE50A, "The character '>' was expected.", 4, "a name after the slash"},
    {"<a></a b>", 0xC00CE50A, "The character '>' was expected.", 8, "an attribute of an end tag"},
    {"<a:b:c/>", 0xC00CE51C, "Multiple colons are not allowed in a name.", 5, "two colons"},
    {"<a x:y:z='1'/>", 0xC00CE51C, "Multiple colons are not allowed in a name.", 7,
     "two colons in an attribute's name"},
    {"<a b=\"1\" b=\"2\"/>", 0xC00CE554, "Duplicate attribute.", 10, "the same name"},
    {"<a b='1' c='2' b='3'/>", 0xC00CE554, "Duplicate attribute.", 16, "with another between"},
    {"<a xmlns='u' xmlns='u'/>", 0xC00CE554, "Duplicate attribute.", 14, "the same declaration"},
    {"<a><b></a>", 0xC00CE56D, "End tag 'a' does not match the start tag 'b'.", 9,
     "the first character of the name in the end tag"},
    {"\t<from>Jani</Ffrom>", 0xC00CE56D, "End tag 'Ffrom' does not match the start tag 'from'.", 14,
     "a tab counts one"},
    {"<a></A>", 0xC00CE56D, "End tag 'A' does not match the start tag 'a'.", 6, "case matters"},
    {"<ab></a>", 0xC00CE56D, "End tag 'a' does not match the start tag 'ab'.", 7, "a shorter name"},
    {"<a></ab>", 0xC00CE56D, "End tag 'ab' does not match the start tag 'a'.", 6, "a longer name"},
    {"<p:a xmlns:p='u' xmlns:q='u'></q:a>", 0xC00CE56D,
     "End tag 'q:a' does not match the start tag 'p:a'.", 32,
     "names compare as written, not by namespace"},
    {"<a xml:space=\"x\"/>", 0xC00CE573,
     "XML space attribute has invalid value. Must specify 'default' or 'preserve'.", 4,
     "neither default nor preserve"},
};

TEST(ParseError, TellsWhatIsWrongWithTags) { ExpectFailures(kTagCases); }

constexpr LineCase kTextCases[] = {
    {"<a>\x01</a>", 0xC00CE508, "An invalid character was found in text content.", 4, "text"},
    {"<a>ok\x1F</a>", 0xC00CE508, "An invalid character was found in text content.", 6, "text"},
    {"<a b='\x02'/>", 0xC00CE508, "An invalid character was found in text content.", 7,
     "an attribute value"},
    {"<a><!--\x08--></a>", 0xC00CE508, "An invalid character was found in text content.", 8,
     "a comment"},
    {"<a><?p \x0B?></a>", 0xC00CE508, "An invalid character was found in text content.", 8,
     "a processing instruction"},
    {"<a><![CDATA[\x0C]]></a>", 0xC00CE508, "An invalid character was found in text content.", 13,
     "a CDATA section"},
    {"<a>\xEF\xBF\xBE</a>", 0xC00CE508, "An invalid character was found in text content.", 4,
     "U+FFFE"},
    {"<a>\xEF\xBF\xBF</a>", 0xC00CE508, "An invalid character was found in text content.", 4,
     "U+FFFF"},
    {"<a>]]></a>", 0xC00CE55C, "The literal string ']]>' is not allowed in element content.", 6,
     "the character that completes it"},
    {"<a>x & y</a>", 0xC00CE513, "Whitespace is not allowed at this location.", 7,
     "white space after the ampersand"},
    {"<a b='x & y'/>", 0xC00CE513, "Whitespace is not allowed at this location.", 10,
     "white space after the ampersand, in a value"},
    {"<a>&1;</a>", 0xC00CE504, "A name was started with an invalid character.", 5,
     "a digit begins no entity's name"},
    {"<a>&;</a>", 0xC00CE504, "A name was started with an invalid character.", 5, "no name"},
    {"<a>&amp</a>", 0xC00CE50D, "A semi colon character was expected.", 8,
     "the character after the name"},
    {"<a>x&y=z</a>", 0xC00CE50D, "A semi colon character was expected.", 7,
     "the character after the name"},
    {"<a b='&lt'/>", 0xC00CE50D, "A semi colon character was expected.", 10, "in a value"},
    {"<a>&#A;</a>", 0xC00CE51D, "Invalid character for decimal digit.", 6, "a letter"},
    {"<a>&#;</a>", 0xC00CE51D, "Invalid character for decimal digit.", 6, "no digit"},
    {"<a>&#xG;</a>", 0xC00CE51E, "Invalid character for hexadecimal digit.", 7, "a letter past F"},
    {"<a>&#x;</a>", 0xC00CE51E, "Invalid character for hexadecimal digit.", 7, "no digit"},
    {"<a>&#XA;</a>", 0xC00CE51D, "Invalid character for decimal digit.", 6,
     "the x is a small letter"},
    {"<a>&nbsp;</a>", 0xC00CE002, "Reference to undefined entity 'nbsp'.", 5, "not declared"},
    {"<a b='&u;'/>", 0xC00CE002, "Reference to undefined entity 'u'.", 8,
     "not declared, in a value"},
    {"<a>&LT;</a>", 0xC00CE002, "Reference to undefined entity 'LT'.", 5, "case matters"},
};

TEST(ParseError, TellsWhatIsWrongWithText) { ExpectFailures(kTextCases); }

struct CharacterCase {
  const char* reference;
  const char* why;
};

constexpr CharacterCase kCharacterCases[] = {
    {"&#0;", "the character zero"},
    {"&#x0;", "the character zero"},
    {"&#8;", "a control character"},
    {"&#x1F;", "a control character"},
    {"&#xD800;", "half of a surrogate pair"},
    {"&#57343;", "half of a surrogate pair"},
    {"&#xFFFE;", "no character"},
    {"&#65535;", "no character"},
    {"&#x110000;", "beyond Unicode"},
    {"&#xFFFFFFF;", "beyond Unicode"},
    {"&#4294967361;", "wraps to A in 32 bits"},
    {"&#x100000000000000041;", "wraps to A in 64 bits"},
};

TEST(ParseError, RefusesReferencesToWhatIsNoCharacter) {
  for (const CharacterCase& row : kCharacterCases) {
    SCOPED_TRACE(std::string(row.why) + ": " + row.reference);
    const std::string reference = row.reference;
    for (const std::string& text : {"<a>" + reference + "</a>", "<a b='" + reference + "'/>"}) {
      const ParseError error = ErrorOf(text);
      EXPECT_EQ(static_cast<std::uint32_t>(error.code), 0xC00CE51F) << error.reason;
      EXPECT_EQ(error.reason, "Invalid unicode character value for this platform.\r\n");
      EXPECT_EQ(error.line, 1);
      const std::size_t begin = text.find('&');
      EXPECT_GE(error.linePos, static_cast<std::int32_t>(begin + 1));
      EXPECT_LE(error.linePos, static_cast<std::int32_t>(begin + reference.size()));
      EXPECT_EQ(error.filePos, error.linePos - 1);
      EXPECT_EQ(error.srcText, text);
    }
  }
}

constexpr LineCase kMarkupCases[] = {
    {"<a><!-- x -- y --></a>", 0xC00CE503, "Incorrect syntax was used in a comment.", 13,
     "two hyphens inside"},
    {"<a><!--x---></a>", 0xC00CE503, "Incorrect syntax was used in a comment.", 11,
     "three hyphens at the end"},
    {"<a><!-x--></a>", 0xC00CE503, "Incorrect syntax was used in a comment.", 7,
     "one hyphen at the beginning"},
    {"<!-x--><a/>", 0xC00CE503, "Incorrect syntax was used in a comment.", 4,
     "one hyphen, before the root"},
    {"<a><![CDATAx]]></a>", 0xC00CE510, "An opening '[' character was expected.", 12,
     "something else after CDATA"},
    {"<a><![CDATA [x]]></a>", 0xC00CE510, "An opening '[' character was expected.", 12,
     "white space after CDATA"},
    {"<!FOO><a/>", 0xC00CE565, "Declaration has an invalid name.", 3, "before the root"},
    {"<a><!FOO></a>", 0xC00CE565, "Declaration has an invalid name.", 6, "in content"},
    {"<a><![CDAT[x]]></a>", 0xC00CE565, "Declaration has an invalid name.", 7,
     "a section of another name"},
    {"<a><?XML x?></a>", 0xC00CE576, "The name 'xml' is reserved and must be lower case.", 6,
     "in content"},
    {"<?Xml version='1.0'?><a/>", 0xC00CE576, "The name 'xml' is reserved and must be lower case.",
     3, "where the declaration stands"},
    {"<a><?p:q x?></a>", 0xC00CE00C,
     "Entity, EntityRef, PI, Notation names, or NMToken cannot contain a colon.", 7,
     "a target with a colon"},
    {"<a><!ELEMENT a ANY></a>", 0xC00CE580, "Cannot have a DTD declaration outside of a DTD.", 6,
     "in content"},
    {"<!ATTLIST a b CDATA ''><a/>", 0xC00CE580, "Cannot have a DTD declaration outside of a DTD.",
     3, "before the root"},
    {"<a/><!ENTITY e 'x'>", 0xC00CE580, "Cannot have a DTD declaration outside of a DTD.", 7,
     "after the root"},
    {"<a><!NOTATION n SYSTEM 's'></a>", 0xC00CE580,
     "Cannot have a DTD declaration outside of a DTD.", 6, "in content"},
    {"<a/><!DOCTYPE a>", 0xC00CE57E, "Cannot have a DOCTYPE declaration outside of a prolog.", 7,
     "after the root"},
    {"<a><!DOCTYPE a></a>", 0xC00CE57E, "Cannot have a DOCTYPE declaration outside of a prolog.", 6,
     "inside the root"},
    {"<!DOCTYPE a><!DOCTYPE a><a/>", 0xC00CE581, "Cannot have multiple DOCTYPE declarations.", 15,
     "a second one"},
};

TEST(ParseError, TellsWhatIsWrongWithCommentsSectionsAndInstructions) {
  ExpectFailures(kMarkupCases);
}

constexpr LineCase kTopLevelCases[] = {
    {"x", 0xC00CE556, "Invalid at the top level of the document.", 1, "plain text"},
    {"  x", 0xC00CE556, "Invalid at the top level of the document.", 3,
     "the first character that is not white space"},
    {"x<a/>", 0xC00CE556, "Invalid at the top level of the document.", 1, "text before the root"},
    {"<a/>x", 0xC00CE556, "Invalid at the top level of the document.", 5, "text after the root"},
    {"<a/> \t x", 0xC00CE556, "Invalid at the top level of the document.", 8,
     "after white space after the root"},
    {"&amp;<a/>", 0xC00CE556, "Invalid at the top level of the document.", 1, "a reference"},
    {"<![CDATA[x]]><a/>", 0xC00CE556, "Invalid at the top level of the document.", 1,
     "a CDATA section before the root"},
    {"<a/><![CDATA[x]]>", 0xC00CE556, "Invalid at the top level of the document.", 5,
     "a CDATA section after the root"},
    {"\xC3\xAF\xC2\xBB\xC2\xBF<a/>", 0xC00CE556, "Invalid at the top level of the document.", 1,
     "a byte-order mark that was decoded as text"},
    {"<a/><b/>", 0xC00CE555, "Only one top level element is allowed in an XML document.", 6,
     "a second root"},
    {"<a></a><a>", 0xC00CE555, "Only one top level element is allowed in an XML document.", 9,
     "a second root"},
    {" <?xml version=\"1.0\"?><a/>", 0xC00CE557, "Invalid xml declaration.", 4,
     "white space in front"},
    {"\t<?xml version=\"1.0\"?><a/>", 0xC00CE557, "Invalid xml declaration.", 4, "a tab in front"},
    {"<!--c--><?xml version=\"1.0\"?><a/>", 0xC00CE557, "Invalid xml declaration.", 11,
     "a comment in front"},
    {"<a><?xml version=\"1.0\"?></a>", 0xC00CE557, "Invalid xml declaration.", 6,
     "inside the root"},
    {"<a/><?xml version=\"1.0\"?>", 0xC00CE557, "Invalid xml declaration.", 7, "after the root"},
    {"<?xml version='1.0'?><?xml version='1.0'?><a/>", 0xC00CE557, "Invalid xml declaration.", 24,
     "a second one"},
};

TEST(ParseError, TellsWhatMayNotStandAtTheTopLevel) { ExpectFailures(kTopLevelCases); }

constexpr LineCase kDeclarationCases[] = {
    {"<?xml?><a/>", 0xC00CE507, "Invalid syntax for an xml declaration.", 6, "no version at all"},
    {"<?xml ?><a/>", 0xC00CE507, "Invalid syntax for an xml declaration.", 7, "no version at all"},
    {"<?xml version='1.0' $?><a/>", 0xC00CE507, "Invalid syntax for an xml declaration.", 21,
     "what can begin nothing"},
    {"<?xml version='1.0' ? ><a/>", 0xC00CE507, "Invalid syntax for an xml declaration.", 22,
     "the end is one piece"},
    {"<?xml version 1.0?><a/>", 0xC00CE501,
     "Missing equals sign between attribute and attribute value.", 15, "no equals sign"},
    {"<?xml version=1.0?><a/>", 0xC00CE502,
     "A string literal was expected, but no opening quote character was found.", 15, "no quotes"},
    {"<?xml encoding=\"utf-8\"?><a/>", 0xC00CE569,
     "The 'version' attribute is required at this location.", 7, "the version left out"},
    {"<?xml standalone='yes'?><a/>", 0xC00CE569,
     "The 'version' attribute is required at this location.", 7, "the version left out"},
    {"<?xml encoding='utf-8' version='1.0'?><a/>", 0xC00CE569,
     "The 'version' attribute is required at this location.", 7, "the version is not first"},
    {"<?xml version=\"1.0\"x?><a/>", 0xC00CE520, "Expecting whitespace or '?'.", 20,
     "a letter after the value"},
    {"<?xml version='1.0'encoding='utf-8'?><a/>", 0xC00CE520, "Expecting whitespace or '?'.", 20,
     "no white space between"},
    {"<?xml version='1.0' foo='x'?><a/>", 0xC00CE56C,
     "The specified attribute was not expected at this location. The attribute may be case "
     "sensitive.",
     21, "an unknown one"},
    {"<?xml version='1.0' Encoding='utf-8'?><a/>", 0xC00CE56C,
     "The specified attribute was not expected at this location. The attribute may be case "
     "sensitive.",
     21, "case matters"},
    {"<?xml version='1.0' standalone='yes' encoding='utf-8'?><a/>", 0xC00CE56C,
     "The specified attribute was not expected at this location. The attribute may be case "
     "sensitive.",
     38, "a misplaced one"},
    {"<?xml version='1.0' version='1.0'?><a/>", 0xC00CE56C,
     "The specified attribute was not expected at this location. The attribute may be case "
     "sensitive.",
     21, "one given twice"},
};

TEST(ParseError, TellsWhatIsWrongWithTheXmlDeclaration) { ExpectFailures(kDeclarationCases); }

// Failures whose place inside the declaration is that of the value or of its name.
struct ValueCase {
  const char* text;
  std::uint32_t code;
  const char* reason;
  std::int32_t from;
  std::int32_t to;
};

constexpr ValueCase kValueCases[] = {
    {"<?xml version='1.1'?><a/>", 0xC00CE57F, "Invalid version number.\r\n", 7, 20},
    {"<?xml version='2.0'?><a/>", 0xC00CE57F, "Invalid version number.\r\n", 7, 20},
    {"<?xml version='1.0 '?><a/>", 0xC00CE57F, "Invalid version number.\r\n", 7, 21},
    {"<?xml version=''?><a/>", 0xC00CE57F, "Invalid version number.\r\n", 7, 17},
    {"<?xml version='1.0' standalone='maybe'?><a/>", 0xC00CE579,
     "The standalone attribute must have the value 'yes' or 'no'.\r\n", 21, 39},
    {"<?xml version='1.0' standalone='YES'?><a/>", 0xC00CE579,
     "The standalone attribute must have the value 'yes' or 'no'.\r\n", 21, 37},
    {"<?xml version='1.0' encoding='no-such-encoding'?><a/>", 0xC00CE56E,
     "System does not support the specified encoding.\r\n", 21, 48},
    {"<?xml version='1.0' encoding='windows-936'?><a/>", 0xC00CE56E,
     "System does not support the specified encoding.\r\n", 21, 43},
    {"<?xml version='1.0' encoding=''?><a/>", 0xC00CE56E,
     "System does not support the specified encoding.\r\n", 21, 32},
};

TEST(ParseError, TellsWhichDeclaredValueIsRefused) {
  for (const ValueCase& row : kValueCases) {
    SCOPED_TRACE(row.text);
    const ParseError error = ErrorOf(row.text);
    EXPECT_EQ(static_cast<std::uint32_t>(error.code), row.code) << error.reason;
    EXPECT_EQ(error.reason, row.reason);
    EXPECT_EQ(error.line, 1);
    EXPECT_GE(error.linePos, row.from);
    EXPECT_LE(error.linePos, row.to);
    EXPECT_EQ(error.filePos, error.linePos - 1);
    EXPECT_EQ(error.srcText, row.text);
  }
}

constexpr LineCase kUnclosedCases[] = {
    {"<a><b>", 0xC00CE553, "The following tags were not closed: a, b.", 7, "outermost first"},
    {"<a>text", 0xC00CE553, "The following tags were not closed: a.", 8, "one"},
    {"<a><b/><c><d></d>", 0xC00CE553, "The following tags were not closed: a, c.", 18,
     "closed ones are not named"},
    {"<p:a xmlns:p='u'><b>", 0xC00CE553, "The following tags were not closed: p:a, b.", 21,
     "names as written"},
    {"<a", 0xC00CE55E, "Element was not closed.", 3, "after the name"},
    {"<a ", 0xC00CE55E, "Element was not closed.", 4, "after white space"},
    {"<a b", 0xC00CE55E, "Element was not closed.", 5, "after an attribute's name"},
    {"<a b=", 0xC00CE55E, "Element was not closed.", 6, "after the equals sign"},
    {"<a b=\"1\"", 0xC00CE55E, "Element was not closed.", 9, "after a value"},
    {"<a/", 0xC00CE55E, "Element was not closed.", 4, "after the slash"},
    {"<a b=\"1", 0xC00CE560, "A string literal was not closed.", 8, "inside a value"},
    {"<a b='", 0xC00CE560, "A string literal was not closed.", 7, "at a value's beginning"},
    {"<a></a", 0xC00CE55F, "End element was missing the character '>'.", 7, "after the name"},
    {"<a></a ", 0xC00CE55F, "End element was missing the character '>'.", 8, "after white space"},
    {"<a></", 0xC00CE55F, "End element was missing the character '>'.", 6, "before the name"},
    {"<a></a<b/>", 0xC00CE55F, "End element was missing the character '>'.", 7,
     "another tag follows"},
    {"<a><!-- x", 0xC00CE561, "A comment was not closed.", 10, "inside the root"},
    {"<!-- x --", 0xC00CE561, "A comment was not closed.", 10, "after its hyphens"},
    {"<a/><!--", 0xC00CE561, "A comment was not closed.", 9, "after the root"},
    {"<a><?p x", 0xC00CE55D, "Processing instruction was not closed.", 9, "inside the root"},
    {"<?p", 0xC00CE55D, "Processing instruction was not closed.", 4, "after its target"},
    {"<a><?p x ?", 0xC00CE55D, "Processing instruction was not closed.", 11,
     "after the question mark"},
    {"<a><![CDATA[x", 0xC00CE564, "A CDATA section was not closed.", 14, "in its text"},
    {"<a><![CDATA[x]]", 0xC00CE564, "A CDATA section was not closed.", 16, "before its last byte"},
    {"<!DOCTYPE a", 0xC00CE562, "A declaration was not closed.", 12, "after the name"},
    {"<!DOCTYPE a [", 0xC00CE562, "A declaration was not closed.", 14, "in the subset"},
    {"<!DOCTYPE a []", 0xC00CE562, "A declaration was not closed.", 15, "after the subset"},
    {"<!DOCTYPE a [<!ELEMENT a ", 0xC00CE563, "A markup declaration was not closed.", 26,
     "in an element's declaration"},
    {"<!DOCTYPE a [<!ATTLIST a b", 0xC00CE563, "A markup declaration was not closed.", 27,
     "in an attribute's declaration"},
    {"<!DOCTYPE a [<!ENTITY e 'x'", 0xC00CE563, "A markup declaration was not closed.", 28,
     "in an entity's declaration"},
    {"<!DOCTYPE a [<!NOTATION n SYSTEM 's'", 0xC00CE563, "A markup declaration was not closed.", 37,
     "in a notation's declaration"},
    {"<!DOCTYPE a SYSTEM \"x><a/>", 0xC00CE51B,
     "A single or double closing quote character (\\' or \\\") is missing.", 27,
     "a literal of the document type"},
    {"<!DOCTYPE a [<!ENTITY e \"x>]><a/>", 0xC00CE51B,
     "A single or double closing quote character (\\' or \\\") is missing.", 34,
     "a literal of a declaration"},
    {"<a>&", 0xC00CE559, "Unexpected end of file.", 5, "after an ampersand"},
    {"<a>&am", 0xC00CE559, "Unexpected end of file.", 7, "in a reference"},
    {"<a>&#6", 0xC00CE559, "Unexpected end of file.", 7, "in a reference by number"},
    {"<a><", 0xC00CE55E, "Element was not closed.", 5, "after a bracket"},
    {"<a><!", 0xC00CE559, "Unexpected end of file.", 6, "before it is clear what it is"},
    {"<", 0xC00CE55E, "Element was not closed.", 2, "nothing but a bracket"},
};

TEST(ParseError, TellsWhatTheTextEndsIn) { ExpectFailures(kUnclosedCases); }

constexpr LineCase kNamespaceCases[] = {
    {"<p:a/>", 0xC00CE01D, "Reference to undeclared namespace prefix: 'p'.", 5,
     "the character after the name"},
    {"<p:a x='1' >", 0xC00CE01D, "Reference to undeclared namespace prefix: 'p'.", 12,
     "the bracket that ends the tag"},
    {"<p:a/ >", 0xC00CE01D, "Reference to undeclared namespace prefix: 'p'.", 5,
     "the prefix is looked at before what follows the slash"},
    {"<a p:b=\"1\"/>", 0xC00CE01D, "Reference to undeclared namespace prefix: 'p'.", 11,
     "an attribute's prefix"},
    {"<a p:b='1' c='2'></a>", 0xC00CE01D, "Reference to undeclared namespace prefix: 'p'.", 17,
     "after the last attribute"},
    {"<a><b xmlns:p='u'/><p:c/></a>", 0xC00CE01D, "Reference to undeclared namespace prefix: 'p'.",
     24, "a declaration ends with its element"},
    {"<a xmlns:p=\"\"/>", 0xC00CE027, "A namespace prefix cannot be declared with an empty URI.", 0,
     "an empty namespace"},
    {"<a xmlns:xmlfoo=\"u\"/>", 0xC00CE568,
     "The namespace prefix is not allowed to start with the reserved string \"xml\".", 0,
     "a reserved prefix"},
    {"<a xmlns:XmLfoo=\"u\"/>", 0xC00CE568,
     "The namespace prefix is not allowed to start with the reserved string \"xml\".", 0,
     "in any case"},
    {"<a xmlns:xml=\"u\"/>", 0xC00CE010, "Reserved namespace 'xml' can not be redeclared.", 0,
     "the prefix xml bound to another namespace"},
    {"<a xmlns:xmlns=\"u\"/>", 0xC00CE010, "Reserved namespace 'xmlns' can not be redeclared.", 0,
     "the prefix xmlns"},
};

TEST(ParseError, TellsWhatIsWrongWithNamespaces) {
  for (LineCase row : kNamespaceCases) {
    const ParseError error = ErrorOf(row.text);
    if (row.position == 0) {  // anywhere in the attribute
      EXPECT_GE(error.linePos, 4) << row.text;
      EXPECT_LE(error.linePos, static_cast<std::int32_t>(row.text.size())) << row.text;
      row.position = error.linePos;
    }
    ExpectFailure(row, error);
  }
}

constexpr LineCase kDoctypeCases[] = {
    {"<!DOCTYPE a SYSTEM x><a/>", 0xC00CE502,
     "A string literal was expected, but no opening quote character was found.", 20,
     "a system identifier without quotes"},
    {"<!DOCTYPE a SYSTEM\"x\"><a/>", 0xC00CE509, "Required white space was missing.", 19,
     "after a keyword"},
    {"<!DOCTYPE a PUBLIC \"p\"\"s\"><a/>", 0xC00CE509, "Required white space was missing.", 23,
     "between literals"},
    {"<!DOCTYPE 1><a/>", 0xC00CE504, "A name was started with an invalid character.", 11,
     "a digit"},
    {"<!DOCTYPE a [x]><a/>", 0xC00CE50B, "Invalid character found in DTD.", 14,
     "between declarations"},
    {"<!DOCTYPE a [<!ELEMENT a ANY> ]]><a/>", 0xC00CE50A, "The character '>' was expected.", 32,
     "after the subset"},
    {"<!DOCTYPE a [<!ELEMENT a $>]><a/>", 0xC00CE50C,
     "An invalid character was found inside a DTD declaration.", 26, "in a content model"},
    {"<!DOCTYPE a [<!ELEMENT a (b>]><a/>", 0xC00CE50F, "Unbalanced parentheses.", 28,
     "a group that is not closed"},
    {"<!DOCTYPE a [<!ELEMENT a ((b)>]><a/>", 0xC00CE50F, "Unbalanced parentheses.", 30,
     "an outer group that is not closed"},
    {"<!DOCTYPE a [<!FOO x>]><a/>", 0xC00CE565, "Declaration has an invalid name.", 16,
     "an unknown declaration"},
    {"<!DOCTYPE a [<![CDATA[x]]>]><a/>", 0xC00CE578, "CDATA is not allowed in a DTD.", 0,
     "a CDATA section"},
    {"<!DOCTYPE a [<!DOCTYPE b>]><a/>", 0xC00CE57B, "Cannot have a DOCTYPE declaration in a DTD.",
     16, "a document type inside"},
    {"<!DOCTYPE a [<!ENTITY a:b 'x'>]><a/>", 0xC00CE00C,
     "Entity, EntityRef, PI, Notation names, or NMToken cannot contain a colon.", 24,
     "an entity's name with a colon"},
    {"<!DOCTYPE a [<!NOTATION a:b SYSTEM 'x'>]><a/>", 0xC00CE00C,
     "Entity, EntityRef, PI, Notation names, or NMToken cannot contain a colon.", 26,
     "a notation's name with a colon"},
    {"<!DOCTYPE a [<!ENTITY % p \"b\"><!ELEMENT a (%p;)>]><a/>", 0xC00CE55A,
     "Parameter entities cannot be used inside markup declarations in an internal subset.", 0,
     "in a content model"},
    {"<!DOCTYPE a [<!ENTITY % p \"b\"><!ENTITY e '%p;'>]><a/>", 0xC00CE55A,
     "Parameter entities cannot be used inside markup declarations in an internal subset.", 0,
     "in an entity's value"},
    {"<!DOCTYPE a FOO \"x\"><a/>", 0xC00CE566, "External ID is invalid.", 13,
     "neither SYSTEM nor PUBLIC"},
};

TEST(ParseError, TellsWhatIsWrongWithTheDocumentType) {
  for (LineCase row : kDoctypeCases) {
    const ParseError error = ErrorOf(row.text);
    if (row.position == 0) {  // anywhere in the subset
      EXPECT_GE(error.linePos, 14) << row.text;
      EXPECT_LE(error.linePos, static_cast<std::int32_t>(row.text.find("]><a/>") + 1)) << row.text;
      row.position = error.linePos;
    }
    ExpectFailure(row, error);
  }
}

constexpr LineCase kEntityCases[] = {
    {"<!DOCTYPE a [<!ENTITY e '&e;'>]><a>&e;</a>", 0xC00CE003,
     "Entity 'e' contains an infinite entity reference loop.", 0, "an entity of itself"},
    {"<!DOCTYPE a [<!ENTITY e '&f;'><!ENTITY f 'x&e;'>]><a>&e;</a>", 0xC00CE003,
     "Entity 'e' contains an infinite entity reference loop.", 0, "by way of another"},
    {"<!DOCTYPE a [<!ENTITY e '&e;'>]><a b='&e;'/>", 0xC00CE003,
     "Entity 'e' contains an infinite entity reference loop.", 0, "in an attribute value"},
    {"<!DOCTYPE a [<!NOTATION n SYSTEM 's'><!ENTITY e SYSTEM 'x' NDATA n>]><a>&e;</a>", 0xC00CE006,
     "Cannot use unparsed entity 'e' in an entity reference.", 0, "an unparsed entity"},
    {"<!DOCTYPE a [<!ENTITY e SYSTEM 'x'>]><a b='&e;'/>", 0xC00CE007,
     "Cannot reference an external general parsed entity 'e' in an attribute value.", 0,
     "an external entity in a value"},
    {"<!DOCTYPE a [<!ENTITY e SYSTEM 'x'><!ENTITY f '&e;'>]><a b='&f;'/>", 0xC00CE007,
     "Cannot reference an external general parsed entity 'e' in an attribute value.", 0,
     "by way of another"},
    {"<!DOCTYPE a [<!ENTITY e '<'>]><a b='&e;'/>", 0xC00CE506,
     "The character '<' cannot be used in an attribute value.", 0,
     "what a reference in a value stands for"},
    {"<!DOCTYPE a [<!ENTITY e '<b>'>]><a>&e;</a>", 0xC00CE553,
     "The following tags were not closed: b.", 0, "an element ends in the entity it began in"},
    {"<!DOCTYPE a [<!ENTITY e '&nope;'>]><a>&e;</a>", 0xC00CE002,
     "Reference to undefined entity 'nope'.", 0, "undefined below"},
};

TEST(ParseError, TellsFailuresOfEntitiesWhereTheDocumentRefersToThem) {
  for (LineCase row : kEntityCases) {
    const ParseError error = ErrorOf(row.text);
    const auto reference = static_cast<std::int32_t>(row.text.rfind('&')) + 1;
    EXPECT_GE(error.linePos, reference) << row.text;
    EXPECT_LE(error.linePos, reference + 3) << row.text;
    row.position = error.linePos;
    ExpectFailure(row, error);
  }
}

// Places --------------------------------------------------------------------------------------

struct PlaceCase {
  std::string_view text;
  std::uint32_t code;
  std::int32_t line;
  std::int32_t linePos;
  std::int32_t filePos;
  std::string_view srcText;
  const char* why;
};

constexpr PlaceCase kPlaceCases[] = {
    {"<a>\n</b>", 0xC00CE56D, 2, 3, 6, "</b>", "lines are counted at LF"},
    {"<a>\r\n</b>", 0xC00CE56D, 2, 3, 7, "</b>", "CR LF is one line end, two units of the text"},
    {"<a>\r</b>", 0xC00CE56D, 2, 3, 6, "</b>", "a lone CR is a line end"},
    {"<a>\n\r\n\r\r\n</b>\n", 0xC00CE56D, 5, 3, 11, "</b>", "LF, CR LF, CR, CR LF are four"},
    {"<a\n b='1'\n b='2'/>", 0xC00CE554, 3, 2, 11, " b='2'/>", "line ends in a tag count"},
    {"<a b='\n\n'><c>\n</d>", 0xC00CE56D, 4, 3, 16, "</d>", "line ends in a value count"},
    {"<a><!--\n--><![CDATA[\n]]><?p\n?>\n<b$/>", 0xC00CE505, 5, 3, 33, "<b$/>",
     "line ends in comments, sections and instructions count"},
    {"<a>\n<b>\n</a>  \r\nrest", 0xC00CE56D, 3, 3, 10, "</a>  ", "the whole line, without its end"},
    {"<root>\n</root>\n<x/>", 0xC00CE555, 3, 2, 16, "<x/>", "a second root on the third line"},
    {"<a>\n<b>\n</a>x", 0xC00CE56D, 3, 3, 10, "</a>x", "the rest of the line is shown"},
    {"<a>\n", 0xC00CE553, 2, 1, 4, "", "the end of the text, on an empty line"},
    {"<a>\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80</b>", 0xC00CE56D, 1, 10, 9,
     "<a>\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80</b>", "UTF-16 units: one, one and two"},
    {"<!DOCTYPE a [\n<!ELEMENT a $>]>\n<a/>", 0xC00CE50C, 2, 13, 26, "<!ELEMENT a $>]>",
     "in the document type"},
    {"<?xml version='1.0'\n  foo='x'?><a/>", 0xC00CE56C, 2, 3, 22, "  foo='x'?><a/>",
     "in the declaration"},
    {"<a>\n\n</a>\n</a>", 0xC00CE552, 4, 3, 12, "</a>", "an end tag when no element is open"},
    {"<abcd>\n\n</abcd>x", 0xC00CE556, 3, 8, 15, "</abcd>x", "a stray character after an end tag"},
    {"", 0xC00CE558, 0, 0, 0, "", "no top level element has no place"},
    {" \n ", 0xC00CE558, 0, 0, 0, "", "nor has white space alone"},
    {"<!--c-->\n<?p?>", 0xC00CE558, 0, 0, 0, "", "nor have comments and instructions alone"},
    {"<?xml version='1.0'?>", 0xC00CE558, 0, 0, 0, "", "nor a declaration alone"},
    {"<!DOCTYPE a []>\n", 0xC00CE558, 0, 0, 0, "", "nor a document type alone"},
};

TEST(ParseError, CountsLinesAndUtf16Units) {
  for (const PlaceCase& row : kPlaceCases) {
    SCOPED_TRACE(std::string(row.why) + ": " + std::string(row.text));
    const ParseError error = ErrorOf(row.text);
    EXPECT_EQ(static_cast<std::uint32_t>(error.code), row.code) << error.reason;
    EXPECT_EQ(error.line, row.line);
    EXPECT_EQ(error.linePos, row.linePos);
    EXPECT_EQ(error.filePos, row.filePos);
    EXPECT_EQ(error.srcText, row.srcText);
  }
}

TEST(ParseError, SaysThatAnEndTagWasNotExpected) {
  for (const char* text : {"<a/></a>", "</a>", "<a></a></a>"}) {
    const ParseError error = ErrorOf(text);
    EXPECT_EQ(static_cast<std::uint32_t>(error.code), 0xC00CE552) << text;
    EXPECT_EQ(error.reason, "End tag was not expected at this location.\r\n");
    EXPECT_EQ(error.line, 1);
    EXPECT_GT(error.linePos, 0);
  }
}

TEST(ParseError, SaysThatThereIsNoTopLevelElement) {
  EXPECT_EQ(ErrorOf("").reason, "XML document must have a top level element.\r\n");
}

TEST(ParseError, SaysThatElementsAreNestedTooDeep) {
  ParseOptions options;
  options.maxDepth = 3;
  const ParseError error = ErrorOf("<a><b><c><d/></c></b></a>", options);
  EXPECT_EQ(static_cast<std::uint32_t>(error.code), 0xC00CE586);
  EXPECT_EQ(error.reason, "The maximum element depth was exceeded.\r\n");
  EXPECT_EQ(error.line, 1);
  EXPECT_EQ(error.linePos, 11);
}

// Bytes ---------------------------------------------------------------------------------------

TEST(ParseError, TellsThatTheBytesEndInsideACharacter) {
  const ParseError error = ErrorOfBytes("<a>\xE2\x82");
  EXPECT_EQ(static_cast<std::uint32_t>(error.code), 0xC00CE514);
  EXPECT_EQ(error.reason, "End of file reached in invalid state for current encoding.\r\n");
  EXPECT_EQ(error.line, 1);
  EXPECT_EQ(error.linePos, 4);
  const ParseError utf16 = ErrorOfBytes(std::string_view("\xFF\xFE<\0a\0/\0>\0\n", 11));
  EXPECT_EQ(static_cast<std::uint32_t>(utf16.code), 0xC00CE514) << utf16.reason;
}

struct BytesCase {
  std::string_view bytes;
  std::int32_t line;
  std::int32_t linePos;
  const char* why;
};

constexpr BytesCase kBadBytes[] = {
    {"<a>\xC3(</a>", 1, 4, "a sequence that is cut short"},
    {"<a>\x80</a>", 1, 4, "a byte that only continues"},
    {"<a>\n \xC0\x80</a>", 2, 2, "zero in two bytes"},
    {"<a>\xE0\x80\x80</a>", 1, 4, "an overlong sequence"},
    {"<a>\xED\xA0\x80</a>", 1, 4, "half of a surrogate pair"},
    {"<a>\xF4\x90\x80\x80</a>", 1, 4, "beyond Unicode"},
    {"<a>\xFF</a>", 1, 4, "a byte that UTF-8 does not have"},
    {"<a b='\xF8\x88\x80\x80\x80'/>", 1, 7, "a sequence of five bytes"},
    {"<\xC3/>", 1, 2, "in a name"},
    {"<a/>\n<!--\xFE-->", 2, 5, "after the root"},
};

TEST(ParseError, TellsWhichByteIsInvalidInTheEncoding) {
  for (const BytesCase& row : kBadBytes) {
    SCOPED_TRACE(row.why);
    const ParseError error = ErrorOfBytes(row.bytes);
    EXPECT_EQ(static_cast<std::uint32_t>(error.code), 0xC00CE508) << error.reason;
    EXPECT_EQ(error.reason, "An invalid character was found in text content.\r\n");
    EXPECT_EQ(error.line, row.line);
    EXPECT_EQ(error.linePos, row.linePos);
  }
}

TEST(ParseError, TellsThatTheDeclaredEncodingContradictsTheBytes) {
  const ParseError error = ErrorOfBytes("\xEF\xBB\xBF<?xml version='1.0' encoding='UTF-16'?><a/>");
  EXPECT_EQ(static_cast<std::uint32_t>(error.code), 0xC00CE56F) << error.reason;
  EXPECT_EQ(error.reason, "Switch from current encoding to specified encoding not supported.\r\n");
  EXPECT_EQ(error.line, 1);
  EXPECT_GE(error.linePos, 21);
}

// Texts ---------------------------------------------------------------------------------------

struct TextCase {
  ParseCode code;
  std::uint32_t number;
  std::string_view text;
};

constexpr TextCase kTexts[] = {
    {ParseCode::kUndefinedEntity, 0xC00CE002, "Reference to undefined entity '%1'."},
    {ParseCode::kEntityLoop, 0xC00CE003, "Entity '%1' contains an infinite entity reference loop."},
    {ParseCode::kUnparsedEntityReference, 0xC00CE006,
     "Cannot use unparsed entity '%1' in an entity reference."},
    {ParseCode::kExternalEntityInAttribute, 0xC00CE007,
     "Cannot reference an external general parsed entity '%1' in an attribute value."},
    {ParseCode::kColonInName, 0xC00CE00C,
     "Entity, EntityRef, PI, Notation names, or NMToken cannot contain a colon."},
    {ParseCode::kReservedNamespace, 0xC00CE010, "Reserved namespace '%1' can not be redeclared."},
    {ParseCode::kUndeclaredPrefix, 0xC00CE01D, "Reference to undeclared namespace prefix: '%1'."},
    {ParseCode::kEmptyPrefixBinding, 0xC00CE027,
     "A namespace prefix cannot be declared with an empty URI."},
    {ParseCode::kBadCharInEntityReference, 0xC00CE50E,
     "An invalid character was found inside an entity reference."},
    {ParseCode::kBadPiSyntax, 0xC00CE51A, "Invalid syntax in processing instruction declaration."},
    {ParseCode::kParameterEntityNesting, 0xC00CE55B,
     "The replacement text for a parameter entity must be properly nested with parenthesized "
     "groups."},
    {ParseCode::kEncodingRequired, 0xC00CE56A,
     "The 'encoding' attribute is required at this location."},
    {ParseCode::kNameRequired, 0xC00CE56B, "At least one name is required at this location."},
    {ParseCode::kStandaloneInEntity, 0xC00CE57A,
     "The standalone attribute cannot be used in external entities."},
    {ParseCode::kUndefinedEntityToken, 0xC00CE57C, "Reference to undefined entity."},
    {ParseCode::kObjectNotFound, 0x800C0006, "The system cannot locate the object specified."},
    {ParseCode::kResourceNotFound, 0x800C0005, "The system cannot locate the resource specified."},
    {ParseCode::kAccessDenied, 0x80070005, "Access is denied."},
    {ParseCode::kUnknownProtocol, 0x800C000D, "The specified protocol is unknown."},
};

TEST(ParseError, TextsThatNoDocumentAboveGivesArePublishedOnes) {
  for (const TextCase& row : kTexts) {
    EXPECT_EQ(static_cast<std::uint32_t>(row.code), row.number) << row.text;
    EXPECT_EQ(ParseReason(row.code), std::string(row.text) + "\r\n");
  }
}

TEST(ParseReason, FillsInArguments) {
  EXPECT_EQ(ParseReason(ParseCode::kTagMismatch, {"start", "end"}),
            "End tag 'end' does not match the start tag 'start'.\r\n");
  EXPECT_EQ(ParseReason(ParseCode::kUndefinedEntity, {"%1"}),
            "Reference to undefined entity '%1'.\r\n")
      << "what an argument holds is not looked at again";
}

TEST(ParseError, ANewOneSaysThatAllWentWell) {
  const ParseError error;
  EXPECT_FALSE(error);
  EXPECT_EQ(error.reason, "");
  EXPECT_EQ(error.line, 0);
  EXPECT_TRUE(ErrorOf("x"));
}

}  // namespace
}  // namespace kx::dom
