// Candidates of steps, and filters. See evaluator.h.
#include "platform/patterns/evaluator.h"
#include "platform/patterns/evaluator_scan.h"
#include "platform/text/unicode.h"

#include <algorithm>

namespace kx::patterns {

using dom::Cursor;
using dom::kNoNode;
using dom::NodeId;
using dom::NodeType;

// Nodes ------------------------------------------------------------------------------------------

// Of an attribute its element, of an inline text its owner.
NodeId Evaluator::ParentOf(NodeId id) const {
  if (dom::IsInlineTextId(id)) return dom::OwnerOfInlineText(id);
  const NodeId parent = records_[id].parent;
  return retired_ && parent == dom::kDocumentNode ? kNoNode : parent;
}

bool Evaluator::PassesName(const NodeTest& test, const NodeRecord& record) const {
  switch (test.rule) {
    case NameRule::kAny:
      return true;
    case NameRule::kWritten:
      return nameTable_->QNameOf(record.name) == names_[test.name];
    case NameRule::kPrefix:
      return nameTable_->At(nameTable_->QNameOf(record.name)).prefix == names_[test.name];
    case NameRule::kNamespaceName:
      if (nameTable_->LocalText(record.name) != code_.Name(test.name)) return false;
      break;
    case NameRule::kNamespace:
      break;
  }
  return nameTable_->UriText(nameTable_->UriOf(record.name)) == code_.uris[test.uri];
}

// The attribute of an element, or kNoNode. `name` is an index into the pattern's names.
NodeId Evaluator::FindAttribute(NodeId node, std::uint32_t name) {
  const std::uint32_t wanted = names_[name];
  if (wanted == kUnknownName || dom::IsInlineTextId(node)) return kNoNode;
  const NodeRecord& record = records_[node];
  if (record.type != NodeType::kElement) return kNoNode;
  NodeId at = record.firstAttribute;
  std::uint64_t passed = 0;
  while (at != kNoNode && nameTable_->QNameOf(records_[at].name) != wanted) {
    at = records_[at].next;
    ++passed;
  }
  work_ += passed;
  return at;
}

// Steps ------------------------------------------------------------------------------------------

// Appends what the step, its "//" left aside, gives from one context node.
void Evaluator::StepFrom(const Step& step, NodeId context, Stop stop) {
  if (step.axis > Axis::kAttribute) return PushOther(step, context);
  if (step.positional) return PushPlaced(step, context);
  ForEachCandidate(step, context, [&](NodeId candidate) {
    if (!PassesAll(step, candidate)) return true;
    stack_.push_back(candidate);
    return stop == Stop::kAtEnd;
  });
}

// Children, attributes or the node itself, where some filter asks for places.
void Evaluator::PushPlaced(const Step& step, NodeId context) {
  const std::size_t base = stack_.size();
  const Filter& first = code_.filters[step.firstFilter];
  const bool counting = first.kind == FilterKind::kPosition && first.position >= 0;
  std::int32_t left = counting ? first.position : -1;
  ForEachCandidate(step, context, [&](NodeId candidate) {
    if (!counting || left == 0) stack_.push_back(candidate);
    return left-- != 0;
  });
  FilterList(step, base, counting ? 1 : 0);
}

void Evaluator::PushOther(const Step& step, NodeId context) {
  const std::size_t base = stack_.size();
  switch (step.axis) {
    case Axis::kSelf:
      stack_.push_back(context);
      break;
    case Axis::kParent:
      if (const NodeId parent = ParentOf(context); parent != kNoNode) stack_.push_back(parent);
      break;
    case Axis::kGroup:
      return PushGroup(step, context);
    case Axis::kAncestor:
      if (const NodeId found = NearestAncestor(step.expr, context); found != kNoNode) {
        stack_.push_back(found);
      }
      break;
    case Axis::kContext:
      return PushContext(step);
    default:
      PushIds(step, context);
      break;
  }
  ++work_;
  FilterList(step, base, 0);
}

// The first filter on a context counts by the list that selected it.
void Evaluator::PushContext(const Step& step) {
  const ContextFrame self{start_, 0, 1};
  const std::span<const ContextFrame> frames =
      options_.contexts.empty() ? std::span(&self, 1) : options_.contexts;
  const auto size = static_cast<std::int64_t>(frames.size());
  const std::int64_t number = step.number < 0 ? size + step.number : step.number;
  if (number < 0 || number >= size) return;
  const ContextFrame& frame = frames[static_cast<std::size_t>(number)];
  const Place place{frame.node, frame.index, frame.count};
  if (step.filterCount > 0 && !Passes(code_.filters[step.firstFilter], place)) return;
  const std::size_t base = stack_.size();
  stack_.push_back(frame.node);
  FilterList(step, base, 1);
}

// Identifiers ------------------------------------------------------------------------------------

void Evaluator::PushIds(const Step& step, NodeId context) {
  if (step.axis == Axis::kIdText) return PushId(code_.Literal(step.literal));
  const std::size_t base = stack_.size();
  PushSet(step.expr, context);
  const std::size_t end = stack_.size();
  for (std::size_t i = base; i < end; ++i) PushIdsIn(stack_[i]);
  DropBelow(base, end);
  PutInOrder(base);
}

// The elements with the IDs that stand in the node's text, between blanks.
void Evaluator::PushIdsIn(NodeId node) {
  std::string_view left = TextOf(node, leftText_);
  work_ += 1 + left.size() / 16;
  while (!left.empty()) {
    const auto blank = std::find_if(left.begin(), left.end(), [](char c) {
      return text::IsXmlSpace(static_cast<unsigned char>(c));
    });
    const auto length = static_cast<std::size_t>(blank - left.begin());
    if (length != 0) PushId(left.substr(0, length));
    left.remove_prefix(std::min(length + 1, left.size()));
  }
}

void Evaluator::PushId(std::string_view value) {
  const auto& ids = Ids();
  if (value.size() > Remembered().longestId) return;
  const auto found = ids.find(std::string(value));
  if (found != ids.end()) stack_.push_back(found->second);
}

// The elements of the document by the values of their attributes of type ID.
const std::unordered_map<std::string, NodeId>& Evaluator::Ids() {
  auto& ids = Remembered().ids;
  if (ids) return *ids;
  ids.emplace();
  const Cursor document = At(dom::kDocumentNode);
  for (Cursor at = document; at; at = at.NextInTree(document)) {
    if (!at.IsElement()) continue;
    for (Cursor attribute = at.FirstAttribute(); attribute; attribute = attribute.Next()) {
      if (!IsId(attribute)) continue;
      std::string value = attribute.TextContent();
      Remembered().longestId = std::max(Remembered().longestId, value.size());
      ids->emplace(std::move(value), at.Id());
    }
  }
  return *ids;
}

bool Evaluator::IsId(const Cursor& attribute) const {
  if ((records_[attribute.Id()].flags & dom::kIdAttribute) != 0) return true;
  return options_.typing != nullptr && options_.typing->IsId(attribute);
}

// Filters ----------------------------------------------------------------------------------------

// Applies the step's filters from number `firstFilter` on to the list at `base`, one after the
// other, each with places of its own.
void Evaluator::FilterList(const Step& step, std::size_t base, std::uint32_t firstFilter) {
  for (std::uint32_t i = firstFilter; i < step.filterCount && stack_.size() > base; ++i) {
    FilterOnce(code_.filters[step.firstFilter + i], base);
  }
}

void Evaluator::FilterOnce(const Filter& filter, std::size_t base) {
  const std::size_t end = stack_.size();
  const auto count = static_cast<std::uint32_t>(end - base);
  std::size_t kept = base;
  for (std::size_t i = base; i < end; ++i) {
    const Place place{stack_[i], static_cast<std::uint32_t>(i - base), count};
    if (Passes(filter, place)) stack_[kept++] = place.node;
  }
  stack_.resize(kept);
}

bool Evaluator::PassesFirst(const Step& step, std::uint32_t count, NodeId node) {
  for (std::uint32_t i = 0; i < count; ++i) {
    if (!Passes(code_.filters[step.firstFilter + i], {node, 0, 1})) return false;
  }
  return true;
}

bool Evaluator::Passes(const Filter& filter, const Place& place) {
  switch (filter.kind) {
    case FilterKind::kAttributeEquals:
      return AttributeEquals(filter, place.node);
    case FilterKind::kHasAttribute:
      return FindAttribute(place.node, filter.name) != kNoNode;
    case FilterKind::kPosition: {
      const std::int64_t wanted =
          filter.position < 0 ? std::int64_t{place.count} + filter.position : filter.position;
      return wanted == std::int64_t{place.index};
    }
    case FilterKind::kLast:
      return place.index + 1 == place.count;
    case FilterKind::kTruth:
      break;
  }
  return IsTrue(filter.expr, place);
}

bool Evaluator::AttributeEquals(const Filter& filter, NodeId node) {
  const NodeId attribute = FindAttribute(node, filter.name);
  if (attribute == kNoNode) return false;
  const std::string_view wanted = code_.Literal(filter.literal);
  const NodeRecord& record = records_[attribute];
  if ((record.flags & dom::kInlineText) != 0) {
    return record.textLength == wanted.size() && data_->OwnText(attribute) == wanted;
  }
  return TextOf(attribute, leftText_) == wanted;
}

// Below a set ------------------------------------------------------------------------------------

// True when the step with "//" can be taken by walking the trees below the set once: no filter asks
// for places, and all of the set are nodes that content hangs on.
bool Evaluator::CanScanFrom(const Step& step, std::size_t base) const {
  if (!step.descend || step.positional || step.axis > Axis::kAttribute) return false;
  return std::all_of(stack_.begin() + static_cast<std::ptrdiff_t>(base), stack_.end(),
                     [this](NodeId id) {
                       if (dom::IsInlineTextId(id)) return false;
                       const NodeType type = records_[id].type;
                       return type == NodeType::kElement || type == NodeType::kDocument ||
                              type == NodeType::kDocumentFragment;
                     });
}

Evaluator::Order Evaluator::Scan(const Step& step, std::size_t base) {
  const std::size_t end = stack_.size();
  const Order order = ScanBelow(step, base, [this](NodeId found) {
    stack_.push_back(found);
    return true;
  });
  DropBelow(base, end);
  return order;
}

// Replaces the set at `base` by itself and all that is below it.
Evaluator::Order Evaluator::ExpandBelow(std::size_t base) {
  std::vector<NodeId> inTrees;
  std::vector<NodeId> inAttributes;
  for (std::size_t i = base; i < stack_.size(); ++i) {
    (IsInAttribute(stack_[i]) ? inAttributes : inTrees).push_back(stack_[i]);
  }
  stack_.resize(base);
  ExpandTrees(inTrees);
  for (const NodeId context : inAttributes) ExpandOne(context);
  Order order = inAttributes.empty() ? Order::kSorted : Order::kMixed;
  Sort(base, order);
  return order;
}

// `contexts` are in document order; one that is below an earlier one is met on the way.
void Evaluator::ExpandTrees(const std::vector<NodeId>& contexts) {
  std::size_t next = 0;
  while (next < contexts.size()) {
    const Cursor root = At(contexts[next++]);
    for (Cursor at = root; at; at = at.NextInTree(root)) {
      ++work_;
      stack_.push_back(at.Id());
      if (next < contexts.size() && at.Id() == contexts[next]) ++next;
    }
  }
}

void Evaluator::ExpandOne(NodeId context) {
  const Cursor root = At(context);
  for (Cursor at = root; at; at = at.NextInTree(root)) stack_.push_back(at.Id());
}

// True for attributes and the texts and references below them.
bool Evaluator::IsInAttribute(NodeId id) const {
  while (id != kNoNode) {
    const NodeType type = At(id).Type();
    if (type == NodeType::kAttribute) return true;
    if (type != NodeType::kText && type != NodeType::kEntityReference) return false;
    id = ParentOf(id);
  }
  return false;
}

}  // namespace kx::patterns
