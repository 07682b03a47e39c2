// What an operand of a comparison is worth while it is compared. Included by the evaluator's source
// files only.
#pragma once

#include "platform/patterns/evaluator.h"

#include <string_view>

namespace kx::patterns {

enum class ValueKind : unsigned char {
  kNothing,  ///< no node, or a method asked of no node
  kNode,     ///< the value of a node: its text, or what its type makes of it
  kText,
  kNumber,
  kDate,   ///< in days; its text is that of `node`, or `text`
  kTruth,  ///< 1 or 0 in `number`
};

struct Evaluator::Value {
  ValueKind kind = ValueKind::kNothing;
  NodeId node = dom::kNoNode;
  std::string_view text;
  double number = 0;
};

inline Evaluator::Value Evaluator::NodeValue(NodeId node) {
  return {node == dom::kNoNode ? ValueKind::kNothing : ValueKind::kNode, node, {}, 0};
}
inline Evaluator::Value Evaluator::TextValue(std::string_view text) {
  return {ValueKind::kText, dom::kNoNode, text, 0};
}
inline Evaluator::Value Evaluator::NumberValue(double number) {
  return {ValueKind::kNumber, dom::kNoNode, {}, number};
}

}  // namespace kx::patterns
