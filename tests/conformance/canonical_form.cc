// See canonical_form.h. The forms, as the suite's list of tests defines them:
//   CanonXML  ::= Pi* element Pi*
//   CanonXML2 ::= DTD2? CanonXML
//   DTD2      ::= '<!DOCTYPE' S name S '[' #xA Notations ']>' #xA
#include "conformance/canonical_form.h"

#include "platform/dom/cursor.h"
#include "platform/dom/dtd.h"
#include "support/tree_walk.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

namespace kx::test {

namespace {

using dom::Cursor;
using dom::NodeType;

void AppendDataCharacters(std::string_view text, std::string& out) {
  for (const char c : text) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      case '\t':
        out += "&#9;";
        break;
      case '\n':
        out += "&#10;";
        break;
      case '\r':
        out += "&#13;";
        break;
      default:
        out += c;
    }
  }
}

void AppendStartTag(const Cursor& element, std::string& out) {
  std::vector<std::pair<std::string_view, std::string>> attributes;
  for (Cursor at = element.FirstAttribute(); at; at = at.Next()) {
    attributes.emplace_back(at.QualifiedName(), at.TextContent());
  }
  std::sort(attributes.begin(), attributes.end());
  out += '<';
  out += element.QualifiedName();
  for (const auto& [name, value] : attributes) {
    out += ' ';
    out += name;
    out += "=\"";
    AppendDataCharacters(value, out);
    out += '"';
  }
  out += '>';
}

void AppendInstruction(std::string_view target, std::string_view data, std::string& out) {
  if (target == "xml") return;  // the XML declaration
  out += "<?";
  out += target;
  out += ' ';
  out += data;
  out += "?>";
}

void Enter(const Cursor& node, std::string& out) {
  switch (node.Type()) {
    case NodeType::kElement:
      AppendStartTag(node, out);
      break;
    case NodeType::kText:
    case NodeType::kCData:
      AppendDataCharacters(node.OwnText(), out);
      break;
    case NodeType::kProcessingInstruction:
      AppendInstruction(node.QualifiedName(), node.OwnText(), out);
      break;
    default:
      break;  // comments say nothing; what an entity stands for is below its reference
  }
}

void Leave(const Cursor& node, std::string& out) {
  if (!node.IsElement()) return;
  out += "</";
  out += node.QualifiedName();
  out += '>';
}

std::string NotationText(const dom::NotationDeclaration& notation) {
  std::string out = "<!NOTATION " + notation.name;
  if (notation.hasPublicId) out += " PUBLIC '" + notation.publicId + "'";
  if (notation.hasSystemId) {
    out += notation.hasPublicId ? " '" : " SYSTEM '";
    out += notation.systemId + "'";
  }
  return out + ">\n";
}

void AppendNotations(const dom::Dtd& dtd, std::string& out) {
  std::vector<std::string> declarations;
  for (const dom::NotationDeclaration& notation : dtd.notations) {
    declarations.push_back(NotationText(notation));
  }
  if (declarations.empty()) return;
  std::sort(declarations.begin(), declarations.end());
  out += "<!DOCTYPE " + dtd.name + " [\n";
  for (const std::string& declaration : declarations) out += declaration;
  out += "]>\n";
}

}  // namespace

std::string CanonicalForm(const dom::DocumentData& document, Notations notations) {
  std::string out;
  if (const dom::Dtd* dtd = document.DocumentType(); dtd != nullptr) {
    for (const dom::DtdInstruction& instruction : dtd->instructions) {
      AppendInstruction(instruction.target, instruction.data, out);
    }
    if (notations == Notations::kDeclare) AppendNotations(*dtd, out);
  }
  WalkBelow(
      Cursor(&document, dom::kDocumentNode), [&out](const Cursor& node) { Enter(node, out); },
      [&out](const Cursor& node) { Leave(node, out); });
  return out;
}

}  // namespace kx::test
