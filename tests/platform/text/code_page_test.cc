// Decoding and encoding by code page: our tables against the host's, all 256 bytes of windows-1252,
// and the ways in which input can be wrong.
#include "platform/text/code_page.h"

#include "platform/text/unicode.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <vector>

#if __has_include(<iconv.h>)
#include <iconv.h>
#define KX_TEST_HAS_ICONV 1
#endif

namespace kx::text {
namespace {

using namespace std::string_literals;

CodePage Page(std::string_view name) {
  const std::optional<CodePage> page = FindCodePage(name);
  if (!page) throw std::invalid_argument(std::string(name));
  return *page;
}

std::string AllBytes() {
  std::string bytes;
  for (int b = 0; b < 256; ++b) bytes.push_back(static_cast<char>(b));
  return bytes;
}

constexpr int kSingleBytePages[] = {874,   1250,  1251,  1252,  1253,  1254,  1255,  1256,  1257,
                                    1258,  28591, 28592, 28593, 28594, 28595, 28596, 28597, 28598,
                                    28599, 28600, 28601, 28603, 28604, 28605, 28606, 20127};

TEST(Windows1252, BringsBackAll256Bytes) {
  const std::string bytes = AllBytes();
  EXPECT_EQ(Windows1252().Encode(Windows1252().Decode(bytes)), bytes);
  const StrictDecoding strict = Windows1252().DecodeStrict(bytes);
  EXPECT_FALSE(strict.badOffset.has_value());
  EXPECT_EQ(Windows1252().Encode(strict.text), bytes);
}

TEST(Windows1252, MapsFiveBytesToTheControlsOfTheirNumber) {
  for (const int byte : {0x81, 0x8D, 0x8F, 0x90, 0x9D}) {
    EXPECT_EQ(Windows1252().CharacterOf(static_cast<std::uint8_t>(byte)),
              static_cast<char32_t>(byte));
  }
}

TEST(SingleBytePage, BringsBackEveryByteThatItDefines) {
  for (const int number : kSingleBytePages) {
    const std::optional<CodePage> page = FindCodePage(number);
    ASSERT_TRUE(page.has_value()) << number;
    EXPECT_TRUE(page->IsSingleByte());
    EXPECT_EQ(page->Number(), number);
    for (int b = 0; b < 256; ++b) {
      const std::string byte(1, static_cast<char>(b));
      const bool isDefined = page->CharacterOf(static_cast<std::uint8_t>(b)).has_value();
      const StrictDecoding strict = page->DecodeStrict(byte);
      EXPECT_EQ(strict.badOffset.has_value(), !isDefined) << number << " " << b;
      if (b < 0x80) {
        EXPECT_EQ(strict.text, byte) << number;
      }
      if (!isDefined) continue;
      EXPECT_EQ(page->Encode(strict.text), byte) << number << " " << b;
      EXPECT_EQ(page->Decode(byte), strict.text) << number << " " << b;
    }
  }
}

struct ByteCase {
  const char* page;
  int byte;
  char32_t character;  // 0 where undefined
};

constexpr ByteCase kBytes[] = {
    {"windows-1252", 0x80, 0x20AC}, {"windows-1252", 0xE9, 0xE9},  {"windows-1250", 0xB9, 0x105},
    {"windows-1250", 0x81, 0},      {"windows-1251", 0xC0, 0x410}, {"windows-1251", 0x98, 0},
    {"windows-1253", 0xC1, 0x391},  {"windows-1253", 0xAA, 0},     {"windows-1254", 0xDD, 0x130},
    {"windows-1255", 0xE0, 0x5D0},  {"windows-1256", 0xC7, 0x627}, {"windows-1257", 0xE0, 0x105},
    {"windows-1258", 0xD2, 0x309},  {"windows-874", 0xA1, 0xE01},  {"windows-874", 0xDB, 0},
    {"iso-8859-1", 0x80, 0x80},     {"iso-8859-1", 0xFF, 0xFF},    {"iso-8859-2", 0xB1, 0x105},
    {"iso-8859-3", 0xA5, 0},        {"iso-8859-5", 0xB0, 0x410},   {"iso-8859-6", 0xA1, 0},
    {"iso-8859-7", 0xC1, 0x391},    {"iso-8859-8", 0xE0, 0x5D0},   {"iso-8859-9", 0xDD, 0x130},
    {"iso-8859-15", 0xA4, 0x20AC},  {"us-ascii", 0x7F, 0x7F},      {"us-ascii", 0x80, 0},
    {"us-ascii", 0xFF, 0},
};

TEST(SingleBytePage, MapsBytesAsPublished) {
  for (const ByteCase& row : kBytes) {
    SCOPED_TRACE(std::string(row.page) + " " + std::to_string(row.byte));
    const auto character = Page(row.page).CharacterOf(static_cast<std::uint8_t>(row.byte));
    EXPECT_EQ(character.value_or(0), row.character);
  }
}

#ifdef KX_TEST_HAS_ICONV
// The host's table for one byte; nothing where it refuses.
std::optional<std::string> HostDecode(iconv_t converter, char byte) {
  char output[8] = {};
  char* in = &byte;
  char* out = output;
  std::size_t inLeft = 1;
  std::size_t outLeft = sizeof output;
  iconv(converter, nullptr, nullptr, nullptr, nullptr);
  if (iconv(converter, &in, &inLeft, &out, &outLeft) == static_cast<std::size_t>(-1)) return {};
  iconv(converter, nullptr, nullptr, &out, &outLeft);
  return std::string(output, out);
}

bool IsControlOf1252(int number, int byte) {
  return number == 1252 &&
         Windows1252().CharacterOf(static_cast<std::uint8_t>(byte)) == static_cast<char32_t>(byte);
}

TEST(SingleBytePage, AgreesWithTheHostsTables) {
  for (const int number : kSingleBytePages) {
    const std::string name(FindCodePage(number)->Name());
    const std::string hostName = number < 2000 ? "CP" + std::to_string(number) : name;
    // NOLINTNEXTLINE(misc-misplaced-const): the handle itself does not change
    const iconv_t converter = iconv_open("UTF-8", hostName.c_str());
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the interface's own mark of failure
    if (converter == reinterpret_cast<iconv_t>(-1)) GTEST_SKIP() << "the host lacks " << hostName;
    for (int b = 0x80; b < 0x100; ++b) {
      if (IsControlOf1252(number, b)) continue;
      const std::optional<std::string> expected = HostDecode(converter, static_cast<char>(b));
      const StrictDecoding ours =
          FindCodePage(number)->DecodeStrict(std::string(1, static_cast<char>(b)));
      EXPECT_EQ(!ours.badOffset, expected.has_value()) << name << " " << b;
      if (expected) {
        EXPECT_EQ(ours.text, *expected) << name << " " << b;
      }
    }
    iconv_close(converter);
  }
}
#endif

struct StrictCase {
  const char* page;
  std::string bytes;
  std::string text;
  std::optional<std::size_t> badOffset;
  const char* why;
};

const StrictCase kStrict[] = {
    {"us-ascii", "abc", "abc", std::nullopt, "plain"},
    {"us-ascii",
     "ab\xE9"
     "c",
     "ab", 2, "a byte above 127"},
    {"windows-1251", "a\x98z", "a", 1, "a byte that the page leaves undefined"},
    {"utf-8", "a\xC3\xA9", "a\xC3\xA9", std::nullopt, "well formed"},
    {"utf-8", "a\xC3z", "a", 1, "a cut sequence"},
    {"utf-8",
     "\xEF\xBB\xBF"
     "a",
     "\xEF\xBB\xBF"
     "a",
     std::nullopt, "the mark is kept"},
    {"utf-16", "a\0\xAC\x20"s, "a\xE2\x82\xAC", std::nullopt, "low byte first"},
    {"utf-16be", "\0a\x20\xAC"s, "a\xE2\x82\xAC", std::nullopt, "high byte first"},
    {"utf-16", "\x3D\xD8\x00\xDE"s, "\xF0\x9F\x98\x80", std::nullopt, "a pair"},
    {"utf-16be", "\xD8\x3D\xDE\x00"s, "\xF0\x9F\x98\x80", std::nullopt, "a pair, high first"},
    {"utf-16", "a\0b"s, "a", 2, "half a unit at the end"},
    {"utf-16", "a\0\x3D\xD8"s, "a", 2, "half a pair at the end"},
    {"utf-16", "\x3D\xD8\x61\0"s, "", 0, "half a pair before another character"},
    {"utf-16", "\0\xDE\x61\0"s, "", 0, "the second half of a pair alone"},
};

TEST(DecodeStrict, StopsAtTheFirstBadByte) {
  for (const StrictCase& row : kStrict) {
    SCOPED_TRACE(row.why);
    const StrictDecoding result = Page(row.page).DecodeStrict(row.bytes);
    EXPECT_EQ(result.text, row.text);
    EXPECT_EQ(result.badOffset, row.badOffset);
  }
}

struct LenientCase {
  const char* page;
  std::string bytes;
  std::string text;
  const char* why;
};

const LenientCase kLenient[] = {
    {"us-ascii", "a\xE9z", "a\xEF\xBF\xBDz", "no table for the byte"},
    {"us-ascii", "a\x81z", "a\xEF\xBF\xBDz", "ASCII has no upper controls"},
    {"windows-1250", "a\x81z", "a\xC2\x81z", "a hole of a Windows page is a control"},
    {"windows-1253", "\xAA", "\xEF\xBF\xBD", "a hole beyond the controls"},
    {"utf-8", "a\xC3\xA9\xC3z\x80", "a\xC3\xA9\xEF\xBF\xBDz\xEF\xBF\xBD", "bad sequences"},
    {"utf-16", "\x3D\xD8\x61\0b"s,
     "\xEF\xBF\xBD"
     "a\xEF\xBF\xBD",
     "half a pair, half a unit"},
};

TEST(Decode, AlwaysGivesWellFormedText) {
  for (const LenientCase& row : kLenient) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(Page(row.page).Decode(row.bytes), row.text);
    EXPECT_TRUE(IsValidUtf8(row.text));
  }
}

TEST(Decode, KeepsTheUpperControlBytesOfEveryWindowsPage) {
  for (const int number : kSingleBytePages) {
    if (number > 2000) continue;
    const CodePage page = *FindCodePage(number);
    for (int b = 0x80; b < 0xA0; ++b) {
      const std::string byte(1, static_cast<char>(b));
      EXPECT_EQ(page.Encode(page.Decode(byte)), byte) << number << " " << b;
    }
  }
}

struct EncodeCase {
  const char* page;
  std::string text;
  std::string bytes;
  const char* why;
};

const EncodeCase kEncode[] = {
    {"windows-1252", "\xE2\x82\xAC\xC3\xA9", "\x80\xE9", "characters of the page"},
    {"windows-1252", "\xC2\x81", "\x81", "a control in a hole"},
    {"windows-1252", "\xC2\x80", "?", "the control whose byte means another character"},
    {"windows-1252", "\xD0\x96", "?", "Cyrillic is not in the page"},
    {"windows-1252", "\xF0\x9F\x98\x80x", "?x", "one mark for a character beyond the basic plane"},
    {"windows-1252", "\xC4\x81", "?", "no look-alike is taken"},
    {"windows-1252", "a\xFFz", "a?z", "an ill-formed byte"},
    {"windows-1250", "\xC2\x81", "\x81", "a control in a hole of another Windows page"},
    {"iso-8859-1", "\xE2\x82\xAC\xC3\xBF", "?\xFF", "no euro in Latin-1"},
    {"iso-8859-15", "\xE2\x82\xAC", "\xA4", "but in Latin-9"},
    {"us-ascii", "a\xC3\xA9\xC2\x81", "a??", "nothing above 127"},
    {"utf-8", "a\xE2\x82\xAC", "a\xE2\x82\xAC", "as it is"},
    {"utf-8", "a\xFF", "a\xEF\xBF\xBD", "ill-formed text is made well formed"},
    {"utf-16", "a\xF0\x9F\x98\x80", "a\0\x3D\xD8\0\xDE"s, "low byte first, no mark"},
    {"utf-16be", "a\xF0\x9F\x98\x80", "\0a\xD8\x3D\xDE\0"s, "high byte first"},
};

TEST(Encode, PutsAQuestionMarkForWhatThePageLacks) {
  for (const EncodeCase& row : kEncode) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(Page(row.page).Encode(row.text), row.bytes);
  }
}

