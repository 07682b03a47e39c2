#include "platform/xdr/schema_set.h"

#include "memory_schemas.h"

#include <gtest/gtest.h>

namespace kx::xdr {
namespace {

SharedSchema Compile() {
  MemorySchemas schemas;
  schemas.PutBody("s", "<ElementType name='r'/>");
  return PlainProvider(schemas).Load("x-schema:s", "").group->members.front().schema;
}

runtime::Counted<const SchemaSet> SetOf(std::initializer_list<const char*> namespaces) {
  const auto set = runtime::MakeCounted<SchemaSet>();
  for (const char* uri : namespaces) set->Add({uri, Compile(), false});
  return set;
}

TEST(SchemaSet, ServesANamespaceByTheFirstSchemaThatCame) {
  SchemaSet set;
  const SharedSchema first = Compile();
  EXPECT_EQ(set.Add({"x-schema:a", first, false}), 0U);
  EXPECT_EQ(set.Add({"urn:b", Compile(), false}), 1U);
  EXPECT_EQ(set.Add({"x-schema:A", Compile(), false}), 0U) << "letter case does not count";
  EXPECT_EQ(set.Find("urn:B"), SchemaSet::kNone) << "but elsewhere it does";
  EXPECT_EQ(set.At(0).schema, first);
  EXPECT_EQ(set.Size(), 2U);
}

TEST(SchemaSet, FindsOneOfMany) {
  SchemaSet set;
  const SharedSchema schema = Compile();
  for (int i = 0; i < 100; ++i) set.Add({"x-schema:" + std::to_string(i), schema, false});
  for (int i = 0; i < 100; ++i) {
    EXPECT_EQ(set.Find("x-schema:" + std::to_string(i)), static_cast<std::uint32_t>(i));
  }
}

TEST(GrowingSet, IsTheSetItBeganWithUntilSomethingIsAdded) {
  const auto known = SetOf({"x-schema:a"});
  GrowingSet set;
  EXPECT_FALSE(set.Share());
  EXPECT_EQ(set.Find("x-schema:a"), SchemaSet::kNone);
  set.AddAll(known);
  EXPECT_EQ(set.Share(), known);
  EXPECT_EQ(set.Add({"x-schema:a", Compile(), false}), 0U);
  EXPECT_EQ(set.Share(), known) << "nothing was new";
}

TEST(GrowingSet, LeavesTheSetItBeganWithAsItWas) {
  const auto known = SetOf({"x-schema:a"});
  GrowingSet set(known.Get());
  EXPECT_EQ(set.Add({"x-schema:b", Compile(), false}), 1U);
  set.AddAll(SetOf({"x-schema:a", "x-schema:c"}));
  EXPECT_EQ(set.Find("x-schema:a"), 0U);
  EXPECT_EQ(set.Find("x-schema:c"), 2U);
  EXPECT_EQ(set.At(0).schema, known->At(0).schema);
  EXPECT_EQ(known->Size(), 1U);
}

}  // namespace
}  // namespace kx::xdr
