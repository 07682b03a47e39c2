// From the bytes of a document to its text, as XML 1.0, 4.3.3 says: by byte-order mark, else by the
// declared encoding, else as UTF-8. Nothing is parsed here.
#pragma once

#include "platform/dom/parse_error.h"
#include "platform/text/host_codec.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace kx::dom {

/// What the bytes of a document are as text. Refers to the bytes unless they had to be converted.
struct XmlText {
  /// UTF-8 without byte-order mark, as far as it could be decoded. Bytes that are UTF-8 already are
  /// not looked at: whoever reads the text finds what is ill formed in it.
  [[nodiscard]] std::string_view Text() const noexcept {
    return isConverted ? std::string_view(converted) : unchanged;
  }

  bool isConverted = false;
  std::string converted;
  std::string_view unchanged;
  /// Why the encoding itself is refused (kUnknownEncoding, kEncodingSwitch), with the offset of the
  /// declaration in Text(); then nothing was decoded by it.
  ParseCode refusal = ParseCode::kNone;
  std::size_t refusedAt = 0;
  /// What stands after Text() that the encoding does not define.
  ParseCode tail = ParseCode::kNone;
};

/// See above. `codec` knows the encodings beyond our own tables and may be null. A document without
/// byte-order mark cannot be UTF-16.
[[nodiscard]] XmlText DecodeXml(std::string_view bytes, const text::HostCodec* codec);

/// The encoding that an XML declaration at the start of `text` names; empty when there is none.
[[nodiscard]] std::string_view DeclaredEncoding(std::string_view text);

}  // namespace kx::dom
