// The nearest ancestor that matches, and matching in general: a node matches a pattern when the
// pattern, asked from some node above it (for a leading slash: from the document), gives it.
//
// A pattern that only leads downwards by names and kinds is read from its end, upwards from the
// node; the general case is asked from each node above. See evaluator.h.
#include "platform/patterns/evaluator.h"

#include <algorithm>

namespace kx::patterns {

using dom::kDocumentNode;
using dom::kNoNode;
using dom::NodeId;
using dom::NodeType;

NodeId Evaluator::NearestAncestor(ExprId pattern, NodeId node) {
  if (Remembered().matchSites[pattern].work > patience_) {
    if (Remembered().matchSites[pattern].nearest.empty()) FillMatches(pattern);
    const Rank rank = Index().RankOf(node);
    if (rank != kNoRank) {
      const Rank found = Remembered().matchSites[pattern].nearest[rank];
      return found == kNoRank ? kNoNode : Index().NodeAt(found);
    }
  }
  const std::uint64_t before = work_;
  NodeId at = ParentOf(node);
  while (at != kNoNode && !MatchesDirectly(pattern, at)) at = ParentOf(at);
  Remembered().matchSites[pattern].work += work_ - before;
  return at;
}

bool Evaluator::MatchesExpr(ExprId id, NodeId node) {
  if (Remembered().matchSites[id].work > patience_) {
    if (Remembered().matchSites[id].nearest.empty()) FillMatches(id);
    const Rank rank = Index().RankOf(node);
    if (rank != kNoRank) return Remembered().matchSites[id].matches[rank];
  }
  const std::uint64_t before = work_;
  const bool matches = MatchesDirectly(id, node);
  Remembered().matchSites[id].work += work_ - before;
  return matches;
}

bool Evaluator::MatchesDirectly(ExprId id, NodeId node) {
  ++work_;
  const Expr& expr = code_.exprs[id];
  if (expr.kind == ExprKind::kUnion) {
    for (std::uint32_t i = 0; i < expr.count; ++i) {
      if (MatchesExpr(code_.links[expr.first + i], node)) return true;
    }
    return false;
  }
  if (expr.kind != ExprKind::kPath) return false;
  return expr.chain ? MatchesChain(expr, node) : MatchesFromAbove(id, node);
}

// Reads the steps from the last one. Above a "//" the nearest place that fits is taken: it leaves
// most room for what stands before it, so only the last such choice is ever taken back.
bool Evaluator::MatchesChain(const Expr& path, NodeId node) {
  if (path.count == 0) return node == kDocumentNode;
  const Step* steps = &code_.steps[path.first];
  std::uint32_t i = path.count - 1;
  std::uint32_t retryStep = path.count;  // the step to try again further up, when there is one
  NodeId retryAt = kNoNode;
  NodeId at = node;
  while (true) {
    ++work_;
    const NodeId parent = ParentOf(at);
    if (parent != kNoNode && Survives(steps[i], at, parent)) {
      if (i == 0) {
        if (BeginsAt(path, parent)) return true;
      } else {
        if (steps[i].descend) {
          retryStep = i - 1;
          retryAt = parent;
        }
        --i;
        at = parent;
        continue;
      }
    }
    // Nothing is found through an attribute by looking below its element.
    if (retryStep == path.count || IsAttribute(retryAt)) return false;
    i = retryStep;
    retryAt = at = ParentOf(retryAt);
    if (at == kNoNode) return false;
  }
}

// Whether a chain may begin with a child or attribute of `parent`.
bool Evaluator::BeginsAt(const Expr& path, NodeId parent) {
  if (!path.absolute) return true;
  if (!code_.steps[path.first].descend) return parent == kDocumentNode;
  while (parent != kNoNode && parent != kDocumentNode && !IsAttribute(parent)) {
    ++work_;
    parent = ParentOf(parent);
  }
  return parent == kDocumentNode;
}

// Whether a child or attribute is among those that the step gives from its parent.
bool Evaluator::Survives(const Step& step, NodeId node, NodeId parent) {
  const bool isAttribute = IsAttribute(node);
  if (isAttribute != (step.axis == Axis::kAttribute)) return false;
  // An XML declaration has attributes too, but no step leads to them.
  if (isAttribute && At(parent).Type() != NodeType::kElement) return false;
  if (dom::IsInlineTextId(node)) {
    if (!TakesInlineText(step.test)) return false;
  } else if (!PassesTest(step.test, records_[node])) {
    return false;
  }
  if (!step.positional) return PassesAll(step, node);
  const std::size_t base = stack_.size();
  PushPlaced(step, parent);
  const auto first = stack_.begin() + static_cast<std::ptrdiff_t>(base);
  const bool found = std::find(first, stack_.end(), node) != stack_.end();
  stack_.resize(base);
  return found;
}

bool Evaluator::MatchesFromAbove(ExprId id, NodeId node) {
  const Expr& path = code_.exprs[id];
  for (NodeId above = path.absolute ? kDocumentNode : ParentOf(node); above != kNoNode;
       above = ParentOf(above)) {
    const std::size_t base = stack_.size();
    PushPath(path, above, Limit::kAll);
    const auto first = stack_.begin() + static_cast<std::ptrdiff_t>(base);
    const bool found = std::find(first, stack_.end(), node) != stack_.end();
    work_ += stack_.size() - base;
    stack_.resize(base);
    if (found || path.absolute) return found;
  }
  return false;
}

// For all nodes at once
// ----------------------------------------------------------------------------

void Evaluator::FillMatches(ExprId id) {
  std::vector<bool> matches(Index().Count());
  AddMatches(id, matches);
  std::vector<Rank> nearest(Index().Count(), kNoRank);
  for (Rank rank = 0; rank < nearest.size(); ++rank) {
    const Rank parent = ParentRank(rank);
    if (parent != kNoRank) nearest[rank] = matches[parent] ? parent : nearest[parent];
  }
  MatchSite& site = Remembered().matchSites[id];
  site.matches = std::move(matches);
  site.nearest = std::move(nearest);
}

void Evaluator::AddMatches(ExprId id, std::vector<bool>& matches) {
  const Expr& expr = code_.exprs[id];
  if (expr.kind == ExprKind::kUnion) {
    for (std::uint32_t i = 0; i < expr.count; ++i) AddMatches(code_.links[expr.first + i], matches);
  } else if (expr.absolute) {
    AddMatchesFrom(expr, Index().RankOf(kDocumentNode), matches);
  } else if (expr.chain) {
    AddMatchesOfChain(expr, matches);
  } else {
    for (Rank above = FirstRank(); above < Index().Count(); ++above) {
      AddMatchesFrom(expr, above, matches);
    }
  }
}

// A chain gives from all nodes together what it gives from each: each node that it leads to is
// below the one that it was asked from.
void Evaluator::AddMatchesOfChain(const Expr& path, std::vector<bool>& matches) {
  const std::size_t base = stack_.size();
  for (Rank rank = FirstRank(); rank < Index().Count(); ++rank) {
    stack_.push_back(Index().NodeAt(rank));
  }
  TakeSteps(path, base, Order::kSorted, Limit::kAll);
  MarkFrom(base, 0, Index().Count(), matches);
}

// What the path gives from one node and below it. A leading slash finds the document itself too.
void Evaluator::AddMatchesFrom(const Expr& path, Rank above, std::vector<bool>& matches) {
  const std::size_t base = stack_.size();
  PushPath(path, Index().NodeAt(above), Limit::kAll);
  MarkFrom(base, path.absolute ? above : above + 1, Index().EndOf(above), matches);
}

void Evaluator::MarkFrom(std::size_t base, Rank first, Rank end, std::vector<bool>& matches) {
  for (std::size_t i = base; i < stack_.size(); ++i) {
    const Rank rank = Index().RankOf(stack_[i]);
    if (rank >= first && rank < end) matches[rank] = true;
  }
  stack_.resize(base);
}

}  // namespace kx::patterns
