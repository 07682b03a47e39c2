// Answers for all nodes at once. A table gives for each context node (by its rank) the first nodes,
// in document order, that a path leads to from there; it is made from the path's last step
// backwards, one pass over the tree for each step. See evaluator.h and lead_table.h.
#include "platform/patterns/evaluator.h"
#include "platform/text/unicode.h"

#include <algorithm>

namespace kx::patterns {

using dom::kDocumentNode;
using dom::NodeId;
using dom::NodeType;

const TreeIndex& Evaluator::Index() {
  auto& index = Remembered().index;
  if (!index) {
    index = std::make_unique<TreeIndex>(*data_, start_);
    work_ += index->Count();
  }
  return *index;
}

// The parent as a query sees it.
Rank Evaluator::ParentRank(Rank rank) {
  const Rank parent = Index().ParentOf(rank);
  return retired_ && parent != kNoRank && Index().NodeAt(parent) == kDocumentNode ? kNoRank
                                                                                  : parent;
}

// The table of a path of no steps: each node leads to itself.
LeadTable Evaluator::OwnRanks(std::uint32_t places, LeadEnd end) {
  LeadTable table(Index().Count(), places, end);
  for (Rank rank = 0; rank < table.Count(); ++rank) table.Add(rank, rank);
  return table;
}

// Where the nodes of an expression lead when `last` tells where each node leads from there.
LeadTable Evaluator::Tabulate(ExprId id, const LeadTable& last) {
  const Expr& expr = code_.exprs[id];
  if (expr.kind == ExprKind::kPath) return TabulatePath(expr, last);
  LeadTable table = last.Blank();
  for (std::uint32_t i = 0; i < expr.count; ++i) {
    const LeadTable member = Tabulate(code_.links[expr.first + i], last);
    for (Rank rank = 0; rank < table.Count(); ++rank) table.Join(rank, member, rank);
    work_ += table.Cells();
  }
  return table;
}

LeadTable Evaluator::TabulatePath(const Expr& path, LeadTable table) {
  for (std::uint32_t i = path.count; i-- > 0;) {
    const Step& step = code_.steps[path.first + i];
    table = TabulateStep(step, table);
    if (step.descend) SpreadUpwards(table);
  }
  if (!path.absolute) return table;
  LeadTable same = table.Blank();
  const Rank document = Index().RankOf(kDocumentNode);
  for (Rank rank = 0; rank < same.Count(); ++rank) same.Join(rank, table, document);
  return same;
}

LeadTable Evaluator::TabulateStep(const Step& step, const LeadTable& next) {
  work_ += next.Cells();
  const bool free = !step.positional;
  if (free && (step.axis == Axis::kGroup || step.axis == Axis::kIdNodes)) {
    const LeadTable passed = Filtered(step, step.filterCount, next);
    return Tabulate(step.expr, step.axis == Axis::kGroup ? passed : ThroughIds(passed));
  }
  LeadTable table = next.Blank();
  const bool alone =
      step.axis == Axis::kSelf || step.axis == Axis::kParent || step.axis == Axis::kAncestor;
  if (alone) {
    TabulateSingle(step, next, table);
  } else if (step.axis <= Axis::kAttribute && free) {
    TabulateCandidates(step, next, table);
  } else {
    TabulateLists(step, next, table);
  }
  return table;
}

// Only what passes the step's first `count` filters, which ask for no places, leads on.
LeadTable Evaluator::Filtered(const Step& step, std::uint32_t count, const LeadTable& next) {
  if (count == 0) return next;
  LeadTable table = next.Blank();
  for (Rank rank = 0; rank < next.Count(); ++rank) {
    if (next.LeadsNowhere(rank)) continue;
    if (PassesFirst(step, count, Index().NodeAt(rank))) table.Join(rank, next, rank);
  }
  return table;
}

// Children or attributes whose filters ask for no places: each is looked at once, for its parent.
void Evaluator::TabulateCandidates(const Step& step, const LeadTable& next, LeadTable& table) {
  const TreeIndex& index = Index();
  for (Rank rank = 0; rank < next.Count(); ++rank) {
    const Rank parent = ParentRank(rank);
    if (parent == kNoRank || next.LeadsNowhere(rank)) continue;
    if (Survives(step, index.NodeAt(rank), index.NodeAt(parent))) table.Join(parent, next, rank);
  }
}

// Any other step that gives a list: it is taken from each node.
void Evaluator::TabulateLists(const Step& step, const LeadTable& next, LeadTable& table) {
  const TreeIndex& index = Index();
  for (Rank rank = FirstRank(); rank < next.Count(); ++rank) {
    const std::size_t base = stack_.size();
    StepFrom(step, index.NodeAt(rank), Stop::kAtEnd);
    for (std::size_t i = base; i < stack_.size(); ++i) {
      const Rank found = index.RankOf(stack_[i]);
      if (found != kNoRank) table.Join(rank, next, found);
    }
    stack_.resize(base);
  }
}

// Steps that give one node at most, which many nodes may share: its filters are asked once.
void Evaluator::TabulateSingle(const Step& step, const LeadTable& next, LeadTable& table) {
  const LeadTable passed = Filtered(step, step.filterCount, next);
  for (Rank rank = 0; rank < next.Count(); ++rank) {
    const Rank target = TargetOf(step, rank);
    if (target != kNoRank) table.Join(rank, passed, target);
  }
}

Rank Evaluator::TargetOf(const Step& step, Rank rank) {
  if (step.axis == Axis::kSelf) return rank;
  if (step.axis == Axis::kParent) return ParentRank(rank);
  return MatchesOf(step.expr).nearest[rank];
}

// What a node's descendants lead to counts for the node. Attributes are no descendants.
void Evaluator::SpreadUpwards(LeadTable& table) {
  const TreeIndex& index = Index();
  work_ += table.Cells();
  for (Rank rank = index.Count(); rank-- > 0;) {
    const Rank parent = ParentRank(rank);
    if (parent == kNoRank || table.LeadsNowhere(rank) || index.IsAttribute(rank)) continue;
    table.Join(parent, table, rank);
  }
}

// Identifiers ------------------------------------------------------------------------------------

// A node leads to the elements with the IDs that its text holds. The texts of nodes inside one
// another overlap, so each word of the text of all belongs to the innermost node that has the whole
// of it, and counts for what is around that; then each node adds the words that its own text begins
// or ends within.
LeadTable Evaluator::ThroughIds(const LeadTable& next) {
  static_cast<void>(Index());
  Remembered().index->AddTexts();
  LeadTable table = next.Blank();
  const std::size_t base = stack_.size();
  const std::vector<Part> words = WordsOf(Index().Texts());
  AddWholeWords(words, next, table);
  SpreadUpwards(table);
  for (Rank rank = FirstRank(); rank < table.Count(); ++rank) {
    const NodeType type = At(Index().NodeAt(rank)).Type();
    if (type == NodeType::kAttribute ||
        (type != NodeType::kCData && dom::IsCharacterData(type) && type != NodeType::kText)) {
      PushIdsIn(Index().NodeAt(rank));
    } else {
      PushCutWords(words, rank);
    }
    JoinFound(base, rank, next, table);
  }
  return table;
}

std::vector<Evaluator::Part> Evaluator::WordsOf(std::string_view text) {
  std::vector<Part> words;
  const auto isBlank = [text](std::size_t at) {
    return text::IsXmlSpace(static_cast<unsigned char>(text[at]));
  };
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t begin = at;
    while (at < text.size() && !isBlank(at)) ++at;
    if (at != begin) words.push_back({begin, at});
    while (at < text.size() && isBlank(at)) ++at;
  }
  return words;
}

