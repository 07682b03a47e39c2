// From the bytes of a document to its text.
#include "platform/dom/xml_bytes.h"

#include <gtest/gtest.h>
#include <string>

namespace kx::dom {
namespace {

using namespace std::string_literals;

std::string Utf16(std::string_view ascii, bool bigEndian) {
  std::string bytes = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
  for (const char c : ascii) {
    if (bigEndian) bytes += '\0';
    bytes += c;
    if (!bigEndian) bytes += '\0';
  }
  return bytes;
}

TEST(XmlBytes, AreDecodedByMarkThenByDeclarationThenAsUtf8) {
  const struct {
    std::string bytes;
    std::string text;
    const char* why;
  } rows[] = {
      {"", "", "nothing"},
      {"<a/>", "<a/>", "UTF-8 where nothing tells"},
      {"<a>\xC3\xA9</a>", "<a>\xC3\xA9</a>", "the same beyond ASCII"},
      {"\xEF\xBB\xBF<a/>", "<a/>", "the mark of UTF-8 is no text"},
      {Utf16("<a/>", false), "<a/>", "little-endian by its mark"},
      {Utf16("<a/>", true), "<a/>", "big-endian by its mark"},
      {Utf16("<?xml version=\"1.0\" encoding=\"UTF-16\"?><a/>", false),
       "<?xml version=\"1.0\" encoding=\"UTF-16\"?><a/>", "a declaration that agrees"},
      {"<?xml version=\"1.0\" encoding=\"iso-8859-1\"?><a>\xE9</a>",
       "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?><a>\xC3\xA9</a>", "a declared page"},
      {"<?xml version='1.0' encoding='windows-1252'?><a>\x80</a>",
       "<?xml version='1.0' encoding='windows-1252'?><a>\xE2\x82\xAC</a>", "in single quotes"},
      {"<?xml version=\"1.0\" encoding=\"UTF-8\"?><a>\xFF</a>",
       "<?xml version=\"1.0\" encoding=\"UTF-8\"?><a>\xFF</a>", "UTF-8 is left to the reader"},
      {"<?xml-x encoding=\"iso-8859-1\"?><a>\xC3\xA9</a>",
       "<?xml-x encoding=\"iso-8859-1\"?><a>\xC3\xA9</a>", "another instruction declares nothing"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.why);
    const XmlText text = DecodeXml(row.bytes, nullptr);
    EXPECT_EQ(text.Text(), row.text);
    EXPECT_EQ(text.refusal, ParseCode::kNone);
    EXPECT_EQ(text.tail, ParseCode::kNone);
  }
}

TEST(XmlBytes, AnEncodingIsRefusedAtItsDeclaration) {
  const struct {
    std::string bytes;
    ParseCode refusal;
    std::size_t at;
    const char* why;
  } rows[] = {
      {"<?xml version=\"1.0\" encoding=\"no-such\"?><a/>", ParseCode::kUnknownEncoding, 20,
       "nobody knows it"},
      {"<?xml version=\"1.0\" encoding=\"utf-16\"?><a/>", ParseCode::kEncodingSwitch, 20,
       "UTF-16 without a mark"},
      {"\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"iso-8859-1\"?><a/>",
       ParseCode::kEncodingSwitch, 20, "the mark says UTF-8"},
      {Utf16("<?xml version=\"1.0\" encoding=\"utf-8\"?><a/>", true), ParseCode::kEncodingSwitch,
       20, "the mark says UTF-16"},
      {"<?xml version=\"1.0\" encoding = \"no-such\"?><a/>", ParseCode::kUnknownEncoding, 32,
       "blanks around the sign: where the name begins"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.why);
    const XmlText text = DecodeXml(row.bytes, nullptr);
    EXPECT_EQ(text.refusal, row.refusal);
    EXPECT_EQ(text.refusedAt, row.at);
  }
}

TEST(XmlBytes, TextEndsBeforeWhatTheEncodingDoesNotDefine) {
  const struct {
    std::string bytes;
    std::string text;
    ParseCode tail;
    const char* why;
  } rows[] = {
      {"<?xml version=\"1.0\" encoding=\"us-ascii\"?><a>x\xE9y</a>",
       "<?xml version=\"1.0\" encoding=\"us-ascii\"?><a>x", ParseCode::kBadCharInText,
       "a byte that the page lacks"},
      {"\xFF\xFE<\0a"s, "<", ParseCode::kTruncatedCharacter, "half a unit at the end"},
      {"\xFF\xFE<\0\x00\xDC>\0>\0>\0"s, "<", ParseCode::kBadCharInText, "a lone low surrogate"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.why);
    const XmlText text = DecodeXml(row.bytes, nullptr);
    EXPECT_EQ(text.Text(), row.text);
    EXPECT_EQ(text.tail, row.tail);
  }
}

TEST(XmlBytes, AreNotCopiedWhereTheyAreUtf8Already) {
  const std::string bytes = "<a/>";
  EXPECT_EQ(DecodeXml(bytes, nullptr).Text().data(), bytes.data());
}

}  // namespace
}  // namespace kx::dom
