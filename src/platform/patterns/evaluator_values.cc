// Conditions and comparisons. See evaluator.h.
#include "platform/datatypes/date_text_form.h"
#include "platform/datatypes/lexical.h"
#include "platform/dom/dom_error.h"
#include "platform/patterns/evaluator.h"
#include "platform/patterns/evaluator_value.h"
#include "platform/patterns/value.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace kx::patterns {

using datatypes::DataType;
using dom::kNoNode;
using dom::NodeId;
using dom::NodeType;

namespace {

std::optional<double> ReadDateAs(DataType type, std::string_view text) {
  const auto parts = datatypes::ReadDateParts(type, datatypes::TrimSpace(text));
  return parts ? datatypes::DateValue(*parts) : std::nullopt;
}

// A date, a time, or both, with or without a zone.
double ReadDate(std::string_view text) {
  for (const DataType type : {DataType::kDateTimeTz, DataType::kTimeTz}) {
    if (const std::optional<double> date = ReadDateAs(type, text)) return *date;
  }
  return kUnreadable;
}

std::optional<double> ReadBoolean(std::string_view text) {
  text = datatypes::TrimSpace(text);
  if (text == "1" || text == "true") return 1;
  if (text == "0" || text == "false") return 0;
  return std::nullopt;
}

constexpr bool IsNumericType(DataType type) {
  switch (type) {
    case DataType::kNumber:
    case DataType::kFloat:
    case DataType::kFixed144:
    case DataType::kR4:
    case DataType::kR8:
      return true;
    default:
      return datatypes::IsIntegerType(type);
  }
}

}  // namespace

// Conditions -------------------------------------------------------------------------------------

bool Evaluator::IsTrue(ExprId id, const Place& place) {
  const Expr& expr = code_.exprs[id];
  switch (expr.kind) {
    case ExprKind::kPath:
    case ExprKind::kUnion:
      return Exists(id, place.node);
    case ExprKind::kAnd:
    case ExprKind::kOr:
      return HoldsForList(expr, place);
    case ExprKind::kNot:
      return !IsTrue(expr.left, place);
    case ExprKind::kCompare:
      return HoldsComparison(id, place);
    default:
      return IsValueTrue(OperandValue(id, place));
  }
}

// "and" ends at the first that is false, "or" at the first that is true.
bool Evaluator::HoldsForList(const Expr& expr, const Place& place) {
  const bool decisive = expr.kind == ExprKind::kOr;
  for (std::uint32_t i = 0; i < expr.count; ++i) {
    if (IsTrue(code_.links[expr.first + i], place) == decisive) return decisive;
  }
  return !decisive;
}

bool Evaluator::IsValueTrue(const Value& value) {
  switch (value.kind) {
    case ValueKind::kNothing:
      return false;
    case ValueKind::kText:
      return !value.text.empty();
    case ValueKind::kDate:
      return !std::isnan(value.number);
    case ValueKind::kNode: {
      const Value typed = TypedValueOf(value.node);
      if (typed.kind != ValueKind::kNothing) return IsValueTrue(typed);
      return !TextOf(value.node, leftText_).empty();
    }
    default:
      return value.number != 0 && !std::isnan(value.number);
  }
}

// Comparisons ------------------------------------------------------------------------------------

bool Evaluator::HoldsComparison(ExprId id, const Place& place) {
  const Expr& expr = code_.exprs[id];
  if (expr.quantifier != Quantifier::kFirst) return HoldsForMembers(id, place);
  const Value left = OperandValue(expr.left, place);
  if (left.kind == ValueKind::kNothing) return false;
  return HoldsForValues(expr, left, OperandValue(expr.right, place));
}

// The right operand decides how its left one is read. What number() or date() cannot read has no
// text either: it is unequal to everything.
bool Evaluator::HoldsForValues(const Expr& expr, const Value& left, const Value& right) {
  if (left.kind == ValueKind::kNothing || right.kind == ValueKind::kNothing) return false;
  if (std::isnan(left.number)) return expr.comparison == Comparison::kNotEqual;
  switch (right.kind) {
    case ValueKind::kNode:
      return HoldsForNodes(expr, left, right);
    case ValueKind::kText:
      return HoldsForTextsOf(expr, TextOf(left, leftText_), right.text);
    case ValueKind::kDate:
      return HoldsForNumbers(expr.comparison, DateOf(left), right.number);
    default:
      return HoldsForNumbers(expr.comparison, NumberOf(left), right.number);
  }
}

