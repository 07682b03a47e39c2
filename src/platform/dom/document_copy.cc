// Copies of subtrees and of whole contents, and moves of subtrees between documents. See
// document_data.h.
//
// A move is a copy; the records of the old nodes stay while handles name them and lead to the new
// ones. They all lead to one object for each node, which is told when the node moves on, so that
// there are never chains to follow or to let go.
#include "platform/dom/document_data.h"
#include "platform/dom/dtd.h"

#include <array>
#include <cstring>
#include <utility>

namespace kx::dom {

/// The names of another document in this one's table; remembers the ones used last.
class DocumentData::NameImport {
 public:
  NameImport(DocumentData& to, const DocumentData& from) noexcept
      : owner_(to), to_(to.names_), from_(from.names_), schemas_(from.schemas_.Get()) {}

  NameId Find(NameId name) {
    if (&to_ == &from_ || name == 0) return name;
    Entry& entry = recent_[name % recent_.size()];
    if (entry.from != name) {
      const UriId uri = from_.UriOf(name);
      const UriId here = uri <= kXmlUri ? uri : to_.InternUri(from_.UriText(uri));
      if (schemas_ != nullptr && uri != lastUri_) ShareSchema(uri);
      entry = {name, to_.InternName(from_.QualifiedText(name), here)};
    }
    return entry.to;
  }

 private:
  struct Entry {
    NameId from = 0;
    NameId to = 0;
  };
  // What the other document knows about a namespace comes along with its names.
  void ShareSchema(UriId uri) {
    lastUri_ = uri;
    owner_.schemas_ = schemas_->ShareNamespace(owner_.schemas_.Get(), from_.UriText(uri));
  }

  DocumentData& owner_;
  NameTable& to_;
  const NameTable& from_;
  const SchemaKnowledge* schemas_;
  UriId lastUri_ = 0xFFFFFFFFU;
  std::array<Entry, 64> recent_{};
};

namespace {

/// No collection while nodes exist that are detached and that nobody holds yet.
class CollectionPause {
 public:
  explicit CollectionPause(std::uint32_t& pauses) noexcept : pauses_(pauses) { ++pauses_; }
  ~CollectionPause() { --pauses_; }
  CollectionPause(const CollectionPause&) = delete;
  CollectionPause& operator=(const CollectionPause&) = delete;

