// Our parser's reading, taken from the tree that it builds.
#include "differential/neutral_tree.h"
#include "platform/dom/cursor.h"
#include "platform/dom/parser.h"
#include "platform/host/system_codec.h"
#include "support/tree_walk.h"

namespace kx::test {

namespace {

using dom::Cursor;
using dom::NodeType;

NeutralTree::Name NameOf(const Cursor& node) {
  return {std::string(node.NamespaceUri()), std::string(node.LocalName()),
          std::string(node.Prefix())};
}

void AddAttribute(const Cursor& attribute, NeutralTree& tree) {
  const std::string value = attribute.TextContent();
  const std::string_view name = attribute.QualifiedName();
  if (name == "xmlns") {
    tree.Declaration("", value);
  } else if (name.starts_with("xmlns:")) {
    tree.Declaration(name.substr(6), value);
  } else {
    tree.Attribute(NameOf(attribute), value);
  }
}

void AddElement(const Cursor& element, NeutralTree& tree) {
  tree.StartElement(NameOf(element));
  for (Cursor at = element.FirstAttribute(); at; at = at.Next()) AddAttribute(at, tree);
}

void Enter(const Cursor& node, NeutralTree& tree) {
  switch (node.Type()) {
    case NodeType::kElement:
      AddElement(node, tree);
      break;
    case NodeType::kText:
    case NodeType::kCData:
      tree.Text(node.OwnText());
      break;
    case NodeType::kComment:
      tree.Comment(node.OwnText());
      break;
    case NodeType::kProcessingInstruction:
      if (node.QualifiedName() != "xml") tree.Instruction(node.QualifiedName(), node.OwnText());
      break;
    default:
      break;
  }
}

}  // namespace

namespace {

Reading Read(std::string_view bytes, dom::AttributeValues values) {
  dom::ParseOptions options;
  options.attributeValues = values;
  options.undeclaredEntities = dom::UndeclaredEntities::kSkipWhereXmlAllows;
  options.codec = &host::SystemCodec();
  dom::DocumentData document(nullptr);
  dom::ParseError error;
  Reading reading;
  reading.accepted = ParseBytes(document, bytes, options, error);
  if (!reading.accepted) {
    reading.code = static_cast<std::uint32_t>(error.code);
    const std::string reason = error.reason.substr(0, error.reason.find('\r'));
    reading.message =
        reason + " at " + std::to_string(error.line) + ":" + std::to_string(error.linePos);
    return reading;
  }
  NeutralTree tree;
  WalkBelow(
      Cursor(&document, dom::kDocumentNode), [&tree](const Cursor& node) { Enter(node, tree); },
      [&tree](const Cursor& node) {
        if (node.IsElement()) tree.EndElement();
      });
  reading.tree = tree.Take();
  return reading;
}

}  // namespace

Reading ReadWithOurs(std::string_view bytes) {
  return Read(bytes, dom::AttributeValues::kNormalised);
}

Reading ReadAsWritten(std::string_view bytes) {
  return Read(bytes, dom::AttributeValues::kAsWritten);
}

}  // namespace kx::test
