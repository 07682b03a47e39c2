// Sets of nodes and paths. See evaluator.h.
#include "platform/patterns/evaluator.h"

#include "platform/dom/document_impl.h"
#include "platform/patterns/evaluator_scan.h"

namespace kx::patterns {

using dom::kDocumentNode;
using dom::kNoNode;
using dom::NodeId;

namespace {

// A content that a load has replaced hangs on to its nodes, but they have no document any more.
bool IsRetired(const dom::DocumentData& data) {
  return data.Owner() != nullptr && data.Owner()->current != &data;
}

}  // namespace

Evaluator::Evaluator(const Code& code, const dom::Cursor& start, const QueryOptions& options)
    : code_(code),
      data_(&start.Data()),
      records_(&start.Data().Record(kNoNode)),
      nameTable_(&start.Data().Names()),
      options_(options),
      start_(start.Id()),
      retired_(IsRetired(start.Data())),
      names_(code, start.Data().Names()),
      order_(start.Data()),
      texts_(start.Data()),
      patience_(options.patience.value_or(start.Data().NodeCount() + std::uint64_t{64})) {}

std::vector<NodeId> Evaluator::SelectAll() {
  stack_.clear();
  PushSet(code_.root, start_);
  return std::move(stack_);
}

NodeId Evaluator::SelectFirst() { return FirstOf(code_.root, start_); }

bool Evaluator::Holds() { return IsTrue(code_.root, {start_, 0, 1}); }

bool Evaluator::Matches(NodeId node) { return MatchesExpr(code_.root, node); }

// Whole sets -------------------------------------------------------------------------------------

// Appends the set to the stack, in document order.
void Evaluator::PushSet(ExprId id, NodeId context) {
  const Expr& expr = code_.exprs[id];
  if (expr.invariant && id != code_.root) {
    const std::vector<NodeId>& set = InvariantSet(id);
    stack_.insert(stack_.end(), set.begin(), set.end());
  } else if (expr.kind == ExprKind::kUnion) {
    PushUnion(expr, context);
  } else {
    PushPath(expr, context, Limit::kAll);
  }
}

void Evaluator::PushUnion(const Expr& expr, NodeId context) {
  const std::size_t base = stack_.size();
  for (std::uint32_t i = 0; i < expr.count; ++i) PushSet(code_.links[expr.first + i], context);
  order_.Sort(stack_, base, start_);
}

const std::vector<NodeId>& Evaluator::InvariantSet(ExprId id) {
  if (const auto& known = Remembered().invariants[id].all) return *known;
  const Expr& expr = code_.exprs[id];
  const std::size_t base = stack_.size();
  if (expr.kind == ExprKind::kUnion) {
    PushUnion(expr, start_);
  } else {
    PushPath(expr, start_, Limit::kAll);
  }
  const auto first = stack_.begin() + static_cast<std::ptrdiff_t>(base);
  auto& all = Remembered().invariants[id].all;
  all.emplace(first, stack_.end());
  stack_.resize(base);
  return *all;
}

// One node of a set
// --------------------------------------------------------------------------------

// The first node of the set in document order, or kNoNode.
NodeId Evaluator::FirstOf(ExprId id, NodeId context) {
  const Expr& expr = code_.exprs[id];
  if (expr.invariant && id != code_.root) return InvariantFirst(id);
  if (expr.kind == ExprKind::kUnion) return FirstOfUnion(expr, context);
  if (!expr.straight) return FirstByWatching(id, context, Limit::kFirst);
  const Step* step = &code_.steps[expr.first];
  return FirstAlong(step, step + expr.count, context);
}

NodeId Evaluator::InvariantFirst(ExprId id) {
  if (const auto known = Remembered().invariants[id].first) return *known;
  const Expr& expr = code_.exprs[id];
  const NodeId first = expr.kind == ExprKind::kUnion ? FirstOfUnion(expr, start_)
                                                     : FirstDirectly(id, start_, Limit::kFirst);
  Remembered().invariants[id].first = first;
  return first;
}

NodeId Evaluator::FirstOfUnion(const Expr& expr, NodeId context) {
  const std::size_t base = stack_.size();
  for (std::uint32_t i = 0; i < expr.count; ++i) {
    const NodeId first = FirstOf(code_.links[expr.first + i], context);
    if (first != kNoNode) stack_.push_back(first);
  }
  if (stack_.size() == base) return kNoNode;
  const NodeId first = order_.FirstOf(stack_, base, start_);
  stack_.resize(base);
  return first;
}

bool Evaluator::Exists(ExprId id, NodeId context) {
  const Expr& expr = code_.exprs[id];
  if (expr.invariant) return InvariantFirst(id) != kNoNode;
  if (expr.kind == ExprKind::kUnion) {
    for (std::uint32_t i = 0; i < expr.count; ++i) {
      if (Exists(code_.links[expr.first + i], context)) return true;
    }
    return false;
  }
  if (!expr.straight) return FirstByWatching(id, context, Limit::kAnyOne) != kNoNode;
  const Step* step = &code_.steps[expr.first];
  return FirstAlong(step, step + expr.count, context) != kNoNode;
}

// Answers directly until that has cost as much as a table would, and by the table from then on.
// Asked for kAnyOne, a table's answer is the first one.
NodeId Evaluator::FirstByWatching(ExprId id, NodeId context, Limit limit) {
  if (id == code_.root) return FirstDirectly(id, context, limit);
  if (Site& site = Remembered().sites[id]; site.work > patience_) {
    if (site.table.empty()) {
      std::vector<Rank> table = Tabulate(id, OwnRanks());
      Remembered().sites[id].table = std::move(table);
    }
    const Rank rank = Index().RankOf(context);
    if (rank != kNoRank) {
      const Rank found = Remembered().sites[id].table[rank];
      return found == kNoRank ? kNoNode : Index().NodeAt(found);
    }
  }
  const std::uint64_t before = work_;
  const NodeId first = FirstDirectly(id, context, limit);
  Remembered().sites[id].work += work_ - before;
  return first;
}

NodeId Evaluator::FirstDirectly(ExprId id, NodeId context, Limit limit) {
  const std::size_t base = stack_.size();
  PushPath(code_.exprs[id], context, limit);
  const NodeId first = stack_.size() > base ? stack_[base] : kNoNode;
  stack_.resize(base);
  return first;
}

// The first node at the end of a straight path: as such a path only leads downwards, level by
// level, the first one found is the first in document order. As deep as the path has steps.
NodeId Evaluator::FirstAlong(const Step* step, const Step* end, NodeId context) {
  const bool last = step + 1 == end;
  NodeId first = kNoNode;
  if (step->positional) {
    const std::size_t base = stack_.size();
    PushPlaced(*step, context);
    for (std::size_t i = base; i < stack_.size() && first == kNoNode; ++i) {
      first = last ? stack_[i] : FirstAlong(step + 1, end, stack_[i]);
    }
    stack_.resize(base);
    return first;
  }
  ForEachCandidate(*step, context, [&](NodeId candidate) {
    if (!PassesAll(*step, candidate)) return true;
    first = last ? candidate : FirstAlong(step + 1, end, candidate);
    return first == kNoNode;
  });
  return first;
}

// Paths ------------------------------------------------------------------------------------------

// Appends the path's set: all of it in document order, or one node as `limit` says.
void Evaluator::PushPath(const Expr& path, NodeId context, Limit limit) {
  const std::size_t base = stack_.size();
  stack_.push_back(path.absolute ? kDocumentNode : context);
  TakeSteps(path, base, Order::kFlat, limit);
}

// Takes the path's steps for the set at `base`, of which `order` is known.
void Evaluator::TakeSteps(const Expr& path, std::size_t base, Order order, Limit limit) {
  for (std::uint32_t i = 0; i < path.count && stack_.size() > base; ++i) {
    const Step& step = code_.steps[path.first + i];
    if (limit != Limit::kAll && CanFinishWhileScanning(path, i, base, limit)) {
      Sort(base, order);
      return FinishWhileScanning(path, i, base, limit);
    }
    order = TakeStep(step, base, order, i + 1 == path.count ? limit : Limit::kAll);
  }
  if (stack_.size() - base < 2) return;
  if (limit == Limit::kAll) return Sort(base, order);
  if (limit == Limit::kFirst && order != Order::kFlat && order != Order::kSorted) {
    stack_[base] = order_.FirstOf(stack_, base, start_);
  }
  stack_.resize(base + 1);
}

// True when step number `scan` looks through all that is below, and what follows is straight: then
// each node that it finds can be followed to the end at once, and the scan need not go on behind
// the best end so far.
bool Evaluator::CanFinishWhileScanning(const Expr& path, std::uint32_t scan, std::size_t base,
                                       Limit limit) const {
  const std::uint32_t behind = path.count - scan - 1;
  if (behind > kMostStraightSteps) return false;
  if (!CanScanFrom(code_.steps[path.first + scan], base)) return false;
  if (limit == Limit::kFirst && behind > 0 && !order_.HasKeys()) return false;
  for (std::uint32_t i = scan + 1; i < path.count; ++i) {
    const Step& step = code_.steps[path.first + i];
    if (step.descend || step.axis > Axis::kSelf) return false;
  }
  return true;
}

void Evaluator::FinishWhileScanning(const Expr& path, std::uint32_t scan, std::size_t base,
                                    Limit limit) {
  const Step* step = &code_.steps[path.first + scan];
  const Step* end = &code_.steps[path.first] + path.count;
  const bool straightOn = step + 1 != end;
  NodeId best = kNoNode;
  ScanBelow(*step, base, [&](NodeId found) {
    if (!straightOn) {
      best = found;
      return false;
    }
    if (best != kNoNode && order_.KeyOf(found) >= order_.KeyOf(best)) return false;
    const NodeId first = FirstAlong(step + 1, end, found);
    if (first == kNoNode) return true;
    if (best == kNoNode || order_.KeyOf(first) < order_.KeyOf(best)) best = first;
    return limit != Limit::kAnyOne;
  });
  stack_.resize(base);
  if (best != kNoNode) stack_.push_back(best);
}

// Replaces the set at `base` by what the step makes of it.
Evaluator::Order Evaluator::TakeStep(const Step& step, std::size_t base, Order order, Limit limit) {
  if (step.descend || order == Order::kMixed) Sort(base, order);
  if (!step.descend) return StepFromEach(step, base, order, limit);
  if (CanScanFrom(step, base)) return Scan(step, base);
  return StepFromEach(step, base, ExpandBelow(base), limit);
}

Evaluator::Order Evaluator::StepFromEach(const Step& step, std::size_t base, Order order,
                                         Limit limit) {
  const std::size_t end = stack_.size();
  const Order after = OrderAfter(step, order, end - base);
  const bool inOrder = after == Order::kFlat || after == Order::kSorted;
  const bool one = limit == Limit::kAnyOne || (limit == Limit::kFirst && inOrder);
  for (std::size_t i = base; i < end && !(one && stack_.size() > end); ++i) {
    StepFrom(step, stack_[i], one ? Stop::kAtFirst : Stop::kAtEnd);
  }
  DropBelow(base, end);
  return after;
}

Evaluator::Order Evaluator::OrderAfter(const Step& step, Order before, std::size_t contexts) const {
  if (contexts < 2) before = Order::kFlat;
  switch (step.axis) {
    case Axis::kChild:
      return before == Order::kFlat ? Order::kFlat : Order::kUnknown;
    case Axis::kAttribute:
      return before == Order::kUnknown ? Order::kUnknown : Order::kFlat;
    case Axis::kSelf:
      return before;
    case Axis::kGroup:
      return contexts < 2 ? Order::kSorted : Order::kMixed;
    case Axis::kIdNodes:
      return Order::kMixed;
    default:  // at most one node each
      return contexts < 2 ? Order::kFlat : Order::kMixed;
  }
}

void Evaluator::Sort(std::size_t base, Order& order) {
  if (order == Order::kFlat || order == Order::kSorted) return;
  order_.Sort(stack_, base, start_);
  order = Order::kSorted;
}

// Takes the old set, numbers `base` to `end`, from under the new one.
void Evaluator::DropBelow(std::size_t base, std::size_t end) {
  const auto first = stack_.begin() + static_cast<std::ptrdiff_t>(base);
  stack_.erase(first, first + static_cast<std::ptrdiff_t>(end - base));
}

}  // namespace kx::patterns
