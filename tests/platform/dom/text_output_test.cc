#include "platform/dom/text_output.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>

namespace kx::dom {
namespace {

template <Escaping Replaced>
std::string Escaped(std::string_view text, Padding padding) {
  TextOutput output(0);
  return output.Finish(output.PutEscaped<Replaced>(output.Begin(), text, padding));
}

template <Escaping Replaced>
void ExpectBlocksAgree() {
  for (int c = 0; c < 256; ++c) {
    for (int place = 0; place < 16; ++place) {
      std::string block(16, 'x');
      block[static_cast<std::size_t>(place)] = static_cast<char>(c);
      ASSERT_EQ(EscapedBytes<Replaced>(block.data()), EscapedBytesPortable(Replaced, block.data()))
          << "byte " << c << " at " << place;
    }
  }
}

TEST(TextOutput, FindsTheSameBytesSixteenAtATimeAndOneByOne) {
  ExpectBlocksAgree<Escaping::kLineEnds>();
  ExpectBlocksAgree<Escaping::kText>();
  ExpectBlocksAgree<Escaping::kAttribute>();
}

struct EscapingCase {
  const char* text;
  const char* lineEnds;
  const char* inText;
  const char* inAttribute;
  const char* why;
};

constexpr EscapingCase kEscapingCases[] = {
    {"", "", "", "", "nothing"},
    {"abc", "abc", "abc", "abc", "nothing to replace"},
    {"&", "&", "&amp;", "&amp;", "an ampersand"},
    {"<", "<", "&lt;", "&lt;", "less than"},
    {">", ">", "&gt;", "&gt;", "greater than, also where it could stand"},
    {"\"", "\"", "\"", "&quot;", "the double quote only delimits attribute values"},
    {"'", "'", "'", "'", "the apostrophe delimits nothing"},
    {"\n", "\r\n", "\r\n", "\r\n", "a line end is two characters"},
    {"\r", "\r", "&#13;", "&#13;", "a carriage return would be read as a line end"},
    {"\t", "\t", "\t", "\t", "a tab stays"},
    {"a&b<c>d\"e\nf\rg", "a&b<c>d\"e\r\nf\rg", "a&amp;b&lt;c&gt;d\"e\r\nf&#13;g",
     "a&amp;b&lt;c&gt;d&quot;e\r\nf&#13;g", "one after the other"},
    {"&lt;", "&lt;", "&amp;lt;", "&amp;lt;", "what looks escaped is data"},
    {"$%*,;=?2", "$%*,;=?2", "$%*,;=?2", "$%*,;=?2", "neighbours of the replaced characters"},
    {"\xC3\xA9\xE2\x82\xAC", "\xC3\xA9\xE2\x82\xAC", "\xC3\xA9\xE2\x82\xAC", "\xC3\xA9\xE2\x82\xAC",
     "characters beyond ASCII stay"},
};

TEST(TextOutput, ReplacesWhatCannotStandInItsPlace) {
  for (const EscapingCase& row : kEscapingCases) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(Escaped<Escaping::kLineEnds>(row.text, Padding::kNone), row.lineEnds);
    EXPECT_EQ(Escaped<Escaping::kText>(row.text, Padding::kNone), row.inText);
    EXPECT_EQ(Escaped<Escaping::kAttribute>(row.text, Padding::kNone), row.inAttribute);
  }
}

// The obvious way, to compare with.
std::string EscapedSlowly(std::string_view text) {
  std::string out;
  for (const char c : text) {
    if (c == '&') {
      out += "&amp;";
    } else if (c == '\n') {
      out += "\r\n";
    } else {
      out += c;
    }
  }
  return out;
}

TEST(TextOutput, ReplacesAtEveryPlaceOfEveryLengthWhateverFollowsTheText) {
  for (std::size_t length = 0; length <= 50; ++length) {
    for (std::size_t place = 0; place < length; ++place) {
      std::string text(length, 'x');
      text[place] = place % 2 == 0 ? '&' : '\n';
      const std::string wanted = EscapedSlowly(text);
      EXPECT_EQ(Escaped<Escaping::kText>(text, Padding::kNone), wanted);
      const std::string padded = text + std::string(16, '&');
      const std::string_view inside(padded.data(), length);
      EXPECT_EQ(Escaped<Escaping::kText>(inside, Padding::kReadable), wanted);
    }
  }
}

TEST(TextOutput, KeepsWhatDoesNotFitIntoOnePiece) {
  for (const std::size_t length : {8'191U, 8'192U, 8'193U, 20'000U, 100'000U}) {
    SCOPED_TRACE(length);
    std::string text;
    while (text.size() < length) text += "a&b\n";
    const std::string padded = text + std::string(16, '\0');
    const std::string_view inside(padded.data(), text.size());
    TextOutput output(length);
    char* at = output.PutVerbatim(output.Begin(), "begin", Padding::kNone);
    at = output.PutVerbatim(at, text, Padding::kNone);
    at = output.PutEscaped<Escaping::kText>(at, inside, Padding::kReadable);
    for (std::size_t i = 0; i < length; i += 100) {
      at = output.PutVerbatim(at, inside.substr(i, 100), Padding::kReadable);
    }
    at = output.PutVerbatim(at, "end", Padding::kNone);
    const std::string again = text.substr(0, (length + 99) / 100 * 100);
    std::string wanted = "begin";
    wanted.append(text).append(EscapedSlowly(text)).append(again).append("end");
    EXPECT_TRUE(output.Finish(at) == wanted);
  }
}

TEST(TextOutput, WritesNamesOfAnyLength) {
  for (const std::size_t length : {1U, 15U, 16U, 17U, 200U, 9'000U}) {
    SCOPED_TRACE(length);
    const std::string name(length, 'n');
    NameTable names;
    const std::uint32_t qname = names.InternQName(name);
    TextOutput output(0);
    char* at = output.PutName(output.Begin(), names, qname);
    at = output.PutName(at, names, qname);
    EXPECT_EQ(output.Finish(at), name + name);
  }
}

}  // namespace
}  // namespace kx::dom
