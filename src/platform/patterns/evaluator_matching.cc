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
  for (NodeId at = ParentOf(node); at != kNoNode; at = ParentOf(at)) {
    if (Remembered().matchSites[pattern].work > patience_) {
      const Rank rank = Index().RankOf(node);
      if (rank != kNoRank) {
        const Rank found = MatchesOf(pattern).nearest[rank];
        return found == kNoRank ? kNoNode : Index().NodeAt(found);
      }
    }
    if (MatchesExpr(pattern, at)) return at;
  }
  return kNoNode;
}

bool Evaluator::MatchesExpr(ExprId id, NodeId node) {
  if (Remembered().matchSites[id].work > patience_) {
    const Rank rank = Index().RankOf(node);
    if (rank != kNoRank) return MatchesOf(id).matches[rank];
  }
  const std::uint64_t before = Work();
  const bool matches = MatchesDirectly(id, node);
  Remembered().matchSites[id].work += Work() - before;
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
  if (expr.chain) return MatchesChain(expr, node);
  // One answer may cost as much as all of them: then these are taken.
  if (const std::optional<bool> matches = MatchesFromAbove(id, node, patience_)) return *matches;
  const Rank rank = Index().RankOf(node);
  if (rank != kNoRank) return MatchesOf(id).matches[rank];
  return *MatchesFromAbove(id, node, ~std::uint64_t{0});
}

