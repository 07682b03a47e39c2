// The parser's inner loops: what each finds, and that both ways of finding it agree.
#include "platform/dom/scan.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace kx::dom::scan {
namespace {

std::string Padded(std::string_view text) {
  return std::string(text).append(1, kSentinel).append(kScanPadding, '\0');
}

struct NameCase {
  const char* why;
  std::string text;
  std::uint32_t length;
};

TEST(Scan, AShortNameEndsAtTheFirstCharacterThatEndsNames) {
  const std::string sixteen(16, 'n');
  const NameCase rows[] = {
      {"the end of the text", "abc", 3},
      {"a blank", "abc def", 3},
      {"an equals sign", "a=\"b\"", 1},
      {"a closing bracket", "abc>", 3},
      {"a slash", "abc/>", 3},
      {"a line end", "abc\n", 3},
      {"no name", ">", 0},
      {"all characters of names", "aZ_:-.09 ", 8},
      {"sixteen", sixteen + ">", 16},
      {"seventeen is for the slow way", sixteen + "n>", 0},
      {"beyond ASCII is for the slow way", "ab\xC3\xA4>", 0},
  };
  for (const NameCase& row : rows) {
    SCOPED_TRACE(row.why);
    const std::string text = Padded(row.text);
    for (const ShortName& name :
         {ScanShortName(text.data()), portable::ScanShortName(text.data())}) {
      EXPECT_EQ(name.length, row.length);
      if (name.length == 0) continue;
      const NameKey key = NameTable::KeyOf(std::string_view(text).substr(0, name.length));
      EXPECT_EQ(name.key.low, key.low);
      EXPECT_EQ(name.key.high, key.high);
    }
  }
}

struct StopCase {
  const char* why;
  std::string text;
  std::size_t at;
  bool plain;
};

TEST(Scan, TextStopsAtMarkupAndTellsWhetherWritingMustEscape) {
  const std::string longText(40, 'x');
  const StopCase rows[] = {
      {"at once", "<a/>", 0, true},
      {"a tag", "abc<a/>", 3, true},
      {"a reference", "abc&amp;", 3, true},
      {"a bracket", "abc]", 3, true},
      {"beyond one block", longText + "<", 40, true},
      {"a greater-than sign before it", "a>b<", 3, false},
      {"a line end before it", "a\nb<", 3, false},
      {"one after it does not count", "ab<>\n", 2, true},
      {"one in an earlier block counts", ">" + longText + "<", 41, false},
      {"quotes need no escape in text", "a\"'b<", 4, true},
      {"the end", "abc", 3, true},
  };
  for (const StopCase& row : rows) {
    SCOPED_TRACE(row.why);
    const std::string text = Padded(row.text);
    for (const Stop& stop : {ScanText(text.data()), portable::ScanText(text.data())}) {
      EXPECT_EQ(static_cast<std::size_t>(stop.at - text.data()), row.at);
      EXPECT_EQ(stop.plain, row.plain);
    }
  }
}

TEST(Scan, AValueStopsAtItsQuoteAndTellsWhetherWritingMustEscape) {
  const StopCase rows[] = {
      {"empty", "\"", 0, true},
      {"its quote", "abc\"", 3, true},
      {"the other quote is plain", "a'b\"", 3, true},
      {"a reference", "ab&lt;\"", 2, true},
      {"a tag", "ab<\"", 2, true},
      {"a greater-than sign", "a>\"", 2, false},
      {"a line end", "a\n\"", 2, false},
  };
  for (const StopCase& row : rows) {
    SCOPED_TRACE(row.why);
    const std::string text = Padded(row.text);
    for (const Stop& stop :
         {ScanAttributeValue(text.data(), '"'), portable::ScanAttributeValue(text.data(), '"')}) {
      EXPECT_EQ(static_cast<std::size_t>(stop.at - text.data()), row.at);
      EXPECT_EQ(stop.plain, row.plain);
    }
  }
  const std::string single = Padded("a\"b'");
  EXPECT_EQ(ScanAttributeValue(single.data(), '\'').at - single.data(), 3);
  EXPECT_FALSE(ScanAttributeValue(single.data(), '\'').plain) << "written between double quotes";
}

TEST(Scan, CopyingStopsBeforeWhatNeedsALook) {
  for (int value = 0; value < 256; ++value) {
    const char c = static_cast<char>(value);
    const bool ordinary = value < 128 && (value >= ' ' || c == '\n' || c == '\t');
    for (const std::size_t before : {0U, 1U, 15U, 16U, 31U, 32U, 33U, 70U}) {
      std::string text(before, 'x');
      text.append(1, c).append("yz");
      const std::size_t expected = ordinary ? text.size() : before;
      for (const auto copy : {&CopyOrdinary, &portable::CopyOrdinary}) {
        std::string to(text.size() + kScanPadding, '\0');
        EXPECT_EQ(copy(text.data(), text.data() + text.size(), to.data()), expected) << value;
        EXPECT_EQ(to.substr(0, expected), text.substr(0, expected));
      }
    }
  }
}

TEST(Scan, APlainNameHasOnlyNameCharactersAndNoColon) {
  for (int value = 0; value < 128; ++value) {
    const char c = static_cast<char>(value);
    const bool part = IsAsciiNamePart(c) && c != ':';
    const bool start = part && c != '-' && c != '.' && (c < '0' || c > '9');
    // Only what ScanShortName lets into a name is ever asked.
    const std::string text = Padded(std::string("a") + c + "b");
    const std::string first = Padded(std::string(1, c) + "ab");
    if (portable::ScanShortName(text.data()).length == 3 ||
        ScanShortName(text.data()).length == 3) {
      EXPECT_EQ(IsPlainName(text.data(), 3), part) << value;
      EXPECT_EQ(portable::IsPlainName(text.data(), 3), part) << value;
    }
    if (ScanShortName(first.data()).length == 3) {
      EXPECT_EQ(IsPlainName(first.data(), 3), start) << value;
      EXPECT_EQ(portable::IsPlainName(first.data(), 3), start) << value;
    }
  }
}

TEST(Scan, NamesAreTheSameWhenAllTheirBytesAre) {
  for (const std::uint32_t length : {1U, 7U, 8U, 15U, 16U, 17U, 40U}) {
    const std::string name(length, 'n');
    const std::string same = Padded(name + "=");
    const std::string other = Padded(name + ">");
    EXPECT_TRUE(SameBytes(same.data(), other.data(), length)) << "what follows does not count";
    EXPECT_TRUE(portable::SameBytes(same.data(), other.data(), length));
    for (std::uint32_t at = 0; at < length; ++at) {
      std::string changed = same;
      changed[at] = 'm';
      EXPECT_FALSE(SameBytes(same.data(), changed.data(), length)) << length << " " << at;
      EXPECT_FALSE(portable::SameBytes(same.data(), changed.data(), length));
      if (length > 16) continue;
      const NameKey key = NameTable::KeyOf(name);
      EXPECT_TRUE(StartsWithKey(same.data(), key, length));
      EXPECT_FALSE(StartsWithKey(changed.data(), key, length));
      EXPECT_FALSE(portable::StartsWithKey(changed.data(), key, length));
    }
  }
}

TEST(Scan, BothWaysAgreeOnRandomTexts) {
  std::mt19937 random(7);
  constexpr std::string_view kAlphabet = "abcdefghijklmnopqrstuvwxyz0123456789 <&]>\"'\n=/:._-";
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    const std::size_t size = random() % 80;
    for (std::size_t i = 0; i < size; ++i) {
      const std::size_t plainOnly = random() % 8 == 0 ? kAlphabet.size() : 36;
      text += kAlphabet[random() % plainOnly];
    }
    text = Padded(text);
    const Stop a = ScanText(text.data());
    const Stop b = portable::ScanText(text.data());
    ASSERT_EQ(a.at, b.at) << text;
    ASSERT_EQ(a.plain, b.plain) << text;
    const Stop c = ScanAttributeValue(text.data(), '\'');
    const Stop d = portable::ScanAttributeValue(text.data(), '\'');
    ASSERT_EQ(c.at, d.at) << text;
    ASSERT_EQ(c.plain, d.plain) << text;
    // A bracket ends no name for the one and a name for the other; both leave it to the slow way.
    if (text.find(']') > 16) {
      ASSERT_EQ(ScanShortName(text.data()).length, portable::ScanShortName(text.data()).length)
          << text;
    }
  }
}

}  // namespace
}  // namespace kx::dom::scan
