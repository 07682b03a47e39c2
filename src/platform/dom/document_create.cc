// Making nodes, and copying them from other documents. See document.h.
#include "kxmessage/variant.h"

#include "platform/dom/document.h"
#include "platform/dom/dom_error.h"
#include "platform/dom/node_rules.h"
#include "platform/dom/xml_declaration.h"
#include "platform/text/unicode.h"

#include <charconv>
#include <optional>
#include <string>

namespace kx::dom {

namespace {

bool MayBeCreated(NodeType type) {
  switch (type) {
    case NodeType::kElement:
    case NodeType::kAttribute:
    case NodeType::kText:
    case NodeType::kCData:
    case NodeType::kEntityReference:
    case NodeType::kProcessingInstruction:
    case NodeType::kComment:
    case NodeType::kDocumentFragment:
      return true;
    default:
      return false;
  }
}

bool NeedsName(NodeType type) {
  return type == NodeType::kElement || type == NodeType::kAttribute ||
         type == NodeType::kEntityReference || type == NodeType::kProcessingInstruction;
}

NodeType TypeOfNumber(std::int64_t number) {
  constexpr std::int64_t kLast = static_cast<std::int64_t>(NodeType::kNotation);
  if (number < 1 || number > kLast) RaiseDomArgument();
  return static_cast<NodeType>(number);
}

NodeType TypeOfText(std::string_view text) {
  std::int32_t number = 0;
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number);
  if (read.ec == std::errc() && read.ptr == end) return TypeOfNumber(number);
  for (int type = 1; type <= static_cast<int>(NodeType::kNotation); ++type) {
    const std::string_view name = NodeTypeName(static_cast<NodeType>(type));
    if (text::EqualsAsciiCaseless(name, text)) return static_cast<NodeType>(type);
  }
  RaiseDomArgument();
}

NodeType TypeOf(const Variant& type) {
  if (const std::string* text = type.IfText()) return TypeOfText(*text);
  if (!type.IsNumber() && !type.IsBoolean()) RaiseDomArgument();
  return TypeOfNumber(type.ToInteger());
}

/// The entity reference of a parsed document `<r>&e;</r>`, or nothing when it does not parse.
Cursor ParseReference(DocumentData& scratch, std::string_view doctype, std::string_view name,
                      const ParseOptions& options) {
  std::string document(doctype);
  document.append("<r>&").append(name).append(";</r>");
  ParseError error;
  if (!ParseText(scratch, document, options, error)) return {};
  return Cursor(&scratch, scratch.DocumentElement()).FirstChild();
}

}  // namespace

Node Document::NewNode(NodeType type, std::string_view name, std::string_view uri) const {
  DocumentData& data = *Editable().current;
  CheckCharacters(uri);
  const bool qualified = type == NodeType::kElement || type == NodeType::kAttribute;
  if (qualified) CheckQualifiedName(name);
  const std::string ownName(name);  // it may be a part of the names that are added to
  const NameId bound =
      name.empty() ? 0 : BindName(data, type, ownName, qualified ? uri : std::string_view());
  Node node(&data, data.NewNode(type, bound));
  if (type == NodeType::kAttribute && IsDeclarationName(ownName)) {
    data.Record(node.At().Id()).flags |= kNamespaceDeclaration;
  }
  return node;
}

Node Document::NewData(NodeType type, std::string_view data) const {
  Node node = NewNode(type, {}, {});
  node.SetText(data);
  return node;
}

Node Document::CreateNode(const Variant& type, std::string_view name, std::string_view uri) const {
  return CreateNode(TypeOf(type), name, uri);
}

Node Document::CreateNode(NodeType type, std::string_view name, std::string_view uri) const {
  if (!MayBeCreated(type)) RaiseDomArgument();
  if (!NeedsName(type)) return NewNode(type, {}, {});
  if (name.empty()) RaiseDomFailure(DomCode::kNameRequired);
  if (type == NodeType::kEntityReference) return CreateEntityReference(name);
  if (type == NodeType::kProcessingInstruction) {
    CheckTarget(name);
    return NewNode(type, name, {});
  }
  return NewNode(type, name, uri);
}

Node Document::CreateElement(std::string_view name) const {
  if (name.data() == nullptr) RaiseDomArgument();
  return CreateNode(NodeType::kElement, name, {});
}

Node Document::CreateAttribute(std::string_view name) const {
  if (name.data() == nullptr) RaiseDomArgument();
  return CreateNode(NodeType::kAttribute, name, {});
}

Node Document::CreateTextNode(std::string_view data) const {
  return NewData(NodeType::kText, data);
}

Node Document::CreateCDataSection(std::string_view data) const {
  return NewData(NodeType::kCData, data);
}

Node Document::CreateComment(std::string_view data) const {
  return NewData(NodeType::kComment, data);
}

Node Document::CreateProcessingInstruction(std::string_view target, std::string_view data) const {
  if (target.data() == nullptr) RaiseDomArgument();
  Node node = CreateNode(NodeType::kProcessingInstruction, target, {});
  node.SetText(data);
  return node;
}

Node Document::CreateEntityReference(std::string_view name) const {
  if (name.data() == nullptr) RaiseDomArgument();
  if (name.empty()) RaiseDomFailure(DomCode::kNameRequired);
  CheckEntityName(name);
  const Node doctype = Doctype();
  if (doctype) {
    DocumentData scratch(nullptr);
    const Cursor parsed = ParseReference(scratch, doctype.At().OwnText(), name, Options());
    DocumentData& data = *Editable().current;
    if (parsed && parsed.Type() == NodeType::kEntityReference) {
      return {&data, data.CopySubtree(scratch, parsed.Id(), true)};
    }
  }
  return NewNode(NodeType::kEntityReference, name, {});
}

Node Document::CreateDocumentFragment() const {
  return NewNode(NodeType::kDocumentFragment, {}, {});
}

Node Document::ImportNode(const Node& node, CloneDepth depth) const {
  if (!node) RaiseDomArgument();
  DocumentData& data = *Editable().current;
  const Cursor at = node.At();
  if (at.Type() == NodeType::kDocument || at.Type() == NodeType::kDocumentType) {
    RaiseDomFailure(DomCode::kBadNodeType, {NodeTypeCapitals(at.Type())});
  }
  if (IsInlineTextId(at.Id())) return CreateTextNode(at.OwnText());
  return {&data, data.CopySubtree(at.Data(), at.Id(), depth == CloneDepth::kDeep)};
}

}  // namespace kx::dom
