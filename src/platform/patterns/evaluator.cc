// Sets of nodes and paths. See evaluator.h.
#include "platform/patterns/evaluator.h"

#include "platform/dom/document_impl.h"
#include "platform/patterns/evaluator_scan.h"

#include <algorithm>
#include <limits>

namespace kx::patterns {

using dom::kDocumentNode;
using dom::kNoNode;
using dom::NodeId;

namespace {

// A content that a load has replaced hangs on to its nodes, but they have no document any more.
bool IsRetired(const dom::DocumentData& data) {
  return data.Owner() != nullptr && data.Owner()->current != &data;
}

// Tables begin at the document, which a content that a load has replaced no longer has above it.
constexpr std::uint64_t kEndless = std::numeric_limits<std::uint64_t>::max();

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
      patience_(retired_
                    ? kEndless
                    : options.patience.value_or(start.Data().NodeCount() + std::uint64_t{64})) {}

std::vector<NodeId> Evaluator::SelectAll() {
  stack_.clear();
  PushSet(code_.root, start_);
  return std::move(stack_);
}

void Evaluator::SelectAll(NodeIds& found) {
  const Expr& root = code_.exprs[code_.root];
  if (!root.straight || root.kind != ExprKind::kPath) return found.Assign(SelectAll());
  const Step* step = &code_.steps[root.first];
  VisitAlong(step, step + root.count, start_, [&found](NodeId id) {
    found.Append(id);
    return true;
  });
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
    work_ += set.size();
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
  PutInOrder(base);
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
  PrepareOrder(base);
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
    if (!site.table.IsMade()) {
      LeadTable table = Tabulate(id, OwnRanks(1, LeadEnd::kFirst));
      Remembered().sites[id].table = std::move(table);
    }
    const Rank rank = Index().RankOf(context);
    if (rank != kNoRank) {
      const Rank found = Remembered().sites[id].table.First(rank);
      return found == kNoRank ? kNoNode : Index().NodeAt(found);
    }
  }
  const std::uint64_t before = Work();
  const NodeId first = FirstDirectly(id, context, limit);
  Remembered().sites[id].work += Work() - before;
  return first;
}

NodeId Evaluator::FirstDirectly(ExprId id, NodeId context, Limit limit) {
  const std::size_t base = stack_.size();
  PushPath(code_.exprs[id], context, limit);
  const NodeId first = stack_.size() > base ? stack_[base] : kNoNode;
  stack_.resize(base);
  return first;
}

// Visits the nodes at the end of a straight path until `visit` answers false, which is what this
// answers then. As such a path only leads downwards, level by level, they come in document order.
// As deep as the path has steps.
template <class Visit>
bool Evaluator::VisitAlong(const Step* step, const Step* end, NodeId context, const Visit& visit) {
  bool goesOn = true;
  const auto follow = [&](NodeId candidate) {
    goesOn = step + 1 == end ? visit(candidate) : VisitAlong(step + 1, end, candidate, visit);
    return goesOn;
  };
  if (!step->positional) {
    ForEachCandidate(*step, context, [&](NodeId candidate) {
      return !PassesAll(*step, candidate) || follow(candidate);
    });
    return goesOn;
  }
  const std::size_t base = stack_.size();
  PushPlaced(*step, context);
  for (std::size_t i = base; i < stack_.size() && goesOn; ++i) follow(stack_[i]);
  stack_.resize(base);
  return goesOn;
}

NodeId Evaluator::FirstAlong(const Step* step, const Step* end, NodeId context) {
  NodeId first = kNoNode;
  VisitAlong(step, end, context, [&first](NodeId found) {
    first = found;
    return false;
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
    PrepareOrder(base);
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
  order = ExpandBelow(base);
  return StepFromEach(step, base, order, limit);
}

Evaluator::Order Evaluator::StepFromEach(const Step& step, std::size_t base, Order order,
                                         Limit limit) {
  const std::size_t end = stack_.size();
  const bool shared = step.axis == Axis::kParent || step.axis == Axis::kAncestor ||
                      (step.axis == Axis::kGroup && !step.positional);
  if (shared && end - base > 1) {
    StepFromAll(step, base, order);
    return Order::kSorted;
  }
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

// Steps that give the same nodes from many context nodes: each node is met once, and its filters
// are asked once, before duplicates cost anything.
void Evaluator::StepFromAll(const Step& step, std::size_t base, Order order) {
  if (step.axis == Axis::kGroup) {
    SetFromAll(step.expr, base, order);
  } else {
    std::size_t kept = base;
    for (std::size_t i = base; i < stack_.size(); ++i) {
      const NodeId context = stack_[i];
      const NodeId target =
          step.axis == Axis::kParent ? ParentOf(context) : NearestAncestor(step.expr, context);
      ++work_;
      if (target != kNoNode && (kept == base || stack_[kept - 1] != target)) {
        stack_[kept++] = target;
      }
    }
    stack_.resize(kept);
    PutInOrder(base);
  }
  if (step.filterCount == 0) return;
  std::size_t kept = base;
  const std::size_t end = stack_.size();
  for (std::size_t i = base; i < end; ++i) {
    if (PassesFilters(step, stack_[i])) stack_[kept++] = stack_[i];
  }
  stack_.resize(kept);
}

// Replaces the set at `base` by what the expression gives from all of its nodes, in order.
void Evaluator::SetFromAll(ExprId id, std::size_t base, Order order) {
  const Expr& expr = code_.exprs[id];
  if (expr.invariant) {
    stack_.resize(base);
    return PushSet(id, start_);
  }
  if (expr.kind == ExprKind::kPath) return TakeSteps(expr, base, order, Limit::kAll);
  const std::size_t end = stack_.size();
  for (std::uint32_t i = 0; i < expr.count; ++i) {
    const std::size_t member = stack_.size();
    stack_.resize(member + (end - base));
    std::copy_n(stack_.begin() + static_cast<std::ptrdiff_t>(base), end - base,
                stack_.begin() + static_cast<std::ptrdiff_t>(member));
    work_ += end - base;
    SetFromAll(code_.links[expr.first + i], member, order);
  }
  DropBelow(base, end);
  PutInOrder(base);
}

void Evaluator::Sort(std::size_t base, Order& order) {
  if (order == Order::kFlat || order == Order::kSorted) return;
  PutInOrder(base);
  order = Order::kSorted;
}

void Evaluator::PutInOrder(std::size_t base) {
  PrepareOrder(base);
  order_.Sort(stack_, base, start_);
}

// Where nodes have no order by themselves, an index gives them one as soon as that is worth it: for
// a large set, or when many small ones have cost as much.
void Evaluator::PrepareOrder(std::size_t base) {
  if (order_.HasKeys() || order_.HasRanks()) return;
  if (order_.Work() + (stack_.size() - base) * 4 > patience_) order_.Use(Index());
}

// Takes the old set, numbers `base` to `end`, from under the new one.
void Evaluator::DropBelow(std::size_t base, std::size_t end) {
  const auto first = stack_.begin() + static_cast<std::ptrdiff_t>(base);
  stack_.erase(first, first + static_cast<std::ptrdiff_t>(end - base));
}

}  // namespace kx::patterns
