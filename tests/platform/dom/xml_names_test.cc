// Names and their characters.
#include "platform/dom/xml_names.h"

#include "platform/text/unicode.h"

#include <gtest/gtest.h>
#include <string>

namespace kx::dom {
namespace {

struct CharacterCase {
  char32_t c;
  bool start;
  bool part;
};

TEST(XmlNames, CharactersAreThoseOfTheFifthEditionAtEachEndOfEachRange) {
  const CharacterCase rows[] = {
      {':', true, true},        {'A', true, true},      {'Z', true, true},
      {'[', false, false},      {'@', false, false},    {'_', true, true},
      {'`', false, false},      {'a', true, true},      {'z', true, true},
      {'{', false, false},      {'-', false, true},     {'.', false, true},
      {'/', false, false},      {'0', false, true},     {'9', false, true},
      {0xB6, false, false},     {0xB7, false, true},    {0xB8, false, false},
      {0xBF, false, false},     {0xC0, true, true},     {0xD6, true, true},
      {0xD7, false, false},     {0xD8, true, true},     {0xF6, true, true},
      {0xF7, false, false},     {0xF8, true, true},     {0x2FF, true, true},
      {0x300, false, true},     {0x36F, false, true},   {0x370, true, true},
      {0x37D, true, true},      {0x37E, false, false},  {0x37F, true, true},
      {0x1FFF, true, true},     {0x2000, false, false}, {0x200B, false, false},
      {0x200C, true, true},     {0x200D, true, true},   {0x200E, false, false},
      {0x203E, false, false},   {0x203F, false, true},  {0x2040, false, true},
      {0x2041, false, false},   {0x206F, false, false}, {0x2070, true, true},
      {0x218F, true, true},     {0x2190, false, false}, {0x2BFF, false, false},
      {0x2C00, true, true},     {0x2FEF, true, true},   {0x2FF0, false, false},
      {0x3000, false, false},   {0x3001, true, true},   {0xD7FF, true, true},
      {0xE000, false, false},   {0xF8FF, false, false}, {0xF900, true, true},
      {0xFDCF, true, true},     {0xFDD0, false, false}, {0xFDEF, false, false},
      {0xFDF0, true, true},     {0xFFFD, true, true},   {0xFFFE, false, false},
      {0x10000, true, true},    {0xEFFFF, true, true},  {0xF0000, false, false},
      {0x10FFFF, false, false}, {' ', false, false},    {0, false, false},
  };
  for (const CharacterCase& row : rows) {
    EXPECT_EQ(IsNameStartCodePoint(row.c), row.start) << std::hex << static_cast<unsigned>(row.c);
    EXPECT_EQ(IsNameCodePoint(row.c), row.part) << std::hex << static_cast<unsigned>(row.c);
    std::string name = "a";
    text::AppendUtf8(name, row.c);
    EXPECT_EQ(IsNcName(name), row.part && row.c != ':') << name;
  }
}

struct NameCase {
  const char* text;
  bool name;
  bool ncName;
  bool qName;
};

TEST(XmlNames, NamesWithoutColonAndWithOneAreTold) {
  const NameCase rows[] = {
      {"", false, false, false},      {"a", true, true, true},
      {"a:b", true, false, true},     {":a", true, false, false},
      {"a:", true, false, false},     {":", true, false, false},
      {"a:b:c", true, false, false},  {"1a", false, false, false},
      {"a1", true, true, true},       {"a:1", true, false, false},
      {"-a", false, false, false},    {"a b", false, false, false},
      {"a:b c", false, false, false}, {"\xC3\xA4:\xC3\xB6", true, false, true},
      {"a\xC3", false, false, false}, {"xmlns", true, true, true},
      {"_.-", true, true, true},
  };
  for (const NameCase& row : rows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(IsName(row.text), row.name);
    EXPECT_EQ(IsNcName(row.text), row.ncName);
    EXPECT_EQ(IsQName(row.text), row.qName);
  }
}

struct SkipCase {
  const char* text;
  std::size_t name;
  std::size_t token;
};

TEST(XmlNames, SkippingEndsAtTheFirstCharacterThatIsNoPartOfAName) {
  const SkipCase rows[] = {
      {"abc<", 3, 3},
      {"<", 0, 0},
      {"1a<", 0, 2},
      {"a:b c<", 3, 3},
      {"-<", 0, 1},
      {"a><", 1, 1},
      {"\xC3\xA4"
       "b<",
       3, 3},
      {"\xC3\x97<", 0, 0},
      {"a\xC3\x97<", 1, 1},
      {"\xC2\xB7<", 0, 2},
  };
  for (const SkipCase& row : rows) {
    SCOPED_TRACE(row.text);
    const std::string text = std::string(row.text) + std::string(8, '\0');
    EXPECT_EQ(static_cast<std::size_t>(SkipName(text.data()) - text.data()), row.name);
    EXPECT_EQ(static_cast<std::size_t>(SkipNmtoken(text.data()) - text.data()), row.token);
  }
}

}  // namespace
}  // namespace kx::dom
