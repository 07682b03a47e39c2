// See xml_bytes.h.
#include "platform/dom/xml_bytes.h"

#include "platform/text/code_page.h"
#include "platform/text/unicode.h"

namespace kx::dom {

namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

bool StartsWith(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

bool IsUtf16(const text::CodePage& page) {
  return page.Number() == text::kCodePageUtf16Le || page.Number() == text::kCodePageUtf16Be;
}

void Refuse(XmlText& result, ParseCode code, std::string_view text, std::string_view name) {
  const std::size_t at = text.find("encoding=");
  result.refusal = code;
  result.refusedAt = at < text.size() ? at : static_cast<std::size_t>(name.data() - text.data());
}

void Convert(XmlText& result, text::StrictDecoding decoded) {
  result.isConverted = true;
  result.converted = std::move(decoded.text);
}

XmlText DecodeUtf16(std::string_view bytes, int number, const text::HostCodec* codec) {
  text::StrictDecoding decoded = text::FindCodePage(number)->DecodeStrict(bytes);
  XmlText result;
  if (decoded.badOffset) {
    result.tail = *decoded.badOffset + 4 > bytes.size() ? ParseCode::kTruncatedCharacter
                                                        : ParseCode::kBadCharInText;
  }
  Convert(result, std::move(decoded));
  const std::string_view name = DeclaredEncoding(result.converted);
  const auto page = name.empty() ? std::nullopt : text::FindCodePage(name, codec);
  if (page && !IsUtf16(*page)) {
    Refuse(result, ParseCode::kEncodingSwitch, result.converted, name);
  }
  return result;
}

}  // namespace

std::string_view DeclaredEncoding(std::string_view text) {
  constexpr std::string_view kStart = "<?xml";
  const bool declared = StartsWith(text, kStart) && text.size() > kStart.size() &&
                        std::string_view(" \t\r\n").find(text[kStart.size()]) != text.npos;
  if (!declared) return {};  // another instruction's name may begin with "xml"
  const std::string_view declaration = text.substr(0, text.find("?>"));
  std::size_t at = declaration.find("encoding");
  if (at == std::string_view::npos) return {};
  at = declaration.find_first_of("\"'", at);
  if (at == std::string_view::npos) return {};
  const std::size_t close = declaration.find(declaration[at], at + 1);
  return close == std::string_view::npos ? std::string_view{}
                                         : declaration.substr(at + 1, close - at - 1);
}

XmlText DecodeXml(std::string_view bytes, const text::HostCodec* codec) {
  if (StartsWith(bytes, "\xFF\xFE")) {
    return DecodeUtf16(bytes.substr(2), text::kCodePageUtf16Le, codec);
  }
  if (StartsWith(bytes, "\xFE\xFF")) {
    return DecodeUtf16(bytes.substr(2), text::kCodePageUtf16Be, codec);
  }
  const bool marked = StartsWith(bytes, kUtf8Mark);
  if (marked) bytes.remove_prefix(kUtf8Mark.size());
  XmlText result;
  result.unchanged = bytes;
  const std::string_view name = DeclaredEncoding(bytes);
  if (name.empty() || text::EqualsAsciiCaseless(name, "utf-8")) return result;
  const auto page = text::FindCodePage(name, codec);
  if (!page) {
    Refuse(result, ParseCode::kUnknownEncoding, bytes, name);
  } else if (IsUtf16(*page) || (marked && page->Number() != text::kCodePageUtf8)) {
    Refuse(result, ParseCode::kEncodingSwitch, bytes, name);
  } else {
    text::StrictDecoding decoded = page->DecodeStrict(bytes);
    if (decoded.badOffset) result.tail = ParseCode::kBadCharInText;
    Convert(result, std::move(decoded));
  }
  return result;
}

}  // namespace kx::dom
