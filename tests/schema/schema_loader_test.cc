// Schemas that a caller names.
#include "schema/schema_loader.h"

#include "platform/xdr/parse_binder.h"
#include "platform/xdr/schema_errors.h"
#include "platform/xdr/typing.h"
#include "schema_texts.h"

#include <gtest/gtest.h>
#include <string>

namespace kx::schema {
namespace {

std::int64_t Bits(std::int32_t code) { return static_cast<std::uint32_t>(code); }

class SchemaLoaderTest : public testing::Test {
 protected:
  MemorySource source_;
  xdr::SchemaCache cache_;
  SchemaLoader loader_{source_, cache_};
};

TEST_F(SchemaLoaderTest, AGoodSchemaIsADocumentAndWhatBindsMessages) {
  source_.Put("s.xml", SchemaText("<ElementType name='r'/>"));
  const LoadedSchema loaded = loader_.Load("s.xml");
  ASSERT_TRUE(loaded.document);
  EXPECT_FALSE(loaded.error);
  EXPECT_TRUE(loaded.document.Frozen());
  EXPECT_EQ(loaded.document.Url(), "s.xml");
  ASSERT_TRUE(loaded.compiled.group);
  EXPECT_EQ(loaded.compiled.group->members.front().schema->Document(), loaded.document)
      << "one document for the rules and for what nodes are bound to";
}

TEST_F(SchemaLoaderTest, TheSameSchemaIsReadOnceWhileItStaysTheSame) {
  source_.Put("s.xml", SchemaText("<ElementType name='r'/>"));
  const LoadedSchema first = loader_.Load("s.xml");
  EXPECT_EQ(loader_.Load("s.xml").document, first.document);
  EXPECT_EQ(source_.Reads(), 1);
  source_.Put("s.xml", SchemaText("<ElementType name='other'/>"));
  const LoadedSchema changed = loader_.Load("s.xml");
  EXPECT_FALSE(changed.document == first.document);
  EXPECT_EQ(IndexOf(changed.document).Count(), 1);
  EXPECT_TRUE(IndexOf(changed.document).GetElementType("other"));
}

TEST_F(SchemaLoaderTest, WhatCannotBeReadOrIsNoDocumentIsAnError) {
  source_.Put("bad.xml", "<Schema>\n <a></b></Schema>");
  struct {
    const char* location;
    std::int64_t code;
    std::int32_t line;
  } const rows[] = {{"missing.xml", 0x800C0006, 0}, {"bad.xml", 0xC00CE56D, 2}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.location);
    const LoadedSchema loaded = loader_.Load(row.location);
    EXPECT_FALSE(loaded.document);
    EXPECT_FALSE(loaded.compiled.group);
    EXPECT_EQ(Bits(loaded.error.code), row.code);
    EXPECT_EQ(loaded.error.line, row.line);
  }
}

TEST_F(SchemaLoaderTest, ASchemaWithAMistakeIsADocumentThatNothingCanBeBoundTo) {
  source_.Put("s.xml", SchemaText("<ElementType name='r'><element type='none'/></ElementType>"));
  const LoadedSchema loaded = loader_.Load("s.xml");
  ASSERT_TRUE(loaded.document);
  EXPECT_TRUE(loaded.document.Frozen());
  EXPECT_EQ(loaded.document.Url(), "s.xml");
  EXPECT_EQ(IndexOf(loaded.document).Count(), 1);
  EXPECT_FALSE(loaded.compiled.group);
  EXPECT_EQ(Bits(loaded.compiled.error.code), 0xC00CE01C);
  EXPECT_EQ(loaded.compiled.error.line, 1);
}

TEST_F(SchemaLoaderTest, AnotherSchemaThatItNamesMustBeThere) {
  source_.Put("s.xml", SchemaText("<ElementType name='r' xmlns:o='x-schema:o.xml'/>"));
  EXPECT_EQ(Bits(loader_.Load("s.xml").error.code), 0x800C0006);
  source_.Put("o.xml", SchemaText("<ElementType name='q'/>"));
  const LoadedSchema loaded = loader_.Load("s.xml");
  ASSERT_TRUE(loaded.compiled.group);
  EXPECT_EQ(loaded.compiled.group->members.size(), 2U);
}

TEST_F(SchemaLoaderTest, TextIsTakenInThePlaceOfTheLocation) {
  const LoadedSchema loaded = loader_.LoadText(
      "<?xml version='1.0' encoding='utf-16'?>" + SchemaText("<ElementType name='\xC3\xA4'/>"),
      "s.xml");
  ASSERT_TRUE(loaded.compiled.group);
  EXPECT_EQ(source_.Reads(), 0);
  EXPECT_EQ(loaded.compiled.group->members.front().uri, "x-schema:s.xml");
  EXPECT_EQ(loaded.compiled.group->members.front().schema->Document(), loaded.document);
  EXPECT_EQ(loaded.document.Url(), std::nullopt);
  EXPECT_TRUE(IndexOf(loaded.document).GetElementType("\xC3\xA4"));
}

TEST_F(SchemaLoaderTest, TextMayBeBadInTheSameWays) {
  const LoadedSchema broken = loader_.LoadText("<a", "s.xml");
  EXPECT_FALSE(broken.document);
  EXPECT_TRUE(broken.error);
  const LoadedSchema mistaken =
      loader_.LoadText(SchemaText("<ElementType name='r'><element type='x'/></ElementType>"), "s");
  EXPECT_TRUE(mistaken.document);
  EXPECT_TRUE(mistaken.document.Frozen());
  EXPECT_EQ(Bits(mistaken.compiled.error.code), 0xC00CE01C);
}

TEST_F(SchemaLoaderTest, TheBoundOnASchemasSizeHolds) {
  xdr::SchemaLimits limits;
  limits.maxBytes = 200;
  const SchemaLoader small(source_, cache_, limits);
  source_.Put("s.xml", SchemaText(std::string(200, ' ')));
  EXPECT_TRUE(small.Load("s.xml").error);
  EXPECT_FALSE(small.Load("s.xml").document);
  EXPECT_TRUE(small.LoadText(SchemaText(std::string(200, ' ')), "t").error);
}

TEST_F(SchemaLoaderTest, AKnownSchemaServesItsNamespaceInAnyCaseWithoutBeingRead) {
  source_.Put("C:\\S.xml", SchemaText("<ElementType name='r'/>"));
  source_.Put("other.xml", SchemaText("<ElementType name='o'/>"));
  const LoadedSchema loaded = loader_.Load("C:\\S.xml");
  const int reads = source_.Reads();
  const xdr::PlainProvider plain(source_);
  const KnownSchemaProvider provider("x-schema:c:\\s.xml", loaded.compiled, plain);
  const xdr::BindingService service(provider);
  const dom::Document document = dom::NewDomDocument();
  document.EditSettings().schemaService = &service;
  ASSERT_TRUE(document.LoadXml("<r xmlns='x-schema:c:\\s.xml'/>")) << document.LastError().reason;
  EXPECT_EQ(source_.Reads(), reads);
  EXPECT_EQ(xdr::Definition(document.DocumentElement()).OwnerDocument(), loaded.document);
  ASSERT_TRUE(document.LoadXml("<o xmlns='x-schema:other.xml'/>")) << document.LastError().reason;
  EXPECT_EQ(source_.Reads(), reads + 1);
}

TEST_F(SchemaLoaderTest, AKnownSchemaServesALowerCasedNameThatLeadsNotBack) {
  source_.Put("\xE2\x84\xAB.xml", SchemaText("<ElementType name='r'/>"));  // the angstrom sign
  const LoadedSchema loaded = loader_.Load("\xE2\x84\xAB.xml");
  const std::string uri = "x-schema:\xC3\xA5.xml";  // and its lower case, which is a letter's
  const xdr::PlainProvider plain(source_);
  const KnownSchemaProvider provider(uri, loaded.compiled, plain);
  const xdr::BindingService service(provider);
  const dom::Document document = dom::NewDomDocument();
  document.EditSettings().schemaService = &service;
  ASSERT_TRUE(document.LoadXml("<r xmlns='" + uri + "'/>")) << document.LastError().reason;
  EXPECT_EQ(xdr::Definition(document.DocumentElement()).OwnerDocument(), loaded.document);
  EXPECT_EQ(loaded.compiled.group->members.front().uri, "x-schema:\xE2\x84\xAB.xml")
      << "what others share stays as it is";
}

TEST_F(SchemaLoaderTest, AKnownSchemaWithAMistakeFailsTheParseWithIt) {
  source_.Put("s.xml", SchemaText("\n<ElementType name='r'><element type='x'/></ElementType>"));
  const xdr::PlainProvider plain(source_);
  const KnownSchemaProvider provider("x-schema:s.xml", loader_.Load("s.xml").compiled, plain);
  const xdr::BindingService service(provider);
  const dom::Document document = dom::NewDomDocument();
  document.EditSettings().schemaService = &service;
  EXPECT_FALSE(document.LoadXml("<r xmlns='x-schema:s.xml'/>"));
  EXPECT_EQ(Bits(document.LastError().code), 0xC00CE01C);
  EXPECT_EQ(document.LastError().line, 2);
}

}  // namespace
}  // namespace kx::schema
