#include "platform/datatypes/name_text.h"

#include <gtest/gtest.h>

namespace kx::datatypes {
namespace {

TEST(NameText, BeginsWithALetterOrUnderscore) {
  for (const char* name : {"a", "_", "a-1.b", "\xC3\xA9t\xC3\xA9", "\xE4\xB8\xAD"}) {
    EXPECT_TRUE(IsNameText(name)) << name;
  }
  for (const char* name : {"", "1", "-a", ".a", "a:b", "a b", "\xC3\x97", "\xC2\xB7", "\xFF"}) {
    EXPECT_FALSE(IsNameText(name)) << name;
  }
}

TEST(NameText, OfATokenMayBeginWithAnyNameCharacter) {
  for (const char* token : {"1", "-a", ".", "\xC2\xB7"}) EXPECT_TRUE(IsNameToken(token)) << token;
  for (const char* token : {"", "a:b", "a b", "\xC3\x97"}) {
    EXPECT_FALSE(IsNameToken(token)) << token;
  }
}

TEST(NameText, IsTakenTokenByToken) {
  std::string_view list = " a\t bb\r\n";
  EXPECT_EQ(TakeToken(list), "a");
  EXPECT_EQ(TakeToken(list), "bb");
  EXPECT_EQ(TakeToken(list), "");
  EXPECT_EQ(TakeToken(list), "");
}

}  // namespace
}  // namespace kx::datatypes
