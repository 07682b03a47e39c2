// From bytes to text, for callers that read messages from elsewhere than files.
#pragma once

#include "kxmessage/export.h"

#include <string>
#include <string_view>

namespace kx {

/// The text of an XML document that was received as bytes, UTF-8 without byte-order mark: decoded
/// as XML 1.0 says, by byte-order mark, else by the encoding that the document declares, else as
/// UTF-8. What KXMessage::LoadMessageFromString takes.
/// Raises: kxMsgErrorLoadingXML (a ParseError) for an encoding that is not known or that the
/// byte-order mark contradicts, and for bytes that the encoding does not define.
/// Note: bytes that are UTF-8 by their mark or declaration come back as they are; loading them
/// finds what is ill formed. Message files are not read so, but by a code page: see DecodeCodePage.
[[nodiscard]] KX_EXPORT std::string DecodeXmlBytes(std::string_view bytes);

/// The encoding by which DecodeXmlBytes reads `bytes`: "utf-8" or "utf-16" by a byte-order mark,
/// else what the document declares, as it is spelled, else "".
[[nodiscard]] KX_EXPORT std::string XmlEncodingOf(std::string_view bytes);

/// The text of bytes of an 8-bit code page, given by its number, as KXMessage::LoadMessage reads
/// files; every sequence of bytes has one. Raises: 5 for a code page that is not known.
[[nodiscard]] KX_EXPORT std::string DecodeCodePage(std::string_view bytes, int codePage);

/// The reverse, as KXMessage::SaveMessage writes files: "?" for each character that the code page
/// lacks. Raises: 5 for a code page that is not known.
[[nodiscard]] KX_EXPORT std::string EncodeCodePage(std::string_view text, int codePage);

}  // namespace kx