Evaluator::Part Evaluator::TextPartOf(Rank rank) {
  const std::string_view text = Index().TextBelow(rank);
  const auto begin = static_cast<std::size_t>(text.data() - Index().Texts().data());
  return {begin, begin + text.size()};
}

void Evaluator::AddWholeWords(const std::vector<Part>& words, const LeadTable& next,
                              LeadTable& table) {
  const std::size_t base = stack_.size();
  auto word = words.begin();
  for (Rank rank = 0; rank < table.Count() && word != words.end(); ++rank) {
    const Part own = TextPartOf(rank);
    if (!At(Index().NodeAt(rank)).IsText()) continue;
    for (; word != words.end() && word->begin < own.end; ++word) {
      Rank around = rank;
      while (around != kNoRank && TextPartOf(around).end < word->end) {
        around = ParentRank(around);
        ++work_;
      }
      if (around == kNoRank) continue;
      PushId(Index().Texts().substr(word->begin, word->end - word->begin));
      JoinFound(base, around, next, table);
    }
  }
}

// Appends the elements for the words at the ends of a node's text that go on outside of it.
void Evaluator::PushCutWords(const std::vector<Part>& words, Rank rank) {
  const Part own = TextPartOf(rank);
  if (own.begin == own.end) return;
  const auto wordAt = [&words](std::size_t at) {
    return std::upper_bound(words.begin(), words.end(), at,
                            [](std::size_t p, const Part& word) { return p < word.end; });
  };
  const auto push = [&](std::size_t begin, std::size_t end) {
    PushId(Index().Texts().substr(begin, end - begin));
  };
  const auto first = wordAt(own.begin);
  const auto last = wordAt(own.end - 1);
  if (first != words.end() && first->begin < own.begin) {
    push(own.begin, std::min(own.end, first->end));
  }
  if (last != words.end() && last->begin < own.end && last->end > own.end &&
      last->begin >= own.begin) {
    push(last->begin, own.end);
  }
}

