// Writing a document as text and as bytes. See document.h.
//
// An encoding that lacks a character still saves it where a reference may stand: in the text and in
// the attribute values of elements. Names, comments, instructions and CDATA sections have no
// references, so there it is an error and never a question mark.
#include "platform/dom/document.h"
#include "platform/dom/dom_error.h"
#include "platform/dom/writer.h"
#include "platform/dom/xml_declaration.h"
#include "platform/text/code_page.h"
#include "platform/text/unicode.h"

#include <string>
#include <string_view>

namespace kx::dom {

namespace {

/// Puts references for what a code page lacks into the text of an element, as the writer gives it.
class ReferenceWriter {
 public:
  ReferenceWriter(const text::CodePage& page, std::string_view xml) : page_(page), xml_(xml) {}

  std::string Write() {
    while (at_ < xml_.size()) {
      if (xml_[at_] == '<') {
        CopyMarkup();
      } else {
        CopyCharacter(true);
      }
    }
    return std::move(out_);
  }
  /// All of it as something that has no references.
  std::string WritePlain() {
    CopyUntil(xml_.size());
    return std::move(out_);
  }

 private:
  void CopyMarkup() {
    const std::string_view rest = xml_.substr(at_);
    if (rest.substr(0, 4) == "<!--") return CopyThrough("-->", 4);
    if (rest.substr(0, 9) == "<![CDATA[") return CopyThrough("]]>", 9);
    if (rest.substr(0, 2) == "<?") return CopyThrough("?>", 2);
    bool quoted = false;
    while (xml_[at_] != '>' || quoted) {
      if (xml_[at_] == '"') quoted = !quoted;
      CopyCharacter(quoted);
    }
    CopyCharacter(false);
  }
  void CopyThrough(std::string_view end, std::size_t opening) {
    CopyUntil(xml_.find(end, at_ + opening) + end.size());
  }
  void CopyUntil(std::size_t end) {
    while (at_ < end) CopyCharacter(false);
  }
  void CopyCharacter(bool mayRefer) {
    const text::Utf8Char c = text::DecodeUtf8(xml_, at_);
    if (c.codePoint < 0x80 || page_.CanEncode(c.codePoint)) {
      out_.append(xml_.substr(at_, c.length));
    } else if (mayRefer) {
      out_.append("&#").append(std::to_string(static_cast<unsigned>(c.codePoint))).append(";");
    } else {
      RaiseDomFailure(ParseCode::kBadCharInText);
    }
    at_ += c.length;
  }

  const text::CodePage& page_;
  std::string_view xml_;
  std::size_t at_ = 0;
  std::string out_;
};

bool IsUnicode(const text::CodePage& page) {
  return page.Number() == text::kCodePageUtf8 || page.Number() == text::kCodePageUtf16Le ||
         page.Number() == text::kCodePageUtf16Be;
}

std::string DeclaredEncodingOf(const Cursor& document) {
  const Cursor first = document.FirstChild();
  if (!IsXmlDeclaration(first)) return {};
  const Cursor encoding = first.FindAttribute("encoding");
  return encoding ? encoding.TextContent() : std::string();
}

// The document with references for the characters that the page lacks.
std::string TextFor(const text::CodePage& page, const Cursor& document) {
  std::string text;
  for (Cursor at = document.FirstChild(); at; at = at.Next()) {
    const std::string xml = WriteXml(at, DeclaredEncoding::kKeep);
    ReferenceWriter writer(page, xml);
    text += at.IsElement() ? writer.Write() : writer.WritePlain();
    text += "\r\n";
  }
  return text;
}

}  // namespace

std::string Document::SaveText() const {
  return WriteXml(Cursor(&Data(), kDocumentNode), DeclaredEncoding::kKeep);
}

std::string Document::SaveBytes() const {
  const Cursor document(&Data(), kDocumentNode);
  const std::string name = DeclaredEncodingOf(document);
  if (name.empty()) return SaveText();
  const auto page = text::FindCodePage(name, Impl().settings.codec);
  if (!page) RaiseDomFailure(ParseCode::kUnknownEncoding);
  std::string text = SaveText();
  if (page->Number() == text::kCodePageUtf8) return text;
  if (IsUnicode(*page)) return page->Encode("\xEF\xBB\xBF" + text);
  return page->Encode(text::IsAscii(text) ? text : TextFor(*page, document));
}

}  // namespace kx::dom
