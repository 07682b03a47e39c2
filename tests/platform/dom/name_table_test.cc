// Names, qualified names and namespace URIs: what is equal, what is found again, and copies.
#include "platform/dom/name_table.h"

#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

namespace kx::dom {
namespace {

struct SplitCase {
  const char* qualified;
  const char* prefix;
  const char* local;
};

constexpr SplitCase kSplits[] = {
    {"a", "", "a"},
    {"p:a", "p", "a"},
    {"long-prefix:a-very-long-local-name", "long-prefix", "a-very-long-local-name"},
    {"sixteen:bytes.ab", "sixteen", "bytes.ab"},
    {"seventeen:bytes.b", "seventeen", "bytes.b"},
    {"xmlns", "", "xmlns"},
    {"xmlns:p", "xmlns", "p"},
    {"\xC3\xA9:\xCE\xB1", "\xC3\xA9", "\xCE\xB1"},
};

TEST(NameTable, SplitsAQualifiedNameAtItsColon) {
  NameTable names;
  for (const SplitCase& row : kSplits) {
    const NameId name = names.InternName(row.qualified, kNoUri);
    EXPECT_EQ(names.QualifiedText(name), row.qualified);
    EXPECT_EQ(names.PrefixText(name), row.prefix) << row.qualified;
    EXPECT_EQ(names.LocalText(name), row.local) << row.qualified;
  }
}

TEST(NameTable, APrefixIsAQualifiedNameItself) {
  NameTable names;
  const std::uint32_t qname = names.InternQName("p:a");
  EXPECT_EQ(names.QNameText(names.At(qname).prefix), "p");
  EXPECT_EQ(names.At(qname).prefix, names.FindQName("p"));
  EXPECT_EQ(names.At(names.InternQName("a")).prefix, 0U);
}

TEST(NameTable, GivesOneNumberToOneText) {
  NameTable names;
  std::set<std::uint32_t> numbers;
  std::vector<std::string> texts;
  // Every length around the sixteen bytes that are compared at once, and texts that differ in one
  // byte at either end.
  for (std::size_t length = 1; length <= 40; ++length) {
    texts.emplace_back(length, 'a');
    texts.push_back(std::string(length, 'a') + "b");
    texts.push_back("b" + std::string(length, 'a'));
  }
  for (const std::string& text : texts) {
    EXPECT_EQ(names.FindQName(text), 0U) << text;
    const std::uint32_t number = names.InternQName(text);
    EXPECT_NE(number, 0U);
    EXPECT_TRUE(numbers.insert(number).second) << text;
  }
  for (const std::string& text : texts) {
    EXPECT_EQ(names.FindQName(text), names.InternQName(text)) << text;
    EXPECT_EQ(names.QNameText(names.FindQName(text)), text);
  }
}

TEST(NameTable, ShortNamesAreFoundByTheirBytes) {
  NameTable names;
  for (const std::string& text : {std::string("a"), std::string(15, 'x'), std::string(16, 'y')}) {
    const NameKey key = NameTable::KeyOf(text);
    const auto length = static_cast<std::uint32_t>(text.size());
    EXPECT_EQ(names.FindShortQName(key, length), 0U);
    const std::uint32_t number = names.AddShortQName(key, length);
    EXPECT_EQ(names.FindShortQName(key, length), number);
    EXPECT_EQ(names.FindQName(text), number);
    EXPECT_EQ(names.InternQName(text), number);
    EXPECT_EQ(names.QNameText(number), text);
  }
}

TEST(NameTable, NamesAreEqualWhenTextAndNamespaceAre) {
  NameTable names;
  const UriId u = names.InternUri("u");
  const UriId v = names.InternUri("v");
  const NameId a = names.InternName("a", kNoUri);
  EXPECT_EQ(names.InternName("a", kNoUri), a);
  EXPECT_NE(names.InternName("a", u), a);
  EXPECT_NE(names.InternName("a", u), names.InternName("a", v));
  EXPECT_NE(names.InternName("p:a", u), names.InternName("a", u)) << "the text is the written one";
  EXPECT_EQ(names.InternName("a", u), names.InternName("a", u));
  EXPECT_EQ(names.UriOf(names.InternName("a", v)), v);
  EXPECT_EQ(names.QNameOf(names.InternName("a", v)), names.FindQName("a"));
}

TEST(NameTable, KnowsThreeNamespacesFromTheBeginning) {
  NameTable names;
  EXPECT_EQ(names.UriText(kNoUri), "");
  EXPECT_EQ(names.UriText(kEmptyUri), "");
  EXPECT_EQ(names.UriText(kXmlUri), kXmlNamespace);
  EXPECT_EQ(names.InternUri(kXmlNamespace), kXmlUri);
  EXPECT_EQ(names.FindUri("urn:none"), 0xFFFFFFFFU);
  const UriId u = names.InternUri("urn:u");
  EXPECT_EQ(names.FindUri("urn:u"), u);
  EXPECT_EQ(names.InternUri("urn:u"), u);
  EXPECT_NE(names.InternUri("urn:U"), u) << "case matters";
}

TEST(NameTable, FindsEverythingAgainAmongMany) {
  NameTable names;
  constexpr int kCount = 50'000;
  std::vector<std::uint32_t> qnames;
  std::vector<UriId> uris;
  std::vector<NameId> bound;
  for (int i = 0; i < kCount; ++i) {
    const std::string number = std::to_string(i);
    qnames.push_back(
        names.InternQName(i % 2 == 0 ? "n" + number : "a-longer-name-number-" + number));
    uris.push_back(names.InternUri("urn:" + number));
    bound.push_back(names.InternName("one", uris.back()));
  }
  for (int i = 0; i < kCount; ++i) {
    const std::string number = std::to_string(i);
    const std::string text = i % 2 == 0 ? "n" + number : "a-longer-name-number-" + number;
    const auto at = static_cast<std::size_t>(i);
    ASSERT_EQ(names.FindQName(text), qnames[at]) << text;
    ASSERT_EQ(names.FindUri("urn:" + number), uris[at]) << text;
    ASSERT_EQ(names.InternName("one", uris[at]), bound[at]) << text;
  }
  EXPECT_EQ(names.FindQName("n" + std::to_string(kCount)), 0U);
}

TEST(NameTable, ACopyHasTheSameNumbersAndGoesItsOwnWay) {
  NameTable names;
  const UriId u = names.InternUri("u");
  const NameId a = names.InternName("p:a", u);
  for (int i = 0; i < 100; ++i) names.InternName("n" + std::to_string(i), u);
  NameTable copy;
  copy.CopyFrom(names);
  EXPECT_EQ(copy.FindUri("u"), u);
  EXPECT_EQ(copy.InternName("p:a", u), a);
  EXPECT_EQ(copy.QualifiedText(a), "p:a");
  const std::uint32_t added = copy.InternQName("only-in-the-copy");
  EXPECT_EQ(names.FindQName("only-in-the-copy"), 0U);
  EXPECT_EQ(copy.QNameText(added), "only-in-the-copy");
  EXPECT_EQ(copy.FindQName("n99"), names.FindQName("n99"));
}

TEST(NameTable, ASmallMessageNeedsNoBlock) {
  NameTable names;
  for (const char* name : {"Order", "Line", "Item", "Quantity", "Price"}) {
    names.InternName(name, names.InternUri("x-schema:order.xml"));
  }
  EXPECT_EQ(names.Bytes(), 0U);
}

// PlainArray -------------------------------------------------------------------------------------

TEST(PlainArray, GrowsFromItsInlineRoomAndKeepsItsValues) {
  PlainArray<std::uint32_t, 4> values;
  EXPECT_EQ(values.BlockBytes(), 0U);
  for (std::uint32_t i = 0; i < 1000; ++i) EXPECT_EQ(values.Append(i), i);
  for (std::uint32_t i = 0; i < 1000; ++i) ASSERT_EQ(values[i], i);
  EXPECT_GE(values.BlockBytes(), 1000 * sizeof(std::uint32_t));
  values.Shrink();
  EXPECT_EQ(values.capacity(), 1000U);
  EXPECT_EQ(values[999], 999U);
  values.DropLast(990);
  EXPECT_EQ(values.size(), 10U);
}

TEST(PlainArray, ACopyHasTheValues) {
  for (const std::uint32_t count : {0U, 3U, 4U, 5U, 100U}) {
    PlainArray<std::uint32_t, 4> values;
    for (std::uint32_t i = 0; i < count; ++i) values.Append(i);
    PlainArray<std::uint32_t, 4> copy;
    copy.Append(77);
    copy.CopyFrom(values);
    ASSERT_EQ(copy.size(), count);
    for (std::uint32_t i = 0; i < count; ++i) EXPECT_EQ(copy[i], i);
  }
}

}  // namespace
}  // namespace kx::dom
