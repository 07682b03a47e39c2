// Sets from all nodes at once, as spans of one list (set_listing.h). What a path gives from a node
// is listed when its steps are, in this order: some that lead to one node, which others may share;
// some that look at the levels below; and, if at all, one with "//" and what follows that. Lists
// are bounded by the size of the tree: an expression that asks for more has none, nor has one with
// other steps. See evaluator.h.
#include "platform/patterns/evaluator.h"

#include <algorithm>

namespace kx::patterns {

using dom::NodeId;

namespace {

bool IsSingle(const Step& step) {
  return !step.descend &&
         (step.axis == Axis::kSelf || step.axis == Axis::kParent || step.axis == Axis::kAncestor);
}

// The path without its first `count` steps.
Expr Behind(const Expr& path, std::uint32_t count) {
  Expr rest = path;
  rest.first += count;
  rest.count -= count;
  return rest;
}

}  // namespace

// Null when the expression has no listing. Of the members only those count that pass the step's
// first `filters` filters, which ask for no places.
const SetListing* Evaluator::ListingOf(ExprId id, const Step* step, std::uint32_t filters) {
  const auto known = Remembered().listings.find(id);
  if (known != Remembered().listings.end()) return known->second.get();
  const Listed listed{MostListed(), step, filters};
  auto listing = std::make_unique<SetListing>();
  if (!ListExpr(id, listed, *listing)) listing.reset();
  return (Remembered().listings[id] = std::move(listing)).get();
}

std::uint64_t Evaluator::MostListed() {
  return Work() + std::uint64_t{Index().Count()} * 24 + 1000;
}

bool Evaluator::ListExpr(ExprId id, const Listed& listed, SetListing& listing) {
  const Expr& expr = code_.exprs[id];
  if (expr.invariant) return ListInvariant(id, listed, listing);
  if (expr.kind == ExprKind::kPath) return ListPath(expr, listed, listing);
  for (std::uint32_t i = 0; i < expr.count; ++i) {
    if (!ListExpr(code_.links[expr.first + i], listed, listing)) return false;
  }
  return true;
}

// One span for all nodes.
bool Evaluator::ListInvariant(ExprId id, const Listed& listed, SetListing& listing) {
  const std::size_t base = stack_.size();
  const std::vector<NodeId>& set = InvariantSet(id);
  stack_.insert(stack_.end(), set.begin(), set.end());
  std::vector<Rank> ranks;
  if (!TakeRanks(base, listed, ranks)) return false;
  SetListing::Part part;
  work_ += Index().Count();
  part.targets.assign(Index().Count(), 0);
  part.spans.push_back(listing.Append(ranks));
  part.rows = {0, 1};
  listing.Add(std::move(part));
  return true;
}

bool Evaluator::ListPath(const Expr& path, const Listed& listed, SetListing& listing) {
  SetListing::Part part;
  work_ += Index().Count();
  if (Work() > listed.most) return false;
  std::uint32_t singles = 0;
  while (singles < path.count && IsSingle(code_.steps[path.first + singles])) {
    FollowSingle(code_.steps[path.first + singles++], part.targets);
  }
  std::vector<bool> wanted(Index().Count(), part.targets.empty());
  for (const Rank target : part.targets) {
    if (target != kNoRank) wanted[target] = true;
  }
  const Expr rest = Behind(path, singles);
  if (rest.count == 1 && singles == 0) {
    const Step& step = code_.steps[rest.first];
    const bool isFilteredGroup = step.axis == Axis::kGroup && !step.descend && !step.positional;
    if (isFilteredGroup) {
      return ListExpr(step.expr, {listed.most, &step, step.filterCount, &listed}, listing);
    }
  }
  std::uint32_t level = 0;
  while (level < rest.count && !code_.steps[rest.first + level].descend) ++level;
  const bool isListed = level == rest.count ? ListLevel(rest, wanted, listed, listing, part)
                                            : ListBelow(rest, level, wanted, listed, listing, part);
  if (isListed) listing.Add(std::move(part));
  return isListed;
}

// From where each node has led so far to where the step leads from there; each node that it leads
// to is asked its filters once.
void Evaluator::FollowSingle(const Step& step, std::vector<Rank>& targets) {
  enum class Answer : unsigned char { kUnknown, kPasses, kFails };
  std::vector<Answer> answers(step.filterCount == 0 ? 0 : Index().Count());
  if (targets.empty()) {
    for (Rank rank = 0; rank < Index().Count(); ++rank) targets.push_back(rank);
  }
  for (Rank& target : targets) {
    if (target != kNoRank) target = TargetOf(step, target);
    if (target == kNoRank || answers.empty()) continue;
    if (answers[target] == Answer::kUnknown) {
      answers[target] =
          PassesFilters(step, Index().NodeAt(target)) ? Answer::kPasses : Answer::kFails;
    }
    if (answers[target] == Answer::kFails) target = kNoRank;
  }
  work_ += targets.size();
}

// A path without "//": a span for each node that is wanted.
bool Evaluator::ListLevel(const Expr& path, const std::vector<bool>& wanted, const Listed& listed,
                          SetListing& listing, SetListing::Part& part) {
  std::vector<Rank> ranks;
  for (Rank rank = 0; rank < wanted.size(); ++rank) {
    part.rows.push_back(static_cast<std::uint32_t>(part.spans.size()));
    if (!wanted[rank] || rank < FirstRank()) continue;
    const std::size_t base = stack_.size();
    PushPath(path, Index().NodeAt(rank), Limit::kAll);
    if (!TakeRanks(base, listed, ranks)) return false;
    if (!ranks.empty()) part.spans.push_back(listing.Append(ranks));
  }
  part.rows.push_back(static_cast<std::uint32_t>(part.spans.size()));
  return true;
}

// A path whose step number `level` has a "//": what that and the rest give from each node, what is
// below it left aside, is one list. From what the steps before it lead to, spans of that list are
// seen. Where each member hangs on the node that it was found from, the list is in document order.
bool Evaluator::ListBelow(const Expr& path, std::uint32_t level, const std::vector<bool>& wanted,
                          const Listed& listed, SetListing& listing, SetListing::Part& part) {
  const Expr tail = Behind(path, level);
  const TreeIndex& index = Index();
  std::vector<Lead> leads;
  if (!FindLeads(tail, listed, leads)) return false;
  const bool hangs = std::all_of(leads.begin(), leads.end(), [&index](const Lead& lead) {
    return index.ParentOf(lead.to) == lead.from;
  });
  if (hangs) {
    std::sort(leads.begin(), leads.end(), [](const Lead& a, const Lead& b) { return a.to < b.to; });
  }
  std::vector<Rank> ranks;
  std::vector<Rank> keys;  // what a node's place in the list is found by
  for (const Lead& lead : leads) {
    ranks.push_back(lead.to);
    keys.push_back(hangs ? lead.to : lead.from);
  }
  const std::uint32_t begin = listing.Append(ranks).begin;
  const auto placeOf = [&](Rank rank) {
    const auto at = std::lower_bound(keys.begin(), keys.end(), rank);
    return begin + static_cast<std::uint32_t>(at - keys.begin());
  };
  if (!hangs) listing.SetUnordered();
  Expr head = path;
  head.count = level;
  part.missing.resize(index.Count());
  for (Rank rank = 0; rank < wanted.size(); ++rank) {
    part.rows.push_back(static_cast<std::uint32_t>(part.spans.size()));
    if (!wanted[rank] || rank < FirstRank()) continue;
    const std::size_t base = stack_.size();
    PushPath(head, index.NodeAt(rank), Limit::kAll);
    if (!TakeRanks(base, {listed.most}, ranks)) return false;
    Rank end = 0;
    for (const Rank from : ranks) {
      if (IsInAttribute(index.NodeAt(from))) part.missing[rank] = true;
      part.spans.push_back({placeOf(hangs ? from + 1 : from), placeOf(index.EndOf(from))});
      if (from < end) listing.SetUnordered();
      end = std::max(end, index.EndOf(from));
    }
  }
  part.rows.push_back(static_cast<std::uint32_t>(part.spans.size()));
  return true;
}

// What a path that begins with "//" gives from each node, what is below it left aside. Nothing is
// found from attributes that way.
bool Evaluator::FindLeads(const Expr& path, const Listed& listed, std::vector<Lead>& leads) {
  if (IsPlainChain(path)) {
    FindChainLeads(path, leads);
    const auto fails = [&](const Lead& lead) {
      return !PassesAllOf(listed, Index().NodeAt(lead.to));
    };
    leads.erase(std::remove_if(leads.begin(), leads.end(), fails), leads.end());
    return Work() <= listed.most;
  }
  const Step& first = code_.steps[path.first];
  std::vector<Rank> ranks;
  for (Rank from = FirstRank(); from < Index().Count(); ++from) {
    if (Index().IsAttribute(from)) {
      from = Index().EndOf(from) - 1;
      continue;
    }
    const std::size_t base = stack_.size();
    StepFrom(first, Index().NodeAt(from), Stop::kAtEnd);
    TakeSteps(Behind(path, 1), base, OrderAfter(first, Order::kFlat, 1), Limit::kAll);
    if (!TakeRanks(base, listed, ranks)) return false;
    for (const Rank to : ranks) leads.push_back({from, to});
  }
  return true;
}

bool Evaluator::IsPlainChain(const Expr& path) const {
  const Step* steps = &code_.steps[path.first];
  return std::all_of(steps, steps + path.count, [](const Step& step) {
    return step.axis <= Axis::kAttribute && !step.positional;
  });
}

// The same where each step leads down: from the innermost only of the nodes that a node is found
// from, which are all around one another. A step behind a "//" continues from the nearest node that
// the step before leads to.
void Evaluator::FindChainLeads(const Expr& path, std::vector<Lead>& leads) {
  std::vector<Rank> origins(Index().Count(), kNoRank);  // from where the path so far finds a node
  for (std::uint32_t i = 0; i < path.count; ++i) {
    const Step& step = code_.steps[path.first + i];
    std::vector<Rank> found(origins.size(), kNoRank);
    std::vector<Rank> nearest = origins;
    for (Rank rank = FirstRank(); rank < found.size(); ++rank) {
      const Rank parent = ParentRank(rank);
      if (parent == kNoRank) continue;
      if (nearest[rank] == kNoRank && !Index().IsAttribute(rank)) nearest[rank] = nearest[parent];
      const Rank origin = i == 0 ? parent : step.descend ? nearest[parent] : origins[parent];
      const bool isFound =
          origin != kNoRank && Survives(step, Index().NodeAt(rank), Index().NodeAt(parent));
      if (isFound) found[rank] = origin;
    }
    work_ += found.size();
    origins = std::move(found);
  }
  for (Rank rank = 0; rank < origins.size(); ++rank) {
    if (origins[rank] == kNoRank || IsInAttribute(Index().NodeAt(origins[rank]))) continue;
    leads.push_back({origins[rank], rank});
  }
  std::stable_sort(leads.begin(), leads.end(),
                   [](const Lead& a, const Lead& b) { return a.from < b.from; });
}

bool Evaluator::PassesAllOf(const Listed& listed, NodeId node) {
  for (const Listed* at = &listed; at != nullptr; at = at->outer) {
    if (at->step != nullptr && !PassesFirst(*at->step, at->filters, node)) return false;
  }
  return true;
}

// Takes nodes off the stack as ranks. False when some have none, or when too much has been done.
bool Evaluator::TakeRanks(std::size_t base, const Listed& listed, std::vector<Rank>& ranks) {
  ranks.clear();
  const std::size_t end = stack_.size();
  work_ += 1 + (end - base);
  bool isListed = Work() <= listed.most;
  for (std::size_t i = base; i < end && isListed; ++i) {
    const NodeId node = stack_[i];
    if (!PassesAllOf(listed, node)) continue;
    ranks.push_back(Index().RankOf(node));
    isListed = ranks.back() != kNoRank;
  }
  stack_.resize(base);
  return isListed;
}

}  // namespace kx::patterns