TEST(CanEncode, TellsWhatEncodeWouldReplace) {
  EXPECT_TRUE(Page("windows-1252").CanEncode(0x20AC));
  EXPECT_FALSE(Page("windows-1252").CanEncode(0x416));
  EXPECT_FALSE(Page("us-ascii").CanEncode(0x80));
  EXPECT_TRUE(Page("utf-8").CanEncode(0x1F600));
  EXPECT_FALSE(Page("utf-8").CanEncode(0xD800)) << "a surrogate is no character";
}

// A host with one encoding: bytes are shifted by one; 'X' in bytes and "!" in text do not exist.
class ShiftingHost : public HostCodec {
 public:
  bool Knows(std::string_view name) const override {
    asked.emplace_back(name);
    return EqualsAsciiCaseless(name, "x-shifted") || name == "KOI8-R";
  }
  HostConversion ToUtf8(std::string_view /*name*/, std::string_view bytes) const override {
    return Shift(bytes, 1, 'X');
  }
  HostConversion FromUtf8(std::string_view /*name*/, std::string_view text) const override {
    return Shift(text, -1, '!');
  }

  mutable std::vector<std::string> asked;

 private:
  static HostConversion Shift(std::string_view input, int by, char bad) {
    HostConversion result;
    const std::size_t end = std::min(input.find(bad), input.size());
    for (const char c : input.substr(0, end)) result.output.push_back(static_cast<char>(c + by));
    if (end < input.size()) result.badOffset = end;
    return result;
  }
};

