// The storage of one generation of a document's content: its nodes, its texts and its names.
// A load makes a new generation; nodes of an old one live on while somebody holds them.
//
// What lives here: records and their links, the primitive edits, the counting of handles and the
// collection of what nobody can reach. What lives elsewhere: reading without counting (cursor.h),
// handles and the rules of editing (node.h), building by parsing (parser.h), writing (writer.h).
//
// Invariants:
//   - The primitive edits keep the links right and check nothing: callers check first.
//   - A node that is detached and that no handle reaches is reused: Collect() frees it, run when
//     enough has been detached to pay for the walk.
//   - No member recurses with the depth of the tree.
//   - A frozen content is never changed again and may be read by many threads; its handles count
//     on the document alone, atomically.
#pragma once

#include "platform/dom/child_positions.h"
#include "platform/dom/name_table.h"
#include "platform/dom/node_record.h"
#include "platform/dom/schema_binder.h"
#include "platform/dom/text_heap.h"
#include "platform/runtime/counted.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kx::dom {

class DocumentImpl;
class DocumentData;
struct Dtd;

/// Where a node went that is now a node of another document.
struct Forward {
  DocumentData* data;
  NodeId id;
};

/// A node that came from another document while handles named it there. All records that it left
/// behind lead to this one object, however often it moves on; while there are any, it holds the
/// node.
struct MovedNode : runtime::PlainCounted {
  explicit MovedNode(Forward place) noexcept : now(place) {}
  Forward now;
};

/// What a document's storage takes, in numbers that depend on nothing but the edits made.
struct StorageCounters {
  std::size_t nodeRecords = 0;    ///< records in use, the document's own included
  std::size_t nodeCapacity = 0;   ///< records there is room for
  std::size_t textBytes = 0;      ///< the parse buffer
  std::size_t heapLiveBytes = 0;  ///< decoded and edited texts in use
  std::size_t heapCapacityBytes = 0;
  std::size_t nameBytes = 0;
  std::size_t totalBytes = 0;  ///< everything reserved, the document's own objects included
};

/// What a reader has worked out about a frozen content. It must not hold handles of that content.
class DerivedData : public runtime::AtomicCounted {};

class DocumentData {
 public:
  /// Content of one document node without children. `owner` is the document object that this is
  /// a generation of; it may be null for content that is never handed out as nodes.
  explicit DocumentData(DocumentImpl* owner);
  ~DocumentData();
  DocumentData(const DocumentData&) = delete;
  DocumentData& operator=(const DocumentData&) = delete;

  // Reading ------------------------------------------------------------------------------------

  [[nodiscard]] const NodeRecord& Record(NodeId id) const noexcept { return nodes_[id]; }
  NodeRecord& Record(NodeId id) noexcept { return nodes_[id]; }
  /// The text that the record itself holds: data of a text, comment, ... or an inline text.
  [[nodiscard]] std::string_view OwnText(NodeId id) const noexcept {
    const NodeRecord& record = nodes_[id];
    const char* base = (record.flags & kHeapText) != 0 ? heap_.Base() : text_.get();
    return {base + record.textBegin, record.textLength};
  }
  [[nodiscard]] const NameTable& Names() const noexcept { return names_; }
  NameTable& Names() noexcept { return names_; }
  [[nodiscard]] DocumentImpl* Owner() const noexcept { return owner_; }
  [[nodiscard]] const Dtd* DocumentType() const noexcept { return dtd_.get(); }
  /// The schemas that the document knows; null for none.
  [[nodiscard]] const SchemaKnowledge* Schemas() const noexcept { return schemas_.Get(); }
  void Schemas(runtime::Counted<const SchemaKnowledge> schemas) noexcept {
    schemas_ = std::move(schemas);
  }
  /// True while nothing was ever put into it and no handle leads to it.
  [[nodiscard]] bool IsPristine() const noexcept {
    return nodes_.size() == 2 && textBytes_ == 0 && handles_.load(std::memory_order_relaxed) == 0;
  }
  [[nodiscard]] NodeId DocumentElement() const noexcept;
  [[nodiscard]] std::uint32_t NodeCount() const noexcept { return nodes_.size(); }
  /// True while a higher index means later in document order (no edit has moved anything).
  [[nodiscard]] bool IdsFollowDocumentOrder() const noexcept { return idsInOrder_; }
  /// Changes with every structural edit; positional caches compare it.
  [[nodiscard]] std::uint64_t EditVersion() const noexcept { return editVersion_; }
  [[nodiscard]] StorageCounters Counters() const noexcept;