 private:
  std::uint32_t& pauses_;
};

}  // namespace

// Copies -----------------------------------------------------------------------------------------

// A copy of one record and its attributes, without children.
NodeId DocumentData::CopyRecord(NameImport& names, const DocumentData& source, NodeId from) {
  const NodeId copy = NewNode(source.nodes_[from].type, 0);
  nodes_[copy].name = names.Find(source.nodes_[from].name);
  const NodeRecord& original = source.nodes_[from];  // taken after NewNode: it may have grown
  NodeRecord& record = nodes_[copy];
  record.flags = original.flags & static_cast<std::uint8_t>(~kHeapText);
  const bool hasText = (original.flags & kInlineText) != 0 || IsCharacterData(original.type);
  if (hasText && original.textLength != 0) {
    if (&source == this && (original.flags & kHeapText) == 0) {  // the parse buffer is never reused
      record.textBegin = original.textBegin;
    } else {
      record.textBegin = heap_.Store(source.OwnText(from));
      record.flags |= kHeapText;
    }
    record.textLength = original.textLength;
  }
  return copy;
}

void DocumentData::CopyAttributes(NameImport& names, const DocumentData& source, NodeId from,
                                  NodeId copy) {
  for (NodeId at = source.nodes_[from].firstAttribute; at != kNoNode; at = source.nodes_[at].next) {
    const NodeId attribute = CopyRecord(names, source, at);
    AppendAttribute(copy, attribute);
    CopyChildren(names, source, at, attribute);  // texts and entity references: no attributes below
  }
}

// Copies all that is below `from` to below `copy`, walking both trees in step.
void DocumentData::CopyChildren(NameImport& names, const DocumentData& source, NodeId from,
                                NodeId copy) {
  if (!source.HasLinkedChildren(from)) return;
  NodeId at = source.nodes_[from].first;
  while (true) {
    const NodeId child = CopyRecord(names, source, at);
    CopyAttributes(names, source, at, child);
    InsertChild(copy, child, kNoNode);
    if (source.HasLinkedChildren(at)) {
      at = source.nodes_[at].first;
      copy = child;
      continue;
    }
    while (source.nodes_[at].next == kNoNode) {
      at = source.nodes_[at].parent;
      if (at == from) return;
      copy = nodes_[copy].parent;
    }
    at = source.nodes_[at].next;
  }
}

NodeId DocumentData::CopySubtree(const DocumentData& source, NodeId from, bool deep) {
  NoteDetached();  // copies alone must lead to collections as well
  const CollectionPause pause(collectPause_);
  NameImport names(*this, source);
  const NodeId copy = CopyRecord(names, source, from);
  CopyAttributes(names, source, from, copy);
  const NodeType type = source.nodes_[from].type;
  // The content of an attribute or entity reference is the node itself, whatever depth is asked.
  if (deep || type == NodeType::kAttribute || type == NodeType::kEntityReference) {
    CopyChildren(names, source, from, copy);
  } else {
    FreeInlineText(copy);
  }
  return copy;
}

void DocumentData::FreeInlineText(NodeId id) noexcept {
  if ((nodes_[id].flags & kInlineText) != 0) FreeOwnText(nodes_[id]);
}

void DocumentData::CopyContent(const DocumentData& source) {
  nodes_.CopyFrom(source.nodes_);
  if (source.textBytes_ != 0) {
    std::memcpy(ReserveText(source.textBytes_), source.text_.get(), source.textBytes_);
  }
  heap_.CopyFrom(source.heap_);
  names_.CopyFrom(source.names_);
  schemas_ = source.schemas_;
  dtd_ = source.dtd_ ? std::make_unique<Dtd>(*source.dtd_) : nullptr;
  firstFree_ = source.firstFree_;
  freeNodes_ = source.freeNodes_;
  detachedSinceCollect_ = source.detachedSinceCollect_;
  idsInOrder_ = source.idsInOrder_;
  if (source.handles_.load(std::memory_order_relaxed) != 0 || source.moves_) DropHolds();
}

// The handles of the document that this was copied from are not ours.
void DocumentData::DropHolds() noexcept {
  for (NodeId id = kDocumentNode; id < nodes_.size(); ++id) {
    nodes_[id].holds = 0;
    if (nodes_[id].type == NodeType::kMoved) FreeNode(id);
  }
}

// Moves between documents ------------------------------------------------------------------------

void DocumentData::ForwardNode(DocumentData& source, NodeId from, NodeId to) {
  runtime::Counted<MovedNode> moved;
  if (source.moves_) {
    const auto arrived = source.moves_->arrived.find(from);
    if (arrived != source.moves_->arrived.end()) {
      moved = runtime::Counted<MovedNode>(arrived->second);
      source.moves_->arrived.erase(arrived);
    }
  }
  const std::uint16_t own = moved ? 1 : 0;  // its hold goes along
  if (source.nodes_[from].holds == own) {
    if (moved) source.Release(from);
    source.FreeNode(from);
    if (!moved) return;
  } else {
    if (!moved) {
      moved = runtime::MakeCounted<MovedNode>(Forward{&source, from});
    } else {
      source.Release(from);
    }
    source.ClearNode(from);
    source.nodes_[from].type = NodeType::kMoved;
    source.MakeMoves().left.emplace(from, moved);
  }
  Hold(to);
  moved->now = {this, to};
  MakeMoves().arrived.emplace(to, moved.Get());
}

void DocumentData::ForwardAttributes(DocumentData& source, NodeId from, NodeId to) {
  NodeId copy = nodes_[to].firstAttribute;
  for (NodeId at = source.nodes_[from].firstAttribute; at != kNoNode;) {
    const NodeId next = source.nodes_[at].next;
    const NodeId nextCopy = nodes_[copy].next;
    ForwardTree(source, at, copy);
    at = next;
    copy = nextCopy;
  }
}

// Walks the old tree and its copy in step, children before their parent, so that a record is
// given up only when nothing below it is needed any more.
void DocumentData::ForwardTree(DocumentData& source, NodeId from, NodeId to) {
  NodeId at = from;
  NodeId copy = to;
  while (true) {
    while (source.HasLinkedChildren(at)) {
      at = source.nodes_[at].first;
      copy = nodes_[copy].first;
    }
    while (true) {
      const NodeId next = source.nodes_[at].next;
      const NodeId nextCopy = nodes_[copy].next;
      const NodeId parent = source.nodes_[at].parent;
      const NodeId parentCopy = nodes_[copy].parent;
      const bool top = at == from;
      ForwardAttributes(source, at, copy);
      ForwardNode(source, at, copy);
      if (top) return;
      if (next != kNoNode) {
        at = next;
        copy = nextCopy;
        break;
      }
      at = parent;
      copy = parentCopy;
    }
  }
}

NodeId DocumentData::AdoptSubtree(DocumentData& source, NodeId id) {
  const NodeId copy = CopySubtree(source, id, true);
  const CollectionPause pause(collectPause_);
  // Both stay whatever the counts do on the way.
  Hold(kDocumentNode);
  source.Hold(kDocumentNode);
  ForwardTree(source, id, copy);
  ++source.editVersion_;
  source.Release(kDocumentNode);
  Release(kDocumentNode);
  return copy;
}

Forward DocumentData::ForwardOf(NodeId id) const { return moves_->left.find(id)->second->now; }

// One of the records that lead to a moved node goes; with the last one goes its hold.
void DocumentData::LeaveForward(const runtime::Counted<MovedNode>& moved) noexcept {
  if (moved->ReferenceCount() != 1) return;
  const Forward now = moved->now;
  if (!now.data->Frozen()) now.data->moves_->arrived.erase(now.id);
  now.data->Release(now.id);
}

void DocumentData::ForgetMoved(NodeId id) noexcept {
  const auto found = moves_->left.find(id);
  const runtime::Counted<MovedNode> moved = std::move(found->second);
  moves_->left.erase(found);
  FreeNode(id);
  LeaveForward(moved);
}

}  // namespace kx::dom
