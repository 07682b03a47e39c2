// See document_data.h.
#include "platform/dom/document_data.h"

#include "platform/dom/cursor.h"
#include "platform/dom/document_impl.h"
#include "platform/dom/dtd.h"

#include <cassert>
#include <new>

namespace kx::dom {

namespace {

constexpr std::uint32_t kLeastGarbage = 512;  // below this a collection is not worth the walk
constexpr std::uint8_t kUnknown = 0;
constexpr std::uint8_t kLive = 1;
constexpr std::uint8_t kDead = 2;

}  // namespace

// Versions of different contents never meet, so that a cache cannot take one for another.
DocumentData::DocumentData(DocumentImpl* owner) : owner_(owner) {
  static std::atomic<std::uint32_t> contents{0};
  editVersion_ = std::uint64_t{contents.fetch_add(1, std::memory_order_relaxed)} << 32U;
  nodes_.Append(NodeRecord{});  // kNoNode
  NodeRecord document{};
  document.type = NodeType::kDocument;
  nodes_.Append(document);
}

DocumentData::~DocumentData() {
  if (const DerivedData* derived = derived_.load(std::memory_order_acquire)) derived->Release();
  // Frozen content does not count the handles of single nodes: what they led to is let go here.
  if (!moves_) return;
  for (const auto& entry : moves_->left) LeaveForward(entry.second);
}

const DerivedData& DocumentData::KeepDerived(
    runtime::Counted<const DerivedData> derived) const noexcept {
  assert(frozen_ && derived);
  const DerivedData* first = nullptr;
  if (derived_.compare_exchange_strong(first, derived.Get(), std::memory_order_acq_rel)) {
    return *derived.Detach();  // the destructor gives the reference back
  }
  return *first;
}

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
  if (positions_) {
    positions_->NoteInserted(ChildrenOf(parent), before, previous == kNoNode);
    if (record.type == NodeType::kElement) {
      positions_->NoteElementInserted(parent, child, before, previous == kNoNode);
    }
  }
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
  if (positions_) {
    positions_->NoteRemoved(ChildrenOf(record.parent), child, record.prev, record.next);
    if (record.type == NodeType::kElement) {
      positions_->NoteElementRemoved(record.parent, Cursor(this, child));
    }
  }
  (record.prev == kNoNode ? owner.first : nodes_[record.prev].next) = record.next;
  (record.next == kNoNode ? owner.last : nodes_[record.next].prev) = record.prev;
  record.parent = record.prev = record.next = kNoNode;
  ++editVersion_;
  ++detachedSinceCollect_;
}

// The first attribute's `prev` leads to the last one, so that appending is constant work.
void DocumentData::InsertAttribute(NodeId element, NodeId attribute, NodeId before) {
  NodeRecord& record = nodes_[attribute];
  const NodeId first = nodes_[element].firstAttribute;
  if (positions_) positions_->NoteInserted(AttributesOf(element), before, before == first);
  record.parent = element;
  record.next = before;
  if (first == kNoNode) {
    record.prev = attribute;
  } else {
    NodeRecord& next = nodes_[before == kNoNode ? first : before];
    record.prev = next.prev;
    next.prev = attribute;
    if (before != first) nodes_[record.prev].next = attribute;
  }
  if (before == first) nodes_[element].firstAttribute = attribute;
  idsInOrder_ = false;
  ++editVersion_;
}

void DocumentData::RemoveAttribute(NodeId attribute) {
  NodeRecord& record = nodes_[attribute];
  NodeRecord& owner = nodes_[record.parent];
  const NodeId first = owner.firstAttribute;
  if (positions_) {
    positions_->NoteRemoved(AttributesOf(record.parent), attribute,
                            attribute == first ? kNoNode : record.prev, record.next);
  }
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
  if (!data) {
    ++editVersion_;
    if (positions_) positions_->ForgetChildren(id);
  }
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
  if (positions_) positions_->ForgetChildren(id);
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

void DocumentData::SupplyAttribute(NodeId element, NameId name, std::string_view value) {
  const std::uint32_t begin = value.empty() ? 0 : heap_.Store(value);
  const NodeId id = nodes_.Extend(1);
  NodeRecord& record = nodes_[id];
  record = NodeRecord{};
  record.parent = element;
  record.type = NodeType::kAttribute;
  record.name = name;
  record.flags = kDefaulted;
  if (!value.empty()) {
    record.textBegin = begin;
    record.textLength = static_cast<std::uint32_t>(value.size());
    record.flags |= kHeapText | kInlineText;
  }
  const NodeId first = nodes_[element].firstAttribute;
  record.prev = first == kNoNode ? id : nodes_[first].prev;
  if (first == kNoNode) {
    nodes_[element].firstAttribute = id;
  } else {
    nodes_[record.prev].next = id;
    nodes_[first].prev = id;
  }
}

void DocumentData::SetDocumentType(std::unique_ptr<Dtd> dtd) { dtd_ = std::move(dtd); }

// Handles ----------------------------------------------------------------------------------------

void DocumentData::HoldSlowly(NodeId id) noexcept {
  if (frozen_) {
    if (handles_.fetch_add(1, std::memory_order_relaxed) == 0 && owner_ != nullptr) {
      owner_->AddRef();
    }
    return;
  }
  const std::uint32_t handles = handles_.load(std::memory_order_relaxed);
  handles_.store(handles + 1, std::memory_order_relaxed);
  if (handles == 0 && owner_ != nullptr) owner_->AddRef();
  if (nodes_[id].holds != kMostHolds) {
    ++nodes_[id].holds;
  } else {
    ++MakeMoves().moreHolds[id];
  }
}

// True when it was the last one.
bool DocumentData::DropHold(NodeId id) noexcept {
  if (nodes_[id].holds == kMostHolds && moves_) {
    const auto more = moves_->moreHolds.find(id);
    if (more != moves_->moreHolds.end()) {
      if (--more->second == 0) moves_->moreHolds.erase(more);
      return false;
    }
  }
  return --nodes_[id].holds == 0;
}

void DocumentData::ReleaseSlowly(NodeId id) noexcept {
  if (frozen_) {
    if (handles_.fetch_sub(1, std::memory_order_acq_rel) == 1) ReleaseLast();
    return;
  }
  if (DropHold(id) && nodes_[id].type == NodeType::kMoved) ForgetMoved(id);
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
  if (positions_) positions_->Forget(id);
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
