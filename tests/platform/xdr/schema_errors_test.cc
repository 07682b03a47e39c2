#include "platform/xdr/schema_errors.h"

#include <gtest/gtest.h>

namespace kx::xdr {
namespace {

TEST(SchemaErrors, FillInTheirArguments) {
  EXPECT_EQ(XdrReason(XdrCode::kDataTypeParse, {"5%2", "int"}),
            "Error parsing '5%2' as int datatype.\r\n");
  EXPECT_EQ(XdrReason(XdrCode::kSchemaMistake, {"It is wrong."}), "It is wrong.\r\n");
  dom::ParseError error;
  SetXdrError(error, XdrCode::kNotOneRoot);
  EXPECT_EQ(error.code, -1072897501);
  EXPECT_EQ(error.reason,
            "Validate failed because the document does not contain exactly one root node.\r\n");
}

}  // namespace
}  // namespace kx::xdr
