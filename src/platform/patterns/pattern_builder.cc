// See pattern_builder.h.
#include "platform/patterns/pattern_builder.h"

#include <utility>

namespace kx::patterns {

namespace {

template <class T>
std::uint32_t Append(std::vector<T>& list, T value) {
  list.push_back(std::move(value));
  return static_cast<std::uint32_t>(list.size() - 1);
}

// Moves what was put aside from number `begin` on to the end of `list`.
template <class T>
std::uint32_t MoveAside(std::vector<T>& aside, std::size_t begin, std::vector<T>& list) {
  const auto first = static_cast<std::uint32_t>(list.size());
  list.insert(list.end(), aside.begin() + static_cast<std::ptrdiff_t>(begin), aside.end());
  aside.resize(begin);
  return first;
}

}  // namespace

ExprId PatternBuilder::AddExpr(const Expr& expr) { return Append(code_.exprs, expr); }

// Values and conditions --------------------------------------------------------------------------

ExprId PatternBuilder::AddNumber(double number) {
  Expr expr;
  expr.kind = ExprKind::kNumber;
  expr.number = number;
  expr.invariant = true;
  return AddExpr(expr);
}

std::uint32_t PatternBuilder::AddLiteralText(TextRange content) {
  return Append(code_.literals, content);
}

ExprId PatternBuilder::AddLiteral(TextRange content) {
  Expr expr;
  expr.kind = ExprKind::kLiteral;
  expr.count = AddLiteralText(content);
  expr.invariant = true;
  return AddExpr(expr);
}

ExprId PatternBuilder::AddNot(ExprId inner) {
  Expr expr;
  expr.kind = ExprKind::kNot;
  expr.left = inner;
  expr.positional = At(inner).positional;
  expr.counted = At(inner).counted;
  return AddExpr(expr);
}

ExprId PatternBuilder::AddComparison(Expr expr) {
  expr.kind = ExprKind::kCompare;
  expr.positional = At(expr.left).positional || At(expr.right).positional;
  expr.counted = At(expr.left).counted || At(expr.right).counted;
  return AddExpr(expr);
}

ExprId PatternBuilder::AddInfo(Expr expr) {
  expr.kind = ExprKind::kInfo;
  expr.invariant = expr.right != kNoExpr && At(expr.right).kind == ExprKind::kLiteral;
  const bool asksPlace = expr.method == InfoMethod::kIndex || expr.method == InfoMethod::kEnd;
  expr.positional = asksPlace && expr.left == kNoExpr;
  expr.counted = expr.positional && expr.method == InfoMethod::kEnd;
  return AddExpr(expr);
}

// Members of one kind side by side become one expression, however many there are.
ExprId PatternBuilder::FinishMembers(ExprKind kind, std::size_t begin) {
  Expr expr;
  expr.kind = kind;
  expr.count = static_cast<std::uint32_t>(membersAside_.size() - begin);
  expr.invariant = expr.downward = expr.below = kind == ExprKind::kUnion;
  for (std::size_t i = begin; i < membersAside_.size(); ++i) {
    const Expr& member = At(membersAside_[i]);
    expr.positional |= member.positional;
    expr.counted |= member.counted;
    expr.invariant &= member.invariant;
    expr.downward &= member.downward;
    expr.below &= member.below;
  }
  expr.first = MoveAside(membersAside_, begin, code_.links);
  return AddExpr(expr);
}

// Paths ------------------------------------------------------------------------------------------

void PatternBuilder::SetName(NodeTest& test, NameRule rule, TextRange name) {
  test.rule = rule;
  test.name = Append(code_.names, name);
}

void PatternBuilder::SetNamespace(NodeTest& test, std::string uri) {
  test.rule = NameRule::kNamespace;
  test.uri = Append(code_.uris, std::move(uri));
}

void PatternBuilder::FinishFilters(Step& step, std::size_t begin) {
  step.filterCount = static_cast<std::uint32_t>(filtersAside_.size() - begin);
  for (std::size_t i = begin; i < filtersAside_.size(); ++i) {
    step.positional |= filtersAside_[i].positional;
    step.counted |= filtersAside_[i].counted;
  }
  step.firstFilter = MoveAside(filtersAside_, begin, code_.filters);
}

ExprId PatternBuilder::FinishPath(bool absolute, std::size_t begin) {
  DropLeadingContext(absolute, begin);
  Expr path;
  path.kind = ExprKind::kPath;
  path.absolute = absolute;
  path.count = static_cast<std::uint32_t>(stepsAside_.size() - begin);
  path.straight = !absolute && path.count <= kMostStraightSteps;
  path.chain = true;
  for (std::size_t i = begin; i < stepsAside_.size(); ++i) {
    const Step& step = stepsAside_[i];
    path.straight &= !step.descend && step.axis <= Axis::kSelf;
    path.chain &= step.axis <= Axis::kAttribute;
  }
  SetDirection(path, begin);
  path.invariant = absolute || (path.count > 0 && BeginsAnywhere(stepsAside_[begin]));
  path.first = MoveAside(stepsAside_, begin, code_.steps);
  return AddExpr(path);
}

// "./a" is "a", and ".//a" is "a" at any depth.
void PatternBuilder::DropLeadingContext(bool absolute, std::size_t begin) {
  if (absolute || stepsAside_.size() - begin < 2) return;
  const Step& step = stepsAside_[begin];
  if (step.axis != Axis::kSelf || step.filterCount != 0) return;
  stepsAside_.erase(stepsAside_.begin() + static_cast<std::ptrdiff_t>(begin));
}

// Whether all that the path gives is at or below the context node, or below it.
void PatternBuilder::SetDirection(Expr& path, std::size_t begin) const {
  path.downward = !path.absolute;
  for (std::size_t i = begin; i < stepsAside_.size(); ++i) {
    const Step& step = stepsAside_[i];
    const bool group = step.axis == Axis::kGroup;
    path.downward &= group ? At(step.expr).downward : step.axis <= Axis::kSelf;
    path.below |= group ? At(step.expr).below : step.axis <= Axis::kAttribute;
  }
  path.below &= path.downward;
}

// True for a first step that gives the same nodes for each context node.
bool PatternBuilder::BeginsAnywhere(const Step& step) const {
  switch (step.axis) {
    case Axis::kContext:
    case Axis::kIdText:
      return true;
    case Axis::kGroup:
    case Axis::kIdNodes:
      return !step.descend && At(step.expr).invariant;
    default:
      return false;
  }
}

bool PatternBuilder::IsContextNode(ExprId id) const {
  const Expr& path = At(id);
  if (path.kind != ExprKind::kPath || path.absolute || path.count != 1) return false;
  const Step& step = code_.steps[path.first];
  return step.axis == Axis::kSelf && !step.descend && step.filterCount == 0;
}

}  // namespace kx::patterns