// Takes the elements off the stack to which `from` leads.
void Evaluator::JoinFound(std::size_t base, Rank from, const LeadTable& next, LeadTable& table) {
  while (stack_.size() > base) {
    const Rank element = Index().RankOf(stack_.back());
    if (element != kNoRank) table.Join(from, next, element);
    stack_.pop_back();
  }
}

// One place of a group
// ----------------------------------------------------------------------------

// A group's first filter that asks for a place, when it asks for one at an end of the list: then no
// more of the group's set is needed than up to there.
std::optional<Evaluator::Pick> Evaluator::PickOf(const Step& step) const {
  if (step.axis != Axis::kGroup || !step.positional) return std::nullopt;
  std::uint32_t at = 0;
  while (!code_.filters[step.firstFilter + at].positional) ++at;
  const Filter& filter = code_.filters[step.firstFilter + at];
  if (filter.kind == FilterKind::kLast) return Pick{at, 1, LeadEnd::kLast};
  if (filter.kind != FilterKind::kPosition) return std::nullopt;
  const std::int64_t position = filter.position;
  return position >= 0 ? Pick{at, static_cast<std::uint64_t>(position) + 1, LeadEnd::kFirst}
                       : Pick{at, static_cast<std::uint64_t>(-position), LeadEnd::kLast};
}

// Appends what a group gives. Each context node has a list of its own, and lists of nodes inside
// one another overlap: when a place has cost as much as a table, it is looked up from then on.
void Evaluator::PushGroup(const Step& step, NodeId context) {
  const std::size_t base = stack_.size();
  const std::optional<Pick> pick = PickOf(step);
  if (pick && Remembered().sites[step.expr].work > patience_) {
    const std::optional<Rank> found = FindPlace(step, *pick, Index().RankOf(context));
    if (found) {
      if (*found != kNoRank) stack_.push_back(Index().NodeAt(*found));
      return FilterList(step, base, pick->filter + 1);
    }
  }
  const std::uint64_t before = Work();
  PushSet(step.expr, context);
  work_ += stack_.size() - base;
  FilterList(step, base, 0);
  if (pick) Remembered().sites[step.expr].work += Work() - before;
}

// What stands at a place of a node's list, kNoRank for none: by a listing or, near an end, by a
// table. Nothing when there is neither.
std::optional<Rank> Evaluator::FindPlace(const Step& step, const Pick& pick, Rank rank) {
  if (rank == kNoRank) return std::nullopt;
  const SetListing* listing = ListingOf(step.expr, &step, pick.filter);
  if (listing != nullptr && listing->IsOrdered() && listing->Covers(rank)) {
    ++work_;
    if (pick.end == LeadEnd::kFirst) return listing->MemberAt(rank, pick.places - 1);
    const std::uint32_t size = listing->SizeOf(rank);
    return pick.places <= size ? listing->MemberAt(rank, size - pick.places) : kNoRank;
  }
  if (!LeadTable::Fits(Index().Count(), pick.places)) return std::nullopt;
  return PicksOf(step, pick).At(rank, static_cast<std::uint32_t>(pick.places) - 1);
}

const LeadTable& Evaluator::PicksOf(const Step& step, const Pick& pick) {
  if (!Remembered().sites[step.expr].table.IsMade()) {
    const LeadTable own = OwnRanks(static_cast<std::uint32_t>(pick.places), pick.end);
    LeadTable table = Tabulate(step.expr, Filtered(step, pick.filter, own));
    Remembered().sites[step.expr].table = std::move(table);
  }
  return Remembered().sites[step.expr].table;
}

// True when the set has a second node.
bool Evaluator::HasSecond(ExprId id, NodeId context) {
  if (code_.exprs[id].invariant) return InvariantSet(id).size() > 1;
  if (Remembered().secondSites[id].work > patience_) {
    if (!Remembered().secondSites[id].table.IsMade()) {
      LeadTable table = Tabulate(id, OwnRanks(2, LeadEnd::kFirst));
      Remembered().secondSites[id].table = std::move(table);
    }
    const Rank rank = Index().RankOf(context);
    if (rank != kNoRank) return Remembered().secondSites[id].table.At(rank, 1) != kNoRank;
  }
  const std::uint64_t before = Work();
  const std::size_t base = stack_.size();
  PushSet(id, context);
  const bool second = stack_.size() - base > 1;
  work_ += stack_.size() - base;
  stack_.resize(base);
  Remembered().secondSites[id].work += Work() - before;
  return second;
}

}  // namespace kx::patterns
