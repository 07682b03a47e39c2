// Pieces of the data of texts, CDATA sections and comments. See node.h. Offsets count UTF-16 units;
// an edit that would cut a surrogate pair in two is refused, because neither half is a character.
#include "platform/dom/dom_error.h"
#include "platform/dom/node.h"
#include "platform/dom/node_rules.h"
#include "platform/runtime/strings.h"
#include "platform/text/unicode.h"

namespace kx::dom {

namespace {

/// A range of bytes of the data.
struct Piece {
  std::size_t begin;
  std::size_t end;
};

std::string_view DataOf(const Cursor& at) {
  const NodeType type = at.Type();
  if (type != NodeType::kText && type != NodeType::kCData && type != NodeType::kComment) {
    RaiseDomFailure(DomCode::kBadNodeType, {NodeTypeCapitals(type)});
  }
  return at.OwnText();
}

void CheckOffset(std::string_view data, std::int32_t offset) {
  if (offset < 0 || static_cast<std::size_t>(offset) > text::CountUtf16Units(data)) {
    RaiseDomArgument(DomCode::kBadOffset);
  }
}

// The byte offset of a unit. Raises: E_FAIL in the middle of a pair.
std::size_t ByteOffset(std::string_view data, std::size_t unit) {
  const std::size_t offset = text::OffsetOfUtf16Unit(data, unit);
  if (text::CountUtf16Units(data.substr(0, offset)) != unit) {
    RaiseDomFailure(ParseCode::kBadCharInText);
  }
  return offset;
}

Piece PieceOf(std::string_view data, std::int32_t offset, std::int32_t count) {
  CheckOffset(data, offset);
  if (count < 0) RaiseDomArgument(DomCode::kBadOffset);
  const auto begin = static_cast<std::size_t>(offset);
  const std::size_t units = text::CountUtf16Units(data);
  const std::size_t end = begin + std::min(static_cast<std::size_t>(count), units - begin);
  return {ByteOffset(data, begin), ByteOffset(data, end)};
}

}  // namespace

std::int32_t Node::DataLength() const {
  return static_cast<std::int32_t>(text::CountUtf16Units(DataOf(At())));
}

std::string Node::SubstringData(std::int32_t offset, std::int32_t count) const {
  const std::string_view data = DataOf(At());
  CheckOffset(data, offset);
  if (count < 0) RaiseDomArgument(DomCode::kBadOffset);
  return runtime::Mid(data, offset + 1, count);
}

void Node::AppendData(std::string_view text) const {
  Editable();
  std::string data(DataOf(At()));
  SetText(data.append(text));
}

void Node::InsertData(std::int32_t offset, std::string_view text) const {
  // Nothing to insert is fine anywhere.
  if (text.empty()) {
    DataOf(At());
    return;
  }
  ReplaceData(offset, 0, text);
}

void Node::DeleteData(std::int32_t offset, std::int32_t count) const {
  ReplaceData(offset, count, "");
}

void Node::ReplaceData(std::int32_t offset, std::int32_t count, std::string_view text) const {
  Editable();
  const std::string_view data = DataOf(At());
  const Piece piece = PieceOf(data, offset, count);
  std::string changed(data.substr(0, piece.begin));
  changed.append(text).append(data.substr(piece.end));
  SetText(changed);
}

Node Node::SplitText(std::int32_t offset) const {
  DocumentData& storage = Editable();
  const Cursor at(&storage, id_);
  const std::string_view data = DataOf(at);
  if (at.Type() == NodeType::kComment) {
    RaiseDomFailure(DomCode::kBadNodeType, {NodeTypeCapitals(NodeType::kComment)});
  }
  CheckOffset(data, offset);
  CheckChangeable(at);
  const std::size_t split = ByteOffset(data, static_cast<std::size_t>(offset));
  if (split == data.size()) return {};
  const std::string head(data.substr(0, split));
  const std::string tail(data.substr(split));
  Node rest(&storage, storage.NewNode(at.Type(), 0));
  storage.SetOwnText(rest.id_, tail);
  storage.SetOwnText(id_, head);
  if (const Cursor parent = at.Parent()) {
    storage.InsertChild(parent.Id(), rest.id_, storage.Record(id_).next);
  }
  return rest;
}

}  // namespace kx::dom
