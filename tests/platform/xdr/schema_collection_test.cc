#include "platform/xdr/schema_collection.h"

#include "memory_schemas.h"
#include "platform/runtime/error.h"
#include "platform/xdr/typing.h"

#include <gtest/gtest.h>

namespace kx::xdr {
namespace {

class Collection : public testing::Test {
 protected:
  void SetUp() override {
    workshop_.schemas.PutBody("s", "<ElementType name='n' dt:type='int'/>");
    workshop_.schemas.PutBody("t", "<ElementType name='n'/>");
    workshop_.schemas.Put("bad", "<Schema");
    workshop_.schemas.Put("other", "<a/>");
  }
  Workshop workshop_;
  runtime::Counted<SchemaCollection> collection_ =
      runtime::MakeCounted<SchemaCollection>(workshop_.schemas);
};

TEST_F(Collection, HoldsOneSchemaForANamespaceInTheOrderAdded) {
  collection_->Add(" urn:a \n b ", "s");
  collection_->Add("", "s");
  collection_->Add("urn:a b", "t");
  EXPECT_EQ(collection_->Length(), 2);
  EXPECT_EQ(collection_->NamespaceUri(0), "urn:a b");
  EXPECT_EQ(collection_->NamespaceUri(1), "");
  EXPECT_THROW(static_cast<void>(collection_->NamespaceUri(2)), Error);
  EXPECT_THROW(static_cast<void>(collection_->NamespaceUri(-1)), Error);
  collection_->Remove("urn:none");
  collection_->Remove("urn:a b");
  EXPECT_EQ(collection_->Length(), 1);
  EXPECT_TRUE(collection_->Get(""));
}

TEST_F(Collection, GivesAFreshReadOnlyDocumentEachTime) {
  collection_->Add("urn:a", "s");
  const dom::Document first = collection_->Get("urn:a");
  EXPECT_FALSE(first == collection_->Get("urn:a"));
  EXPECT_EQ(first.DocumentElement().NodeName(), "Schema");
  EXPECT_THROW(first.DocumentElement().SetAttribute("name", "x"), Error);
  EXPECT_FALSE(collection_->Get("urn:none"));
  collection_.Reset();
  EXPECT_EQ(first.DocumentElement().NodeName(), "Schema") << "outlives the collection";
}

TEST_F(Collection, IsUnchangedWhenASchemaIsRefused) {
  for (const char* location : {"bad", "other", "missing"}) {
    EXPECT_THROW(collection_->Add("urn:a", location), Error) << location;
    EXPECT_EQ(collection_->Length(), 0);
  }
}

TEST_F(Collection, TakesACopyOfADocument) {
  dom::Document document = dom::NewDomDocument();
  ASSERT_TRUE(document.LoadXml(workshop_.schemas.Read("s", "").bytes));
  collection_->Add("urn:a", document);
  ASSERT_TRUE(document.LoadXml("<a/>"));
  EXPECT_EQ(collection_->Get("urn:a").DocumentElement().NodeName(), "Schema");
}

TEST_F(Collection, ServesANamespaceWithoutOpeningItsLocation) {
  collection_->Add("x-schema:elsewhere", "s");
  collection_->Add("", "s");
  const dom::Document document = workshop_.NewDocument();
  document.EditSettings().schemas = collection_;
  EXPECT_TRUE(document.LoadXml("<n xmlns='x-schema:elsewhere'>1</n>"));
  EXPECT_FALSE(document.LoadXml("<n xmlns='x-schema:elsewhere'>x</n>"));
  EXPECT_TRUE(document.LoadXml("<n>1</n>"));
  EXPECT_FALSE(document.LoadXml("<n>x</n>"));
  EXPECT_FALSE(document.LoadXml("<z/>"));
  EXPECT_EQ(Hex(document.LastError().code), "C00CE00D");
}

TEST_F(Collection, LeavesADocumentTypeNothingButItsEntities) {
  const dom::Document document = workshop_.NewDocument();
  const char* const text =
      "<!DOCTYPE n [<!ENTITY e '5'><!ATTLIST n k CDATA 'x'>]><n xmlns='urn:a'>&e;</n>";
  ASSERT_TRUE(document.LoadXml(text));
  EXPECT_EQ(document.DocumentElement().GetAttribute("k"), "x");
  EXPECT_EQ(Validate(document).code, 0) << "a document type counts as a schema";
  document.EditSettings().schemas = collection_;
  EXPECT_EQ(Hex(Validate(document).code), "C00CE224") << "but not beside a collection";
  ASSERT_TRUE(document.LoadXml(text));
  EXPECT_FALSE(document.DocumentElement().GetAttribute("k"));
  EXPECT_EQ(document.DocumentElement().Text(), "5");
  collection_->Add("urn:a", "s");
  EXPECT_TRUE(document.LoadXml(text)) << document.LastError().reason;
  EXPECT_EQ(Validate(document).code, 0);
}

TEST_F(Collection, BringsDefaultsBackForTheNamespacesItServes) {
  workshop_.schemas.PutBody("d",
                            "<AttributeType name='k' default='7'/><ElementType name='n'>"
                            "<attribute type='k'/></ElementType>");
  collection_->Add("urn:d", "d");
  const dom::Document document = workshop_.NewDocument();
  document.EditSettings().schemas = collection_;
  const dom::Node made = document.CreateNode(dom::NodeType::kElement, "n", "urn:d");
  made.SetAttribute("k", "1");
  made.RemoveAttribute("k");
  EXPECT_EQ(made.GetAttribute("k"), "7");
}

TEST_F(Collection, CopiesTheEntriesOfAnother) {
  collection_->Add("urn:a", "s");
  const auto other = runtime::MakeCounted<SchemaCollection>(workshop_.schemas);
  other->Add("urn:a", "t");
  other->Add("urn:b", "t");
  collection_->AddCollection(*other);
  EXPECT_EQ(collection_->Length(), 2);
  EXPECT_EQ(collection_->Find("urn:a"), other->Find("urn:a"));
  collection_->AddCollection(*collection_);
  EXPECT_EQ(collection_->Length(), 2);
}

}  // namespace
}  // namespace kx::xdr