  // Primitive edits ----------------------------------------------------------------------------

  /// A new detached node. Raises: std::bad_alloc.
  NodeId NewNode(NodeType type, NameId name);
  /// Puts a detached node at the end of `parent`'s children, or before its child `before`.
  /// An inline text of `parent` gets its own record first.
  void InsertChild(NodeId parent, NodeId child, NodeId before);
  /// Takes a child out of its parent; it becomes detached.
  void RemoveChild(NodeId child);
  /// Puts a detached attribute at the end of `element`'s attributes.
  void AppendAttribute(NodeId element, NodeId attribute) {
    InsertAttribute(element, attribute, kNoNode);
  }
  /// The same in front of the attribute `before`, unless that is kNoNode.
  void InsertAttribute(NodeId element, NodeId attribute, NodeId before);
  void RemoveAttribute(NodeId attribute);
  /// Sets the text of character data, or makes `text` the inline text of an element or attribute
  /// that has no children. Empty text leaves an element or attribute without a text child.
  /// `text` may lie in this document.
  void SetOwnText(NodeId id, std::string_view text);
  /// Detaches all children and drops an inline text; attributes stay.
  void RemoveChildren(NodeId id);
  /// Gives the inline text of `owner` a record of its own and returns it.
  NodeId MaterializeInlineText(NodeId owner);
  void Rename(NodeId id, NameId name) noexcept { nodes_[id].name = name; }
  void SetDocumentType(std::unique_ptr<Dtd> dtd);

  /// Copies the subtree of `source` at `from` (attributes and all below, or no children) and
  /// returns the detached copy, with names and namespaces, forms and flags kept. `source` may be
  /// this document. Like NewNode it may collect first: detached nodes must be held to be kept.
  NodeId CopySubtree(const DocumentData& source, NodeId from, bool deep);
  /// Makes this, which must be new, a copy of everything attached in `source`, block by block.
  void CopyContent(const DocumentData& source);
  /// Moves the detached subtree at `id` of `source` into this document: a copy, to which the
  /// handles of the old nodes lead from then on. Returns the new node.
  NodeId AdoptSubtree(DocumentData& source, NodeId id);

  // Handles ------------------------------------------------------------------------------------

  /// Counts a handle of node `id` (which must have a record of its own unless frozen).
  void Hold(NodeId id) noexcept {
    const std::uint32_t handles = handles_.load(std::memory_order_relaxed);
    if (frozen_ || handles == 0 || nodes_[id].holds == kMostHolds) return HoldSlowly(id);
    handles_.store(handles + 1, std::memory_order_relaxed);
    ++nodes_[id].holds;
  }
  /// Gives a handle back; may free the document.
  void Release(NodeId id) noexcept {
    const std::uint32_t handles = handles_.load(std::memory_order_relaxed);
    if (frozen_ || handles == 1 || nodes_[id].holds == kMostHolds || nodes_[id].holds == 1) {
      return ReleaseSlowly(id);
    }
    handles_.store(handles - 1, std::memory_order_relaxed);
    --nodes_[id].holds;
  }
  /// Where a node went whose record is of kind kMoved.
  [[nodiscard]] Forward ForwardOf(NodeId id) const;
  /// Frees every node that is detached and that no handle reaches.
  void Collect();
  /// No edit from now on; reading is safe from many threads.
  void Freeze() noexcept { frozen_ = true; }
  [[nodiscard]] bool Frozen() const noexcept { return frozen_; }
  /// What was worked out about a frozen content, for all its readers; null before that. May be
  /// called by many threads.
  [[nodiscard]] const DerivedData* Derived() const noexcept {
    return derived_.load(std::memory_order_acquire);
  }
  /// Keeps `derived` for as long as the content lives, unless another thread was first; returns
  /// what is kept. The content must be frozen.
  const DerivedData& KeepDerived(runtime::Counted<const DerivedData> derived) const noexcept;
  /// Places in long lists of children and attributes; null for frozen content.
  [[nodiscard]] ChildPositions* Positions() {
    if (frozen_) return nullptr;
    if (!positions_) positions_ = std::make_unique<ChildPositions>();
    return positions_.get();
  }
  /// For DocumentImpl: this is no longer the document's current content. Frees it when no handle
  /// is left.
  void Retire() noexcept;

