// Answers for all nodes at once. A table gives for each context node (by its rank) the rank of the
// first node, in document order, that a path leads to from there; it is made from the path's last
// step backwards, one pass over the tree for each step. See evaluator.h.
#include "platform/patterns/evaluator.h"

#include <algorithm>
#include <numeric>

namespace kx::patterns {

using dom::kDocumentNode;
using dom::kNoNode;
using dom::NodeId;
using dom::NodeType;

const TreeIndex& Evaluator::Index() {
  auto& index = Remembered().index;
  if (!index) index = std::make_unique<TreeIndex>(*data_, start_);
  return *index;
}

// The parent as a query sees it.
Rank Evaluator::ParentRank(Rank rank) {
  const Rank parent = Index().ParentOf(rank);
  return retired_ && parent != kNoRank && Index().NodeAt(parent) == kDocumentNode ? kNoRank
                                                                                  : parent;
}

// The table of a path of no steps: each node leads to itself.
std::vector<Rank> Evaluator::OwnRanks() {
  std::vector<Rank> ranks(Index().Count());
  std::iota(ranks.begin(), ranks.end(), Rank{0});
  return ranks;
}

// Where the nodes of an expression lead when `last` tells where each node leads from there. The
// smaller rank is the earlier node, and kNoRank is the greatest.
std::vector<Rank> Evaluator::Tabulate(ExprId id, const std::vector<Rank>& last) {
  const Expr& expr = code_.exprs[id];
  if (expr.kind == ExprKind::kPath) return TabulatePath(expr, last);
  std::vector<Rank> table(last.size(), kNoRank);
  for (std::uint32_t i = 0; i < expr.count; ++i) {
    const std::vector<Rank> member = Tabulate(code_.links[expr.first + i], last);
    for (Rank rank = 0; rank < table.size(); ++rank) {
      table[rank] = std::min(table[rank], member[rank]);
    }
  }
  return table;
}

std::vector<Rank> Evaluator::TabulatePath(const Expr& path, std::vector<Rank> table) {
  for (std::uint32_t i = path.count; i-- > 0;) {
    const Step& step = code_.steps[path.first + i];
    table = TabulateStep(step, table);
    if (step.descend) SpreadUpwards(table);
  }
  if (path.absolute) {
    const Rank found = table[Index().RankOf(kDocumentNode)];
    std::fill(table.begin(), table.end(), found);
  }
  return table;
}

std::vector<Rank> Evaluator::TabulateStep(const Step& step, const std::vector<Rank>& next) {
  if (step.axis == Axis::kGroup && step.filterCount == 0) return Tabulate(step.expr, next);
  std::vector<Rank> table(next.size(), kNoRank);
  const bool alone =
      step.axis == Axis::kSelf || step.axis == Axis::kParent || step.axis == Axis::kAncestor;
  if (alone) {
    TabulateSingle(step, next, table);
  } else if (step.axis <= Axis::kAttribute && !step.positional) {
    TabulateCandidates(step, next, table);
  } else {
    TabulateLists(step, next, table);
  }
  return table;
}

// Children or attributes whose filters ask for no places: each is looked at once, for its parent.
void Evaluator::TabulateCandidates(const Step& step, const std::vector<Rank>& next,
                                   std::vector<Rank>& table) {
  const TreeIndex& index = Index();
  for (Rank rank = 0; rank < next.size(); ++rank) {
    const Rank parent = ParentRank(rank);
    if (parent == kNoRank || next[rank] >= table[parent]) continue;
    const NodeId node = index.NodeAt(rank);
    if (Survives(step, node, index.NodeAt(parent))) table[parent] = next[rank];
  }
}

// Any other step that gives a list: it is taken from each node.
void Evaluator::TabulateLists(const Step& step, const std::vector<Rank>& next,
                              std::vector<Rank>& table) {
  const TreeIndex& index = Index();
  for (Rank rank = 0; rank < next.size(); ++rank) {
    const std::size_t base = stack_.size();
    StepFrom(step, index.NodeAt(rank), Stop::kAtEnd);
    for (std::size_t i = base; i < stack_.size(); ++i) {
      const Rank found = index.RankOf(stack_[i]);
      if (found != kNoRank) table[rank] = std::min(table[rank], next[found]);
    }
    stack_.resize(base);
  }
}

// Steps that give one node at most, which many nodes may share: its filters are asked once.
void Evaluator::TabulateSingle(const Step& step, const std::vector<Rank>& next,
                               std::vector<Rank>& table) {
  enum : char { kUnasked, kPasses, kFails };
  std::vector<char> answers(next.size(), kUnasked);
  for (Rank rank = 0; rank < next.size(); ++rank) {
    const Rank target = TargetOf(step, rank);
    if (target == kNoRank || next[target] == kNoRank) continue;
    char& answer = answers[target];
    if (answer == kUnasked) answer = PassesAll(step, Index().NodeAt(target)) ? kPasses : kFails;
    if (answer == kPasses) table[rank] = next[target];
  }
}

Rank Evaluator::TargetOf(const Step& step, Rank rank) {
  if (step.axis == Axis::kSelf) return rank;
  if (step.axis == Axis::kParent) return ParentRank(rank);
  if (Remembered().matchSites[step.expr].nearest.empty()) FillMatches(step.expr);
  return Remembered().matchSites[step.expr].nearest[rank];
}

// What a node's descendants lead to counts for the node. Attributes are no descendants.
void Evaluator::SpreadUpwards(std::vector<Rank>& table) {
  const TreeIndex& index = Index();
  for (Rank rank = index.Count(); rank-- > 0;) {
    const Rank parent = ParentRank(rank);
    if (parent == kNoRank || table[rank] >= table[parent] || index.IsAttribute(rank)) continue;
    table[parent] = table[rank];
  }
}

}  // namespace kx::patterns