TEST(HostPage, ConvertsThroughTheHost) {
  const ShiftingHost host;
  const std::optional<CodePage> page = FindCodePage("X-Shifted", &host);
  ASSERT_TRUE(page.has_value());
  EXPECT_EQ(page->Number(), 0);
  EXPECT_EQ(page->Name(), "X-Shifted");
  EXPECT_FALSE(page->IsSingleByte());
  EXPECT_EQ(page->Decode("abc"), "bcd");
  EXPECT_EQ(page->Encode("bcd"), "abc");
  EXPECT_FALSE(page->DecodeStrict("abc").badOffset.has_value());
}

TEST(HostPage, GoesOnBehindWhatTheHostRefuses) {
  const ShiftingHost host;
  const CodePage page = *FindCodePage("x-shifted", &host);
  EXPECT_EQ(page.Decode("aXbX"),
            "b\xEF\xBF\xBD"
            "c\xEF\xBF\xBD");
  EXPECT_EQ(page.Encode("b!c!"), "a?b?");
  const StrictDecoding strict = page.DecodeStrict("abXc");
  EXPECT_EQ(strict.text, "bc");
  EXPECT_EQ(strict.badOffset, 2U);
  EXPECT_FALSE(page.CanEncode(U'!'));
  EXPECT_TRUE(page.CanEncode(U'b'));
}

