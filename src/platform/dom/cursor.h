// Reading a document without counting: a cursor is a document's storage and an index, valid while
// somebody else keeps the document and nothing edits the node away. The engines that walk whole
// trees (writing, queries, validation, copying) use cursors; callers that keep nodes use handles
// (node.h).
#pragma once

#include "platform/dom/document_data.h"

#include <optional>
#include <string>
#include <string_view>

namespace kx::dom {

class Cursor {
 public:
  constexpr Cursor() noexcept = default;
  constexpr Cursor(const DocumentData* data, NodeId id) noexcept : data_(data), id_(id) {}

  explicit operator bool() const noexcept { return id_ != kNoNode; }
  friend bool operator==(const Cursor& a, const Cursor& b) noexcept {
    return a.id_ == b.id_ && (a.data_ == b.data_ || a.id_ == kNoNode);
  }

  [[nodiscard]] const DocumentData& Data() const noexcept { return *data_; }
  [[nodiscard]] NodeId Id() const noexcept { return id_; }

  [[nodiscard]] NodeType Type() const noexcept {
    return IsInlineTextId(id_) ? NodeType::kText : Record().type;
  }
  [[nodiscard]] bool IsElement() const noexcept { return Type() == NodeType::kElement; }
  [[nodiscard]] bool IsText() const noexcept {
    const NodeType type = Type();
    return type == NodeType::kText || type == NodeType::kCData;
  }

  /// The parent; of an attribute its element, of an inline text its owner.
  [[nodiscard]] Cursor Parent() const noexcept {
    return {data_, IsInlineTextId(id_) ? OwnerOfInlineText(id_) : Record().parent};
  }
  [[nodiscard]] Cursor FirstChild() const noexcept {
    if (IsInlineTextId(id_)) return {};
    const NodeRecord& record = Record();
    if ((record.flags & kInlineText) != 0) return {data_, InlineTextOf(id_)};
    return {data_, IsCharacterData(record.type) ? kNoNode : record.first};
  }
  [[nodiscard]] Cursor LastChild() const noexcept {
    if (IsInlineTextId(id_)) return {};
    const NodeRecord& record = Record();
    if ((record.flags & kInlineText) != 0) return {data_, InlineTextOf(id_)};
    return {data_, IsCharacterData(record.type) ? kNoNode : record.last};
  }
  /// The next sibling; of an attribute the next attribute of the same element.
  [[nodiscard]] Cursor Next() const noexcept {
    return {data_, IsInlineTextId(id_) ? kNoNode : Record().next};
  }
  [[nodiscard]] Cursor Previous() const noexcept {
    return {data_, IsInlineTextId(id_) ? kNoNode : Record().prev};
  }
  /// The first attribute of an element or of an XML declaration; namespace declarations included.
  [[nodiscard]] Cursor FirstAttribute() const noexcept {
    return {data_, IsInlineTextId(id_) ? kNoNode : Record().firstAttribute};
  }
  /// The attribute of that qualified name, or nothing.
  [[nodiscard]] Cursor FindAttribute(std::string_view qualifiedName) const noexcept;
  [[nodiscard]] Cursor FirstChildElement() const noexcept { return ElementFrom(FirstChild()); }
  [[nodiscard]] Cursor NextElement() const noexcept { return ElementFrom(Next()); }

  /// The name and namespace of an element or attribute; equal within one document exactly when
  /// qualified name and namespace are.
  [[nodiscard]] NameId Name() const noexcept { return IsInlineTextId(id_) ? 0 : Record().name; }
  [[nodiscard]] std::string_view QualifiedName() const noexcept {
    return data_->Names().QualifiedText(Name());
  }
  [[nodiscard]] std::string_view LocalName() const noexcept {
    return data_->Names().LocalText(Name());
  }
  [[nodiscard]] std::string_view Prefix() const noexcept {
    return data_->Names().PrefixText(Name());
  }
  /// The namespace; empty both when there is none and when it is the empty text.
  [[nodiscard]] std::string_view NamespaceUri() const noexcept {
    return data_->Names().UriText(data_->Names().UriOf(Name()));
  }

  /// The data of a text, CDATA section, comment or processing instruction, and the inline text of
  /// an element or attribute; empty for everything else.
  [[nodiscard]] std::string_view OwnText() const noexcept {
    if (IsInlineTextId(id_)) return data_->OwnText(OwnerOfInlineText(id_));
    const NodeRecord& record = Record();
    if ((record.flags & kInlineText) == 0 && !IsCharacterData(record.type)) return {};
    return data_->OwnText(id_);
  }
  /// True when the value is one piece: OwnText() is all of it.
  [[nodiscard]] bool HasWholeText() const noexcept {
    if (IsInlineTextId(id_)) return true;
    const NodeRecord& record = Record();
    return (record.flags & kInlineText) != 0 || IsCharacterData(record.type) ||
           record.first == kNoNode;
  }
  /// Appends the concatenation of all text and CDATA below the node (its own for character data).
  void AppendText(std::string& out) const;
  /// The same as a text of its own.
  [[nodiscard]] std::string TextContent() const {
    std::string out;
    AppendText(out);
    return out;
  }

  /// The node after this one in document order, attributes left out, within the tree of `root`.
  [[nodiscard]] Cursor NextInTree(const Cursor& root) const noexcept;

 private:
  [[nodiscard]] const NodeRecord& Record() const noexcept { return data_->Record(id_); }
  static Cursor ElementFrom(Cursor at) noexcept {
    while (at && !at.IsElement()) at = at.Next();
    return at;
  }

  const DocumentData* data_ = nullptr;
  NodeId id_ = kNoNode;
};

}  // namespace kx::dom
