#include "platform/xdr/validator.h"

#include "memory_schemas.h"

#include <gtest/gtest.h>

namespace kx::xdr {
namespace {

// The declarations that most rows are about: r holds a b? c*, closed unless a row says otherwise.
constexpr const char* kSeq =
    "<ElementType name='a'/><ElementType name='b'/><ElementType name='c'/>"
    "<ElementType name='r' content='eltOnly' model='closed'>"
    "<element type='a'/><element type='b' minOccurs='0'/>"
    "<element type='c' minOccurs='0' maxOccurs='*'/></ElementType>";
constexpr const char* kOpenSeq =
    "<ElementType name='a'/><ElementType name='b'/><ElementType name='c'/>"
    "<ElementType name='r' content='eltOnly'>"
    "<element type='a'/><element type='b'/></ElementType>";
constexpr const char* kOne =
    "<ElementType name='a'/><ElementType name='b'/><ElementType name='c'/>"
    "<ElementType name='r' order='one' model='closed'>"
    "<element type='a'/><group order='seq'><element type='b'/><element type='c'/></group>"
    "</ElementType>";
constexpr const char* kMany =
    "<ElementType name='a'/><ElementType name='b'/><ElementType name='c'/>"
    "<ElementType name='r' content='eltOnly' order='many' model='closed'>"
    "<element type='a'/><element type='b'/></ElementType>";
constexpr const char* kAmbiguous =
    "<ElementType name='a'/><ElementType name='b'/><ElementType name='c'/>"
    "<ElementType name='r' content='eltOnly' model='closed'>"
    "<element type='a' minOccurs='0'/><element type='a'/>"
    "<group order='one' maxOccurs='*'><element type='a'/><group order='seq'><element type='a'/>"
    "<element type='b'/></group></group></ElementType>";
constexpr const char* kMixed =
    "<ElementType name='a'/><ElementType name='r' model='closed'><element type='a'/></ElementType>";
constexpr const char* kText = "<ElementType name='a'/><ElementType name='r' content='textOnly'/>";
constexpr const char* kEmpty =
    "<ElementType name='a'/><ElementType name='r' content='empty' model='closed'/>";
constexpr const char* kInt = "<ElementType name='r' dt:type='int'/>";
constexpr const char* kAttributes =
    "<AttributeType name='k' dt:type='int'/><AttributeType name='e' dt:type='enumeration' "
    "dt:values='red green'/><AttributeType name='q' required='yes'/>"
    "<AttributeType name='f' dt:type='int' required='yes' default='5'/>"
    "<AttributeType name='s' dt:maxLength='3' dt:minLength='2'/>"
    "<AttributeType name='n' dt:type='nmtoken'/>"
    "<ElementType name='r'><attribute type='k'/><attribute type='e'/><attribute type='s'/>"
    "<attribute type='n'/></ElementType>"
    "<ElementType name='m'><attribute type='q'/></ElementType>"
    "<ElementType name='x' model='closed'><attribute type='f'/></ElementType>";
constexpr const char* kIds =
    "<AttributeType name='i' dt:type='id'/><AttributeType name='l' dt:type='idrefs'/>"
    "<ElementType name='r'><attribute type='i'/><attribute type='l'/></ElementType>";

struct Case {
  const char* schema;
  const char* content;
  const char* code;
  const char* why;
};

constexpr Case kCases[] = {
    {kSeq, "<r xmlns='x-schema:s'><a/></r>", "0", "optional children may be missing"},
    {kSeq, "<r xmlns='x-schema:s'><a/><b/><c/><c/></r>", "0", "all of them"},
    {kSeq, "<r xmlns='x-schema:s'> <a/>\n<c/> </r>", "0", "white space between elements"},
    {kSeq, "<r xmlns='x-schema:s'/>", "C00CE011", "no child at all"},
    {kSeq, "<r xmlns='x-schema:s'></r>", "C00CE011", "no child at all"},
    {kSeq, "<r xmlns='x-schema:s'><b/></r>", "C00CE014", "the first one is missing"},
    {kSeq, "<r xmlns='x-schema:s'><a/><c/><b/></r>", "C00CE014", "out of order"},
    {kSeq, "<r xmlns='x-schema:s'><a/><a/></r>", "C00CE014", "once only"},
    {kSeq, "<r xmlns='x-schema:s'><a/><z/></r>", "C00CE014", "undeclared in a closed model"},
    {kSeq, "<r xmlns='x-schema:s'><a/><z xmlns=''/></r>", "C00CE014", "foreign in a closed model"},
    {kSeq, "<r xmlns='x-schema:s'><a/>x</r>", "C00CE018", "text in eltOnly"},
    {kSeq, "<r xmlns='x-schema:s'>x</r>", "C00CE018", "text alone in eltOnly"},
    {kSeq, "<r xmlns='x-schema:s'><a/><![CDATA[ ]]></r>", "C00CE018", "CDATA in eltOnly"},
    {kSeq, "<r xmlns='x-schema:s'><a/>&#32;</r>", "C00CE018", "character reference in eltOnly"},
    {kSeq, "<z xmlns='x-schema:s'/>", "C00CE00D", "undeclared root"},
    {kSeq, "<q><r xmlns='x-schema:s'><b/></r></q>", "C00CE014", "below an unbound element"},
    {kSeq, "<q><r xmlns='x-schema:s'><a/></r></q>", "0", "below an unbound element"},
    {kSeq, "<q xmlns='x-schema:S'/>", "800C0006", "no such schema"},
    {kSeq, "<q xmlns='X-SCHEMA:s'/>", "0", "an ordinary namespace"},
    {kSeq, "<q xmlns='x-schema:'/>", "0", "an ordinary namespace"},
    {kSeq, "<q xmlns:unused='x-schema:none'/>", "800C0006", "a prefix that is never used"},
    {kOpenSeq, "<r xmlns='x-schema:s'><a/><b/></r>", "0", "the declared content"},
    {kOpenSeq, "<r xmlns='x-schema:s'><a/><b/><c/></r>", "0", "an extra behind it"},
    {kOpenSeq, "<r xmlns='x-schema:s'><a/><b/><a/></r>", "0", "a repetition is an extra"},
    {kOpenSeq, "<r xmlns='x-schema:s'><a/><b/><o xmlns='urn:o'/></r>", "0", "a foreign extra"},
    {kOpenSeq, "<r xmlns='x-schema:s'><a/><c/><b/></r>", "C00CE014", "an extra between"},
    {kOpenSeq, "<r xmlns='x-schema:s'><c/><a/><b/></r>", "C00CE014", "an extra before"},
    {kOpenSeq, "<r xmlns='x-schema:s'><a/></r>", "C00CE012", "incomplete"},
    {kOpenSeq, "<r xmlns='x-schema:s'><a/><b/><z/></r>", "C00CE00D", "an undeclared extra"},
    {kOpenSeq, "<r xmlns='x-schema:s'><a/><z/><b/></r>", "C00CE014", "undeclared, and too early"},
    {kOne, "<r xmlns='x-schema:s'><a/></r>", "0", "the first alternative"},
    {kOne, "<r xmlns='x-schema:s'><b/><c/></r>", "0", "the second"},
    {kOne, "<r xmlns='x-schema:s'><b/></r>", "C00CE012", "half of it"},
    {kOne, "<r xmlns='x-schema:s'><a/><b/><c/></r>", "C00CE014", "both"},
    {kMany, "<r xmlns='x-schema:s'/>", "0", "none of many"},
    {kMany, "<r xmlns='x-schema:s'><b/><a/><b/><b/></r>", "0", "any number in any order"},
    {kMany, "<r xmlns='x-schema:s'><c/></r>", "C00CE014", "not one of them"},
    {kAmbiguous, "<r xmlns='x-schema:s'><a/><a/></r>", "0", "two readings"},
    {kAmbiguous, "<r xmlns='x-schema:s'><a/></r>", "C00CE012", "the group must come"},
    {kAmbiguous, "<r xmlns='x-schema:s'><a/><a/><b/></r>", "0", "the second reading"},
    {kAmbiguous, "<r xmlns='x-schema:s'><a/><a/><a/><b/><a/></r>", "0", "the group repeats"},
    {kAmbiguous, "<r xmlns='x-schema:s'><a/><b/></r>", "C00CE014", "no reading"},
    {kMixed, "<r xmlns='x-schema:s'>x<a/>y<a/></r>", "0", "text and declared children"},
    {kMixed, "<r xmlns='x-schema:s'>x<b/></r>", "C00CE014", "another child"},
    {kText, "<r xmlns='x-schema:s'>x<![CDATA[y]]><!--z--></r>", "0", "text"},
    {kText, "<r xmlns='x-schema:s'>x<a/></r>", "C00CE014", "no child although open"},
    {kText, "<r xmlns='x-schema:s'><o xmlns='urn:o'/></r>", "C00CE014", "no foreign child either"},
    {kEmpty, "<r xmlns='x-schema:s'/>", "0", "empty"},
    {kEmpty, "<r xmlns='x-schema:s'><!--c--><?p q?></r>", "0", "comment and instruction"},
    {kEmpty, "<r xmlns='x-schema:s'> </r>", "C00CE018", "a single blank"},
    {kEmpty, "<r xmlns='x-schema:s'>\n<!--c--></r>", "C00CE018", "a line break"},
    {kEmpty, "<r xmlns='x-schema:s'><a/></r>", "C00CE014", "a child"},
    {kInt, "<r xmlns='x-schema:s'>12</r>", "0", "an int"},
    {kInt, "<r xmlns='x-schema:s'> 12\n</r>", "0", "trimmed"},
    {kInt, "<r xmlns='x-schema:s'>1<!--c-->2</r>", "0", "one text around a comment"},
    {kInt, "<r xmlns='x-schema:s'>1<![CDATA[x]]></r>", "C00CE201", "all of the text counts"},
    {kInt, "<r xmlns='x-schema:s'/>", "0", "empty is never wrong"},
    {kInt, "<r xmlns='x-schema:s'>  </r>", "0", "blank is empty"},
    {kInt, "<r xmlns='x-schema:s'>x</r>", "C00CE201", "no int"},
    {kInt, "<r xmlns='x-schema:s'>&#49;&#50;</r>", "0", "character references"},
    {kAttributes, "<r xmlns='x-schema:s' k='1' e='red' s='ab' n='1a'/>", "0", "all good"},
    {kAttributes, "<r xmlns='x-schema:s' s='ab' k='1'/>", "0", "in any order"},
    {kAttributes, "<r xmlns='x-schema:s' k='' e='' s=''/>", "0", "empty values"},
    {kAttributes, "<r xmlns='x-schema:s' k='x'/>", "C00CE201", "no int"},
    {kAttributes, "<r xmlns='x-schema:s' e='blue'/>", "C00CE017", "not listed"},
    {kAttributes, "<r xmlns='x-schema:s' e='Red'/>", "C00CE017", "case counts"},
    {kAttributes, "<r xmlns='x-schema:s' e=' red '/>", "0", "trimmed"},
    {kAttributes, "<r xmlns='x-schema:s' e='red green'/>", "C00CE574", "two tokens"},
    {kAttributes, "<r xmlns='x-schema:s' s='a'/>", "C00CE017", "too short"},
    {kAttributes, "<r xmlns='x-schema:s' s='abcd'/>", "C00CE017", "too long"},
    {kAttributes, "<r xmlns='x-schema:s' n='a b'/>", "C00CE574", "two tokens"},
    {kAttributes, "<r xmlns='x-schema:s' n='a$'/>", "C00CE017", "no token"},
    {kAttributes, "<r xmlns='x-schema:s' u='1'/>", "C00CE015", "undeclared in an open model"},
    {kAttributes, "<r xmlns='x-schema:s' xmlns:o='urn:o' o:u='1'/>", "0", "qualified, open model"},
    {kAttributes, "<r xmlns='x-schema:s' xml:lang='en'/>", "0", "xml: is always allowed"},
    {kAttributes, "<x xmlns='x-schema:s' xml:lang='en'/>", "0", "also in a closed model"},
    {kAttributes, "<x xmlns='x-schema:s' xmlns:o='urn:o' o:u='1'/>", "C00CE015", "closed model"},
    {kAttributes, "<r xmlns='x-schema:s' xmlns:p='x-schema:s' p:k='1'/>", "0",
     "global type exists"},
    {kAttributes, "<r xmlns='x-schema:s' xmlns:p='x-schema:s' p:k='x'/>", "C00CE201", "checked"},
    {kAttributes, "<r xmlns='x-schema:s' xmlns:p='x-schema:s' p:z='x'/>", "C00CE015", "no such"},
    {kAttributes, "<m xmlns='x-schema:s'/>", "C00CE020", "required"},
    {kAttributes, "<m xmlns='x-schema:s' q=''/>", "0", "present, if empty"},
    {kAttributes, "<m xmlns='x-schema:s' u='1'/>", "C00CE015", "undeclared before missing"},
    {kAttributes, "<x xmlns='x-schema:s'/>", "0", "a fixed value may be absent"},
    {kAttributes, "<x xmlns='x-schema:s' f='05'/>", "0", "the same value"},
    {kAttributes, "<x xmlns='x-schema:s' f=' 5 '/>", "0", "the same value, trimmed"},
    {kAttributes, "<x xmlns='x-schema:s' f=''/>", "0", "an empty value is not compared"},
    {kAttributes, "<x xmlns='x-schema:s' f='6'/>", "C00CE016", "another value"},
    {kIds, "<r xmlns='x-schema:s' i='a' l='a b'><r i='b'/></r>", "0", "before and after"},
    {kIds, "<r xmlns='x-schema:s' i='a'><r i='a'/></r>", "C00CE200", "twice"},
    {kIds, "<r xmlns='x-schema:s' i=''><r i=''/></r>", "0", "empty ones are no duplicates"},
    {kIds, "<r xmlns='x-schema:s' l='a'/>", "C00CE00E", "dangling"},
    {kIds, "<r xmlns='x-schema:s' i='1a'/>", "C00CE504", "no name"},
    {kIds, "<r xmlns='x-schema:s' l='1a'/>", "C00CE504", "no name"},
    {kIds, "<r xmlns='x-schema:s' i='a b'/>", "C00CE574", "two names"},
};
TEST(Validator, GivesEachViolationItsCode) {
  for (const Case& row : kCases) {
    const dom::ParseError error = ParseAgainst(row.schema, row.content);
    EXPECT_EQ(Hex(error.code), row.code) << row.why << "\n" << row.content << "\n" << error.reason;
  }
}

constexpr const char* kDt = "xmlns:dt='urn:schemas-microsoft-com:datatypes'";

constexpr const char* kGroupOrder =
    "<ElementType name='a'/><ElementType name='b'/><ElementType name='c'/>"
    "<ElementType name='r' order='one' model='closed'><element type='a'/>"
    "<group><element type='b'/><element type='c'/></group></ElementType>"
    "<ElementType name='m' content='eltOnly' order='many' model='closed'>"
    "<group maxOccurs='1'><element type='b'/><element type='c'/></group></ElementType>";
constexpr const char* kContents =
    "<ElementType name='a'/>"
    "<ElementType name='seq' order='seq'><element type='a'/></ElementType>"
    "<ElementType name='many' order='many' model='closed'><element type='a'/></ElementType>"
    "<ElementType name='bare'/>"
    "<ElementType name='open' content='eltOnly'/>"
    "<ElementType name='shut' content='eltOnly' model='closed'/>"
    "<ElementType name='text' content='mixed' model='closed'/>"
    "<ElementType name='loose' content='textOnly'/>"
    "<ElementType name='tight' content='textOnly' model='closed'/>"
    "<ElementType name='group' content='eltOnly' model='closed'><group/><element type='a'/>"
    "</ElementType>";
constexpr const char* kScopes =
    "<AttributeType name='k' dt:type='boolean'/><AttributeType name='q' required='yes'/>"
    "<AttributeType name='unused'/>"
    "<ElementType name='r'><attribute type='k'/><AttributeType name='k' dt:type='int'/>"
    "</ElementType><ElementType name='g'><attribute type='k'/></ElementType>"
    "<ElementType name='n'><attribute type='q' required='no'/></ElementType>"
    "<ElementType name='y'><attribute type='k' required='yes'/></ElementType>"
    "<ElementType name='x' dt:type='string' dt:minLength='2'/>";
constexpr Case kRuleCases[] = {
    {kGroupOrder, "<r xmlns='x-schema:s'><b/></r>", "0", "a group has the order around it"},
    {kGroupOrder, "<r xmlns='x-schema:s'><b/><c/></r>", "C00CE014", "so it is a choice"},
    {kGroupOrder, "<m xmlns='x-schema:s'><c/><b/><c/></m>", "0", "many, whatever maxOccurs says"},
    {kContents, "<seq xmlns='x-schema:s'>x<a/></seq>", "C00CE018", "seq means eltOnly"},
    {kContents, "<many xmlns='x-schema:s'>x<a/><a/></many>", "0", "many means mixed"},
    {kContents, "<bare xmlns='x-schema:s'>x<a/><o xmlns=''/>y</bare>", "0", "a name alone"},
    {kContents, "<open xmlns='x-schema:s'><a/><o xmlns=''/></open>", "0", "any elements"},
    {kContents, "<open xmlns='x-schema:s'>x</open>", "C00CE018", "but no text"},
    {kContents, "<shut xmlns='x-schema:s'> </shut>", "0", "no child"},
    {kContents, "<shut xmlns='x-schema:s'><a/></shut>", "C00CE014", "none at all"},
    {kContents, "<text xmlns='x-schema:s'>x</text>", "0", "text"},
    {kContents, "<text xmlns='x-schema:s'><a/></text>", "C00CE014", "and no element"},
    {kContents, "<group xmlns='x-schema:s'><a/></group>", "0", "an empty group matches nothing"},
    {kContents, "<loose xmlns='x-schema:s' xmlns:o='urn:o' o:k='1'/>", "0",
     "foreign attribute, open textOnly"},
    {kContents, "<tight xmlns='x-schema:s' xmlns:o='urn:o' o:k='1'/>", "C00CE015",
     "foreign attribute, closed textOnly"},
    {kContents, "<loose xmlns='x-schema:s' xmlns:p='x-schema:s' p:k='1'/>", "C00CE015",
     "an attribute that its schema does not declare"},
    {kContents,
     "<tight xmlns='x-schema:s' xmlns:dt='urn:schemas-microsoft-com:datatypes' dt:dt='int' "
     "dt:other='x'>1</tight>",
     "0", "data type attributes are always allowed"},
    {kScopes, "<r xmlns='x-schema:s' k='5'/>", "0", "the local declaration first, also behind"},
    {kScopes, "<g xmlns='x-schema:s' k='5'/>", "C00CE201", "else the global one"},
    {kScopes, "<g xmlns='x-schema:s' unused='5'/>", "C00CE015", "a declaration alone"},
    {kScopes, "<n xmlns='x-schema:s'/>", "C00CE020", "a reference does not undo required"},
    {kScopes, "<y xmlns='x-schema:s'/>", "C00CE020", "a reference may require"},
    {kScopes, "<o xmlns:p='x-schema:s' p:k='x'/>", "0", "attributes of unbound elements"},
    {kScopes, "<x xmlns='x-schema:s'>a</x>", "C00CE201", "too short, of an element"},
    {"", "<r xmlns:dt='urn:schemas-microsoft-com:datatypes' dt:type='int'>x</r>", "0",
     "dt:type types no instance"},
};
TEST(Validator, KeepsToTheRulesOfDeclarations) {
  for (const Case& row : kRuleCases) {
    const dom::ParseError error = ParseAgainst(row.schema, row.content);
    EXPECT_EQ(Hex(error.code), row.code) << row.why << "\n" << row.content << "\n" << error.reason;
  }
}

// A name is looked up once; what it was the last time must not be taken for what it is now.
constexpr const char* kPlaces =
    "<AttributeType name='k' dt:type='int'/><AttributeType name='z'/>"
    "<ElementType name='n' dt:type='int'/><ElementType name='m'/>"
    "<ElementType name='first' content='eltOnly' model='closed'><attribute type='z'/>"
    "<attribute type='k'/><element type='n'/><element type='m'/></ElementType>"
    "<ElementType name='second' content='eltOnly' model='closed'>"
    "<AttributeType name='k' dt:type='boolean'/><attribute type='k'/>"
    "<element type='m'/><element type='n' minOccurs='0' maxOccurs='*'/></ElementType>"
    "<ElementType name='twice' content='eltOnly' model='closed'><element type='n'/>"
    "<element type='m'/><element type='n'/></ElementType>"
    "<ElementType name='r' content='eltOnly' order='many' model='closed'>"
    "<element type='first'/><element type='second'/><element type='twice'/></ElementType>";
constexpr Case kPlaceCases[] = {
    {kPlaces,
     "<r xmlns='x-schema:s'><first k='5'><n/><m/></first><second k='1'><m/><n/><n/></second>"
     "<first k='6'><n/><m/></first><twice><n/><m/><n/></twice><second><m/></second></r>",
     "0", "each in its own order"},
    {kPlaces, "<r xmlns='x-schema:s'><first><n/><m/></first><second><n/></second></r>", "C00CE014",
     "the order of another element"},
    {kPlaces, "<r xmlns='x-schema:s'><second><m/><n/></second><first><m/></first></r>", "C00CE014",
     "the order of another element"},
    {kPlaces, "<r xmlns='x-schema:s'><first><n/><m/></first><first><n/><n/></first></r>",
     "C00CE014", "the same element, another order"},
    {kPlaces, "<r xmlns='x-schema:s'><first><n/><m/></first><twice><n/><n/></twice></r>",
     "C00CE014", "a name that stands in two places"},
    {kPlaces, "<r xmlns='x-schema:s'><first k='5'><n/><m/></first><second k='5'><m/></second></r>",
     "C00CE201", "an attribute of another type"},
    {kPlaces, "<r xmlns='x-schema:s'><first z='5'><n/><m/></first><second z='5'><m/></second></r>",
     "C00CE015", "an attribute of another element"},
    {kPlaces,
     "<r xmlns='x-schema:s'><first k='5'><n/><m/></first><first k='x'><n/><m/></first></r>",
     "C00CE201", "the same attribute, another text"},
    {kPlaces, "<r xmlns='x-schema:s'><first><n>1</n><m/></first><first><n>x</n><m/></first></r>",
     "C00CE201", "the same element, another text"},
    {kPlaces, "<r xmlns='x-schema:s'><first><n/><m/></first><first><n/></first></r>", "C00CE012",
     "the same element, incomplete"},
    {kPlaces, "<r xmlns='x-schema:s'><first><n/><m/></first><first>x</first></r>", "C00CE018",
     "the same element, with text"},
    {kPlaces,
     "<r xmlns='x-schema:s'><first><n/><m/></first><p:first xmlns:p='x-schema:s'><p:m/></p:first>"
     "</r>",
     "C00CE014", "another prefix"},
};
TEST(Validator, JudgesANameByItsPlaceEachTime) {
  for (const Case& row : kPlaceCases) {
    const dom::ParseError error = ParseAgainst(row.schema, row.content);
    EXPECT_EQ(Hex(error.code), row.code) << row.why << "\n" << row.content << "\n" << error.reason;
  }
}

TEST(Validator, ChecksTextByTheTypeThatAnInstanceGives) {
  const std::string dt = kDt;
  EXPECT_EQ(Hex(ParseAgainst("", "<r " + dt + " dt:dt='int'>12</r>").code), "0");
  EXPECT_EQ(Hex(ParseAgainst("", "<r " + dt + " dt:dt='INT'>x</r>").code), "C00CE201");
  EXPECT_EQ(Hex(ParseAgainst("", "<r " + dt + " dt:dt='int'></r>").code), "0");
  EXPECT_EQ(Hex(ParseAgainst("", "<r " + dt + " dt:dt='none'/>").code), "C00CE21C");
  EXPECT_EQ(Hex(ParseAgainst("", "<r " + dt +
                                     " xmlns:e='urn:schemas-microsoft-com:datatypes' "
                                     "dt:dt='int' e:dt='int'/>")
                    .code),
            "C00CE205");
  EXPECT_EQ(Hex(ParseAgainst(kInt, "<r xmlns='x-schema:s' " + dt + " dt:dt='string'>x</r>").code),
            "0");
}

TEST(Validator, DoesNotTypeTheElementsOfASchema) {
  EXPECT_EQ(ParseAgainst("",
                         "<ElementType xmlns='urn:schemas-microsoft-com:xml-data' "
                         "xmlns:dt='urn:schemas-microsoft-com:datatypes' name='q' "
                         "dt:type='int'><description>Quantity</description></ElementType>")
                .code,
            0);
}

struct ReasonCase {
  const char* schema;
  const char* instance;
  const char* reason;
};
constexpr ReasonCase kReasons[] = {
    {kSeq, "<r xmlns='x-schema:s'><b/></r>",
     "Element content is invalid according to the DTD/Schema.\r\nExpecting: {x-schema:s}a.\r\n"},
    {kSeq, "<r xmlns='x-schema:s'><a/><a/></r>",
     "Element content is invalid according to the DTD/Schema.\r\n"
     "Expecting: {x-schema:s}b, {x-schema:s}c.\r\n"},
    {kEmpty, "<r xmlns='x-schema:s'><a/></r>",
     "Element content is invalid according to the DTD/Schema.\r\n"},
    {kText, "<r xmlns='x-schema:s'><a/></r>",
     "Element content is invalid according to the DTD/Schema.\r\nExpecting: #PCDATA.\r\n"},
    {kSeq, "<r xmlns='x-schema:s'><a/>x</r>",
     "Text is not allowed in this context according to DTD/Schema.\r\n"
     "Expecting: {x-schema:s}b, {x-schema:s}c.\r\n"},
    {kOpenSeq, "<r xmlns='x-schema:s'><a/></r>",
     "Element content is incomplete according to the DTD/Schema.\r\n"},
    {kSeq, "<p:z xmlns:p='x-schema:s'/>",
     "The element 'p:z' is used but not declared in the DTD/Schema.\r\n"},
    {kInt, "<r xmlns='x-schema:s'>x y</r>", "Error parsing 'x y' as int datatype.\r\n"},
    {kIds, "<r xmlns='x-schema:s' l='a'/>",
     "The attribute 'l' references the ID 'a' which is not defined anywhere in the document.\r\n"},
    {kAttributes, "<m xmlns='x-schema:s'/>", "Required attribute 'q' is missing.\r\n"},
};
TEST(Validator, SaysWhatIsWrongAndWhatWasExpected) {
  for (const ReasonCase& row : kReasons) {
    EXPECT_EQ(ParseAgainst(row.schema, row.instance).reason, row.reason) << row.instance;
  }
}

TEST(Validator, ReadsTenThousandAttributesOfOneElement) {
  std::string schema;
  std::string references;
  std::string forward;
  std::string backward;
  for (int i = 0; i < 10000; ++i) {
    const std::string name = "k" + std::to_string(i);
    schema += "<AttributeType name='" + name + "' dt:type='int' required='yes'/>";
    references += "<attribute type='" + name + "'/>";
    forward += " " + name + "='1'";
    backward.insert(0, " " + name + "='1'");
  }
  schema += "<ElementType name='r'>" + references + "</ElementType>";
  EXPECT_EQ(ParseAgainst(schema, "<r xmlns='x-schema:s'" + forward + "/>").code, 0);
  EXPECT_EQ(ParseAgainst(schema, "<r xmlns='x-schema:s'" + backward + "/>").code, 0);
  const std::string missing = forward.substr(0, forward.rfind(' '));
  EXPECT_EQ(ParseAgainst(schema, "<r xmlns='x-schema:s'" + missing + "/>").reason,
            "Required attribute 'k9999' is missing.\r\n");
}

TEST(Validator, FollowsSixtyFourReadingsOfManyChildren) {
  std::string model;
  for (std::uint32_t i = 0; i < ContentModel::kMostPlaces; ++i) {
    model += "<group><element type='a' minOccurs='0'/></group>";
  }
  const std::string schema =
      "<ElementType name='a' content='empty'/><ElementType name='r' content='eltOnly' "
      "model='closed'><group maxOccurs='*'>" +
      model + "</group></ElementType>";
  std::string children;
  for (int i = 0; i < 2000; ++i) children += "<a/>";
  EXPECT_EQ(ParseAgainst(schema, "<r xmlns='x-schema:s'>" + children + "</r>").code, 0);
}

TEST(Validator, TakesTenThousandDeclarationsAndChildrenInLinearTime) {
  std::string schema;
  std::string model;
  std::string content;
  for (int i = 0; i < 10000; ++i) {
    const std::string name = "e" + std::to_string(i);
    schema += "<ElementType name='" + name + "' content='empty'/>";
    model += "<element type='" + name + "' minOccurs='0'/>";
    content += "<" + name + "/>";
  }
  schema += "<ElementType name='r' content='eltOnly' model='closed'>" + model + "</ElementType>";
  EXPECT_EQ(ParseAgainst(schema, "<r xmlns='x-schema:s'>" + content + "</r>").code, 0);
  EXPECT_EQ(Hex(ParseAgainst(schema, "<r xmlns='x-schema:s'><e9999/>" + content + "</r>").code),
            "C00CE014");
}

}  // namespace
}  // namespace kx::xdr
