// UTF-8, UTF-16, XML characters and case, with every kind of ill-formed sequence.
#include "platform/text/unicode.h"

#include "platform/text/case_tables.h"

#include <gtest/gtest.h>
#include <iterator>

namespace kx::text {
namespace {

using namespace std::string_literals;

struct SequenceCase {
  std::string bytes;
  char32_t codePoint;
  std::size_t length;
  bool valid;
  const char* why;
};

const SequenceCase kSequences[] = {
    {"A", U'A', 1, true, "ASCII"},
    {"\0"s, 0, 1, true, "NUL is a character"},
    {"\xC3\xA9", 0xE9, 2, true, "two bytes"},
    {"\xC2\x80", 0x80, 2, true, "the first of two bytes"},
    {"\xDF\xBF", 0x7FF, 2, true, "the last of two bytes"},
    {"\xE0\xA0\x80", 0x800, 3, true, "the first of three bytes"},
    {"\xE2\x82\xAC", 0x20AC, 3, true, "three bytes"},
    {"\xED\x9F\xBF", 0xD7FF, 3, true, "the last before the surrogates"},
    {"\xEE\x80\x80", 0xE000, 3, true, "the first behind the surrogates"},
    {"\xEF\xBF\xBF", 0xFFFF, 3, true, "the last of three bytes"},
    {"\xF0\x90\x80\x80", 0x10000, 4, true, "the first of four bytes"},
    {"\xF4\x8F\xBF\xBF", 0x10FFFF, 4, true, "the last code point"},
    {"\x80", 0xFFFD, 1, false, "a trail byte alone"},
    {"\xC0\x80", 0xFFFD, 1, false, "overlong NUL"},
    {"\xC1\xBF", 0xFFFD, 1, false, "overlong in two bytes"},
    {"\xE0\x9F\xBF", 0xFFFD, 1, false, "overlong in three bytes"},
    {"\xF0\x8F\xBF\xBF", 0xFFFD, 1, false, "overlong in four bytes"},
    {"\xED\xA0\x80", 0xFFFD, 1, false, "a surrogate"},
    {"\xF4\x90\x80\x80", 0xFFFD, 1, false, "above the last code point"},
    {"\xF5\x80\x80\x80", 0xFFFD, 1, false, "a byte that never leads"},
    {"\xFF", 0xFFFD, 1, false, "a byte that never occurs"},
    {"\xC3", 0xFFFD, 1, false, "cut off after the first byte"},
    {"\xE2\x82", 0xFFFD, 2, false, "cut off after two bytes: one part"},
    {"\xF0\x9F\x98", 0xFFFD, 3, false, "cut off after three bytes: one part"},
    {"\xE2\x82X", 0xFFFD, 2, false, "the part ends where it goes wrong"},
};

TEST(DecodeUtf8, ReadsOneCodePointOrOneIllFormedPart) {
  for (const SequenceCase& row : kSequences) {
    SCOPED_TRACE(row.why);
    const Utf8Char c = DecodeUtf8(row.bytes, 0);
    EXPECT_EQ(c.codePoint, row.codePoint);
    EXPECT_EQ(c.length, row.length);
    EXPECT_EQ(c.valid, row.valid);
    EXPECT_EQ(IsValidUtf8(row.bytes), row.valid);
  }
}

TEST(Utf8, ComesBackForEveryCodePoint) {
  for (char32_t c = 0; c <= kMaxCodePoint; ++c) {
    if (IsSurrogate(c)) continue;
    std::string bytes;
    AppendUtf8(bytes, c);
    const Utf8Char read = DecodeUtf8(bytes, 0);
    ASSERT_EQ(read.codePoint, c);
    ASSERT_EQ(read.length, bytes.size());
    ASSERT_EQ(CountUtf16Units(bytes), c < 0x10000 ? 1U : 2U);
    ASSERT_EQ(ToUtf8(ToUtf16(bytes)), bytes);
  }
}

TEST(AppendUtf8, PutsTheReplacementForWhatIsNoCharacter) {
  for (const char32_t c : {char32_t{0xD800}, char32_t{0xDFFF}, char32_t{0x110000}}) {
    std::string bytes;
    AppendUtf8(bytes, c);
    EXPECT_EQ(bytes, "\xEF\xBF\xBD") << static_cast<std::uint32_t>(c);
  }
}

TEST(FindInvalidUtf8, GivesTheOffsetOfTheFirstBadByte) {
  struct Case {
    std::string text;
    std::optional<std::size_t> offset;
    const char* why;
  };
  const Case cases[] = {
      {"", std::nullopt, "empty"},
      {"plain ascii of more than eight bytes", std::nullopt, "ASCII"},
      {"aaaaaaaa\x80", 8, "behind a whole word of ASCII"},
      {"aaaaaaaaaaa\xFF", 11, "behind a word and a rest"},
      {"\xE2\x82\xAC\xE2\x82", 3, "a cut-off end"},
      {"\xC3\xA9\xC3", 2, "a lead byte at the end"},
      {"\xF0\x9F\x98\x80z", std::nullopt, "beyond the basic plane"},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(FindInvalidUtf8(row.text), row.offset);
  }
}

TEST(Utf16, ReplacesOrRefusesWhatIsIllFormed) {
  struct Case {
    std::string text;
    std::u16string units;
    bool strict;
    const char* why;
  };
  const Case cases[] = {
      {"", u"", true, "empty"},
      {"a\xC3\xA9\xE2\x82\xAC", u"a\u00E9\u20AC", true, "the basic plane"},
      {"\xF0\x9F\x98\x80", u"\U0001F600", true, "a pair"},
      {"a\x80z", u"a\uFFFDz", false, "a stray byte"},
      {"\xE2\x82\xE2\x82\xAC", u"\uFFFD\u20AC", false, "a cut-off part, then a whole one"},
      {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD", false, "an encoded surrogate: three parts"},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(ToUtf16(row.text), row.units);
    EXPECT_EQ(CountUtf16Units(row.text), row.units.size());
    EXPECT_EQ(ToUtf16Strict(row.text).has_value(), row.strict);
    if (row.strict) {
      EXPECT_EQ(ToUtf16Strict(row.text), row.units);
    }
  }
}

TEST(Utf8, IsMadeOfUtf16WithLoneSurrogatesReplacedOrRefused) {
  struct Case {
    std::u16string units;
    std::string text;
    bool strict;
    const char* why;
  };
  const Case cases[] = {
      {u"\u20AC\U0001F600", "\xE2\x82\xAC\xF0\x9F\x98\x80", true, "well formed"},
      {{0xD83D}, "\xEF\xBF\xBD", false, "a high surrogate at the end"},
      {{0xD83D, u'x'}, "\xEF\xBF\xBDx", false, "a high surrogate before another character"},
      {{0xDE00, u'x'}, "\xEF\xBF\xBDx", false, "a low surrogate first"},
      {{0xD83D, 0xD83D, 0xDE00}, "\xEF\xBF\xBD\xF0\x9F\x98\x80", false, "high, then a pair"},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(ToUtf8(row.units), row.text);
    EXPECT_EQ(ToUtf8Strict(row.units).has_value(), row.strict);
    if (row.strict) {
      EXPECT_EQ(ToUtf8Strict(row.units), row.text);
    }
  }
}

TEST(OffsetOfUtf16Unit, FindsTheCharacterThatHoldsTheUnit) {
  const std::string text = "a\xC3\xA9\xF0\x9F\x98\x80z";  // units: a, e acute, pair, z
  const std::size_t offsets[] = {0, 1, 3, 3, 7, 8, 8};
  for (std::size_t unit = 0; unit < std::size(offsets); ++unit) {
    EXPECT_EQ(OffsetOfUtf16Unit(text, unit), offsets[unit]) << unit;
  }
}

TEST(CountCodePoints, CountsEachIllFormedPartOnce) {
  EXPECT_EQ(CountCodePoints("a\xC3\xA9\xF0\x9F\x98\x80"), 3U);
  EXPECT_EQ(CountCodePoints("\xE2\x82x\x80"), 3U);
}

TEST(IsXmlChar, FollowsTheProductionCharOfXml10) {
  struct Case {
    char32_t c;
    bool allowed;
  };
  constexpr Case kCases[] = {{0x0, false},    {0x8, false},     {0x9, true},      {0xA, true},
                             {0xB, false},    {0xC, false},     {0xD, true},      {0xE, false},
                             {0x1F, false},   {0x20, true},     {0x7F, true},     {0x85, true},
                             {0xD7FF, true},  {0xD800, false},  {0xDFFF, false},  {0xE000, true},
                             {0xFFFD, true},  {0xFFFE, false},  {0xFFFF, false},  {0x10000, true},
                             {0x1FFFE, true}, {0x10FFFF, true}, {0x110000, false}};
  for (const Case& row : kCases) {
    EXPECT_EQ(IsXmlChar(row.c), row.allowed) << static_cast<std::uint32_t>(row.c);
  }
}

TEST(IsXmlSpace, IsBlankTabAndLineEndsOnly) {
  for (char32_t c = 0; c < 0x3001; ++c) {
    EXPECT_EQ(IsXmlSpace(c), c == 0x20 || c == 9 || c == 10 || c == 13)
        << static_cast<std::uint32_t>(c);
  }
}

TEST(Ascii, HelpersLeaveEverythingElseAlone) {
  EXPECT_EQ(AsciiLowerCase("ABCxyz09[\xC3\x89"), "abcxyz09[\xC3\x89");
  EXPECT_TRUE(EqualsAsciiCaseless("UTF-8", "utf-8"));
  EXPECT_FALSE(EqualsAsciiCaseless("UTF-8", "utf-80"));
  EXPECT_FALSE(EqualsAsciiCaseless("\xC3\x89", "\xC3\xA9")) << "only A to Z ignore case";
  EXPECT_FALSE(EqualsAsciiCaseless("@", "`")) << "the neighbours of the letters differ";
  EXPECT_EQ(HexDigitValue(U'f'), 15);
  EXPECT_EQ(HexDigitValue(U'A'), 10);
  EXPECT_EQ(HexDigitValue(U'0'), 0);
  EXPECT_EQ(HexDigitValue(U'g'), -1);
  EXPECT_TRUE(IsAscii("0123456789"));
  EXPECT_FALSE(IsAscii("0123456789\x80"));
}

struct CaseCase {
  char32_t lower;
  char32_t upper;
  const char* why;
};

constexpr CaseCase kPairs[] = {
    {U'a', U'A', "ASCII"},
    {0xE9, 0xC9, "Latin-1"},
    {0xFE, 0xDE, "the last letter of Latin-1"},
    {0xFF, 0x178, "y diaeresis: the partner lies outside Latin-1"},
    {0x101, 0x100, "Latin Extended-A"},
    {0x13A, 0x139, "Latin Extended-A where upper case is odd"},
    {0x17E, 0x17D, "z caron"},
    {0x253, 0x181, "Latin Extended-B"},
    {0x3B1, 0x391, "Greek"},
    {0x3AC, 0x386, "Greek with tonos"},
    {0x430, 0x410, "Cyrillic"},
    {0x451, 0x401, "Cyrillic io"},
    {0x4CF, 0x4C0, "palochka"},
    {0x561, 0x531, "Armenian"},
    {0x586, 0x556, "the last Armenian letter"},
    {0x10D0, 0x1C90, "Georgian"},
    {0x1E01, 0x1E00, "Latin Extended Additional"},
    {0x1EF9, 0x1EF8, "Vietnamese"},
    {0x1F00, 0x1F08, "Greek Extended"},
    {0x1F80, 0x1F88, "Greek with iota below"},
    {0x2170, 0x2160, "Roman numerals"},
    {0x24D0, 0x24B6, "circled letters"},
    {0xFF41, 0xFF21, "full width"},
    {0x10428, 0x10400, "Deseret, beyond the basic plane"},
};

TEST(SimpleCase, MapsBothWays) {
  for (const CaseCase& row : kPairs) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(ToUpper(row.lower), row.upper);
    EXPECT_EQ(ToLower(row.upper), row.lower);
    EXPECT_EQ(ToUpper(row.upper), row.upper);
    EXPECT_EQ(ToLower(row.lower), row.lower);
  }
}

TEST(SimpleCase, KeepsWhatHasNoSingleCharacterForm) {
  const char32_t fixed[] = {U'1', U'_',  0xDF,   0x149,  0x1F0,  0x390,   0x587,   0xF7,
                            0xD7, 0x5D0, 0x3042, 0x4E00, 0xFB01, 0x1F600, 0x10FFFF};
  for (const char32_t c : fixed) EXPECT_EQ(ToUpper(c), c) << static_cast<std::uint32_t>(c);
}

TEST(SimpleCase, MapsSomeCharactersOneWayOnly) {
  EXPECT_EQ(ToUpper(0xB5), 0x39CU) << "micro sign to capital mu";
  EXPECT_EQ(ToUpper(0x131), 0x49U) << "dotless i to I";
  EXPECT_EQ(ToUpper(0x17F), 0x53U) << "long s to S";
  EXPECT_EQ(ToUpper(0x3C2), 0x3A3U) << "final sigma to sigma";
  EXPECT_EQ(ToLower(0x130), 0x69U) << "dotted I to i";
  EXPECT_EQ(ToLower(0x1E9E), 0xDFU) << "capital sharp s";
}

TEST(SimpleCase, TablesAreAscendingAndStayWithinTheirPlane) {
  for (const auto ranges : {UpperCaseRanges(), LowerCaseRanges()}) {
    char32_t last = 0x7F;
    for (const CaseRange& range : ranges) {
      SCOPED_TRACE(static_cast<std::uint32_t>(range.first));
      EXPECT_GT(range.first, last);
      EXPECT_GE(range.last, range.first);
      EXPECT_EQ((range.last - range.first) % range.step, 0U);
      const auto difference = static_cast<char32_t>(range.difference);
      EXPECT_EQ(range.first > 0xFFFF, range.first + difference > 0xFFFF);
      EXPECT_EQ(range.last > 0xFFFF, range.last + difference > 0xFFFF);
      last = range.last;
    }
  }
}

TEST(SimpleCase, AppliesToWholeTextsWithoutChangingTheirUnits) {
  const std::string text =
      "Stra\xC3\x9F"
      "e \xC9\x90 \xF0\x90\x90\xA8";
  EXPECT_EQ(UpperCase(text),
            "STRA\xC3\x9F"
            "E \xE2\xB1\xAF \xF0\x90\x90\x80");
  EXPECT_EQ(CountUtf16Units(UpperCase(text)), CountUtf16Units(text));
  EXPECT_EQ(LowerCase("\xC3\x84\xD0\x96Q"), "\xC3\xA4\xD0\xB6q");
  EXPECT_EQ(UpperCase("a\xFFz"), "A\xEF\xBF\xBDZ") << "the result is well formed";
}

}  // namespace
}  // namespace kx::text