// Two typed values of one kind compare as such, anything else as texts.
bool Evaluator::HoldsForNodes(const Expr& expr, const Value& left, const Value& right) {
  if (left.kind == ValueKind::kNode) {
    const Value typed = TypedValueOf(left.node);
    if (typed.kind != ValueKind::kNothing) {
      const Value other = TypedValueOf(right.node);
      if (other.kind == typed.kind) {
        return HoldsForNumbers(expr.comparison, typed.number, other.number);
      }
    }
  }
  const std::string_view text = TextOf(left, leftText_);
  return HoldsForTextsOf(expr, text, TextOf(right.node, rightText_));
}

bool Evaluator::HoldsForTextsOf(const Expr& expr, std::string_view left, std::string_view right) {
  if (std::min(left.size(), right.size()) < TreeIndex::kLongText) {
    return HoldsForTexts(expr.comparison, expr.caseRule, left, right);
  }
  const bool asksEquality =
      expr.comparison == Comparison::kEqual || expr.comparison == Comparison::kNotEqual;
  if (asksEquality && expr.caseRule == CaseRule::kExact && left.size() != right.size()) {
    return expr.comparison == Comparison::kNotEqual;
  }
  return HoldsForOrder(expr.comparison, Texts().Compare(left, right, expr.caseRule));
}

// Operands ---------------------------------------------------------------------------------------

Evaluator::Value Evaluator::OperandValue(ExprId id, const Place& place) {
  const Expr& expr = code_.exprs[id];
  switch (expr.kind) {
    case ExprKind::kLiteral:
      return TextValue(code_.Literal(expr.count));
    case ExprKind::kNumber:
      return NumberValue(expr.number);
    case ExprKind::kInfo:
      return InfoValue(expr, place);
    default:
      return NodeValue(FirstOf(id, place.node));
  }
}

// Of "path!method()" the first node that the path finds is asked; its place is the one that it has
// in the path's set.
Evaluator::Value Evaluator::InfoValue(const Expr& expr, const Place& place) {
  if (expr.left == kNoExpr) return MethodValue(expr, place);
  const NodeId first = FirstOf(expr.left, place.node);
  if (first == kNoNode) return {};
  Place subject{first, 0, 1};
  if (expr.method == InfoMethod::kEnd) {
    subject.count = HasSecond(expr.left, place.node) ? 2 : 1;
  }
  return MethodValue(expr, subject);
}

Evaluator::Value Evaluator::MethodValue(const Expr& expr, const Place& subject) {
  const NodeType type = At(subject.node).Type();
  switch (expr.method) {
    case InfoMethod::kIndex:
      return NumberValue(subject.index);
    case InfoMethod::kEnd:
      return {ValueKind::kTruth, kNoNode, {}, subject.index + 1 == subject.count ? 1.0 : 0.0};
    case InfoMethod::kNodeName:
      return TextValue(NodeNameOf(subject.node));
    case InfoMethod::kNodeType:
      return NumberValue(static_cast<double>(type));
    case InfoMethod::kNodeTypeString:
      return TextValue(dom::NodeTypeName(type));
    case InfoMethod::kValue:
      return NodeValue(subject.node);
    default:
      return ConvertedValue(expr, subject.node);
  }
}

// number() and date(), of the node itself or of their argument.
Evaluator::Value Evaluator::ConvertedValue(const Expr& expr, NodeId subject) {
  if (expr.right != kNoExpr) {
    const Expr& argument = code_.exprs[expr.right];
    if (argument.kind == ExprKind::kLiteral) {
      const std::string_view text = code_.Literal(argument.count);
      return {ValueKind::kDate, kNoNode, text, ReadDate(text)};
    }
    subject = FirstOf(expr.right, subject);
    if (subject == kNoNode) return {};
  }
  if (expr.method == InfoMethod::kNumber) return NumberValue(NumberOf(NodeValue(subject)));
  return {ValueKind::kDate, subject, {}, DateOf(NodeValue(subject))};
}