  // Building, for the parser -------------------------------------------------------------------

  /// Makes room for a parse buffer of `bytes` (and padding to read over) and returns it.
  char* ReserveText(std::size_t bytes);
  /// Appends `bytes` to the parse buffer, which may move, and returns where they begin.
  std::size_t ExtendText(std::size_t bytes);
  /// For a schema binder: appends an attribute that a declaration supplies to `element`, which was
  /// parsed last.
  void SupplyAttribute(NodeId element, NameId name, std::string_view value);
  [[nodiscard]] char* Text() noexcept { return text_.get(); }
  [[nodiscard]] TextHeap& Heap() noexcept { return heap_; }
  PlainArray<NodeRecord, 4>& Nodes() noexcept { return nodes_; }

 private:
  struct FreeText {
    void operator()(char* block) const noexcept { std::free(block); }
  };

  [[nodiscard]] bool HasLinkedChildren(NodeId id) const noexcept {
    const NodeRecord& record = nodes_[id];
    return (record.flags & kInlineText) == 0 && !IsCharacterData(record.type) &&
           record.first != kNoNode;
  }
  void HoldSlowly(NodeId id) noexcept;
  void ReleaseSlowly(NodeId id) noexcept;
  [[nodiscard]] bool DropHold(NodeId id) noexcept;
  void FreeOwnText(NodeRecord& record) noexcept;
  void FreeInlineText(NodeId id) noexcept;
  void ClearNode(NodeId id) noexcept;
  void FreeNode(NodeId id) noexcept;
  void NoteDetached();
  void MarkLive(std::vector<std::uint8_t>& marks) const;
  class NameImport;
  NodeId CopyRecord(NameImport& names, const DocumentData& source, NodeId from);
  void CopyAttributes(NameImport& names, const DocumentData& source, NodeId from, NodeId copy);
  void CopyChildren(NameImport& names, const DocumentData& source, NodeId from, NodeId copy);
  void DropHolds() noexcept;
  void ForwardNode(DocumentData& source, NodeId from, NodeId to);
  void ForwardAttributes(DocumentData& source, NodeId from, NodeId to);
  void ForwardTree(DocumentData& source, NodeId from, NodeId to);
  void ForgetMoved(NodeId id) noexcept;
  static void LeaveForward(const runtime::Counted<MovedNode>& moved) noexcept;
  void ReleaseLast() noexcept;

  static constexpr std::uint16_t kMostHolds = 0xFFFF;

  /// What only a document has that handled nodes moved to or from, or handles without number.
  struct Moves {
    /// Where the nodes went whose records are of kind kMoved.
    std::unordered_map<NodeId, runtime::Counted<MovedNode>> left;
    /// The nodes here that records of other places lead to.
    std::unordered_map<NodeId, MovedNode*> arrived;
    /// Handles beyond the number that a record can count.
    std::unordered_map<NodeId, std::uint32_t> moreHolds;
  };
  Moves& MakeMoves() {
    if (!moves_) moves_ = std::make_unique<Moves>();
    return *moves_;
  }

  PlainArray<NodeRecord, 4> nodes_;  // an empty document needs no block
  std::unique_ptr<char, FreeText> text_;
  std::size_t textBytes_ = 0;     ///< used
  std::size_t textCapacity_ = 0;  ///< reserved
  TextHeap heap_;
  NameTable names_;
  DocumentImpl* owner_;
  std::unique_ptr<Dtd> dtd_;
  runtime::Counted<const SchemaKnowledge> schemas_;
  std::atomic<std::uint32_t> handles_{0};
  NodeId firstFree_ = kNoNode;
  std::uint32_t freeNodes_ = 0;
  std::uint32_t detachedSinceCollect_ = 0;
  std::uint32_t collectPause_ = 0;  ///< above 0 while nodes exist that nobody holds yet
  std::uint64_t editVersion_ = 0;
  bool idsInOrder_ = true;
  bool frozen_ = false;
  bool current_ = true;
  mutable std::atomic<const DerivedData*> derived_{nullptr};  // holds a reference
  std::unique_ptr<Moves> moves_;               // made by the first node that moves in or out held
  std::unique_ptr<ChildPositions> positions_;  // made by the first list walked by position
};

}  // namespace kx::dom
