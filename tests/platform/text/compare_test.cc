// Caseless comparison and keyed hashing.
#include "platform/text/compare.h"

#include "platform/text/unicode.h"

#include <gtest/gtest.h>
#include <string>
#include <unordered_set>

namespace kx::text {
namespace {

struct PairCase {
  std::string a;
  std::string b;
  std::strong_ordering order;
  const char* why;
};

const PairCase kPairs[] = {
    {"", "", std::strong_ordering::equal, "two empty texts"},
    {"Order", "oRDER", std::strong_ordering::equal, "letter case does not count"},
    {"a", "b", std::strong_ordering::less, "different letters"},
    {"a", "B", std::strong_ordering::less, "order is that of the capitals"},
    {"_", "a", std::strong_ordering::greater, "the low line lies behind the capitals"},
    {"ab", "a", std::strong_ordering::greater, "the longer one is greater"},
    {"", "a", std::strong_ordering::less, "the empty text is the least"},
    {"a", "\xC3\xA4", std::strong_ordering::less, "accents count"},
    {"\xC3\x84", "\xC3\xA4", std::strong_ordering::equal, "accented letters ignore case"},
    {"\xD0\x96", "\xD0\xB6", std::strong_ordering::equal, "Cyrillic"},
    {"\xCF\x82", "\xCF\x83", std::strong_ordering::equal, "both sigmas have one capital"},
    {"\xC9\x90", "\xE2\xB1\xAF", std::strong_ordering::equal, "forms of unequal length in bytes"},
    {"\xC3\x9F", "ss", std::strong_ordering::greater, "one character never equals two"},
    {"a\xFF", "A\xFF", std::strong_ordering::equal, "ill-formed bytes equal themselves"},
    {"\xFE", "\xFF", std::strong_ordering::less, "ill-formed bytes differ from each other"},
    {"\xFF", "\xEF\xBF\xBD", std::strong_ordering::greater, "and from the replacement character"},
};

TEST(CompareCaseless, OrdersByUpperCasedCodePoints) {
  for (const PairCase& row : kPairs) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(CompareCaseless(row.a, row.b), row.order);
    EXPECT_EQ(CompareCaseless(row.b, row.a), 0 <=> row.order);
    EXPECT_EQ(EqualsCaseless(row.a, row.b), row.order == 0);
    EXPECT_EQ(CaselessLess()(row.a, row.b), row.order < 0);
  }
}

TEST(HashCaseless, IsEqualExactlyForTextsThatAreEqualInTheTable) {
  for (const PairCase& row : kPairs) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(HashCaseless(row.a) == HashCaseless(row.b), row.order == 0);
  }
}

TEST(HashCaseless, TellsTextsOfNulsApart) {
  std::unordered_set<std::size_t> hashes;
  for (std::size_t length = 0; length < 20; ++length) {
    hashes.insert(HashCaseless(std::string(length, '\0')));
  }
  EXPECT_EQ(hashes.size(), 20U);
}

TEST(HashExact, CountsLetterCase) {
  EXPECT_EQ(HashExact("Order"), HashExact(std::string("Order")));
  EXPECT_NE(HashExact("Order"), HashExact("order"));
}

TEST(SipHash13, GivesTheValuesOfAnIndependentImplementation) {
  struct Case {
    const char* bytes;
    std::uint64_t hash;
  };
  constexpr Case kCases[] = {
      {"a", 0x407448D2B89B1813U},
      {"abcdefg", 0x6DB12AAE9070F506U},
      {"abcdefgh", 0x3F7B849C0B8E35EAU},
      {"abcdefghi", 0xF89B34A3D11EB6E5U},
      {"The quick brown fox", 0x975E410714568333U},
  };
  for (const Case& row : kCases) EXPECT_EQ(SipHash13(row.bytes, 0, 0), row.hash) << row.bytes;
}

TEST(SipHash13, DependsOnBothHalvesOfTheKey) {
  EXPECT_NE(SipHash13("name", 1, 0), SipHash13("name", 0, 0));
  EXPECT_NE(SipHash13("name", 0, 1), SipHash13("name", 0, 0));
}

TEST(CaselessHash, ServesLookUpsByView) {
  std::unordered_set<std::string, CaselessHash, CaselessEqual> set{"Alpha"};
  EXPECT_TRUE(set.contains(std::string_view("ALPHA")));
  EXPECT_FALSE(set.contains(std::string_view("ALPH")));
}

}  // namespace
}  // namespace kx::text
