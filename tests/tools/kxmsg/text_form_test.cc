// Texts as they are printed.
#include "kxmsg/text_form.h"

#include <gtest/gtest.h>
#include <string>

namespace kxmsg {
namespace {

using namespace std::string_literals;

TEST(TextForm, NothingThatSteersATerminalIsPrintedAsItIs) {
  const struct {
    std::string text;
    std::string printed;
    const char* why;
  } rows[] = {
      {"", "", "nothing"},
      {"Order 1 \\ \"a\"", "Order 1 \\ \"a\"", "ordinary text, marks included"},
      {"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80",
       "letters beyond ASCII"},
      {"a\nb\rc\td", "a\\nb\\rc\\td", "line ends and tabs"},
      {"\x1b[31m\x7f\0"s, "\\x1B[31m\\x7F\\x00", "control characters"},
      {"\xC2\x9B"
       "31m",
       "\\u{9B}31m", "the C1 form of an escape"},
      // NOLINTNEXTLINE(misc-misleading-bidirectional): written as escapes, which mislead nobody
      {"\xE2\x80\xAE"
       "abc\xE2\x81\xA6",
       "\\u{202E}abc\\u{2066}", "marks of direction"},
      {"\xE2\x80\xA8\xE2\x80\xA9\xEF\xBB\xBF", "\\u{2028}\\u{2029}\\u{FEFF}", "separators, a mark"},
      {"\xFF"
       "a\xC3",
       "\\xFFa\\xC3", "bytes that are no UTF-8"},
      {"\xC0\x80\xED\xA0\x80\xF4\x90\x80\x80", "\\xC0\\x80\\xED\\xA0\\x80\\xF4\\x90\\x80\\x80",
       "overlong, surrogate, beyond Unicode"},
  };
  for (const auto& row : rows) EXPECT_EQ(Printable(row.text), row.printed) << row.why;
}

TEST(TextForm, LinesMayStay) { EXPECT_EQ(PrintableLines("a\n\tb\x1b"), "a\n\tb\\x1B"); }

TEST(TextForm, QuotedTextShowsWhereItEnds) {
  EXPECT_EQ(Quoted("a \"b\" \\ c\n"), "\"a \\\"b\\\" \\\\ c\\n\"");
  EXPECT_EQ(Quoted(""), "\"\"");
}

TEST(TextForm, ShorteningCountsCharacters) {
  const struct {
    const char* text;
    std::size_t most;
    const char* cut;
  } rows[] = {{"abc", 3, "abc"},
              {"abcd", 3, "abc..."},
              {"", 0, ""},
              {"a", 0, "..."},
              {"\xC3\xA9\xC3\xA9\xC3\xA9", 2, "\xC3\xA9\xC3\xA9..."},
              {"\xF0\x9F\x98\x80", 1, "\xF0\x9F\x98\x80"}};
  for (const auto& row : rows) EXPECT_EQ(Shortened(row.text, row.most), row.cut) << row.text;
}

TEST(TextForm, OneLineHasSingleBlanksAndNoneAtItsEnds) {
  EXPECT_EQ(OneLine("\r\n a \t b\r\n"), "a b");
  EXPECT_EQ(OneLine(" \n"), "");
}

TEST(TextForm, JsonTextIsAStringOfJson) {
  const struct {
    std::string text;
    std::string json;
  } rows[] = {{"", "\"\""},
              {"a\"b\\c/d", "\"a\\\"b\\\\c/d\""},
              {"\n\t\x01\x7f\0"s, "\"\\u000A\\u0009\\u0001\\u007F\\u0000\""},
              {"\xC3\xA9", "\"\xC3\xA9\""},
              {"a\xFF"
               "b",
               "\"a\xEF\xBF\xBD"
               "b\""}};
  for (const auto& row : rows) EXPECT_EQ(JsonText(row.text), row.json) << row.text;
}

TEST(TextForm, NumbersOfErrorsAreHexadecimal) {
  EXPECT_EQ(HexNumber(-2147219043), "0x8004099D");
  EXPECT_EQ(HexNumber(0), "0x00000000");
}

TEST(TextForm, ADeclarationNamesUtf8InThePlaceOfTheEncoding) {
  const struct {
    const char* text;
    const char* encoding;
    const char* result;
  } rows[] = {
      {"<?xml version=\"1.0\" encoding=\"iso-8859-1\"?><a/>", "iso-8859-1",
       "<?xml version=\"1.0\" encoding=\"UTF-8\"?><a/>"},
      {"<?xml version=\"1.0\" encoding=\"\"?><a/>", "",
       "<?xml version=\"1.0\" encoding=\"UTF-8\"?><a/>"},
      {"<a encoding=\"x\"/>", "x", "<a encoding=\"x\"/>"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(WithUtf8Declaration(row.text, row.encoding), row.result);
  }
}

TEST(TextForm, Utf8IsToldFromOtherBytes) {
  EXPECT_TRUE(IsUtf8(""));
  EXPECT_TRUE(IsUtf8("a\xC3\xA9"));
  EXPECT_FALSE(IsUtf8("a\xE9"));
  EXPECT_FALSE(IsUtf8("\xC3"));
  EXPECT_EQ(Utf8Length("a\xC3\xA9"), 3U);
  EXPECT_EQ(Utf8Length("\xC3\xA9\xFFz"), 2U);
  EXPECT_EQ(Utf8Length("\xC3"), 0U);
}

TEST(TextForm, CharactersAreCountedNotBytes) {
  EXPECT_EQ(CharacterCount(""), 0U);
  EXPECT_EQ(CharacterCount("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"), 4U);
}

TEST(TextForm, NamesCompareWithoutRegardToCase) {
  EXPECT_TRUE(SameName("SchemaPath", "schemapath"));
  EXPECT_FALSE(SameName("SchemaPath", "SchemaPat"));
  EXPECT_FALSE(SameName("a", "b"));
}

TEST(TextForm, CodePointNameIsOfTheCharacterAnyOfWhoseBytesIsNamed) {
  const std::string text = "a\xC3\xA9\xE4\xB8\x80\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF";
  const struct {
    std::size_t at;
    const char* name;
  } rows[] = {{0, "U+0061"},  {1, "U+00E9"},  {2, "U+00E9"},    {3, "U+4E00"},   {5, "U+4E00"},
              {6, "U+1F600"}, {9, "U+1F600"}, {10, "U+10FFFF"}, {13, "U+10FFFF"}};
  for (const auto& row : rows) EXPECT_EQ(CodePointName(text, row.at), row.name) << row.at;
}

}  // namespace
}  // namespace kxmsg
