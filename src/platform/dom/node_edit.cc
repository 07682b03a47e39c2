// The edits of the tree and of values. See node.h; what an edit must keep to is in node_rules.h.
//
// Between the first change and the last nothing raises but std::bad_alloc. A node that is moved is
// held by a handle all the way, so that storage never takes it for garbage.
#include "platform/dom/document.h"
#include "platform/dom/document_impl.h"
#include "platform/dom/dom_error.h"
#include "platform/dom/node.h"
#include "platform/dom/node_rules.h"
#include "platform/dom/xml_declaration.h"

#include <string>

namespace kx::dom {

namespace {

// Takes `child` out of wherever it is and puts it below `parent`.
void MoveNode(DocumentData& data, NodeId parent, const Node& child, NodeId before) {
  DocumentData& source = child.Data();
  NodeId id = child.At().Id();
  if (source.Record(id).parent != kNoNode) source.RemoveChild(id);
  if (&source != &data) id = data.AdoptSubtree(source, id);
  data.InsertChild(parent, id, before);
}

// The same for what a caller names: of a fragment, its children.
void MoveNodes(DocumentData& data, NodeId parent, const Node& child, NodeId before) {
  if (child.Type() != NodeType::kDocumentFragment) {
    MoveNode(data, parent, child, before);
    return;
  }
  while (const Node first = child.FirstChild()) MoveNode(data, parent, first, before);
}

bool IsChildOf(const Cursor& child, const Cursor& parent) {
  return child.Type() != NodeType::kAttribute && child.Parent() == parent;
}

// Joins runs of texts among the children of `parent`; empty texts go.
void JoinTexts(DocumentData& data, NodeId parent) {
  const auto isText = [&data](NodeId id) {
    return id != kNoNode && data.Record(id).type == NodeType::kText;
  };
  const Cursor first = Cursor(&data, parent).FirstChild();
  NodeId at = IsInlineTextId(first.Id()) ? kNoNode : first.Id();
  while (at != kNoNode) {
    NodeId next = data.Record(at).next;
    if (isText(at)) {
      std::string joined;
      for (; isText(next); next = data.Record(at).next) {
        if (joined.empty()) joined = data.OwnText(at);
        joined += data.OwnText(next);
        data.RemoveChild(next);
      }
      if (!joined.empty()) data.SetOwnText(at, joined);
      if (data.OwnText(at).empty()) data.RemoveChild(at);
    }
    at = next;
  }
}

// A fragment keeps no text in its own record.
void SetFragmentText(DocumentData& data, NodeId fragment, std::string_view text) {
  if (text.empty()) return;
  const std::string own(text);  // it may be a part of what is collected
  const Node child(&data, data.NewNode(NodeType::kText, 0));
  data.SetOwnText(child.At().Id(), own);
  data.InsertChild(fragment, child.At().Id(), kNoNode);
}

}  // namespace

// Children ---------------------------------------------------------------------------------------

Node Node::InsertBefore(const Node& child, const Node& before) const {
  if (!child) RaiseDomArgument();
  DocumentData& data = Editable();
  child.Editable();
  const Cursor parent(&data, id_);
  CheckInsertion(parent, child.At(), {});
  if (before && !IsChildOf(before.At(), parent)) RaiseDomArgument(DomCode::kPositionNotAChild);
  if (child == before) return child;
  MoveNodes(data, id_, child, before ? before.At().Id() : kNoNode);
  return child;
}

Node Node::RemoveChild(const Node& child) const {
  DocumentData& data = Editable();
  const Cursor parent(&data, id_);
  if (!child || !IsChildOf(child.At(), parent)) RaiseDomArgument(DomCode::kNotAChild);
  if (child.Type() == NodeType::kDocumentType) {
    RaiseDomFailure(DomCode::kBadNodeType, {NodeTypeCapitals(NodeType::kDocumentType)});
  }
  CheckChangeable(parent);
  data.RemoveChild(child.At().Id());
  return child;
}

Node Node::ReplaceChild(const Node& child, const Node& old) const {
  if (!child) RaiseDomArgument();
  DocumentData& data = Editable();
  child.Editable();
  const Cursor parent(&data, id_);
  if (!old || !IsChildOf(old.At(), parent)) RaiseDomArgument(DomCode::kNotAChild);
  if (child == old) return old;
  if (old.Type() == NodeType::kDocumentType) {
    RaiseDomFailure(DomCode::kBadNodeType, {NodeTypeCapitals(NodeType::kDocumentType)});
  }
  CheckInsertion(parent, child.At(), old.At());
  MoveNodes(data, id_, child, old.At().Id());
  data.RemoveChild(old.At().Id());
  return old;
}

Node Node::CloneNode(CloneDepth depth) const {
  if (Type() == NodeType::kDocument) {
    return Document(data_->Owner()).Clone(depth).AsNode();
  }
  DocumentData& data = Editable();
  return Node(&data, data.CopySubtree(data, id_, depth == CloneDepth::kDeep));
}

void Node::Normalize() const {
  DocumentData& data = Editable();
  const Cursor root(&data, id_);
  CheckChangeable(root);
  for (Cursor at = root; at; at = at.NextInTree(root)) {
    if (at.Type() == NodeType::kEntityReference || IsInlineTextId(at.Id())) continue;
    JoinTexts(data, at.Id());
    for (Cursor attribute = at.FirstAttribute(); attribute; attribute = attribute.Next()) {
      JoinTexts(data, attribute.Id());
    }
  }
}

// Values -----------------------------------------------------------------------------------------

void Node::SetNodeValue(std::string_view value) const {
  const NodeType type = Type();
  if (!HasValue(type)) RaiseDomFailure(DomCode::kBadNodeType, {NodeTypeCapitals(type)});
  SetText(value);
}

void Node::SetNodeValueFrom(const Variant& value) const {
  const NodeType type = Type();
  if (!HasValue(type)) RaiseDomFailure(DomCode::kBadNodeType, {NodeTypeCapitals(type)});
  SetText(TextOfValue(value));
}

void Node::SetText(std::string_view text) const {
  DocumentData& data = Editable();
  const Cursor at(&data, id_);
  const NodeType type = at.Type();
  if (!HasValue(type) && type != NodeType::kElement && type != NodeType::kDocumentFragment) {
    RaiseDomFailure(DomCode::kBadNodeType, {NodeTypeCapitals(type)});
  }
  CheckData(type, text);
  CheckChangeable(at);
  std::string scratch;
  text = FoldLineEnds(text, scratch);
  if (IsXmlDeclaration(at)) {
    SetXmlDeclaration(data, id_, text);
    return;
  }
  if (type == NodeType::kAttribute && IsXmlDeclaration(at.Parent())) {
    SetXmlDeclarationValue(data, id_, text);
    return;
  }
  if (type == NodeType::kAttribute) {
    data.Record(id_).flags &= static_cast<std::uint8_t>(~kDefaulted);
  }
  if (!IsCharacterData(type) && !at.HasWholeText()) data.RemoveChildren(id_);
  if (type == NodeType::kDocumentFragment) {
    SetFragmentText(data, id_, text);
  } else {
    data.SetOwnText(id_, text);
  }
}

}  // namespace kx::dom
