#include "platform/xdr/typing.h"

#include "memory_schemas.h"
#include "platform/dom/attribute_map.h"
#include "platform/runtime/error.h"
#include "platform/xdr/schema_collection.h"

#include <functional>
#include <gtest/gtest.h>

namespace kx::xdr {
namespace {

constexpr const char* kSchema =
    "<AttributeType name='k' dt:type='int'/><AttributeType name='e' dt:type='nmtoken'/>"
    "<AttributeType name='p'/><AttributeType name='i' dt:type='id'/>"
    "<ElementType name='n' dt:type='int'/><ElementType name='t' dt:type='string'/>"
    "<ElementType name='m' dt:type='nmtoken'/><ElementType name='d' dt:type='dateTime'/>"
    "<ElementType name='b' dt:type='bin.base64'/><ElementType name='l' dt:type='i8'/>"
    "<ElementType name='u'/>"
    "<ElementType name='r' content='eltOnly' order='many'><attribute type='k'/>"
    "<attribute type='e'/><attribute type='p'/><attribute type='i'/><element type='n'/>"
    "<element type='t'/><element type='m'/><element type='d'/><element type='b'/>"
    "<element type='l'/><element type='u'/></ElementType>";
constexpr const char* kInstance =
    "<r xmlns='x-schema:s' k='5' e='x' p=' y ' i='z'><n> 12 </n><t> a </t><m>q</m>"
    "<d>1900-01-01T12:00:00</d><b>ABCD</b><l>7</l><u> v </u><n/></r>";

class Typing : public testing::Test {
 protected:
  void SetUp() override {
    workshop_.schemas.PutBody("s", kSchema);
    ASSERT_TRUE(document_.LoadXml(kInstance)) << document_.LastError().reason;
  }
  [[nodiscard]] dom::Node Child(int index) const {
    dom::Node node = document_.DocumentElement().FirstChild();
    while (index-- > 0) node = node.NextSibling();
    return node;
  }
  [[nodiscard]] dom::Node Attribute(const char* name) const {
    return document_.DocumentElement().GetAttributeNode(name);
  }
  Workshop workshop_;
  dom::Document document_ = workshop_.NewDocument();
};

std::int32_t NumberOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const Error& error) {
    return error.Number();
  }
  return 0;
}
std::string TextOfError(const std::function<void()>& call) {
  try {
    call();
  } catch (const Error& error) {
    return error.Description();
  }
  return {};
}
constexpr auto kFail = static_cast<std::int32_t>(0x80004005U);
constexpr auto kInvalid = static_cast<std::int32_t>(0x80070057U);

TEST_F(Typing, ReadsElementsByTheirDeclaration) {
  EXPECT_EQ(TypedValue(Child(0)), Variant(std::int32_t{12}));
  EXPECT_EQ(TypedValue(Child(1)), Variant(" a "));
  EXPECT_EQ(TypedValue(Child(2)), Variant("q"));
  EXPECT_EQ(TypedValue(Child(3)), Variant(Date{2.5}));
  EXPECT_EQ(TypedValue(Child(4)), Variant(Variant::Bytes{0, 16, 131}));
  EXPECT_TRUE(TypedValue(Child(5)).IsNull());
  EXPECT_EQ(TypedValue(Child(6)), Variant(" v "));
  EXPECT_TRUE(TypedValue(Child(7)).IsNull()) << "typed and empty";
}

TEST_F(Typing, ReadsAttributesByTheirDeclaration) {
  EXPECT_EQ(TypedValue(Attribute("k")), Variant(std::int32_t{5}));
  EXPECT_EQ(TypedValue(Attribute("e")), Variant("x"));
  EXPECT_EQ(TypedValue(Attribute("p")), Variant(" y "));
  Attribute("k").SetNodeValue("");
  Attribute("e").SetNodeValue("");
  EXPECT_TRUE(TypedValue(Attribute("k")).IsNull()) << "rich and empty";
  EXPECT_EQ(TypedValue(Attribute("e")), Variant(""));
  EXPECT_TRUE(IsIdAttribute(Attribute("i").At()));
  EXPECT_FALSE(IsIdAttribute(Attribute("k").At()));
}

