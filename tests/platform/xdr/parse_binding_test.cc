#include "memory_schemas.h"
#include "platform/dom/attribute_map.h"
#include "platform/xdr/parse_binder.h"
#include "platform/xdr/typing.h"

#include <gtest/gtest.h>

namespace kx::xdr {
namespace {

constexpr const char* kOrder =
    "<AttributeType name='k' dt:type='int' default='7'/><AttributeType name='u'/>"
    "<ElementType name='n' dt:type='int'/>"
    "<ElementType name='r' content='eltOnly' model='closed'><attribute type='u'/>"
    "<attribute type='k'/><element type='n'/></ElementType>";

struct PlaceCase {
  const char* text;
  const char* code;
  int line;
  int linePos;
  int filePos;
  const char* srcText;
  const char* why;
};
constexpr PlaceCase kPlaces[] = {
    {"<z xmlns='x-schema:s'>\n</z>", "C00CE00D", 1, 23, 22, "<z xmlns='x-schema:s'>",
     "behind the start tag"},
    {"<r xmlns='x-schema:s'>\n <z/></r>", "C00CE014", 2, 6, 28, " <z/></r>", "behind the tag"},
    {"<r xmlns='x-schema:s' x='1'\n>", "C00CE015", 2, 2, 29, ">", "behind the start tag"},
    {"<r xmlns='x-schema:s'>ab</r>", "C00CE018", 1, 23, 22, "<r xmlns='x-schema:s'>ab</r>",
     "the first character of the text"},
    {"<r xmlns='x-schema:s'>\n</r>", "C00CE011", 2, 3, 25, "</r>", "the name in the end tag"},
    {"<r xmlns='x-schema:s'/>", "C00CE011", 1, 24, 23, "<r xmlns='x-schema:s'/>",
     "behind an empty tag"},
    {"<r xmlns='x-schema:s'><n>x</n></r>", "C00CE201", 1, 29, 28,
     "<r xmlns='x-schema:s'><n>x</n></r>", "the name in the end tag"},
    {"<r xmlns='x-schema:s'><n>x<!---->y</n></r>", "C00CE201", 1, 37, 36,
     "<r xmlns='x-schema:s'><n>x<!---->y</n></r>", "the name in the end tag"},
    {"<r xmlns='x-schema:none'/>", "800C0006", 0, 0, 0, "", "no place"},
};
TEST(ParseBinding, TellsWhereTheFirstViolationIs) {
  for (const PlaceCase& row : kPlaces) {
    SCOPED_TRACE(row.text);
    const dom::ParseError error = ParseAgainst(kOrder, row.text);
    EXPECT_EQ(Hex(error.code), row.code) << row.why;
    EXPECT_EQ(error.line, row.line) << row.why;
    EXPECT_EQ(error.linePos, row.linePos) << row.why;
    EXPECT_EQ(error.filePos, row.filePos) << row.why;
    EXPECT_EQ(error.srcText, row.srcText) << row.why;
  }
}

TEST(ParseBinding, TellsOfADanglingReferenceAtTheEndOfTheDocument) {
  const dom::ParseError error = ParseAgainst(
      "<AttributeType name='l' dt:type='idref'/><ElementType name='r'><attribute type='l'/>"
      "</ElementType>",
      "<r xmlns='x-schema:s' l='a'>\n</r>\n");
  EXPECT_EQ(Hex(error.code), "C00CE00E");
  EXPECT_EQ(error.line, 3);
  EXPECT_EQ(error.linePos, 1);
  EXPECT_EQ(error.filePos, 0);
  EXPECT_EQ(error.srcText, "");
}

TEST(ParseBinding, ReportsAMissingSchemaUnderItsLocation) {
  Workshop workshop;
  const dom::Document document = workshop.NewDocument();
  EXPECT_FALSE(document.LoadXml("<r xmlns='x-schema:none.xml'/>"));
  EXPECT_EQ(document.LastError().url, "none.xml");
  EXPECT_EQ(document.LastError().reason, "The system cannot locate the object specified.\r\n");
  EXPECT_FALSE(document.DocumentElement());
}

TEST(ParseBinding, SuppliesDefaultsBehindTheWrittenAttributes) {
  Workshop workshop;
  workshop.schemas.PutBody("s", kOrder);
  const dom::Document document = workshop.NewDocument();
  ASSERT_TRUE(document.LoadXml("<r xmlns='x-schema:s' u='1'><n>2</n></r>"));
  const dom::Node root = document.DocumentElement();
  EXPECT_EQ(root.GetAttribute("k"), "7");
  const dom::Node k = root.GetAttributeNode("k");
  EXPECT_FALSE(k.Specified());
  EXPECT_EQ(TypedValue(k), Variant(std::int32_t{7}));
  EXPECT_EQ(root.Attributes().Item(2), k);
  EXPECT_EQ(document.Xml(), "<r xmlns=\"x-schema:s\" u=\"1\"><n>2</n></r>\r\n");
}

TEST(ParseBinding, BringsADefaultBackWhenTheWrittenAttributeIsRemoved) {
  Workshop workshop;
  workshop.schemas.PutBody("s", kOrder);
  const dom::Document document = workshop.NewDocument();
  ASSERT_TRUE(document.LoadXml("<r xmlns='x-schema:s' k='1' u='2'><n>2</n></r>"));
  const dom::Node root = document.DocumentElement();
  EXPECT_TRUE(root.RemoveAttribute("k"));
  EXPECT_EQ(root.GetAttribute("k"), "7");
  EXPECT_FALSE(root.GetAttributeNode("k").Specified());
  EXPECT_TRUE(root.RemoveAttribute("k")) << "a supplied one as well";
  EXPECT_EQ(root.GetAttribute("k"), "7");
  root.SetAttribute("k", "3");
  EXPECT_TRUE(root.GetAttributeNode("k").Specified());
  const dom::Node written = root.Attributes().RemoveNamedItem("k");
  EXPECT_EQ(written.NodeValue(), "3") << "what was removed is left as it is";
  EXPECT_EQ(root.GetAttribute("k"), "7");
  root.SetAttribute("k", "4");
  root.RemoveAttributeNode(root.GetAttributeNode("k"));
  EXPECT_EQ(root.GetAttribute("k"), "7");
  EXPECT_TRUE(root.Attributes().RemoveQualifiedItem("k", ""));
  EXPECT_EQ(root.GetAttribute("k"), "7");
  EXPECT_TRUE(root.RemoveAttribute("u"));
  EXPECT_FALSE(root.GetAttribute("u")) << "no default";
  EXPECT_EQ(document.Xml(), "<r xmlns=\"x-schema:s\"><n>2</n></r>\r\n");
}

TEST(ParseBinding, SuppliesACreatedElementOnlyWithWhatIsRemoved) {
  Workshop workshop;
  workshop.schemas.PutBody("s", kOrder);
  const dom::Document document = workshop.NewDocument();
  ASSERT_TRUE(document.LoadXml("<r xmlns='x-schema:s'><n>2</n></r>"));
  const dom::Node made = document.CreateNode(dom::NodeType::kElement, "r", "x-schema:s");
  EXPECT_FALSE(made.GetAttribute("k"));
  made.SetAttribute("k", "1");
  made.RemoveAttribute("k");
  EXPECT_EQ(made.GetAttribute("k"), "7");
  const dom::Node other = document.CreateElement("r");
  other.SetAttribute("k", "1");
  other.RemoveAttribute("k");
  EXPECT_FALSE(other.GetAttribute("k")) << "not bound";
}

TEST(ParseBinding, SuppliesTheDefaultOfTheReferenceFirst) {
  Workshop workshop;
  workshop.schemas.PutBody("s",
                           "<AttributeType name='a' default='type'/>"
                           "<AttributeType name='b' default='type'/>"
                           "<AttributeType name='c' default='fixed' required='yes'/>"
                           "<ElementType name='r'><attribute type='a' default='reference'/>"
                           "<attribute type='b' default=''/><attribute type='c'/></ElementType>");
  const dom::Document document = workshop.NewDocument();
  ASSERT_TRUE(document.LoadXml("<r xmlns='x-schema:s'/>"));
  EXPECT_EQ(document.DocumentElement().GetAttribute("a"), "reference");
  EXPECT_EQ(document.DocumentElement().GetAttribute("b"), "type") << "an empty default is none";
  EXPECT_EQ(document.DocumentElement().GetAttribute("c"), "fixed");
}

TEST(ParseBinding, WithValidationAloneStillLoadsSchemas) {
  Workshop workshop;
  workshop.schemas.PutBody("s", kOrder);
  const dom::Document document = workshop.NewDocument();
  document.ResolveExternals(false);
  EXPECT_FALSE(document.LoadXml("<r xmlns='x-schema:s'><z/></r>"));
  EXPECT_EQ(Hex(document.LastError().code), "C00CE014");
}

TEST(ParseBinding, TakesTheFirstOfTwoSchemasOfOneNameInTheDocument) {
  Workshop workshop;
  workshop.schemas.PutBody("s", kOrder);
  const dom::Document document = workshop.NewDocument();
  const std::string start =
      "<q><Schema name='i' xmlns='urn:schemas-microsoft-com:xml-data' "
      "xmlns:dt='urn:schemas-microsoft-com:datatypes'><ElementType name='n' dt:type='";
  const std::string both = start + "int'/></Schema>" + start.substr(3) + "boolean'/></Schema>";
  EXPECT_TRUE(document.LoadXml(both + "<n xmlns='x-schema:#i'>5</n></q>"));
  EXPECT_FALSE(document.LoadXml(both + "<n xmlns='x-schema:s#i'>5</n></q>"));
  EXPECT_EQ(Hex(document.LastError().code), "800C0006") << "no location with a name";
  EXPECT_FALSE(document.LoadXml(start + "none'/></Schema></q>"));
  EXPECT_EQ(Hex(document.LastError().code), "C00CE21C") << "a mistake in it";
}

TEST(ParseBinding, WithoutValidationStillBindsAndSupplies) {
  Workshop workshop;
  workshop.schemas.PutBody("s", kOrder);
  const dom::Document document = workshop.NewDocument();
  document.ValidateOnParse(false);
  ASSERT_TRUE(document.LoadXml("<r xmlns='x-schema:s'><z/>text</r>"));
  EXPECT_EQ(document.DocumentElement().GetAttribute("k"), "7");
  EXPECT_TRUE(Definition(document.DocumentElement()));
  EXPECT_EQ(Hex(Validate(document).code), "C00CE014");
}

TEST(ParseBinding, WithNeitherSettingLoadsNoSchema) {
  Workshop workshop;
  const dom::Document document = workshop.NewDocument();
  document.ValidateOnParse(false);
  document.ResolveExternals(false);
  EXPECT_TRUE(document.LoadXml("<r xmlns='x-schema:none'/>"));
  EXPECT_EQ(workshop.schemas.Reads(), 0);
}

TEST(ParseBinding, LoadsANamespaceOnceWhateverItsLetterCase) {
  Workshop workshop;
  workshop.schemas.PutBody("s", kOrder);
  const dom::Document document = workshop.NewDocument();
  ASSERT_TRUE(document.LoadXml("<r xmlns='x-schema:s'><n xmlns='x-schema:S'>2</n></r>"));
  EXPECT_EQ(workshop.schemas.Reads(), 1);
}

TEST(ParseBinding, BindsToASchemaInTheDocument) {
  Workshop workshop;
  const dom::Document document = workshop.NewDocument();
  const std::string schema =
      "<Schema name='i' xmlns='urn:schemas-microsoft-com:xml-data' "
      "xmlns:dt='urn:schemas-microsoft-com:datatypes'><ElementType name='n' dt:type='int'/>"
      "</Schema>";
  ASSERT_TRUE(document.LoadXml("<q>" + schema + "<n xmlns='x-schema:#i'>5</n></q>"));
  const dom::Node n = document.DocumentElement().LastChild();
  EXPECT_EQ(TypedValue(n), Variant(std::int32_t{5}));
  EXPECT_FALSE(Definition(n));
  EXPECT_FALSE(document.LoadXml("<q>" + schema + "<n xmlns='x-schema:#i'>x</n></q>"));
  EXPECT_EQ(Hex(document.LastError().code), "C00CE201");
  EXPECT_FALSE(document.LoadXml("<q><n xmlns='x-schema:#i'>5</n>" + schema + "</q>"));
  EXPECT_EQ(Hex(document.LastError().code), "800C0006");
}

TEST(ParseBinding, HoldsForDeepAndWideDocuments) {
  Workshop workshop;
  workshop.schemas.PutBody("s", "<ElementType name='r'><element type='r'/></ElementType>");
  const dom::Document document = workshop.NewDocument();
  document.EditSettings().maxElementDepth = 300000;
  std::string text = "<r xmlns='x-schema:s'>";
  for (int i = 0; i < 200000; ++i) text += "<r>";
  for (int i = 0; i < 200000; ++i) text += "</r>";
  ASSERT_TRUE(document.LoadXml(text + "</r>"));
  EXPECT_EQ(Validate(document).code, 0);
}

}  // namespace
}  // namespace kx::xdr