TEST(HostPage, KnowsListedEncodingsByTheHostsName) {
  const ShiftingHost host;
  EXPECT_EQ(FindCodePage("koi8-r", &host)->Number(), 20866);
  EXPECT_EQ(FindCodePage(20866, &host)->Name(), "koi8-r");
  EXPECT_FALSE(FindCodePage("shift_jis", &host).has_value()) << "this host lacks it";
  EXPECT_FALSE(FindCodePage("koi8-r").has_value()) << "and without a host there is none";
}

TEST(HostPage, IsNeverAskedForOurOwnPagesNorForStrangeNames) {
  const ShiftingHost host;
  EXPECT_TRUE(FindCodePage("windows-1252", &host).has_value());
  for (const char* name : {"windows-936", "", "a/b", "x//TRANSLIT", "a b", "caf\xC3\xA9"}) {
    EXPECT_FALSE(FindCodePage(name, &host).has_value()) << name;
  }
  EXPECT_FALSE(FindCodePage(std::string(65, 'a'), &host).has_value()) << "longer than any name";
  EXPECT_TRUE(host.asked.empty());
}

TEST(FindCodePage, KnowsNumbers) {
  EXPECT_EQ(FindCodePage(65001)->Name(), "utf-8");
  EXPECT_EQ(FindCodePage(1201)->Name(), "utf-16be");
  EXPECT_EQ(FindCodePage(28605)->Name(), "iso-8859-15");
  EXPECT_FALSE(FindCodePage(1259).has_value());
  EXPECT_FALSE(FindCodePage(-1).has_value());
}

}  // namespace
}  // namespace kx::text