TEST_F(Typing, ReadsOtherNodesByTheirKind) {
  EXPECT_EQ(TypedValue(Child(0).FirstChild()), Variant(" 12 "));
  EXPECT_TRUE(TypedValue(document_.AsNode()).IsNull());
  EXPECT_TRUE(TypedValue(document_.CreateDocumentFragment()).IsNull());
  EXPECT_EQ(TypedValue(document_.CreateComment("c")), Variant("c"));
}

TEST_F(Typing, RefusesToReadATextThatDoesNotSuit) {
  Child(0).SetText("x");
  EXPECT_EQ(TextOfError([&] { static_cast<void>(TypedValue(Child(0))); }),
            "Error parsing 'x' as int datatype.\r\n");
  EXPECT_EQ(NumberOf([&] { static_cast<void>(TypedValue(Child(0))); }), kFail);
}

TEST_F(Typing, WritesWhatTheTypeTakesAndNothingElse) {
  SetTypedValue(Child(0), std::int16_t{-1});
  EXPECT_EQ(Child(0).Text(), "-1");
  EXPECT_EQ(TextOfError([&] { SetTypedValue(Child(0), "x"); }),
            "Error parsing 'x' as int datatype.\r\n");
  EXPECT_EQ(Child(0).Text(), "-1");
  SetTypedValue(Attribute("k"), 9);
  EXPECT_EQ(Attribute("k").NodeValue(), "9");
  SetTypedValue(Child(6), true);
  EXPECT_EQ(Child(6).Text(), "-1") << "untyped";
  EXPECT_EQ(NumberOf([&] { SetTypedValue(document_.AsNode(), 1); }), kFail);
}

TEST_F(Typing, NamesTheTypesOfRichElementsAndTypedAttributes) {
  EXPECT_EQ(DataTypeNameOf(Child(0)), "int");
  EXPECT_EQ(DataTypeNameOf(Child(1)), std::nullopt) << "string";
  EXPECT_EQ(DataTypeNameOf(Child(2)), std::nullopt) << "nmtoken";
  EXPECT_EQ(DataTypeNameOf(Child(6)), std::nullopt) << "no type";
  EXPECT_EQ(DataTypeNameOf(Attribute("k")), "int");
  EXPECT_EQ(DataTypeNameOf(Attribute("e")), "nmtoken");
  EXPECT_EQ(DataTypeNameOf(Attribute("p")), std::nullopt);
  EXPECT_EQ(DataTypeNameOf(document_.AsNode()), std::nullopt);
}

TEST_F(Typing, SetsTheTypeOfAnElementByAnAttribute) {
  const dom::Node element = document_.CreateElement("q");
  SetDataType(element, "Bin.Hex");
  EXPECT_EQ(element.Xml(),
            "<q xmlns:dt=\"urn:schemas-microsoft-com:datatypes\" dt:dt=\"Bin.Hex\"/>");
  EXPECT_EQ(DataTypeNameOf(element), "bin.hex");
  SetDataType(element, "string");
  EXPECT_EQ(DataTypeNameOf(element), "string");
  EXPECT_EQ(element.Attributes().Length(), 1);
  EXPECT_EQ(TextOfError([&] { SetDataType(element, "none"); }),
            "Datatype 'none' is not supported.\r\n");
  EXPECT_EQ(NumberOf([&] { SetDataType(element, ""); }), kFail);
  EXPECT_EQ(NumberOf([&] { SetDataType(element, {}); }), kInvalid);
  EXPECT_EQ(NumberOf([&] { SetDataType(Attribute("k"), "int"); }), kFail);
  EXPECT_EQ(NumberOf([&] { SetDataType(Attribute("k"), {}); }), kInvalid);
}

TEST_F(Typing, TypesByTheInstanceBeforeTheDeclaration) {
  SetDataType(Child(0), "string");
  EXPECT_EQ(DataTypeNameOf(Child(0)), "string");
  EXPECT_EQ(TypedValue(Child(0)), Variant(" 12 "));
}

TEST_F(Typing, UsesAPrefixInScopeAndAvoidsATakenOne) {
  ASSERT_TRUE(document_.LoadXml("<a xmlns:x='urn:schemas-microsoft-com:datatypes'><b/></a>"));
  SetDataType(Child(0), "int");
  EXPECT_EQ(Child(0).Xml(), "<b xmlns:x=\"urn:schemas-microsoft-com:datatypes\" x:dt=\"int\"/>");
  ASSERT_TRUE(document_.LoadXml("<a xmlns:dt='urn:other'><b/></a>"));
  SetDataType(Child(0), "int");
  EXPECT_TRUE(Child(0).GetAttribute("dt0:dt"));
}

