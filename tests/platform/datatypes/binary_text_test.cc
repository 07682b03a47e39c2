#include "platform/datatypes/binary_text.h"

#include <gtest/gtest.h>

namespace kx::datatypes {
namespace {

using Bytes = Variant::Bytes;

struct Case {
  Bytes bytes;
  const char* hex;
  const char* base64;
};
const Case kCases[] = {
    {{}, "", ""},
    {{0}, "00", "AA=="},
    {{0, 16}, "0010", "ABA="},
    {{0, 16, 131}, "001083", "ABCD"},
    {{255, 254, 253, 252}, "fffefdfc", "//79/A=="},
};
TEST(BinaryText, IsWrittenAndReadBack) {
  for (const Case& row : kCases) {
    EXPECT_EQ(EncodeHex(row.bytes), row.hex);
    EXPECT_EQ(EncodeBase64(row.bytes), row.base64);
    EXPECT_EQ(DecodeHex(row.hex), row.bytes);
    EXPECT_EQ(DecodeBase64(row.base64), row.bytes);
  }
}

TEST(BinaryText, HasNoLineEndsHoweverLong) {
  EXPECT_EQ(EncodeBase64(Bytes(3000, 7)).find_first_of("\r\n"), std::string::npos);
  EXPECT_EQ(EncodeBase64(Bytes(3000, 7)).size(), 4000U);
}

TEST(BinaryText, MayHoldWhiteSpaceAndMissPadding) {
  EXPECT_EQ(DecodeBase64(" A B\r\nC\tD "), (Bytes{0, 16, 131}));
  EXPECT_EQ(DecodeBase64("AA"), Bytes{0});
  EXPECT_EQ(DecodeBase64("ABA"), (Bytes{0, 16}));
  EXPECT_EQ(DecodeHex(" 0 0 "), Bytes{0});
}

TEST(BinaryText, IsRefusedWithOtherCharacters) {
  EXPECT_FALSE(DecodeHex("0x"));
  EXPECT_FALSE(DecodeHex("000"));
  EXPECT_FALSE(DecodeBase64("A"));
  EXPECT_FALSE(DecodeBase64("A==="));
  EXPECT_FALSE(DecodeBase64("===="));
  EXPECT_FALSE(DecodeBase64("ABCD===="));
  EXPECT_FALSE(DecodeBase64("AB_D"));
}

}  // namespace
}  // namespace kx::datatypes
