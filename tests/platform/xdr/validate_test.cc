#include "memory_schemas.h"
#include "platform/xdr/schema_collection.h"
#include "platform/xdr/typing.h"

#include <gtest/gtest.h>

namespace kx::xdr {
namespace {

constexpr const char* kSchema =
    "<ElementType name='n' dt:type='int'/><ElementType name='e' content='empty'/>"
    "<ElementType name='r' content='eltOnly' model='closed'><element type='n'/>"
    "<element type='e' minOccurs='0'/></ElementType>";

TEST(Validate, FindsWhatEditsHaveMadeWrong) {
  Workshop workshop;
  workshop.schemas.PutBody("s", kSchema);
  const dom::Document document = workshop.NewDocument();
  ASSERT_TRUE(document.LoadXml("<r xmlns='x-schema:s'><n>1</n></r>"));
  EXPECT_EQ(Validate(document).code, 0);
  document.DocumentElement().FirstChild().SetText("x");
  const dom::ParseError error = Validate(document);
  EXPECT_EQ(Hex(error.code), "C00CE201");
  EXPECT_EQ(error.reason, "Error parsing 'x' as int datatype.\r\n");
  EXPECT_EQ(error.line, 0);
  EXPECT_EQ(error.srcText, "");
  EXPECT_EQ(document.LastError().code, 0) << "the document's own error is left alone";
  document.DocumentElement().RemoveChild(document.DocumentElement().FirstChild());
  EXPECT_EQ(Hex(Validate(document).code), "C00CE011");
}

TEST(Validate, WantsOneRootWithASchema) {
  Workshop workshop;
  workshop.schemas.PutBody("s", kSchema);
  const dom::Document document = workshop.NewDocument();
  EXPECT_EQ(Hex(Validate(document).code), "C00CE223");
  ASSERT_TRUE(document.LoadXml("<q/>"));
  EXPECT_EQ(Hex(Validate(document).code), "C00CE224");
  ASSERT_TRUE(document.LoadXml("<q><r xmlns='x-schema:s'><n/></r></q>"));
  EXPECT_EQ(Hex(Validate(document).code), "C00CE224") << "also with a bound descendant";
  EXPECT_EQ(ValidateBound(document.Data()).code, 0);
}

TEST(Validate, DoesNotMissWhatTheLoadDropped) {
  Workshop workshop;
  workshop.schemas.PutBody("s", kSchema);
  const dom::Document document = workshop.NewDocument();
  document.PreserveWhiteSpace(false);
  document.ValidateOnParse(false);
  ASSERT_TRUE(document.LoadXml("<e xmlns='x-schema:s'> </e>"));
  EXPECT_EQ(Validate(document).code, 0);
  document.PreserveWhiteSpace(true);
  ASSERT_TRUE(document.LoadXml("<e xmlns='x-schema:s'> </e>"));
  EXPECT_EQ(Hex(Validate(document).code), "C00CE018");
}

TEST(Validate, UsesTheCollectionOfTheMoment) {
  Workshop workshop;
  workshop.schemas.PutBody("s", kSchema);
  const dom::Document document = workshop.NewDocument();
  ASSERT_TRUE(document.LoadXml("<n xmlns='urn:n'>x</n>"));
  EXPECT_EQ(Hex(Validate(document).code), "C00CE224");
  const auto collection = runtime::MakeCounted<SchemaCollection>(workshop.schemas);
  collection->Add("urn:n", "s");
  document.EditSettings().schemas = collection;
  EXPECT_EQ(Hex(Validate(document).code), "C00CE201");
  EXPECT_EQ(DataTypeNameOf(document.DocumentElement()), "int") << "and binds";
}

}  // namespace
}  // namespace kx::xdr
