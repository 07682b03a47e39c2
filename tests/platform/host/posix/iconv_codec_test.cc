// Encodings through iconv, alone and as the code pages use it.
#include "platform/host/posix/iconv_codec.h"

#include "platform/host/system_codec.h"
#include "platform/text/code_page.h"

#include <gtest/gtest.h>
#include <string>

namespace kx::host {
namespace {

TEST(IconvCodec, KnowsWhatTheSystemConverts) {
  const IconvCodec codec;
  EXPECT_TRUE(codec.Knows("shift_jis"));
  EXPECT_TRUE(codec.Knows("KOI8-R"));
  EXPECT_FALSE(codec.Knows("no-such-encoding"));
  EXPECT_FALSE(codec.Knows(""));
  EXPECT_FALSE(codec.Knows("koi8-r//TRANSLIT")) << "options are no names";
}

TEST(IconvCodec, ConvertsBothWays) {
  const IconvCodec codec;
  const text::HostConversion decoded = codec.ToUtf8("shift_jis", "a\x93\xFA\x96\x7B");
  EXPECT_EQ(decoded.output, "a\xE6\x97\xA5\xE6\x9C\xAC");
  EXPECT_EQ(decoded.badOffset, std::nullopt);
  const text::HostConversion encoded = codec.FromUtf8("shift_jis", decoded.output);
  EXPECT_EQ(encoded.output, "a\x93\xFA\x96\x7B");
  EXPECT_EQ(encoded.badOffset, std::nullopt);
}

TEST(IconvCodec, StopsAtTheFirstBadSequence) {
  const IconvCodec codec;
  const text::HostConversion invalid = codec.ToUtf8("shift_jis", "ab\xFF\xFFz");
  EXPECT_EQ(invalid.output, "ab");
  EXPECT_EQ(invalid.badOffset, 2U);
  const text::HostConversion cutOff = codec.ToUtf8("shift_jis", "ab\x93");
  EXPECT_EQ(cutOff.output, "ab");
  EXPECT_EQ(cutOff.badOffset, 2U);
  const text::HostConversion lacking = codec.FromUtf8("koi8-r", "ab\xE6\x97\xA5");
  EXPECT_EQ(lacking.output, "ab") << "nothing is transliterated";
  EXPECT_EQ(lacking.badOffset, 2U);
}

TEST(IconvCodec, RefusesEverythingOfAnUnknownEncoding) {
  const IconvCodec codec;
  EXPECT_EQ(codec.ToUtf8("no-such-encoding", "x").badOffset, 0U);
  EXPECT_EQ(codec.FromUtf8("no/such", "x").badOffset, 0U);
}

TEST(IconvCodec, ReturnsToTheInitialStateAtTheEnd) {
  const IconvCodec codec;
  const text::HostConversion encoded = codec.FromUtf8("iso-2022-jp", "\xE6\x97\xA5");
  EXPECT_EQ(encoded.output, "\x1B$BF|\x1B(B");
}

TEST(IconvCodec, ConvertsMoreThanABuffer) {
  const IconvCodec codec;
  std::string bytes;
  std::string text;
  for (int i = 0; i < 20000; ++i) {
    bytes += "\x93\xFA";
    text += "\xE6\x97\xA5";
  }
  EXPECT_EQ(codec.ToUtf8("shift_jis", bytes).output, text);
  EXPECT_EQ(codec.FromUtf8("shift_jis", text).output, bytes);
}

TEST(SystemCodec, ServesTheCodePages) {
  const auto page = text::FindCodePage("shift_jis", &SystemCodec());
  ASSERT_TRUE(page.has_value());
  EXPECT_EQ(page->Decode("\x93\xFA"), "\xE6\x97\xA5");
  EXPECT_FALSE(text::FindCodePage("no-such-encoding", &SystemCodec()).has_value());
}

}  // namespace
}  // namespace kx::host
