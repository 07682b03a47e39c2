// Bytes to text and back, for callers.
#include "kxmessage/error_codes.h"
#include "kxmessage/parse_error.h"
#include "kxmessage/text.h"

#include <gtest/gtest.h>
#include <string>

namespace kx {
namespace {

using namespace std::string_literals;

TEST(PublicText, XmlBytesBecomeTextAsTheySay) {
  const struct {
    std::string bytes;
    std::string text;
    std::string encoding;
    const char* why;
  } rows[] = {
      {"", "", "", "nothing"},
      {"<a/>", "<a/>", "", "UTF-8 where nothing tells"},
      {"\xEF\xBB\xBF<a/>", "<a/>", "utf-8", "the mark of UTF-8"},
      {"\xFF\xFE<\0a\0/\0>\0"s, "<a/>", "utf-16", "little-endian"},
      {"\xFE\xFF\0<\0a\0/\0>"s, "<a/>", "utf-16", "big-endian"},
      {"<?xml version=\"1.0\" encoding=\"Windows-1252\"?><a>\x80</a>",
       "<?xml version=\"1.0\" encoding=\"Windows-1252\"?><a>\xE2\x82\xAC</a>", "Windows-1252",
       "a declared page, as it is spelled"},
      {"<?xml version=\"1.0\" encoding=\"koi8-r\"?><a>\xC1</a>",
       "<?xml version=\"1.0\" encoding=\"koi8-r\"?><a>\xD0\xB0</a>", "koi8-r",
       "a page that the host knows"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(DecodeXmlBytes(row.bytes), row.text);
    EXPECT_EQ(XmlEncodingOf(row.bytes), row.encoding);
  }
}

TEST(PublicText, WhatCannotBeDecodedIsALoadingErrorWithItsPlace) {
  const struct {
    std::string bytes;
    std::int32_t code;
    std::int32_t line;
    std::int32_t position;
    const char* why;
  } rows[] = {
      {"<?xml version=\"1.0\" encoding=\"klingon\"?><a/>", static_cast<std::int32_t>(0xC00CE56E), 1,
       21, "an encoding that nobody knows"},
      {"<?xml version=\"1.0\" encoding=\"utf-16\"?><a/>", static_cast<std::int32_t>(0xC00CE56F), 1,
       21, "UTF-16 without its mark"},
      {"<?xml version=\"1.0\" encoding=\"us-ascii\"?>\n<a>\xE9</a>",
       static_cast<std::int32_t>(0xC00CE508), 2, 4, "a byte that the page lacks"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.why);
    try {
      static_cast<void>(DecodeXmlBytes(row.bytes));
      FAIL() << "nothing was raised";
    } catch (const ParseError& error) {
      EXPECT_EQ(error.Number(), kxMsgErrorLoadingXML);
      EXPECT_EQ(error.Code(), row.code);
      EXPECT_EQ(error.Line(), row.line);
      EXPECT_EQ(error.LinePosition(), row.position);
      EXPECT_FALSE(error.Reason().empty());
    }
  }
}

TEST(PublicText, AllBytesComeBackThroughTheCodePage) {
  std::string bytes;
  for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
  EXPECT_EQ(EncodeCodePage(DecodeCodePage(bytes, 1252), 1252), bytes);
  EXPECT_EQ(DecodeCodePage("\x80", 1252), "\xE2\x82\xAC");
  EXPECT_EQ(EncodeCodePage("\xE2\x82\xAC\xD0\xB0", 1252), "\x80?");
  EXPECT_EQ(EncodeCodePage("\xE2\x82\xAC", 65001), "\xE2\x82\xAC");
}

TEST(PublicText, ACodePageThatNobodyKnowsIsAnError) {
  for (const int page : {0, -1, 7, 65002}) {
    EXPECT_THROW(static_cast<void>(DecodeCodePage("a", page)), Error) << page;
    EXPECT_THROW(static_cast<void>(EncodeCodePage("a", page)), Error) << page;
  }
}

}  // namespace
}  // namespace kx
