// Names and numbers of the encodings.
#include "platform/text/code_page_labels.h"

#include <gtest/gtest.h>

namespace kx::text {
namespace {

struct LabelCase {
  const char* label;
  int number;  // 0 for none
  const char* why;
};

constexpr LabelCase kLabels[] = {
    {"utf-8", 65001, "preferred name"},
    {"UTF-8", 65001, "capitals"},
    {"Utf-8", 65001, "mixed case"},
    {"utf-16", 1200, "little-endian unless told otherwise"},
    {"UTF-16LE", 1200, "little-endian by name"},
    {"UTF-16BE", 1201, "big-endian by name"},
    {"US-ASCII", 20127, "preferred name"},
    {"ascii", 20127, "further label"},
    {"ISO-8859-1", 28591, "Latin-1"},
    {"latin1", 28591, "Latin-1 by another label"},
    {"iso-8859-2", 28592, "Latin-2"},
    {"iso-8859-5", 28595, "Cyrillic"},
    {"iso-8859-15", 28605, "Latin-9"},
    {"iso-8859-16", 28606, "Latin-10"},
    {"windows-874", 874, "Thai"},
    {"windows-1250", 1250, "Central European"},
    {"WINDOWS-1252", 1252, "Western"},
    {"cp1252", 1252, "by its number"},
    {"windows-1258", 1258, "Vietnamese"},
    {"Shift_JIS", 932, "Japanese"},
    {"gb2312", 936, "Simplified Chinese"},
    {"GBK", 936, "its extension"},
    {"euc-jp", 51932, "Japanese on Unix"},
    {"koi8-r", 20866, "Russian"},
    {"ibm866", 866, "DOS Cyrillic"},
    {"big5", 950, "Traditional Chinese"},
    {"windows-936", 0, "never a label"},
    {"iso-8859-12", 0, "a part that does not exist"},
    {"windows-1259", 0, "a page that does not exist"},
    {"utf-8 ", 0, "a blank belongs to no label"},
    {"", 0, "no name"},
};

TEST(CodePageLabels, NameTheirEncodingInAnyCase) {
  for (const LabelCase& row : kLabels) {
    SCOPED_TRACE(row.label);
    SCOPED_TRACE(row.why);
    const CodePageEntry* entry = FindCodePageEntry(std::string_view(row.label));
    EXPECT_EQ(entry != nullptr ? entry->number : 0, row.number);
  }
}

TEST(CodePageLabels, RefuseOnlyTheNameThatWasNeverOne) {
  EXPECT_TRUE(IsRefusedLabel("windows-936"));
  EXPECT_TRUE(IsRefusedLabel("Windows-936"));
  EXPECT_FALSE(IsRefusedLabel("gbk"));
}

TEST(CodePageLabels, LeadBackToTheEntryOfTheNumber) {
  for (const int number : {65001, 1200, 1201, 20127, 28591, 874, 1252, 932, 20866}) {
    const CodePageEntry* entry = FindCodePageEntry(number);
    ASSERT_NE(entry, nullptr) << number;
    EXPECT_EQ(entry->number, number);
    EXPECT_EQ(FindCodePageEntry(entry->name), entry);
  }
  EXPECT_EQ(FindCodePageEntry(0), nullptr);
  EXPECT_EQ(FindCodePageEntry(28602), nullptr) << "iso-8859-12 does not exist";
}

}  // namespace
}  // namespace kx::text