// Reads the steps from the last one. Above a "//" the nearest place that fits is taken: it leaves
// most room for what stands before it, so only the last such choice is ever taken back.
bool Evaluator::MatchesChain(const Expr& path, NodeId node) {
  if (path.count == 0) return node == kDocumentNode;
  if (path.absolute && !IsInDocument(node)) return false;
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

// Whether a chain, of which a node of the document is asked when it begins with a slash, may begin
// with a child or attribute of `parent`. Nothing is found below attributes.
bool Evaluator::BeginsAt(const Expr& path, NodeId parent) const {
  if (!path.absolute) return true;
  return code_.steps[path.first].descend ? !IsInAttribute(parent) : parent == kDocumentNode;
}

bool Evaluator::IsInDocument(NodeId node) {
  while (node != kNoNode && node != kDocumentNode) {
    ++work_;
    node = ParentOf(node);
  }
  return node == kDocumentNode;
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

// Nothing when the answer has cost more than `most`.
std::optional<bool> Evaluator::MatchesFromAbove(ExprId id, NodeId node, std::uint64_t most) {
  const Expr& path = code_.exprs[id];
  const std::uint64_t before = Work();
  for (NodeId above = path.absolute ? kDocumentNode : ParentOf(node); above != kNoNode;
       above = ParentOf(above)) {
    if (Work() - before > most) return std::nullopt;
    const std::size_t base = stack_.size();
    PushPath(path, above, Limit::kAll);
    const auto first = stack_.begin() + static_cast<std::ptrdiff_t>(base);
    const bool found = std::find(first, stack_.end(), node) != stack_.end();
    work_ += stack_.size() - base + 1;
    stack_.resize(base);
    if (found || path.absolute) return found;
  }
  return false;
}

// For all nodes at once
// ----------------------------------------------------------------------------

const Evaluator::MatchSite& Evaluator::MatchesOf(ExprId id) {
  if (Remembered().matchSites[id].nearest.empty()) FillMatches(id);
  return Remembered().matchSites[id];
}

void Evaluator::FillMatches(ExprId id) {
  std::vector<bool> matches(Index().Count());
  AddMatches(id, matches);
  std::vector<Rank> nearest(Index().Count(), kNoRank);
  for (Rank rank = 0; rank < nearest.size(); ++rank) {
    const Rank parent = ParentRank(rank);
    if (parent != kNoRank) nearest[rank] = matches[parent] ? parent : nearest[parent];
  }
  work_ += nearest.size();
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
  } else if (expr.below) {
    AddMatchesBelow(expr, matches);
  } else if (!AddMatchesThrough(expr, matches)) {
    for (Rank above = FirstRank(); above < Index().Count(); ++above) {
      AddMatchesFrom(expr, above, matches);
    }
  }
}

// A path whose nodes all are below the one that it is asked from gives from all nodes together what
// it gives from each.
void Evaluator::AddMatchesBelow(const Expr& path, std::vector<bool>& matches) {
  const std::size_t base = stack_.size();
  for (Rank rank = FirstRank(); rank < Index().Count(); ++rank) {
    stack_.push_back(Index().NodeAt(rank));
  }
  TakeSteps(path, base, Order::kSorted, Limit::kAll);
  MarkFrom(base, 0, Index().Count(), matches);
}

// A path that begins with one node that many share, such as "../x": the rest of it is taken once
// for each such node. False for other paths.
bool Evaluator::AddMatchesThrough(const Expr& path, std::vector<bool>& matches) {
  const Step& step = code_.steps[path.first];
  if (step.descend || (step.axis != Axis::kParent && step.axis != Axis::kAncestor)) return false;
  std::vector<Way> ways = WaysThrough(step);
  Expr rest = path;
  ++rest.first;
  --rest.count;
  AddMatchesBelowShared(rest, ways, matches);
  std::vector<Rank> found;
  for (auto way = ways.begin(); way != ways.end();) {
    const Rank target = way->to;
    FindRanks(rest, target, found);
    for (; way != ways.end() && way->to == target; ++way) {
      auto at = std::upper_bound(found.begin(), found.end(), way->from);
      for (; at != found.end() && *at < Index().EndOf(way->from); ++at) matches[*at] = true;
    }
  }
  return true;
}

// For a rest "//x" where each x is below the node that it is found from. A way from a node to a
// shared one around it finds what is below the one and found from below the other: of all ways from
// around a node, the one that leads furthest up finds it if any does. Takes out the ways that this
// settles: none where too much would have to be listed, and none within attributes, from which
// nothing is listed.
void Evaluator::AddMatchesBelowShared(const Expr& rest, std::vector<Way>& ways,
                                      std::vector<bool>& matches) {
  if (rest.count == 0 || !code_.steps[rest.first].descend) return;
  std::vector<Lead> leads;
  if (!FindLeads(rest, {MostListed()}, leads)) return;
  for (const Lead& lead : leads) {
    if (lead.to <= lead.from || lead.to >= Index().EndOf(lead.from)) return;
  }
  const auto settled = std::stable_partition(ways.begin(), ways.end(), [this](const Way& way) {
    return IsInAttribute(Index().NodeAt(way.to));
  });
  std::vector<Rank> highest(Index().Count(), kNoRank);  // where ways from around a node lead to
  for (auto way = settled; way != ways.end(); ++way) highest[way->from] = way->to;
  ways.erase(settled, ways.end());
  for (Rank rank = 0; rank < highest.size(); ++rank) {
    const Rank parent = ParentRank(rank);
    if (parent != kNoRank) highest[rank] = std::min(highest[rank], highest[parent]);
  }
  work_ += highest.size() + leads.size();
  for (const Lead& lead : leads) {
    const Rank parent = ParentRank(lead.to);
    if (parent != kNoRank && highest[parent] <= lead.from) matches[lead.to] = true;
  }
}

// From which nodes, of those that have something below them, the step leads to which one.
std::vector<Evaluator::Way> Evaluator::WaysThrough(const Step& step) {
  std::vector<Way> ways;
  for (Rank from = FirstRank(); from < Index().Count(); ++from) {
    ++work_;
    if (Index().EndOf(from) == from + 1) continue;
    const Rank to = TargetOf(step, from);
    if (to != kNoRank) ways.push_back({to, from});
  }
  std::stable_sort(ways.begin(), ways.end(),
                   [](const Way& a, const Way& b) { return a.to < b.to; });
  auto kept = ways.begin();
  for (auto way = ways.begin(); way != ways.end();) {
    const Rank to = way->to;
    const bool passes = PassesAll(step, Index().NodeAt(to));
    for (; way != ways.end() && way->to == to; ++way) {
      if (passes) *kept++ = *way;
    }
  }
  ways.erase(kept, ways.end());
  return ways;
}

// The ranks of what a path gives from one node, in order.
void Evaluator::FindRanks(const Expr& path, Rank context, std::vector<Rank>& found) {
  found.clear();
  const std::size_t base = stack_.size();
  PushPath(path, Index().NodeAt(context), Limit::kAll);
  for (std::size_t i = base; i < stack_.size(); ++i) {
    const Rank rank = Index().RankOf(stack_[i]);
    if (rank != kNoRank) found.push_back(rank);
  }
  work_ += stack_.size() - base;
  stack_.resize(base);
  std::sort(found.begin(), found.end());
}

// What the path gives from one node and below it. A leading slash finds the document itself too.
void Evaluator::AddMatchesFrom(const Expr& path, Rank above, std::vector<bool>& matches) {
  ++work_;
  if (!path.absolute && Index().EndOf(above) == above + 1) return;
  const std::size_t base = stack_.size();
  PushPath(path, Index().NodeAt(above), Limit::kAll);
  MarkFrom(base, path.absolute ? above : above + 1, Index().EndOf(above), matches);
}

void Evaluator::MarkFrom(std::size_t base, Rank first, Rank end, std::vector<bool>& matches) {
  for (std::size_t i = base; i < stack_.size(); ++i) {
    const Rank rank = Index().RankOf(stack_[i]);
    if (rank >= first && rank < end) matches[rank] = true;
  }
  work_ += stack_.size() - base;
  stack_.resize(base);
}

}  // namespace kx::patterns