TEST_F(Typing, FindsAPrefixForTheTypeAmongTenThousand) {
  std::string declarations = " xmlns:dt='urn:dt'";
  for (int i = 0; i < 10000; ++i) {
    declarations += " xmlns:dt" + std::to_string(i) + "='urn:" + std::to_string(i) + "'";
  }
  ASSERT_TRUE(document_.LoadXml("<a" + declarations + "><b/></a>"));
  SetDataType(Child(0), "int");
  EXPECT_TRUE(Child(0).GetAttribute("dt10000:dt"));
}

TEST_F(Typing, HidesAPrefixThatMeansSomethingElseFurtherIn) {
  ASSERT_TRUE(document_.LoadXml(
      "<a xmlns:x='urn:schemas-microsoft-com:datatypes'><b xmlns:x='urn:x'/></a>"));
  SetDataType(Child(0), "int");
  EXPECT_TRUE(Child(0).GetAttribute("dt:dt"));
  ASSERT_TRUE(
      document_.LoadXml("<a xmlns:x='urn:schemas-microsoft-com:datatypes'><b x:other=''/></a>"));
  SetDataType(Child(0), "int");
  EXPECT_TRUE(Child(0).GetAttribute("x:dt")) << "an attribute that uses it hides nothing";
}

TEST_F(Typing, JudgesAnAttributeWithoutPrefixByItsLocalName) {
  const dom::Node made = document_.CreateNode(dom::NodeType::kAttribute, "k", "x-schema:s");
  made.SetNodeValue("6");
  document_.DocumentElement().SetAttributeNode(made);
  EXPECT_EQ(TypedValue(made), Variant(std::int32_t{6}));
  EXPECT_EQ(Definition(made).GetAttribute("name"), "k");
  EXPECT_EQ(Validate(document_).code, 0);
}

TEST_F(Typing, TrimsAnUntypedTextByThePreservingOfTheMoment) {
  document_.PreserveWhiteSpace(false);
  EXPECT_EQ(TypedValue(Child(6)), Variant("v"));
  SetDataType(Child(6), "string");
  EXPECT_EQ(TypedValue(Child(6)), Variant(" v ")) << "a string by dt:dt is left alone";
}

TEST_F(Typing, FindsTheDeclarationOfEveryBoundNode) {
  const dom::Node r = Definition(document_.DocumentElement());
  EXPECT_EQ(r.NodeName(), "ElementType");
  EXPECT_EQ(r.GetAttribute("name"), "r");
  EXPECT_EQ(Definition(Attribute("k")).NodeName(), "AttributeType");
  EXPECT_FALSE(Definition(Attribute("xmlns")));
  EXPECT_FALSE(Definition(document_.AsNode()));
  EXPECT_EQ(r.OwnerDocument().Url(), "s");
  EXPECT_EQ(NumberOf([&] { r.SetAttribute("name", "x"); }), kFail) << "read-only";
  EXPECT_EQ(Definition(Child(0)).OwnerDocument(), r.OwnerDocument());
}

TEST_F(Typing, FindsTheDeclarationOfCreatedCopiedAndMovedNodes) {
  const dom::Node made = document_.CreateNode(dom::NodeType::kElement, "n", "X-schema:s");
  EXPECT_FALSE(Definition(made));
  EXPECT_TRUE(Definition(document_.CreateNode(dom::NodeType::kElement, "n", "x-schema:S")));
  const dom::Node copy = document_.Clone(dom::CloneDepth::kDeep).DocumentElement();
  EXPECT_EQ(Definition(copy), Definition(document_.DocumentElement()));
  const dom::Document other = workshop_.NewDocument();
  ASSERT_TRUE(other.LoadXml("<a/>"));
  EXPECT_FALSE(Definition(other.CreateNode(dom::NodeType::kElement, "n", "x-schema:s")));
  other.DocumentElement().AppendChild(Child(0));
  EXPECT_EQ(TypedValue(other.DocumentElement().FirstChild()), Variant(std::int32_t{12}));
  EXPECT_TRUE(Definition(other.CreateNode(dom::NodeType::kElement, "n", "x-schema:s")));
}

}  // namespace
}  // namespace kx::xdr
