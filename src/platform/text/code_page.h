// Code pages by number and by name: windows-1250 to 1258 and 874, iso-8859-1 to 16, us-ascii,
// UTF-8 and both ends of UTF-16 from tables of ours; any other through a HostCodec.
//
// Two ways to decode. The lenient one serves files whose bytes must survive: it always gives text.
// The strict one serves the parser: it stops at the first byte that the page does not define.
// windows-1252 defines all 256 bytes: 81, 8D, 8F, 90 and 9D are the control characters of the same
// number, so any bytes come back unchanged from Decode and Encode.
#pragma once

#include "platform/text/host_codec.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace kx::text {

inline constexpr int kCodePageUtf8 = 65001;
inline constexpr int kCodePageUtf16Le = 1200;
inline constexpr int kCodePageUtf16Be = 1201;
inline constexpr int kCodePageAscii = 20127;
inline constexpr int kCodePageWindows1252 = 1252;

struct CodePageEntry;
struct SingleByteTable;

/// The result of strict decoding: the text before the first bad byte, and that byte's offset.
struct StrictDecoding {
  std::string text;                      ///< UTF-8
  std::optional<std::size_t> badOffset;  ///< nothing when every byte was good
};

/// One encoding. A value: cheap to copy. A page of the host refers to its HostCodec, which must
/// outlive it. Usable from any thread.
class CodePage {
 public:
  /// The number by which the page is known, 0 for an encoding of the host that has none.
  [[nodiscard]] int Number() const noexcept;
  /// The preferred label, such as "windows-1252" or "utf-8".
  [[nodiscard]] std::string_view Name() const noexcept;
  /// True when each byte is one character; these pages also define every byte below 128 as ASCII.
  [[nodiscard]] bool IsSingleByte() const noexcept;

  /// Bytes to UTF-8. An undefined byte 80 to 9F of a Windows page is the control character of
  /// the same number; any other undefined or invalid sequence is U+FFFD. No byte-order mark is
  /// looked for or removed.
  [[nodiscard]] std::string Decode(std::string_view bytes) const;

  /// Bytes to UTF-8, up to the first byte that the page does not define or that is ill formed.
  [[nodiscard]] StrictDecoding DecodeStrict(std::string_view bytes) const;

  /// UTF-8 to bytes, without a byte-order mark; "?" for each character that the page lacks.
  [[nodiscard]] std::string Encode(std::string_view text) const;

  /// True when the page has the character, so that Encode would not put "?" for it.
  [[nodiscard]] bool CanEncode(char32_t codePoint) const;

  /// The character of one byte of a single-byte page, or nothing where it is undefined.
  [[nodiscard]] std::optional<char32_t> CharacterOf(std::uint8_t byte) const noexcept;

 private:
  friend std::optional<CodePage> FindCodePage(std::string_view name, const HostCodec* host);
  friend std::optional<CodePage> FindCodePage(int number, const HostCodec* host);

  CodePage(const CodePageEntry* entry, const SingleByteTable* table, std::string hostName,
           const HostCodec* host)
      : entry_(entry), table_(table), hostName_(std::move(hostName)), host_(host) {}

  static std::optional<CodePage> FromEntry(const CodePageEntry& entry, const HostCodec* host);
  static std::optional<CodePage> FromLabel(std::string_view name, const HostCodec* host);

  const CodePageEntry* entry_;    // null for an encoding of the host outside our list
  const SingleByteTable* table_;  // set for a single-byte page
  std::string hostName_;          // the host's name for it; empty for our own pages
  const HostCodec* host_;         // set for an encoding of the host
};

/// The encoding of that name, in any case, as an XML declaration or a setting spells it; nothing
/// when neither this folder nor `host` (which may be null) knows it.
/// Note: "utf-16" is little-endian; "windows-936" is not a name of anything.
[[nodiscard]] std::optional<CodePage> FindCodePage(std::string_view name,
                                                   const HostCodec* host = nullptr);

/// The encoding of that number: 65001, 1200, 1201, 874, 1250 to 1258, 20127, 28590 + n for
/// iso-8859-n, and those of the host that have one (932, 936, 949, 950, 866, 20866, ...).
[[nodiscard]] std::optional<CodePage> FindCodePage(int number, const HostCodec* host = nullptr);

/// The page that files and 8-bit strings use unless set otherwise.
[[nodiscard]] CodePage Windows1252();

}  // namespace kx::text
