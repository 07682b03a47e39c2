// See xml_declaration.h.
#include "platform/dom/xml_declaration.h"

#include "platform/dom/dom_error.h"
#include "platform/dom/parser.h"

#include <string>

namespace kx::dom {

namespace {

// Parses a document that has just this declaration into `scratch`.
void ParseDeclaration(DocumentData& scratch, std::string_view text) {
  std::string document = "<?xml ";
  document.append(text).append("?><a/>");
  ParseError error;
  if (ParseText(scratch, document, ParseOptions(), error)) return;
  throw DomError(kStatusFail, std::string(kDomErrorSource), error.reason);
}

void AppendPseudoAttribute(std::string& out, std::string_view name, std::string_view value) {
  const char quote = value.find('"') == std::string_view::npos ? '"' : '\'';
  if (!out.empty()) out += ' ';
  out.append(name).append("=") += quote;
  out.append(value) += quote;
}

// The data of the declaration with `changed` given the value `text`, or left out when that is null.
std::string DataWith(const Cursor& declaration, const Cursor& changed,
                     const std::string_view* text) {
  std::string data;
  for (Cursor at = declaration.FirstAttribute(); at; at = at.Next()) {
    if (!(at == changed)) {
      AppendPseudoAttribute(data, at.QualifiedName(), at.TextContent());
    } else if (text != nullptr) {
      AppendPseudoAttribute(data, at.QualifiedName(), *text);
    }
  }
  return data;
}

void CheckDeclarationText(std::string_view text) {
  DocumentData scratch(nullptr);
  ParseDeclaration(scratch, text);
}

}  // namespace

bool IsXmlDeclaration(const Cursor& at) noexcept {
  return at && at.Type() == NodeType::kProcessingInstruction && at.QualifiedName() == "xml";
}

void SetXmlDeclaration(DocumentData& data, NodeId id, std::string_view text) {
  DocumentData scratch(nullptr);
  ParseDeclaration(scratch, text);
  while (data.Record(id).firstAttribute != kNoNode) {
    data.RemoveAttribute(data.Record(id).firstAttribute);
  }
  const Cursor parsed(&scratch, scratch.Record(kDocumentNode).first);
  for (Cursor at = parsed.FirstAttribute(); at; at = at.Next()) {
    const NameId name = data.Names().InternName(at.QualifiedName(), kNoUri);
    const NodeId attribute = data.NewNode(NodeType::kAttribute, name);
    data.SetOwnText(attribute, at.TextContent());
    data.AppendAttribute(id, attribute);
  }
  data.SetOwnText(id, parsed.OwnText());
}

void SetXmlDeclarationValue(DocumentData& data, NodeId attribute, std::string_view text) {
  const Cursor at(&data, attribute);
  const std::string declaration = DataWith(at.Parent(), at, &text);
  CheckDeclarationText(declaration);
  if (!at.HasWholeText()) data.RemoveChildren(attribute);
  data.SetOwnText(attribute, text);
  data.SetOwnText(at.Parent().Id(), declaration);
}

void RemoveXmlDeclarationAttribute(DocumentData& data, NodeId attribute) {
  const Cursor at(&data, attribute);
  const NodeId holder = at.Parent().Id();
  const std::string declaration = DataWith(at.Parent(), at, nullptr);
  CheckDeclarationText(declaration);
  data.RemoveAttribute(attribute);
  data.SetOwnText(holder, declaration);
}

}  // namespace kx::dom
