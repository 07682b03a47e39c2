// The counted handle of a node: a document's storage and an index, two words. Whoever holds a
// handle keeps the node and its document, also after the node was removed or the document was
// loaded anew. Engines that walk whole trees read by cursors instead (cursor.h).
//
// What lives here: the handle, navigation, names, values and the rules of editing. What lives
// elsewhere: lists (node_list.h), attribute maps (attribute_map.h), documents and the creation of
// nodes (document.h), what may stand where and what a text may hold (node_rules.h).
//
// Invariants:
//   - A handle of a node that went to another document leads to it there; it finds out when it is
//     used next. A handle of a document's own node leads to the document's current content.
//   - Every edit checks first and changes last: a failed one has changed nothing.
//   - A text that an element or attribute keeps in its own record has no handle: making one gives
//     it a record. In frozen content, which never changes, a handle may name it as it is.
//   - A name or text argument without any characters to point to (a default-constructed view) is
//     the null string of the calls' description, which most of them refuse; "" is an empty text.
#pragma once

#include "platform/dom/cursor.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace kx {
class Variant;
}

namespace kx::dom {

class AttributeMap;
class Document;
class NodeList;

/// What becomes of the nodes below a node that is copied.
enum class CloneDepth : unsigned char { kShallow, kDeep };

/// A node, or nothing. Copies name the same node; `==` tells whether two handles do. Members of a
/// handle of nothing raise the run-time error 91. For one thread at a time, unless the document is
/// frozen: then handles of one document may be used by many threads, each by one.
class Node {
 public:
  constexpr Node() noexcept = default;
  /// A handle of what `at` names; of nothing when it names nothing.
  explicit Node(const Cursor& at)
      : Node(at ? const_cast<DocumentData*>(&at.Data()) : nullptr, at.Id()) {}
  Node(DocumentData* data, NodeId id) : data_(data), id_(id) {
    if (IsInlineTextId(id_)) GiveRecord();
    if (id_ != kNoNode) data_->Hold(id_);
  }
  Node(const Node& other) noexcept : data_(other.data_), id_(other.id_) {
    if (id_ != kNoNode) data_->Hold(id_);
  }
  Node(Node&& other) noexcept : data_(other.data_), id_(std::exchange(other.id_, kNoNode)) {}
  Node& operator=(Node other) noexcept {
    std::swap(data_, other.data_);
    std::swap(id_, other.id_);
    return *this;
  }
  ~Node() {
    if (id_ != kNoNode) data_->Release(id_);
  }

  explicit operator bool() const noexcept { return id_ != kNoNode; }
  /// True when both name the same node, or both nothing.
  friend bool operator==(const Node& a, const Node& b) noexcept {
    if (!a || !b) return !a && !b;
    a.Follow();
    b.Follow();
    return a.id_ == b.id_ && a.data_ == b.data_;
  }

  /// Where the node is, for reading; valid until an edit and while this handle lives.
  [[nodiscard]] Cursor At() const {
    Require();
    return {data_, id_};
  }
  /// The storage that the node is in, for the engines of the platform.
  [[nodiscard]] DocumentData& Data() const {
    Require();
    return *data_;
  }

  // Kind and names -------------------------------------------------------------------------------

  [[nodiscard]] NodeType Type() const { return At().Type(); }
  /// "element", "attribute", "text", "cdatasection", ...
  [[nodiscard]] std::string_view TypeName() const;
  /// The qualified name of an element or attribute, the target of a processing instruction, the
  /// name of a document type or entity, "#text", "#document" and the like for the rest.
  [[nodiscard]] std::string NodeName() const;
  /// The name without prefix; nothing for nodes without a name.
  /// Note: the empty text for an attribute named "xmlns".
  [[nodiscard]] std::optional<std::string> BaseName() const;
  /// Nothing when there is none. Note: "xmlns" for an attribute of that name.
  [[nodiscard]] std::optional<std::string> Prefix() const;
  /// Nothing when there is none. Note: the empty text for most declarations of namespaces.
  [[nodiscard]] std::optional<std::string> NamespaceUri() const;
  /// False for an attribute that a declaration supplied.
  [[nodiscard]] bool Specified() const;

  // Values ---------------------------------------------------------------------------------------

  /// The data of an attribute, text, CDATA section, comment or processing instruction; nothing for
  /// other kinds.
  [[nodiscard]] std::optional<std::string> NodeValue() const;
  /// Raises: E_FAIL for a kind without value, for a character that XML does not allow, for a
  /// declaration of a namespace in use; E_INVALIDARG for data that would end its own markup.
  void SetNodeValue(std::string_view value) const;
  /// The same with any value, converted to text as the run-time does.
  /// Raises: also E_INVALIDARG for Null.
  void SetNodeValueFrom(const Variant& value) const;
  /// All text and CDATA below, in document order; a node's own data for the kinds that have it.
  /// Trimmed at both ends, CDATA excepted, in a document that does not preserve white space.
  [[nodiscard]] std::string Text() const;
  /// Replaces the data, or all children by one text. Line ends become LF.
  /// Raises: as SetNodeValue; E_FAIL for documents, document types and entity references.
  void SetText(std::string_view text) const;
  /// The XML text of the node and all below it.
  [[nodiscard]] std::string Xml() const;

