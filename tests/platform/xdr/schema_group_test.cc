#include "platform/xdr/schema_group.h"

#include "memory_schemas.h"
#include "platform/xdr/typing.h"

#include <gtest/gtest.h>

namespace kx::xdr {
namespace {

struct MistakeCase {
  const char* declarations;
  const char* code;
  const char* why;
};
constexpr MistakeCase kMistakes[] = {
    {"", "0", "nothing declared"},
    {"text<ElementType name='a'/>", "0", "text is ignored"},
    {"<ElementType name='a'><description>x<b/></description></ElementType>", "0", "description"},
    {"<x xmlns='urn:o' y='1'><ElementType/></x><ElementType name='a'/>", "0", "foreign elements"},
    {"<ElementType name='a' xmlns:o='urn:o' o:x='1'/>", "0", "foreign attributes"},
    {"<extends type='q'/>", "0", "extends is skipped"},
    {"<ElementType name='a'><ElementType name='b'/><element type='b'/></ElementType>", "0",
     "a type inside a type"},
    {"<ElementType name='a'><element type='b'/></ElementType><ElementType name='b'/>", "0",
     "a forward reference"},
    {"<ElementType name='a'/><ElementType name='a'/>", "C00CE01B", "declared twice"},
    {"<ElementType name='a'/><ElementType name='A'/>", "0", "case counts"},
    {"<ElementType name='a'><element type='b'/></ElementType>", "C00CE01C", "undeclared"},
    {"<ElementType name='a'><element type='b' minOccurs='0'/></ElementType>", "C00CE01C",
     "undeclared, if optional"},
    {"<ElementType name='a'><element type='p:b'/></ElementType>", "C00CE01D", "no such prefix"},
    {"<ElementType name='a' dt:type='integer'/>", "C00CE21C", "unknown data type"},
    {"<ElementType name='a' dt:type='INT'/>", "0", "a data type in any case"},
    {"<AttributeType name='k' dt:type='int' default='x'/>", "C00CE00F", "bad default"},
    {"<AttributeType name='k' dt:type='enumeration' dt:values='a b' default='c'/>", "C00CE00F",
     "a default that is not listed"},
    {"<AttributeType name='k' dt:type='int'/><ElementType name='a'>"
     "<attribute type='k' default='x'/></ElementType>",
     "C00CE00F", "bad default of a reference"},
    {"<AttributeType name='k' dt:type='int' default=''/>", "0", "an empty default is none"},
    {"<AttributeType name='a b' default='x'/><ElementType name='r'><attribute type='a b'/>"
     "</ElementType>",
     "C00CE225", "a default that could not be written"},
    {"<AttributeType name='xmlns' default='x'/><ElementType name='r'><attribute type='xmlns'/>"
     "</ElementType>",
     "C00CE225", "a default that would declare a namespace"},
    {"<AttributeType name='k' required='no' default='a'/><ElementType name='r'>"
     "<attribute type='k' required='yes'/></ElementType>",
     "0", "a reference that is required"},
    {"<AttributeType name='i' dt:type='id'/><ElementType name='a'><attribute type='i' default='x'/>"
     "</ElementType>",
     "C00CE225", "a default on a reference to an ID"},
    {"<ElementType name='a' content='eltOnly' dt:type='int'/>", "C00CE225", "typed and eltOnly"},
    {"<ElementType name='a' content='empty' dt:type='int'/>", "C00CE225", "typed and empty"},
    {"<ElementType name='a' content='mixed' order='one'/>", "C00CE225", "mixed with one"},
    {"<ElementType name='a' content='mixed' order='many'/>", "0", "mixed with many"},
    {"<ElementType name='b'/><ElementType name='a'><group><element type='b'/></group>"
     "</ElementType>",
     "0", "a group without order in mixed content"},
    {"<ElementType name='b'/><ElementType name='a'><group order='many' maxOccurs='1'>"
     "<element type='b'/></group></ElementType>",
     "0", "many once"},
    {"<ElementType name='b'/><ElementType name='a'><element type='b' maxOccurs='0'/>"
     "</ElementType>",
     "0", "maxOccurs 0 counts as 1"},
    {"<ElementType name='Extends'/>", "0", "a name is any text"},
    {"<ElementType name='a' Content='mixed'/>", "C00CE225", "names of attributes have a case"},
    {"<ElementType name='a' content='MIXED'/>", "C00CE225", "keywords have a case"},
    {"<elementType name='a'/>", "C00CE225", "names of elements have a case"},
    {"<AttributeType name='i' dt:type='id'/><AttributeType name='j' dt:type='id'/>"
     "<ElementType name='a'><attribute type='i'/><attribute type='j'/></ElementType>",
     "C00CE022", "two IDs"},
    {"<AttributeType name='i' dt:type='id' default='x'/>", "C00CE225", "a default on an ID"},
    {"<ElementType/>", "C00CE225", "no name"},
    {"<AttributeType/>", "C00CE225", "no name"},
    {"<ElementType name='a'><element/></ElementType>", "C00CE225", "no type"},
    {"<ElementType name='a' content='text'/>", "C00CE225", "unknown content"},
    {"<ElementType name='a' model='ajar'/>", "C00CE225", "unknown model"},
    {"<ElementType name='a' order='any'/>", "C00CE225", "unknown order"},
    {"<AttributeType name='k' required='true'/>", "C00CE225", "unknown answer"},
    {"<ElementType name='a' content='mixed' order='seq'/>", "C00CE225", "mixed with seq"},
    {"<ElementType name='b'/><ElementType name='a'><group order='one'><element type='b'/></group>"
     "</ElementType>",
     "C00CE225", "a choice in mixed content"},
    {"<ElementType name='b'/><ElementType name='a' content='textOnly'><element type='b'/>"
     "</ElementType>",
     "C00CE225", "a child in textOnly"},
    {"<ElementType name='a' content='empty'><group/></ElementType>", "C00CE225",
     "a group in empty"},
    {"<ElementType name='a' content='mixed' dt:type='int'/>", "C00CE225", "typed and mixed"},
    {"<ElementType name='a' dt:type='int'><datatype dt:type='int'/></ElementType>", "C00CE225",
     "two data types"},
    {"<ElementType name='a'><datatype dt:type='int'/></ElementType>", "0", "one data type"},
    {"<AttributeType name='k'/><AttributeType name='k'/>", "C00CE225", "declared twice"},
    {"<ElementType name='a'><AttributeType name='k'/></ElementType><AttributeType name='k'/>", "0",
     "in another scope"},
    {"<AttributeType name='k'/><ElementType name='a'><attribute type='k'/><attribute type='k'/>"
     "</ElementType>",
     "C00CE225", "the same attribute twice"},
    {"<ElementType name='a'><attribute type='k'/></ElementType>", "C00CE225", "no AttributeType"},
    {"<ElementType name='a'><attribute type='k'/></ElementType><AttributeType name='k'/>", "0",
     "a later AttributeType"},
    {"<AttributeType name='k' dt:type='enumeration'/>", "C00CE225", "no values"},
    {"<AttributeType name='k' dt:type='int' dt:values='1 2'/>", "C00CE225", "values of an int"},
    {"<AttributeType name='k' dt:values='1 2'/>", "0", "ignored without type"},
    {"<ElementType name='a' dt:type='string' dt:minLength='3' dt:maxLength='2'/>", "C00CE225",
     "lengths crossed"},
    {"<ElementType name='a' dt:type='string' dt:maxLength='-1'/>", "C00CE225", "no length"},
    {"<ElementType name='a' dt:type='int' dt:min='1' dt:maxExclusive='2'/>", "0", "no effect"},
    {"<ElementType name='b'/><ElementType name='a'><element type='b' minOccurs='2' "
     "maxOccurs='17'/></ElementType>",
     "0", "any number"},
    {"<ElementType name='b'/><ElementType name='a'><element type='b' maxOccurs='x'/>"
     "</ElementType>",
     "C00CE225", "no number"},
    {"<ElementType name='b'/><ElementType name='a'><element type='b' minOccurs='-1'/>"
     "</ElementType>",
     "C00CE225", "negative"},
    {"<ElementType name='a' kind='x'/>", "C00CE225", "unknown attribute"},
    {"<Element name='a'/>", "C00CE225", "unknown element"},
    {"<element type='a'/>", "C00CE225", "an element outside a type"},
    {"<AttributeType name='k'><ElementType name='a'/></AttributeType>", "C00CE225", "misplaced"},
    {"<ElementType name='a' content='eltOnly' model='closed'/>", "0", "no children declared"},
    {"<ElementType name='a' content='eltOnly'><group/></ElementType>", "0", "an empty group"},
};
TEST(SchemaGroup, FindsEachMistakeInASchema) {
  for (const MistakeCase& row : kMistakes) {
    const dom::ParseError error = ParseAgainst(row.declarations, "<q xmlns:p='x-schema:s'/>");
    EXPECT_EQ(Hex(error.code), row.code) << row.why << "\n"
                                         << row.declarations << "\n"
                                         << error.reason;
  }
}

TEST(SchemaGroup, TellsWhereASchemaIsWrong) {
  Workshop workshop;
  workshop.schemas.Put("s",
                       "<Schema xmlns='urn:schemas-microsoft-com:xml-data'>\n"
                       "  <ElementType name='a'/>\n  <ElementType name='a'/>\n</Schema>");
  workshop.schemas.Put("t", "<Schema>\n</Shema>");
  workshop.schemas.Put("u", "<Shema/>");
  const dom::Document document = workshop.NewDocument();
  EXPECT_FALSE(document.LoadXml("<q xmlns='x-schema:s'/>"));
  EXPECT_EQ(document.LastError().line, 3);
  EXPECT_EQ(document.LastError().linePos, 26);
  EXPECT_EQ(document.LastError().srcText, "  <ElementType name='a'/>");
  EXPECT_EQ(document.LastError().url, "s");
  EXPECT_EQ(document.LastError().reason, "The element 'a' is already declared.\r\n");
  EXPECT_FALSE(document.LoadXml("<q xmlns='x-schema:t'/>"));
  EXPECT_EQ(Hex(document.LastError().code), "C00CE56D");
  EXPECT_EQ(document.LastError().line, 2);
  EXPECT_FALSE(document.LoadXml("<q xmlns='x-schema:u'/>"));
  EXPECT_EQ(Hex(document.LastError().code), "C00CE101");
}

TEST(SchemaGroup, LoadsWhatASchemaRefersTo) {
  Workshop workshop;
  workshop.schemas.PutBody("a",
                           "<ElementType xmlns:b='x-schema:b' name='r' content='eltOnly' "
                           "model='closed'><element type='b:x'/><attribute type='b:unit'/>"
                           "</ElementType>");
  workshop.schemas.PutBody("b",
                           "<AttributeType name='unit' dt:type='enumeration' "
                           "dt:values='m km'/><ElementType name='x' dt:type='int'/>"
                           "<ElementType xmlns:a='x-schema:a' name='back'>"
                           "<element type='a:r'/></ElementType>");
  const dom::Document document = workshop.NewDocument();
  const std::string start = "<r xmlns='x-schema:a' xmlns:b='x-schema:b' ";
  ASSERT_TRUE(document.LoadXml(start + "b:unit='m'><b:x>5</b:x></r>"))
      << document.LastError().reason;
  EXPECT_EQ(workshop.schemas.Reads(), 2) << "once a namespace";
  const dom::Node x = document.DocumentElement().FirstChild();
  EXPECT_EQ(TypedValue(x), Variant(std::int32_t{5}));
  EXPECT_EQ(Definition(document.DocumentElement().GetAttributeNode("b:unit")).GetAttribute("name"),
            "unit");
  EXPECT_FALSE(document.LoadXml(start + "b:unit='mm'><b:x>5</b:x></r>"));
  EXPECT_EQ(Hex(document.LastError().code), "C00CE017");
  EXPECT_FALSE(document.LoadXml(start + "><b:x>y</b:x></r>"));
  EXPECT_EQ(Hex(document.LastError().code), "C00CE201");
  EXPECT_FALSE(document.LoadXml(start + "><x>5</x></r>"));
  EXPECT_EQ(document.LastError().reason,
            "Element content is invalid according to the DTD/Schema.\r\n"
            "Expecting: {x-schema:b}x.\r\n");
  EXPECT_FALSE(document.LoadXml(start + "unit='m'><b:x>5</b:x></r>"));
  EXPECT_EQ(Hex(document.LastError().code), "C00CE015") << "unqualified";
}

TEST(SchemaGroup, FailsWithWhatItRefersTo) {
  Workshop workshop;
  workshop.schemas.PutBody("a", "<ElementType xmlns:b='x-schema:b' name='r'/>");
  const dom::Document document = workshop.NewDocument();
  EXPECT_FALSE(document.LoadXml("<r xmlns='x-schema:a'/>"));
  EXPECT_EQ(Hex(document.LastError().code), "800C0006");
  EXPECT_EQ(document.LastError().url, "b");
}

TEST(SchemaGroup, ServesEachNamespaceByItsOwnReading) {
  Workshop workshop;
  workshop.schemas.PutBody("a",
                           "<ElementType name='r' model='closed' content='eltOnly'>"
                           "<element type='n'/></ElementType><ElementType name='n'/>");
  workshop.schemas.PutBody("./a", "<ElementType name='n'/>");
  const dom::Document document = workshop.NewDocument();
  EXPECT_TRUE(document.LoadXml("<r xmlns='x-schema:a'><n/></r>"));
  EXPECT_FALSE(document.LoadXml("<r xmlns='x-schema:a'><n xmlns='x-schema:./a'/></r>"));
  EXPECT_EQ(Hex(document.LastError().code), "C00CE014") << "one file, two namespaces";
}

// What a prefix means is looked up in no more steps than it has declarations around it.
TEST(SchemaGroup, ResolvesSixtyThousandPrefixesAmongAsMany) {
  std::string declarations;
  std::string references;
  for (int i = 0; i < 60000; ++i) {
    const std::string prefix = "p" + std::to_string(i);
    declarations.append(" xmlns:").append(prefix).append("='urn:").append(prefix).append("'");
    references += "<element type='" + prefix + ":e'/>";
  }
  Workshop workshop;
  workshop.schemas.Put("s", "<Schema xmlns='urn:schemas-microsoft-com:xml-data'" + declarations +
                                "><ElementType name='r' content='eltOnly'>" + references +
                                "</ElementType></Schema>");
  const dom::Document document = workshop.NewDocument();
  EXPECT_FALSE(document.LoadXml("<q xmlns='x-schema:s'/>"));
  EXPECT_EQ(document.LastError().reason, "Reference to undeclared element: 'p0:e'.\r\n");
}

TEST(SchemaGroup, KnowsWhatAPrefixMeansWhereItStands) {
  Workshop workshop;
  workshop.schemas.PutBody("a", "<ElementType name='x'/>");
  workshop.schemas.PutBody("b", "<ElementType name='y'/>");
  workshop.schemas.PutBody("s",
                           "<ElementType xmlns:p='x-schema:a' name='r'><element type='p:x'/>"
                           "<element xmlns:p='x-schema:b' type='p:y'/><element type='p:x'/>"
                           "</ElementType><ElementType name='t'><element xmlns:p='x-schema:b' "
                           "type='p:y'/></ElementType>");
  const dom::Document document = workshop.NewDocument();
  EXPECT_TRUE(document.LoadXml("<q xmlns:s='x-schema:s'/>")) << document.LastError().reason;
  workshop.schemas.PutBody("s",
                           "<ElementType name='r'><element xmlns:p='x-schema:a' type='p:x'/>"
                           "<element type='p:x'/></ElementType>");
  EXPECT_FALSE(document.LoadXml("<q xmlns:s='x-schema:s'/>"));
  EXPECT_EQ(document.LastError().reason, "Reference to undeclared namespace prefix: 'p'.\r\n");
}

TEST(SchemaGroup, ReportsOneOfManyForeignAttributes) {
  std::string attributes;
  for (int i = 0; i < 100000; ++i) attributes += " a" + std::to_string(i) + "=''";
  Workshop workshop;
  workshop.schemas.Put(
      "s", "<Schema xmlns='urn:schemas-microsoft-com:xml-data'" + attributes + " name='s'/>");
  const dom::Document document = workshop.NewDocument();
  EXPECT_FALSE(document.LoadXml("<q xmlns='x-schema:s'/>"));
  EXPECT_EQ(Hex(document.LastError().code), "C00CE225");
}

TEST(SchemaGroup, RefusesGroupsThatNestTooDeeply) {
  std::string groups;
  for (int i = 0; i < 1000; ++i) groups += "<group>";
  for (int i = 0; i < 1000; ++i) groups += "</group>";
  EXPECT_EQ(Hex(ParseAgainst("<ElementType name='r' content='eltOnly'>" + groups + "</ElementType>",
                             "<q xmlns:p='x-schema:s'/>")
                    .code),
            "C00CE225");
}

}  // namespace
}  // namespace kx::xdr