std::string_view Evaluator::NodeNameOf(NodeId node) const {
  switch (At(node).Type()) {
    case NodeType::kText:
      return "#text";
    case NodeType::kCData:
      return "#cdata-section";
    case NodeType::kComment:
      return "#comment";
    case NodeType::kDocument:
      return "#document";
    case NodeType::kDocumentFragment:
      return "#document-fragment";
    default:
      return At(node).QualifiedName();
  }
}

// Readings of a value ----------------------------------------------------------------------------

NodeTexts& Evaluator::Texts() {
  if (texts_.Work() > patience_) IndexTexts();
  return texts_;
}

void Evaluator::IndexTexts() {
  if (textsIndexed_) return;
  textsIndexed_ = true;
  static_cast<void>(Index());
  Remembered().index->AddTexts();
  texts_.Use(Index());
}

std::string_view Evaluator::TextOf(NodeId node, std::string& buffer) {
  return Texts().Of(At(node), buffer);
}

std::string_view Evaluator::WithoutBlanks(NodeId node) {
  return Texts().WithoutBlanks(TextOf(node, leftText_));
}

std::string_view Evaluator::TextOf(const Value& value, std::string& buffer) {
  if (value.node != kNoNode) return TextOf(value.node, buffer);
  switch (value.kind) {
    case ValueKind::kNumber:
    case ValueKind::kTruth:
      buffer = WriteNumber(value.number);
      return buffer;
    default:
      return value.text;
  }
}

double Evaluator::NumberOf(const Value& value) {
  switch (value.kind) {
    case ValueKind::kNode: {
      const Value typed = TypedValueOf(value.node);
      if (typed.kind != ValueKind::kNothing) return typed.number;
      return Texts().NumberOf(At(value.node), leftText_);
    }
    case ValueKind::kText:
      return ReadNumber(value.text);
    default:
      return value.number;
  }
}

double Evaluator::DateOf(const Value& value) {
  switch (value.kind) {
    case ValueKind::kNode: {
      const Value typed = TypedValueOf(value.node);
      if (typed.kind == ValueKind::kDate) return typed.number;
      return ReadDate(WithoutBlanks(value.node));
    }
    case ValueKind::kText:
      return ReadDate(value.text);
    default:
      return value.number;
  }
}

DataType Evaluator::TypeOf(NodeId node) {
  if (dom::IsInlineTextId(node)) return DataType::kNone;
  const NodeRecord& record = records_[node];
  if (record.type != NodeType::kElement && record.type != NodeType::kAttribute) {
    return DataType::kNone;
  }
  if (options_.typing != nullptr) return options_.typing->TypeOf(At(node));
  if (record.type != NodeType::kElement || record.firstAttribute == kNoNode) return DataType::kNone;
  if (!someTyped_) someTyped_ = HasWrittenTypes(*nameTable_);
  if (!*someTyped_) return DataType::kNone;
  for (const auto& [known, type] : lastTypes_) {
    if (known == node) return type;
  }
  const DataType type = WrittenType(At(node));
  lastTypes_[1] = std::exchange(lastTypes_[0], {node, type});
  return type;
}

// The number or date of a node with such a type; nothing for others, and for a text that does not
// suit the type.
Evaluator::Value Evaluator::TypedValueOf(NodeId node) {
  const DataType type = TypeOf(node);
  if (type == DataType::kNone) return {};
  if (datatypes::IsDateType(type)) {
    const auto date = ReadDateAs(type, WithoutBlanks(node));
    return date ? Value{ValueKind::kDate, kNoNode, {}, *date} : Value{};
  }
  if (type == DataType::kBoolean) {
    const auto truth = ReadBoolean(WithoutBlanks(node));
    return truth ? NumberValue(*truth) : Value{};
  }
  if (!IsNumericType(type)) return {};
  const std::string_view text = TextOf(node, leftText_);
  return datatypes::IsTextOf(type, text) ? NumberValue(ReadNumber(text)) : Value{};
}

}  // namespace kx::patterns
