#include "platform/xdr/schema_names.h"

#include <gtest/gtest.h>

namespace kx::xdr {
namespace {

TEST(SchemaNames, KnowTheOlderNamesOfTheirNamespaces) {
  EXPECT_TRUE(IsSchemaNamespace("urn:schemas-microsoft-com:xml-data"));
  EXPECT_TRUE(IsSchemaNamespace("uuid:bdc6E3F0-6DA3-11D1-A2A3-00AA00C14882"));
  EXPECT_FALSE(IsSchemaNamespace("urn:schemas-microsoft-com:XML-data"));
  EXPECT_TRUE(IsDataTypeNamespace("urn:schemas-microsoft-com:datatypes"));
  EXPECT_TRUE(IsDataTypeNamespace("uuid:C2F41010-65B3-11D1-A29F-00AA00C14882"));
  EXPECT_TRUE(IsDataTypeNamespace("urn:uuid:c2f41010-65b3-11d1-a29f-00aa00c14882/"));
  EXPECT_FALSE(IsDataTypeNamespace("urn:uuid:C2F41010-65B3-11D1-A29F-00AA00C14882"));
  EXPECT_FALSE(IsDataTypeNamespace(""));
}

TEST(SchemaNames, IgnoreCaseOnlyBehindXSchema) {
  EXPECT_TRUE(NamesSchema("x-schema:a"));
  EXPECT_FALSE(NamesSchema("x-schema:"));
  EXPECT_FALSE(NamesSchema("X-Schema:a"));
  EXPECT_TRUE(NamesInlineSchema("x-schema:#a"));
  EXPECT_FALSE(NamesInlineSchema("x-schema:a#b"));
  EXPECT_TRUE(IsSameNamespace("x-schema:A", "x-schema:a"));
  EXPECT_EQ(HashNamespace("x-schema:A"), HashNamespace("x-schema:a"));
  EXPECT_FALSE(IsSameNamespace("urn:A", "urn:a"));
  EXPECT_FALSE(IsSameNamespace("X-schema:a", "x-schema:a"));
}

}  // namespace
}  // namespace kx::xdr
