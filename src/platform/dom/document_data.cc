// See document_data.h.
#include "platform/dom/document_data.h"

#include "platform/dom/document_impl.h"
#include "platform/dom/dtd.h"

#include <cstring>
#include <new>

namespace kx::dom {

namespace {

constexpr std::uint16_t kMostHolds = 0xFFFF;
constexpr std::uint32_t kLeastGarbage = 512;  // below this a collection is not worth the walk
constexpr std::uint8_t kUnknown = 0;
constexpr std::uint8_t kLive = 1;
constexpr std::uint8_t kDead = 2;

}  // namespace

DocumentData::DocumentData(DocumentImpl* owner) : owner_(owner) {
  nodes_.Append(NodeRecord{});  // kNoNode
  NodeRecord document{};
  document.type = NodeType::kDocument;
  nodes_.Append(document);
}

DocumentData::~DocumentData() = default;

NodeId DocumentData::DocumentElement() const noexcept {
  NodeId id = nodes_[kDocumentNode].first;
  while (id != kNoNode && nodes_[id].type != NodeType::kElement) id = nodes_[id].next;
  return id;
}

StorageCounters DocumentData::Counters() const noexcept {
  StorageCounters counters;
  counters.nodeRecords = nodes_.size() - 1 - freeNodes_;
  counters.nodeCapacity = nodes_.capacity();
  counters.textBytes = textCapacity_;
  counters.heapLiveBytes = heap_.LiveBytes();
  counters.heapCapacityBytes = heap_.CapacityBytes();
  counters.nameBytes = names_.Bytes();
  counters.totalBytes = sizeof(DocumentData) + sizeof(DocumentImpl) +
                        nodes_.capacity() * sizeof(NodeRecord) + textCapacity_ +
                        heap_.CapacityBytes() + counters.nameBytes;
  return counters;
}

// Nodes ------------------------------------------------------------------------------------------

NodeId DocumentData::NewNode(NodeType type, NameId name) {
  NoteDetached();
  NodeId id = firstFree_;
  if (id != kNoNode) {
    firstFree_ = nodes_[id].next;
    --freeNodes_;
    idsInOrder_ = false;
  } else {
    id = nodes_.Extend(1);
  }
  NodeRecord& record = nodes_[id];
  record = NodeRecord{};
  record.type = type;
  record.name = name;
  return id;
}

void DocumentData::InsertChild(NodeId parent, NodeId child, NodeId before) {
  if ((nodes_[parent].flags & kInlineText) != 0) {
    const NodeId text = MaterializeInlineText(parent);
    if (IsInlineTextId(before)) before = text;
  }
  NodeRecord& owner = nodes_[parent];
  NodeRecord& record = nodes_[child];
  const NodeId previous = before == kNoNode ? owner.last : nodes_[before].prev;
  record.parent = parent;
  record.prev = previous;
  record.next = before;
  (previous == kNoNode ? owner.first : nodes_[previous].next) = child;
  (before == kNoNode ? owner.last : nodes_[before].prev) = child;
  idsInOrder_ = false;
  ++editVersion_;
}

void DocumentData::RemoveChild(NodeId child) {
  NodeRecord& record = nodes_[child];
  NodeRecord& owner = nodes_[record.parent];
  (record.prev == kNoNode ? owner.first : nodes_[record.prev].next) = record.next;
  (record.next == kNoNode ? owner.last : nodes_[record.next].prev) = record.prev;
  record.parent = record.prev = record.next = kNoNode;
  ++editVersion_;
  ++detachedSinceCollect_;
}

void DocumentData::AppendAttribute(NodeId element, NodeId attribute) {
  NodeRecord& record = nodes_[attribute];
  NodeId last = nodes_[element].firstAttribute;
  // The first attribute's `prev` leads to the last one, so that appending is constant work.
  if (last == kNoNode) {
    nodes_[element].firstAttribute = attribute;
    record.prev = attribute;
  } else {
    const NodeId first = last;
    last = nodes_[first].prev;
    nodes_[last].next = attribute;
    record.prev = last;
    nodes_[first].prev = attribute;
  }
  record.parent = element;
  record.next = kNoNode;
  idsInOrder_ = false;
  ++editVersion_;
}

void DocumentData::RemoveAttribute(NodeId attribute) {
  NodeRecord& record = nodes_[attribute];
  NodeRecord& owner = nodes_[record.parent];
  const NodeId first = owner.firstAttribute;
  if (attribute == first) {
    owner.firstAttribute = record.next;
    if (record.next != kNoNode) nodes_[record.next].prev = record.prev;
  } else {
    nodes_[record.prev].next = record.next;
    nodes_[record.next == kNoNode ? first : record.next].prev = record.prev;
  }
  record.parent = record.prev = record.next = kNoNode;
  ++editVersion_;
  ++detachedSinceCollect_;
}

// Texts ------------------------------------------------------------------------------------------

void DocumentData::FreeOwnText(NodeRecord& record) noexcept {
  if ((record.flags & kHeapText) != 0) heap_.Free(record.textBegin, record.textLength);
  record.flags &= static_cast<std::uint8_t>(~(kHeapText | kInlineText | kPlainText));
  record.textBegin = 0;
  record.textLength = 0;
}

void DocumentData::SetOwnText(NodeId id, std::string_view text) {
  if (IsInlineTextId(id)) id = OwnerOfInlineText(id);
  const bool data = IsCharacterData(nodes_[id].type);
  const bool store = !text.empty();
  // The new text may be a part of the old one: store it before the old one goes.
  const std::uint32_t begin = store ? heap_.Store(text) : 0;
  NodeRecord& record = nodes_[id];
  FreeOwnText(record);
  if (!data) ++editVersion_;
  if (!store) return;
  record.textBegin = begin;
  record.textLength = static_cast<std::uint32_t>(text.size());
  record.flags |= static_cast<std::uint8_t>(data ? kHeapText : kHeapText | kInlineText);
}

NodeId DocumentData::MaterializeInlineText(NodeId owner) {
  const NodeId text = NewNode(NodeType::kText, 0);
  NodeRecord& record = nodes_[text];
  NodeRecord& holder = nodes_[owner];
  record.textBegin = holder.textBegin;
  record.textLength = holder.textLength;
  record.flags = holder.flags & (kHeapText | kPlainText);
  record.parent = owner;
  holder.flags &= static_cast<std::uint8_t>(~(kInlineText | kHeapText | kPlainText));
  holder.first = text;
  holder.last = text;
  idsInOrder_ = false;
  return text;
}

void DocumentData::RemoveChildren(NodeId id) {
  NodeRecord& record = nodes_[id];
  if ((record.flags & kInlineText) != 0) {
    FreeOwnText(record);
  } else {
    NodeId child = record.first;
    while (child != kNoNode) {
      NodeRecord& gone = nodes_[child];
      child = gone.next;
      gone.parent = gone.prev = gone.next = kNoNode;
      ++detachedSinceCollect_;
    }
    record.first = record.last = kNoNode;
  }
  ++editVersion_;
}

char* DocumentData::ReserveText(std::size_t bytes) {
  text_.reset(static_cast<char*>(std::malloc(bytes)));
  if (!text_) throw std::bad_alloc();
  textBytes_ = textCapacity_ = bytes;
  return text_.get();
}

std::size_t DocumentData::ExtendText(std::size_t bytes) {
  const std::size_t offset = textBytes_;
  const std::size_t wanted = textBytes_ + bytes;
  if (wanted > 0xFFFFFFFFU) throw std::bad_alloc();
  if (wanted > textCapacity_) {
    const std::size_t capacity = wanted + wanted / 2;
    auto* grown = static_cast<char*>(std::realloc(text_.get(), capacity));
    if (grown == nullptr) throw std::bad_alloc();
    static_cast<void>(text_.release());  // realloc took it over
    text_.reset(grown);
    textCapacity_ = capacity;
  }
  textBytes_ = wanted;
  return offset;
}

void DocumentData::SetDocumentType(std::unique_ptr<Dtd> dtd) { dtd_ = std::move(dtd); }

// Copies -----------------------------------------------------------------------------------------

NameId DocumentData::ImportName(const DocumentData& source, NameId name) {
  if (&source == this || name == 0) return name;
  if (importedNames_.size() <= name) importedNames_.resize(name + 1, 0);
  if (importedNames_[name] == 0) {
    const UriId uri = source.names_.UriOf(name);
    const UriId here = uri <= kXmlUri ? uri : names_.InternUri(source.names_.UriText(uri));
    importedNames_[name] = names_.InternName(source.names_.QualifiedText(name), here);
  }
  return importedNames_[name];
}

// A copy of one record and its attributes, without children.
NodeId DocumentData::CopyRecord(const DocumentData& source, NodeId from) {
  const NodeId copy = NewNode(source.nodes_[from].type, 0);
  nodes_[copy].name = ImportName(source, source.nodes_[from].name);
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

void DocumentData::CopyAttributes(const DocumentData& source, NodeId from, NodeId copy) {
  for (NodeId at = source.nodes_[from].firstAttribute; at != kNoNode; at = source.nodes_[at].next) {
    const NodeId attribute = CopyRecord(source, at);
    AppendAttribute(copy, attribute);
    CopyChildren(source, at, attribute);  // texts and entity references: no attributes below
  }
}

// Copies all that is below `from` to below `copy`, walking both trees in step.
void DocumentData::CopyChildren(const DocumentData& source, NodeId from, NodeId copy) {
  if (!source.HasLinkedChildren(from)) return;
  NodeId at = source.nodes_[from].first;
  while (true) {
    const NodeId child = CopyRecord(source, at);
    CopyAttributes(source, at, child);
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
  importedNames_.clear();
  ++collectPause_;  // the copy is detached and nobody holds it yet
  const NodeId copy = CopyRecord(source, from);
  CopyAttributes(source, from, copy);
  const NodeType type = source.nodes_[from].type;
  // The content of an attribute or entity reference is the node itself, whatever depth is asked.
  if (deep || type == NodeType::kAttribute || type == NodeType::kEntityReference) {
    CopyChildren(source, from, copy);
  } else {
    FreeInlineText(copy);
  }
  --collectPause_;
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
  dtd_ = source.dtd_ ? std::make_unique<Dtd>(*source.dtd_) : nullptr;
  firstFree_ = source.firstFree_;
  freeNodes_ = source.freeNodes_;
  detachedSinceCollect_ = source.detachedSinceCollect_;
  idsInOrder_ = source.idsInOrder_;
  if (source.handles_.load(std::memory_order_relaxed) != 0 || source.forwards_) DropHolds();
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
  NodeRecord& old = source.nodes_[from];
  if (old.holds == 0) {
    source.FreeNode(from);
    return;
  }
  if (!source.forwards_) {
    source.forwards_ = std::make_unique<std::unordered_map<NodeId, Forward>>();
  }
  source.forwards_->emplace(from, Forward{this, to});
  Hold(to);
  source.ClearNode(from);
  old.type = NodeType::kMoved;
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
  ++collectPause_;
  ForwardTree(source, id, copy);
  --collectPause_;
  ++source.editVersion_;
  return copy;
}

Forward DocumentData::ForwardOf(NodeId id) const {
  const auto found = forwards_->find(id);
  return found->second;
}

void DocumentData::ForgetMoved(NodeId id) noexcept {
  const auto found = forwards_->find(id);
  const Forward forward = found->second;
  forwards_->erase(found);
  FreeNode(id);
  forward.data->Release(forward.id);
}

// Handles ----------------------------------------------------------------------------------------

void DocumentData::Hold(NodeId id) noexcept {
  if (frozen_) {
    if (handles_.fetch_add(1, std::memory_order_relaxed) == 0 && owner_ != nullptr) {
      owner_->AddRef();
    }
    return;
  }
  const std::uint32_t handles = handles_.load(std::memory_order_relaxed);
  handles_.store(handles + 1, std::memory_order_relaxed);
  if (handles == 0 && owner_ != nullptr) owner_->AddRef();
  if (nodes_[id].holds != kMostHolds) ++nodes_[id].holds;
}

void DocumentData::Release(NodeId id) noexcept {
  if (frozen_) {
    if (handles_.fetch_sub(1, std::memory_order_acq_rel) == 1) ReleaseLast();
    return;
  }
  NodeRecord& record = nodes_[id];
  if (record.holds != kMostHolds && --record.holds == 0 && record.type == NodeType::kMoved) {
    ForgetMoved(id);
  }
  const std::uint32_t handles = handles_.load(std::memory_order_relaxed) - 1;
  handles_.store(handles, std::memory_order_relaxed);
  if (handles == 0) ReleaseLast();
}

void DocumentData::ReleaseLast() noexcept {
  DocumentImpl* owner = owner_;
  if (!current_) delete this;
  if (owner != nullptr) owner->Release();
}

void DocumentData::Retire() noexcept {
  current_ = false;
  if (handles_.load(std::memory_order_acquire) == 0) delete this;
}

// Collection -------------------------------------------------------------------------------------

void DocumentData::NoteDetached() {
  ++detachedSinceCollect_;
  const std::uint32_t used = nodes_.size() - freeNodes_;
  if (collectPause_ == 0 && detachedSinceCollect_ > kLeastGarbage &&
      detachedSinceCollect_ > used / 2) {
    Collect();
  }
}

void DocumentData::ClearNode(NodeId id) noexcept {
  NodeRecord& record = nodes_[id];
  const bool hasText = (record.flags & kInlineText) != 0 || IsCharacterData(record.type);
  if (hasText) FreeOwnText(record);
  const std::uint16_t holds = record.holds;
  record = NodeRecord{};
  record.holds = holds;
}

void DocumentData::FreeNode(NodeId id) noexcept {
  ClearNode(id);
  nodes_[id].next = firstFree_;
  firstFree_ = id;
  ++freeNodes_;
}

// Marks each node by whether its tree is the document's or holds a node that a handle names.
void DocumentData::MarkLive(std::vector<std::uint8_t>& marks) const {
  const auto rootOf = [this, &marks](NodeId id) {
    while (nodes_[id].parent != kNoNode && marks[id] != kLive) {
      id = nodes_[id].parent;
    }
    return id;
  };
  marks[kDocumentNode] = kLive;
  for (NodeId id = kDocumentNode; id < nodes_.size(); ++id) {
    if (nodes_[id].holds == 0 || marks[id] == kLive) continue;
    const NodeId root = rootOf(id);
    for (NodeId at = id; at != root; at = nodes_[at].parent) marks[at] = kLive;
    marks[root] = kLive;
  }
  for (NodeId id = kDocumentNode; id < nodes_.size(); ++id) {
    NodeId at = id;
    while (marks[at] == kUnknown && nodes_[at].parent != kNoNode) at = nodes_[at].parent;
    const std::uint8_t mark = marks[at] == kLive ? kLive : kDead;
    marks[at] = mark;
    for (NodeId below = id; below != at; below = nodes_[below].parent) marks[below] = mark;
  }
}

void DocumentData::Collect() {
  std::vector<std::uint8_t> marks(nodes_.size(), kUnknown);
  MarkLive(marks);
  // From the end, so that the lowest index is reused first.
  for (NodeId id = nodes_.size() - 1; id > kDocumentNode; --id) {
    const NodeType type = nodes_[id].type;
    if (type == NodeType::kFree || type == NodeType::kMoved || marks[id] == kLive) continue;
    FreeNode(id);
  }
  detachedSinceCollect_ = 0;
}

}  // namespace kx::dom
