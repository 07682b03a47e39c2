// See kxmessage/text.h.
#include "kxmessage/error_codes.h"
#include "kxmessage/text.h"

#include "core/load_error.h"
#include "platform/dom/parse_error.h"
#include "platform/dom/xml_bytes.h"
#include "platform/host/system_codec.h"
#include "platform/runtime/error.h"
#include "platform/text/code_page.h"

#include <optional>
#include <utility>

namespace kx {

namespace {

text::CodePage GetCodePage(int number) {
  std::optional<text::CodePage> page = text::FindCodePage(number, &host::SystemCodec());
  if (!page) {
    runtime::RaiseRuntimeError(runtime::kInvalidProcedureCall,
                               "There is no code page " + std::to_string(number) + ".");
  }
  return *std::move(page);
}

}  // namespace

std::string DecodeXmlBytes(std::string_view bytes) {
  dom::XmlText decoded = dom::DecodeXml(bytes, &host::SystemCodec());
  const bool refused = decoded.refusal != dom::ParseCode::kNone;
  if (refused || decoded.tail != dom::ParseCode::kNone) {
    dom::ParseError error;
    dom::SetParseError(error, refused ? decoded.refusal : decoded.tail);
    dom::SetParsePlace(error, decoded.Text(), refused ? decoded.refusedAt : decoded.Text().size());
    core::RaiseLoadError(kxMsgErrorLoadingXML, error);
  }
  return decoded.isConverted ? std::move(decoded.converted) : std::string(decoded.Text());
}

std::string XmlEncodingOf(std::string_view bytes) {
  if (bytes.starts_with("\xEF\xBB\xBF")) return "utf-8";
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) return "utf-16";
  return std::string(dom::DeclaredEncoding(bytes));
}

std::string DecodeCodePage(std::string_view bytes, int codePage) {
  return GetCodePage(codePage).Decode(bytes);
}

std::string EncodeCodePage(std::string_view text, int codePage) {
  return GetCodePage(codePage).Encode(text);
}

}  // namespace kx
