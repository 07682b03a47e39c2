// The two forms in which a message text names its schemas.
#include "core/text_form.h"

#include "kxmessage/error_codes.h"
#include "kxmessage/parse_error.h"

#include "support/message_world.h"

#include <gtest/gtest.h>
#include <string>

namespace kx::core {
namespace {

using test::ErrorOf;

class TextFormTest : public testing::Test {
 protected:
  [[nodiscard]] CanonicalText Canonical(std::string_view text, std::string_view schema = {}) {
    return CanonicalizeSchemaRefs(text, schema, *environment_);
  }
  [[nodiscard]] std::string Expanded(std::string_view text,
                                     std::string_view main = "C:\\s\\M.xml") {
    return ExpandSchemaRefs(text, main, environment_->Locations());
  }

  test::MessageWorld world_;
  runtime::Counted<const Environment> environment_ = world_.Environment();
};

TEST_F(TextFormTest, CanonicalFormDependsOnNoFolder) {
  struct {
    const char* text;
    const char* canonical;
    const char* mainSchema;
    const char* why;
  } const rows[] = {
      {"<O xmlns=\"x-schema:C:\\s\\Order.xml\"><I xmlns=\"x-schema:C:\\s\\Order.xml\"/></O>",
       "<O xmlns=\"ref-schema:\"><I/></O>", "C:\\s\\Order.xml",
       "a repeated declaration of the main schema is dropped"},
      {"<O xmlns=\"x-schema:C:\\s\\Order.xml\"><I xmlns=\"x-schema:c:\\S\\ORDER.XML\" a='1'/></O>",
       "<O xmlns=\"ref-schema:\"><I a='1'/></O>", "C:\\s\\Order.xml",
       "folders and names compare without regard to case"},
      {"<O xmlns=\"x-schema:C:\\s\\Order.xml\"><I xmlns=\"x-schema:C:\\s\\Common.xml\"/></O>",
       "<O xmlns=\"ref-schema:\"><I xmlns=\"ref-schema:Common.xml\"/></O>", "C:\\s\\Order.xml",
       "a schema of the same folder is named by its file"},
      {"<O xmlns=\"x-schema:C:\\s\\Order.xml\"><I xmlns=\"x-schema:D:\\t\\Common.xml\"/></O>",
       "<O xmlns=\"ref-schema:\"><I xmlns=\"ref-schema:D:\\t\\Common.xml\"/></O>",
       "C:\\s\\Order.xml", "a schema of another folder keeps its location"},
      {"<O xmlns=\"x-schema:http://h/s/O.xml\"><I xmlns=\"x-schema:http://h/s/C.xml\"/></O>",
       "<O xmlns=\"ref-schema:\"><I xmlns=\"ref-schema:C.xml\"/></O>", "http://h/s/O.xml",
       "folders of URLs"},
      {"<O xmlns=\"ref-schema:\"><I xmlns=\"ref-schema:Common.xml\"/></O>",
       "<O xmlns=\"ref-schema:\"><I xmlns=\"ref-schema:Common.xml\"/></O>", "",
       "a canonical text stays as it is"},
      {"<O xmlns=\"\"/>", "<O xmlns=\"ref-schema:\"/>", "", "an empty namespace is a marker"},
      {"<O\n\txmlns=\"ref-schema:Order.xml\" a='1'/>", "<O\n xmlns=\"ref-schema:\" a='1'/>",
       "Order.xml", "the white space in front becomes a blank"},
      {"<O xmlns=\"ref-schema:\"> xmlns=\"other\" <!-- <a xmlns=\"other\"> --></O>",
       "<O xmlns=\"ref-schema:\"> xmlns=\"other\" <!-- <a xmlns=\"other\"> --></O>", "",
       "what only looks like a declaration is left alone"},
      {"<p:O xmlns:p=\"urn:x\" xmlns=\"ref-schema:\"/>",
       "<p:O xmlns:p=\"urn:x\" xmlns=\"ref-schema:\"/>", "",
       "declarations of prefixes are left alone"},
  };
  for (const auto& row : rows) {
    const CanonicalText result = Canonical(row.text);
    EXPECT_EQ(result.text, row.canonical) << row.why;
    EXPECT_EQ(result.mainSchemaFile, row.mainSchema) << row.why;
  }
}

TEST_F(TextFormTest, TheDefaultSchemaStandsWhereNoDeclarationNamesOne) {
  EXPECT_EQ(Canonical("<O xmlns=\"ref-schema:\"/>", "d.xml").mainSchemaFile, "d.xml");
  EXPECT_EQ(Canonical("<O xmlns=\"\"/>", "d.xml").mainSchemaFile, "d.xml");
  const CanonicalText bare = Canonical("<O><I/></O>", "d");
  EXPECT_EQ(bare.text, "<O xmlns=\"ref-schema:\"><I/></O>\r\n");
  EXPECT_EQ(bare.mainSchemaFile, "C:\\s\\d.xml");
  const char* const lookAlike =
      "<O><I> xmlns=\"\" <!-- xmlns=\"\" --><![CDATA[ xmlns=\"\"]]></I></O>";
  EXPECT_EQ(Canonical(lookAlike, "d").text,
            "<O xmlns=\"ref-schema:\"><I> xmlns=\"\" <!-- xmlns=\"\" --><![CDATA[ xmlns=\"\"]]></I>"
            "</O>\r\n");
  EXPECT_EQ(Canonical("<KXMessage a=\"1\"><O><I/></O></KXMessage>", "d").text,
            "<KXMessage a=\"1\"><O xmlns=\"ref-schema:\"><I/></O></KXMessage>\r\n");
}

TEST_F(TextFormTest, RefusesWhatNamesNoSchema) {
  struct {
    const char* text;
    const char* schema;
    std::int32_t error;
    const char* why;
  } const rows[] = {
      {"<O/>", "", kxMsgErrorNoSchema, "no declaration and no default"},
      {"", "", kxMsgErrorNoSchema, "an empty text"},
      {"<O xmlns=\"urn:x\"/>", "d", kxMsgErrorNoSchema, "another kind of namespace"},
      {"<O xmlns=\"X-SCHEMA:a\"/>", "d", kxMsgErrorNoSchema, "prefixes compare exactly"},
      {"<O xmlns=\"x-schema:a", "d", kxMsgErrorNoSchema, "no closing quote"},
      {"<O><I></O>", "d", kxMsgErrorLoadingXML, "no document"},
      {"<KXMessage/>", "d", kxMsgErrorLoadingXML, "an envelope without content root"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(ErrorOf([&] { static_cast<void>(Canonical(row.text, row.schema)); }),
              static_cast<std::uint32_t>(row.error))
        << row.why;
  }
}

TEST_F(TextFormTest, AnEnvelopeWithoutContentRootIsALoadErrorOfOurOwn) {
  std::string description;
  ErrorOf([&] { static_cast<void>(Canonical("<KXMessage/>", "d")); }, &description);
  EXPECT_EQ(description,
            "Error loading XML document: Error -1, Required root element is missing.  Line 1, "
            "Pos 1, Source:<KXMessage/>");
}

TEST_F(TextFormTest, ExpandedFormHasCompleteLocations) {
  struct {
    const char* text;
    const char* expanded;
    const char* why;
  } const rows[] = {
      {"<O xmlns=\"ref-schema:\"/>", "<O xmlns=\"x-schema:C:\\s\\M.xml\"/>", "the bare marker"},
      {"<O xmlns=\"x-schema:\"/>", "<O xmlns=\"x-schema:C:\\s\\M.xml\"/>", "either prefix"},
      {"<O xmlns=\"ref-schema:Common\"/>", "<O xmlns=\"x-schema:C:\\s\\Common.xml\"/>",
       "a relative location is completed against the schema base"},
      {"<O xmlns=\"x-schema:D:\\t\\C.xml\"/>", "<O xmlns=\"x-schema:D:\\t\\C.xml\"/>",
       "a complete one stays"},
      {"<O xmlns=\"urn:x\"><I xmlns=\"ref-schema:\"/></O>",
       "<O xmlns=\"urn:x\"><I xmlns=\"x-schema:C:\\s\\M.xml\"/></O>", "others are left alone"},
      {"<ZDKMessage a='1'><O xmlns=\"ref-schema:\"/></ZDKMessage>\r\n",
       "<KXMessage a='1'><O xmlns=\"x-schema:C:\\s\\M.xml\"/></KXMessage>\r\n",
       "the envelope of the former name"},
      {"<?xml version='1.0'?><ZDKMessage><O xmlns=\"ref-schema:\"/></ZDKMessage>",
       "<?xml version='1.0'?><ZDKMessage><O xmlns=\"x-schema:C:\\s\\M.xml\"/></ZDKMessage>",
       "only where the text begins with it"},
      {"<zdkmessage><O xmlns=\"ref-schema:\"/></zdkmessage>",
       "<zdkmessage><O xmlns=\"x-schema:C:\\s\\M.xml\"/></zdkmessage>", "in that letter case only"},
  };
  for (const auto& row : rows) EXPECT_EQ(Expanded(row.text), row.expanded) << row.why;
}

TEST_F(TextFormTest, ExpansionStopsBeyondTheBoundOfADocument) {
  std::string text = "<O xmlns=\"ref-schema:\">";
  for (int i = 0; i < 1000; ++i) text += "<I xmlns=\"ref-schema:\"/>";
  const std::string main(200, 'x');
  EXPECT_GT(ExpandSchemaRefs(text, main, environment_->Locations()).size(), 200'000U);
  EXPECT_LT(ExpandSchemaRefs(text, main, environment_->Locations(), 20'000).size(), 50'000U);
}

TEST_F(TextFormTest, ExpansionRefusesBrokenTexts) {
  const auto error = [&](const char* text) {
    return ErrorOf([&] { static_cast<void>(Expanded(text)); });
  };
  EXPECT_EQ(error("<O/>"), static_cast<std::uint32_t>(kxMsgErrorNoSchema));
  EXPECT_EQ(error("<O xmlns=\"ref-schema:a"), static_cast<std::uint32_t>(kxMsgErrorNoSchema));
  EXPECT_EQ(error("<ZDKMessage><O xmlns=\"ref-schema:\"/>"),
            static_cast<std::uint32_t>(kxMsgErrorInvalidMessage));
  EXPECT_EQ(error("<ZDKMessage>"), static_cast<std::uint32_t>(kxMsgErrorInvalidMessage));
}

TEST_F(TextFormTest, TheSchemaFileIsTheEnvelopesOrElseTheMainSchemaAsShortAsItCanBe) {
  struct {
    const char* text;
    const char* schemaFile;
    const char* why;
  } const rows[] = {
      {"<KXMessage schemaURL=\"a.xml\"><O xmlns=\"ref-schema:\"/></KXMessage>", "a.xml",
       "the envelope's"},
      {"<O xmlns=\"x-schema:C:\\s\\Order.xml\"/>", "Order.xml", "a file in the schema base"},
      {"<O xmlns=\"x-schema:c:\\S\\Order.xml\"/>", "Order.xml", "whatever the letter case"},
      {"<O xmlns=\"x-schema:D:\\t\\Order.xml\"/>", "D:\\t\\Order.xml", "a file elsewhere"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(LoadMessageText(row.text, {}, *environment_).schemaFile, row.schemaFile) << row.why;
  }
  EXPECT_EQ(LoadMessageText(rows[0].text, {}, *environment_).text,
            "<KXMessage schemaURL=\"a.xml\"><O xmlns=\"x-schema:C:\\s\\a.xml\"/></KXMessage>");
  EXPECT_EQ(ErrorOf([&] {
              static_cast<void>(LoadMessageText("<O xmlns=\"ref-schema:\" a='schemaURL=\"x'/>", "d",
                                                *environment_));
            }),
            static_cast<std::uint32_t>(kxMsgErrorNoSchema));
}

}  // namespace
}  // namespace kx::core