  // Navigation -----------------------------------------------------------------------------------

  /// Nothing for documents, attributes and detached nodes.
  [[nodiscard]] Node ParentNode() const;
  /// The document that the node belongs to; nothing for a document.
  [[nodiscard]] Document OwnerDocument() const;
  [[nodiscard]] Node FirstChild() const { return Node(At().FirstChild()); }
  [[nodiscard]] Node LastChild() const { return Node(At().LastChild()); }
  /// Nothing for attributes.
  [[nodiscard]] Node NextSibling() const;
  [[nodiscard]] Node PreviousSibling() const;
  [[nodiscard]] bool HasChildNodes() const { return static_cast<bool>(At().FirstChild()); }
  /// The children, live.
  [[nodiscard]] NodeList ChildNodes() const;
  /// The attributes of an element or XML declaration, live; no map for other kinds.
  [[nodiscard]] AttributeMap Attributes() const;
  /// The elements below, in document order, whose qualified name is `name` ("*": all), live.
  [[nodiscard]] NodeList GetElementsByTagName(std::string_view name) const;

  // Editing the tree -----------------------------------------------------------------------------

  /// Moves `child` from wherever it is, also from another document, to the end of the children and
  /// returns it. Of a fragment, moves the children.
  /// Raises: E_INVALIDARG for nothing; E_FAIL for a kind that may not stand here, for an ancestor,
  /// for a second root, for a frozen document.
  Node AppendChild(const Node& child) const { return InsertBefore(child, Node()); }
  /// The same in front of the child `before`; at the end when that is nothing.
  /// Raises: also E_INVALIDARG when `before` is not a child.
  Node InsertBefore(const Node& child, const Node& before) const;
  /// Takes `child` out and returns it. Raises: E_INVALIDARG when it is not a child; E_FAIL for a
  /// document type.
  Node RemoveChild(const Node& child) const;
  /// Moves `child` to where `old` is, takes `old` out and returns it.
  /// Raises: as InsertBefore and RemoveChild.
  Node ReplaceChild(const Node& child, const Node& old) const;
  /// A copy without parent, attributes included, in the same document; of a document, a new
  /// document with the same settings. Raises: E_FAIL for a node of a frozen document.
  [[nodiscard]] Node CloneNode(CloneDepth depth) const;
  /// Joins neighbouring texts below and drops empty ones.
  void Normalize() const;

  // Attributes of an element ---------------------------------------------------------------------

  /// Nothing when absent. Raises: E_INVALIDARG for null, E_FAIL for what is no name.
  [[nodiscard]] std::optional<std::string> GetAttribute(std::string_view name) const;
  /// Creates or overwrites. A declaration of a namespace may be made when it agrees with the names
  /// in use, and is never changed.
  /// Raises: as GetAttribute and SetNodeValue; E_INVALIDARG for a declaration of another namespace
  /// than the one in use.
  void SetAttribute(std::string_view name, std::string_view value) const;
  /// The same with any value, converted to text as the run-time does.
  void SetAttributeFrom(std::string_view name, const Variant& value) const;
  /// False when absent.
  bool RemoveAttribute(std::string_view name) const;
  [[nodiscard]] Node GetAttributeNode(std::string_view name) const;
  /// Adds a detached attribute, in the place of one of the same name; returns the one replaced.
  /// Raises: E_INVALIDARG for nothing; E_FAIL for another kind and for an attribute in use.
  Node SetAttributeNode(const Node& attribute) const;
  /// Raises: E_INVALIDARG when it is not an attribute of this element.
  Node RemoveAttributeNode(const Node& attribute) const;

  // Character data; offsets and counts in UTF-16 units --------------------------------------------

  /// The length of the data of a text, CDATA section or comment.
  [[nodiscard]] std::int32_t DataLength() const;
  /// Up to `count` units; fewer at the end. Raises: E_INVALIDARG for a bad offset or count.
  [[nodiscard]] std::string SubstringData(std::int32_t offset, std::int32_t count) const;
  void AppendData(std::string_view text) const;
  void InsertData(std::int32_t offset, std::string_view text) const;
  void DeleteData(std::int32_t offset, std::int32_t count) const;
  void ReplaceData(std::int32_t offset, std::int32_t count, std::string_view text) const;
  /// Moves what begins at `offset` to a new node of the same kind behind this one and returns it;
  /// nothing, and no change, at the end of the data.
  Node SplitText(std::int32_t offset) const;

 private:
  friend class AttributeMap;
  friend class Document;

  /// Raises the run-time error 91 for a handle of nothing, and goes to where the node is now.
  void Require() const {
    if (id_ == kNoNode) RaiseNothing();
    Follow();
  }
  void Follow() const noexcept {
    const NodeType type = data_->Record(OwnerOfInlineText(id_)).type;
    if (type == NodeType::kMoved || type == NodeType::kDocument) FollowMove();
  }
  void FollowMove() const noexcept;
  void GiveRecord();
  [[noreturn]] static void RaiseNothing();
  /// As Data(). Raises: E_FAIL for a frozen document.
  DocumentData& Editable() const;

  // Changed when the node is found to be elsewhere, which is not a change of the handle.
  mutable DocumentData* data_ = nullptr;
  mutable NodeId id_ = kNoNode;
};

}  // namespace kx::dom
