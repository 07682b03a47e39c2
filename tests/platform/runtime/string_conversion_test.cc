// Text to bytes, bytes to text, and conversion by code.
#include "platform/runtime/conversions.h"
#include "platform/runtime/expect_error.h"
#include "platform/runtime/test_objects.h"

#include <gtest/gtest.h>
#include <string>

namespace kx::runtime {
namespace {

using namespace std::string_literals;
using Bytes = Variant::Bytes;

struct BytesCase {
  std::string text;
  Bytes bytes;
  const char* why;
};

const BytesCase kBytes[] = {
    {"", {}, "empty"},
    {"AB", {0x41, 0, 0x42, 0}, "low byte first"},
    {"\xE2\x82\xAC", {0xAC, 0x20}, "one unit"},
    {"\xF0\x9F\x98\x80", {0x3D, 0xD8, 0x00, 0xDE}, "a pair"},
    {"\0"s, {0, 0}, "NUL"},
};

TEST(TextAndBytes, AreTheSameUtf16Units) {
  for (const BytesCase& row : kBytes) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(TextToBytes(row.text), row.bytes);
    EXPECT_EQ(BytesToText(row.bytes), row.text);
  }
}

TEST(BytesToText, DropsAnOddByteAndReplacesHalfAPair) {
  EXPECT_EQ(BytesToText(Bytes{0x41, 0, 0x42}), "A");
  EXPECT_EQ(BytesToText(Bytes{0x41}), "");
  EXPECT_EQ(BytesToText(Bytes{0x3D, 0xD8, 0x41, 0}),
            "\xEF\xBF\xBD"
            "A");
}

struct ConvertCase {
  const char* why;
  Variant value;
  std::int32_t code;
  Variant result;
};

TEST(StrConv, ConvertsByCode) {
  const ConvertCase cases[] = {
      {"upper case", "aBc \xC3\xA9", 1, "ABC \xC3\x89"},
      {"lower case", "aBc \xC3\x89", 2, "abc \xC3\xA9"},
      {"words", "hello wORLD", 3, "Hello World"},
      {"every separator of words", "a\tb\nc\vd\fe\rf g\0h"s, 3, "A\tB\nC\vD\fE\rF G\0H"s},
      {"other characters separate none", "o'neil-x_y.z", 3, "O'neil-x_y.z"},
      {"the first character need not be a letter", "1st (x)", 3, "1st (x)"},
      {"a word of another script", "\xD0\xB6\xD0\x96", 3, "\xD0\x96\xD0\xB6"},
      {"a number is text first", 12, 1, "12"},
      {"a boolean too", true, 1, "TRUE"},
      {"bytes are UTF-16 text for upper case", Bytes{0x61, 0}, 1, "A"},
      {"for lower case", Bytes{0x41, 0}, 2, "a"},
      {"for words", Bytes{0x61, 0}, 3, "A"},
      {"bytes of the code page to text", Bytes{0x41, 0x80, 0xE9}, 64, "A\xE2\x82\xAC\xC3\xA9"},
      {"the five bytes without a character", Bytes{0x81, 0x8D, 0x8F, 0x90, 0x9D}, 64,
       "\xC2\x81\xC2\x8D\xC2\x8F\xC2\x90\xC2\x9D"},
      {"a text gives its bytes: two characters for each", "A", 64, "A\0"s},
      {"no bytes", Bytes{}, 64, ""},
      {"text to bytes of the code page", "A\xE2\x82\xAC\xC3\xA9", 128, Bytes{0x41, 0x80, 0xE9}},
      {"a character that the page lacks", "\xD0\x96x", 128, Bytes{0x3F, 0x78}},
      {"no look-alike is taken", "\xC4\x81", 128, Bytes{0x3F}},
      {"bytes are UTF-16 text first", Bytes{0xAC, 0x20}, 128, Bytes{0x80}},
      {"the five characters without a name", "\xC2\x81", 128, Bytes{0x81}},
      {"from the page, then upper case", Bytes{0x61, 0xE9}, 65, "A\xC3\x89"},
      {"lower case, then to the page", "A\xC3\x89", 130, Bytes{0x61, 0xE9}},
      {"Null stays Null", Variant::Null(), 1, Variant::Null()},
      {"Null stays Null from the page", Variant::Null(), 64, Variant::Null()},
      {"empty is the empty text", Variant(), 1, ""},
      {"empty has no bytes", Variant(), 64, ""},
      {"an object's value", MakeValuedThing("x"), 1, "X"},
  };
  for (const ConvertCase& row : cases) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(StrConv(row.value, row.code), row.result);
  }
}

TEST(StrConv, RefusesEveryOtherCode) {
  for (const std::int32_t code :
       {0, 4, 5, 8, 16, 32, 48, 192, 193, 68, 256, 1024, -1, -64, -2147483647 - 1}) {
    EXPECT_EQ(ErrorOf([&] { return StrConv("a", code); }), 5) << code;
  }
}

TEST(StrConv, RefusesWhatHasNoText) {
  EXPECT_EQ(ErrorOf([] { return StrConv(Variant::Nothing(), 1); }), 91);
  EXPECT_EQ(ErrorOf([] { return StrConv(MakePlainThing(), 1); }), 438);
}

TEST(StrConv, BringsBackAllBytes) {
  Bytes all;
  for (int b = 0; b < 256; ++b) all.push_back(static_cast<std::uint8_t>(b));
  EXPECT_EQ(StrConv(StrConv(all, 64), 128), Variant(all));
}

TEST(ToJoinedText, CountsNullAsNothing) {
  EXPECT_EQ(ToJoinedText(Variant::Null()), "");
  EXPECT_EQ(ToJoinedText(1.5), "1.5");
  EXPECT_EQ(ToJoinedText(MakeValuedThing(Variant::Null())), "");
}

}  // namespace
}  // namespace kx::runtime
