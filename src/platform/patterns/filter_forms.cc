// See filter_forms.h.
#include "platform/patterns/filter_forms.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <string_view>

namespace kx::patterns {

namespace {

bool IsPlainMethod(const Code& code, ExprId id, InfoMethod method) {
  const Expr& expr = code.exprs[id];
  return expr.kind == ExprKind::kInfo && expr.method == method && expr.left == kNoExpr;
}

// The one step of "@name"; null for anything else.
const Step* FindPlainAttribute(const Code& code, ExprId id) {
  const Expr& path = code.exprs[id];
  if (path.kind != ExprKind::kPath || !path.straight || path.count != 1) return nullptr;
  const Step& step = code.steps[path.first];
  const bool plain = step.axis == Axis::kAttribute && step.test.rule == NameRule::kWritten &&
                     step.filterCount == 0;
  return plain ? &step : nullptr;
}

// The place that a text of decimal digits names; nothing for one with leading zeros, which no
// place's text has.
std::optional<double> PlaceOfText(std::string_view text) {
  if (text.empty() || text.size() > 9 || (text.size() > 1 && text[0] == '0')) return std::nullopt;
  double position = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') return std::nullopt;
    position = position * 10 + (c - '0');
  }
  return position;
}

// The place that equals a right operand, if one does: 3 and '3' do, '03' and 1.5 do not.
std::optional<double> PlaceOf(const Code& code, const Expr& right) {
  if (right.kind == ExprKind::kLiteral) return PlaceOfText(code.Literal(right.count));
  const bool isPlace = right.kind == ExprKind::kNumber && right.number >= 0 &&
                       right.number <= 1e9 &&
                       right.number == static_cast<double>(ToPosition(right.number));
  return isPlace ? std::optional(right.number) : std::nullopt;
}

void SetEqualityForm(const Code& code, const Expr& expr, Filter& filter) {
  const Expr& right = code.exprs[expr.right];
  const Step* attribute = FindPlainAttribute(code, expr.left);
  if (attribute != nullptr && right.kind == ExprKind::kLiteral &&
      expr.caseRule == CaseRule::kExact && expr.quantifier != Quantifier::kAll) {
    filter.kind = FilterKind::kAttributeEquals;
    filter.name = attribute->test.name;
    filter.literal = right.count;
    return;
  }
  if (!IsPlainMethod(code, expr.left, InfoMethod::kIndex)) return;
  if (const std::optional<double> place = PlaceOf(code, right)) filter = FilterAtPosition(*place);
}

}  // namespace

std::int32_t ToPosition(double number) noexcept {
  constexpr double kMost = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::clamp(number, -kMost, kMost));
}

Filter FilterAtPosition(double number) noexcept {
  Filter filter;
  filter.kind = FilterKind::kPosition;
  filter.position = ToPosition(number);
  filter.positional = true;
  filter.counted = filter.position < 0;
  return filter;
}

Filter FilterOf(const Code& code, ExprId id) {
  const Expr& expr = code.exprs[id];
  Filter filter;
  filter.expr = id;
  filter.positional = expr.positional;
  filter.counted = expr.counted;
  if (IsPlainMethod(code, id, InfoMethod::kEnd)) {
    filter.kind = FilterKind::kLast;
  } else if (const Step* attribute = FindPlainAttribute(code, id)) {
    filter.kind = FilterKind::kHasAttribute;
    filter.name = attribute->test.name;
  } else if (expr.kind == ExprKind::kCompare && expr.comparison == Comparison::kEqual) {
    SetEqualityForm(code, expr, filter);
  }
  return filter;
}

}  // namespace kx::patterns
