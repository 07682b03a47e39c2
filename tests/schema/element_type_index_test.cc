// The index of element types.
#include "schema/element_type_index.h"

#include "kxmessage/error_codes.h"

#include "core/queries.h"
#include "schema_texts.h"

#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

namespace kx::schema {
namespace {

std::int64_t Code(std::int32_t code) { return static_cast<std::uint32_t>(code); }

std::string NameOf(const dom::Node& node) {
  return node ? node.GetAttribute("name").value_or("(no name)") : "(nothing)";
}

TEST(ElementTypeIndex, HoldsEveryElementTypeAtAnyDepthInDocumentOrder) {
  const ElementTypeIndex index = IndexOf(
      SchemaDocument("<ElementType name='a'><ElementType name='b'/></ElementType>"
                     "<description><ElementType name='c'/></description><ElementType name='d'/>"));
  ASSERT_EQ(index.Count(), 4);
  std::string names;
  for (std::int32_t i = 1; i <= index.Count(); ++i) names += NameOf(index.At(i));
  EXPECT_EQ(names, "abcd");
}

TEST(ElementTypeIndex, LooksNamesUpWithoutRegardToCase) {
  const ElementTypeIndex index =
      IndexOf(SchemaDocument("<ElementType name='Order'/><ElementType name='\xC3\x84pfel'/>"));
  EXPECT_EQ(NameOf(index.GetElementType("Order")), "Order");
  EXPECT_EQ(NameOf(index.GetElementType("oRDER")), "Order");
  EXPECT_EQ(NameOf(index.GetElementType("\xC3\xA4pfel")), "\xC3\x84pfel");
  EXPECT_EQ(NameOf(index.RequireElementType("ORDER")), "Order");
}

TEST(ElementTypeIndex, AMissingNameGivesNothingOrTheErrorOfTheCollection) {
  const ElementTypeIndex index = IndexOf(SchemaDocument("<ElementType name='a'/>"));
  for (const char* name : {"b", "", "a ", "'", "1"}) {
    EXPECT_FALSE(index.GetElementType(name)) << name;
    const Failure failure = FailureOf([&] { static_cast<void>(index.RequireElementType(name)); });
    EXPECT_EQ(failure.number, 5) << name;
    EXPECT_EQ(failure.description, "Invalid procedure call or argument");
  }
}

TEST(ElementTypeIndex, PositionsOutsideAreTheErrorOfTheCollection) {
  const ElementTypeIndex index = IndexOf(SchemaDocument("<ElementType name='a'/>"));
  EXPECT_EQ(NameOf(index.At(1)), "a");
  for (const std::int32_t position : {0, 2, -1}) {
    EXPECT_EQ(FailureOf([&] { static_cast<void>(index.At(position)); }).number, 9);
  }
}

TEST(ElementTypeIndex, ADefaultConstructedOneIsEmpty) {
  const ElementTypeIndex index;
  EXPECT_EQ(index.Count(), 0);
  EXPECT_FALSE(index.GetElementType("a"));
  EXPECT_FALSE(index.SchemaDocument());
  EXPECT_EQ(FailureOf([&] { static_cast<void>(index.RequireElementType("a")); }).number, 5);
  EXPECT_EQ(FailureOf([&] { static_cast<void>(index.At(1)); }).number, 9);
}

struct FaultCase {
  const char* why;
  const char* declarations;
  const char* name;
  int kept;
};

TEST(IndexElementTypes, ANameThatExistsTwiceIsABadSchema) {
  const FaultCase rows[] = {
      {"names that differ in case alone", "<ElementType name='Order'/><ElementType name='order'/>",
       "order", 1},
      {"the same name", "<ElementType name='x'/><ElementType name='a'/><ElementType name='a'/>",
       "a", 2},
      {"nested in one another", "<ElementType name='a'><ElementType name='A'/></ElementType>", "A",
       1},
      {"no name: nothing to read", "<ElementType name='a'/><ElementType/>", "", 1},
      {"empty names twice", "<ElementType name=''/><ElementType name=''/>", "", 1},
      {"what comes later is not added",
       "<ElementType name='a'/><ElementType name='a'/>"
       "<ElementType name='b'/>",
       "a", 1},
  };
  for (const FaultCase& row : rows) {
    SCOPED_TRACE(row.why);
    ElementTypeIndex index = IndexOf(SchemaDocument("<ElementType name='old'/>"));
    const dom::Document document = SchemaDocument(row.declarations);
    const Failure failure = FailureOf([&] { IndexElementTypes(document, index); });
    EXPECT_EQ(failure.number, Code(kxMsgErrorDuplicateSchema));
    EXPECT_EQ(failure.source, "KXMessages");
    EXPECT_EQ(failure.description,
              "Bad schema.  ElementType '" + std::string(row.name) + "' exists more than once");
    EXPECT_EQ(index.Count(), row.kept) << "the entries before the failure stay";
    EXPECT_FALSE(index.GetElementType("old")) << "the former index is gone";
  }
}

TEST(IndexElementTypes, OneEmptyNameIsAKeyLikeAnyOther) {
  EXPECT_EQ(IndexOf(SchemaDocument("<ElementType name=''/>")).Count(), 1);
}

TEST(IndexElementTypes, HoldsExactlyWhatThePatternFinds) {
  const char* const texts[] = {
      "<Schema/>",
      "<ElementType name='root'/>",
      "<s:Schema xmlns:s='urn:schemas-microsoft-com:xml-data'><s:ElementType name='a'/></s:Schema>",
      "<Schema xmlns='u'><ElementType name='a'/><x xmlns='v'><ElementType name='b'/></x></Schema>",
      "<Schema xmlns='u'><elementtype name='a'/><ElementType x='1' name='c&#100;'/></Schema>",
  };
  for (const char* text : texts) {
    const dom::Document document = dom::NewDomDocument();
    ASSERT_TRUE(document.LoadXml(text));
    const ElementTypeIndex index = IndexOf(document);
    const dom::NodeList found = core::SelectNodes(document.AsNode(), "//ElementType");
    ASSERT_EQ(index.Count(), found.Length()) << text;
    for (std::int32_t i = 0; i < found.Length(); ++i) {
      EXPECT_EQ(index.At(i + 1), found.Item(i)) << text;
    }
  }
}

TEST(IndexElementTypes, FreezesTheSchemaDocument) {
  const dom::Document document = SchemaDocument("<ElementType name='a'/>");
  const ElementTypeIndex index = IndexOf(document);
  EXPECT_TRUE(document.Frozen());
  EXPECT_EQ(index.SchemaDocument(), document);
  EXPECT_NE(FailureOf([&] { document.DocumentElement().SetAttribute("x", "1"); }).number, 0);
}

TEST(IndexElementTypes, KeepsTheSchemaDocument) {
  ElementTypeIndex index;
  {
    const dom::Document document = SchemaDocument("<ElementType name='a'/>");
    IndexElementTypes(document, index);
  }
  const ElementTypeIndex copy = index;
  index = ElementTypeIndex();
  EXPECT_EQ(NameOf(copy.GetElementType("a")), "a");
}

TEST(IndexElementTypes, IsWorkedOutOnceForADocument) {
  const dom::Document document = SchemaDocument("<ElementType name='a'/>");
  const ElementTypeIndex first = IndexOf(document);
  const dom::DerivedData* const kept = document.Data().Derived();
  ASSERT_NE(kept, nullptr);
  const ElementTypeIndex second = IndexOf(document);
  EXPECT_EQ(document.Data().Derived(), kept);
  EXPECT_EQ(first.GetElementType("a"), second.GetElementType("a"));
}

TEST(IndexElementTypes, IsSharedByThreads) {
  std::string declarations;
  for (int i = 0; i < 500; ++i) {
    declarations += "<ElementType name='t" + std::to_string(i) + "'/>";
  }
  const dom::Document document = SchemaDocument(declarations);
  document.Freeze();
  std::vector<std::thread> threads;
  threads.reserve(8);
  std::vector<int> found(8, 0);
  for (int t = 0; t < 8; ++t) {
    threads.emplace_back([&document, &found, t] {
      ElementTypeIndex index;
      IndexElementTypes(document, index);
      for (int i = 0; i < 500; ++i) {
        const std::string name = "T" + std::to_string(i);
        if (index.GetElementType(name)) ++found[static_cast<std::size_t>(t)];
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(found, std::vector<int>(8, 500));
}

TEST(IndexElementTypes, OfNothingIsObjectNotSet) {
  ElementTypeIndex index;
  EXPECT_EQ(FailureOf([&] { IndexElementTypes(dom::Document(), index); }).number, 91);
}

TEST(CheckNotEmpty, RaisesForAnIndexWithoutEntries) {
  const Failure failure = FailureOf([] { CheckNotEmpty(ElementTypeIndex()); });
  EXPECT_EQ(failure.number, Code(kxMsgErrorInvalidSchema));
  EXPECT_EQ(failure.description, "Invalid schema.  No ElementType definitions found.");
  EXPECT_EQ(FailureOf([] { CheckNotEmpty(IndexOf(SchemaDocument("<description/>"))); }).number,
            Code(kxMsgErrorInvalidSchema));
  EXPECT_NO_THROW(CheckNotEmpty(IndexOf(SchemaDocument("<ElementType name='a'/>"))));
}

}  // namespace
}  // namespace kx::schema
