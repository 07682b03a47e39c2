// Comparisons with $any$ and $all$. What overlaps between context nodes is answered by a table:
// where the right side is one value for all, a table of the members that decide; where it differs,
// the members are listed (evaluator_lists.cc) and their values put in order. See evaluator.h.
#include "platform/patterns/evaluator.h"
#include "platform/patterns/evaluator_value.h"
#include "platform/patterns/value.h"

#include <cmath>
#include <functional>
#include <string>

namespace kx::patterns {

using dom::NodeId;

// The nodes that $any$ and $all$ go through; kNoExpr where there is just one value.
ExprId Evaluator::MembersOf(const Expr& expr) const {
  const Expr& left = code_.exprs[expr.left];
  return left.kind == ExprKind::kInfo ? left.left : expr.left;
}

// Whether it is the members' places in their set that are compared.
bool Evaluator::AsksPlaces(const Expr& expr) const {
  const Expr& left = code_.exprs[expr.left];
  return left.kind == ExprKind::kInfo &&
         (left.method == InfoMethod::kIndex || left.method == InfoMethod::kEnd);
}

bool Evaluator::HoldsForMembers(ExprId id, const Place& place) {
  const Expr& expr = code_.exprs[id];
  const ExprId members = MembersOf(expr);
  if (members == kNoExpr) {
    return HoldsForValues(expr, OperandValue(expr.left, place), OperandValue(expr.right, place));
  }
  if (code_.exprs[members].straight) return HoldsDirectly(expr, members, place);
  if (code_.exprs[members].invariant && code_.exprs[expr.right].invariant) {
    auto known = Remembered().invariants[id].holds;
    if (!known) known = HoldsDirectly(expr, members, place);
    Remembered().invariants[id].holds = known;
    return *known;
  }
  return HoldsByWatching(id, members, place);
}

bool Evaluator::HoldsDirectly(const Expr& expr, ExprId members, const Place& place) {
  const bool decisive = expr.quantifier == Quantifier::kAny;
  const Value right = OperandValue(expr.right, place);
  if (right.kind == ValueKind::kNothing) return RightMissing(expr, members, place);
  const std::size_t base = stack_.size();
  PushSet(members, place.node);
  const std::size_t end = stack_.size();
  const auto count = static_cast<std::uint32_t>(end - base);
  bool holds = !decisive;
  for (std::size_t i = base; i < end && holds != decisive; ++i) {
    const Place member{stack_[i], static_cast<std::uint32_t>(i - base), count};
    ++work_;
    if (HoldsForMember(expr, member, right) == decisive) holds = decisive;
  }
  stack_.resize(base);
  return holds;
}

// Compared with nothing no member holds: only "all" of none at all do.
bool Evaluator::RightMissing(const Expr& expr, ExprId members, const Place& place) {
  return expr.quantifier == Quantifier::kAll && !Exists(members, place.node);
}

bool Evaluator::HoldsForMember(const Expr& expr, const Place& member, const Value& right) {
  const Expr& left = code_.exprs[expr.left];
  if (left.kind != ExprKind::kInfo) return HoldsForValues(expr, NodeValue(member.node), right);
  return HoldsForValues(expr, MethodValue(left, member), right);
}

// As FirstByWatching.
bool Evaluator::HoldsByWatching(ExprId id, ExprId members, const Place& place) {
  const Expr& expr = code_.exprs[id];
  Rank rank = kNoRank;
  if (Remembered().sites[id].work > patience_) rank = Index().RankOf(place.node);
  if (rank != kNoRank) {
    if (code_.exprs[expr.right].invariant && !AsksPlaces(expr)) {
      return HoldsByTable(id, members, rank);
    }
    if (const auto holds = HoldsByListing(id, members, rank, place)) return *holds;
    if (const auto holds = Remembered().Find(id, rank)) return *holds;
  }
  const std::uint64_t before = Work();
  const bool holds = HoldsDirectly(expr, members, place);
  Remembered().sites[id].work += Work() - before;
  // What asks for the candidate's place may be otherwise next time.
  if (rank != kNoRank && !expr.positional) Remembered().Keep(id, rank, holds);
  return holds;
}

// Compared with the same for all nodes -----------------------------------------------------------

// The table knows for each context node a member that decides: one that holds for "any", one that
// does not for "all".
bool Evaluator::HoldsByTable(ExprId id, ExprId members, Rank rank) {
  const Expr& expr = code_.exprs[id];
  if (!Remembered().sites[id].table.IsMade()) {
    LeadTable table = Tabulate(members, DecidingRanks(expr));
    Remembered().sites[id].table = std::move(table);
  }
  const bool found = Remembered().sites[id].table.First(rank) != kNoRank;
  return found == (expr.quantifier == Quantifier::kAny);
}

// Each node that decides the comparison by itself, at its own rank.
LeadTable Evaluator::DecidingRanks(const Expr& expr) {
  const bool decisive = expr.quantifier == Quantifier::kAny;
  const Value right = OperandValue(expr.right, {start_, 0, 1});
  LeadTable table(Index().Count(), 1, LeadEnd::kFirst);
  for (Rank rank = FirstRank(); rank < table.Count(); ++rank) {
    const Place member{Index().NodeAt(rank), 0, 1};
    const bool holds = right.kind != ValueKind::kNothing && HoldsForMember(expr, member, right);
    if (holds == decisive) table.Add(rank, rank);
  }
  work_ += table.Cells();
  return table;
}

// Compared with what differs ---------------------------------------------------------------------

// Nothing when the members have no listing that tells.
std::optional<bool> Evaluator::HoldsByListing(ExprId id, ExprId members, Rank rank,
                                              const Place& place) {
  const Expr& expr = code_.exprs[id];
  const SetListing* listing = ListingOf(members, nullptr, 0);
  if (listing == nullptr || !listing->Covers(rank)) return std::nullopt;
  if (AsksPlaces(expr) && !listing->IsOrdered()) return std::nullopt;
  const bool isAll = expr.quantifier == Quantifier::kAll;
  const Value right = OperandValue(expr.right, place);
  ++work_;
  if (right.kind == ValueKind::kNothing) return isAll && listing->SizeOf(rank) == 0;
  if (AsksPlaces(expr)) return HoldsForPlaces(expr, listing->SizeOf(rank), right);
  return SomeListed(id, *listing, rank, right) != isAll;
}

// Of the places of a set only a few need be compared: the ends, those beside the right side's
// number, and, as texts order places differently, 9, 99 and so on.
bool Evaluator::HoldsForPlaces(const Expr& expr, std::uint32_t count, const Value& right) {
  const bool decisive = expr.quantifier == Quantifier::kAny;
  const double last = static_cast<double>(count) - 1;
  const auto decides = [&](double at) {
    if (!(at >= 0 && at <= last)) return false;
    const Place place{start_, static_cast<std::uint32_t>(at), count};
    return HoldsForMember(expr, place, right) == decisive;
  };
  const double number = NumberOf(right);
  bool decided = decides(0) || decides(1) || decides(last) || decides(std::floor(number)) ||
                 decides(std::ceil(number));
  for (double nines = 9; nines <= last && !decided; nines = nines * 10 + 9) {
    decided = decides(nines);
  }
  return decided == decisive;
}

// Whether some member decides. Typed nodes compare as such with those of the same kind, and as
// texts with all others.
bool Evaluator::SomeListed(ExprId id, const SetListing& listing, Rank rank, const Value& right) {
  const auto some = [&](Reading reading, const Value& other) {
    return SomeListedAs(id, reading, listing, rank, other);
  };
  switch (right.kind) {
    case ValueKind::kText:
      return some(Reading::kTexts, right);
    case ValueKind::kNode:
      break;
    case ValueKind::kDate:
      return some(Reading::kDates, right);
    default:
      return some(Reading::kNumbers, right);
  }
  const Value typed = TypedValueOf(right.node);
  if (typed.kind == ValueKind::kNothing) return some(Reading::kTexts, right);
  const bool isDate = typed.kind == ValueKind::kDate;
  return some(isDate ? Reading::kTypedDates : Reading::kTypedNumbers, typed) ||
         some(isDate ? Reading::kAllButDates : Reading::kAllButNumbers, right);
}

bool Evaluator::SomeListedAs(ExprId id, Reading reading, const SetListing& listing, Rank rank,
                             const Value& right) {
  const Expr& expr = code_.exprs[id];
  const ValueList& values = ValuesOf(id, reading, listing);
  const bool asText = right.kind == ValueKind::kText || right.kind == ValueKind::kNode;
  const ValueList::Other other =
      asText ? values.Find(TextOf(right, rightText_), OrderOf(expr)) : values.Find(right.number);
  return listing.AnySpan(rank, [&](const SetListing::Span& span) {
    ++work_;
    return values.Some(span.begin, span.end, expr.comparison, other,
                       expr.quantifier == Quantifier::kAny);
  });
}

ValueList::TextOrder Evaluator::OrderOf(const Expr& expr) {
  return [this, caseRule = expr.caseRule](std::string_view a, std::string_view b) {
    return texts_.Compare(a, b, caseRule);
  };
}

const ValueList& Evaluator::ValuesOf(ExprId id, Reading reading, const SetListing& listing) {
  const auto number = static_cast<std::size_t>(reading);
  if (const auto& known = Remembered().values[id][number]) return *known;
  const Expr& expr = code_.exprs[id];
  IndexTexts();
  ValueList values;
  for (const Rank member : listing.Members()) {
    ReadMember(expr, reading, Index().NodeAt(member), values);
  }
  work_ += listing.Members().size();
  values.Finish(OrderOf(expr));
  return Remembered().values[id][number].emplace(std::move(values));
}

void Evaluator::ReadMember(const Expr& expr, Reading reading, NodeId node, ValueList& values) {
  const Expr& left = code_.exprs[expr.left];
  const bool isNode = left.kind != ExprKind::kInfo || left.method == InfoMethod::kValue;
  const Value value = isNode ? NodeValue(node) : MethodValue(left, {node, 0, 1});
  const Value typed = isNode ? TypedValueOf(node) : Value{};
  const bool isTypedNumber = typed.kind == ValueKind::kNumber;
  const bool isTypedDate = typed.kind == ValueKind::kDate;
  if (value.kind == ValueKind::kNothing) return values.AddNothing();
  if (std::isnan(value.number)) return values.AddUnlike();
  switch (reading) {
    case Reading::kNumbers:
      return values.AddNumber(NumberOf(value));
    case Reading::kDates:
      return values.AddNumber(DateOf(value));
    case Reading::kTypedNumbers:
      return isTypedNumber ? values.AddNumber(typed.number) : values.AddAbsent();
    case Reading::kTypedDates:
      return isTypedDate ? values.AddNumber(typed.number) : values.AddAbsent();
    case Reading::kAllButNumbers:
      if (isTypedNumber) return values.AddAbsent();
      break;
    case Reading::kAllButDates:
      if (isTypedDate) return values.AddAbsent();
      break;
    case Reading::kTexts:
      break;
  }
  const std::string_view text = TextOf(value, leftText_);
  const std::less_equal<const char*> notBehind;
  const bool isInBuffer = notBehind(leftText_.data(), text.data()) &&
                          notBehind(text.data(), leftText_.data() + leftText_.size());
  if (isInBuffer) return values.AddCopy(std::string(text));
  values.AddText(text);
}

}  // namespace kx::patterns
