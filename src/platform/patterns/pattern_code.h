// The compiled form of a pattern: expressions, paths, steps and filters in a few arrays that refer
// to each other by index. Made by the parser, never changed afterwards, shared between threads.
//
// Invariants:
//   - Names and literals are ranges of the pattern's own text, which the code keeps.
//   - An expression stands behind everything that it is made of, so nothing refers in a circle; no
//     expression is nested deeper than kMostNesting.
//   - Nothing here belongs to a document: names become numbers when a query begins.
#pragma once

#include "platform/dom/node_record.h"
#include "platform/patterns/pattern_error.h"
#include "platform/runtime/counted.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kx::patterns {

enum class Comparison : std::uint8_t {
  kEqual,
  kNotEqual,
  kLess,
  kLessOrEqual,
  kGreater,
  kGreaterOrEqual,
};
enum class CaseRule : std::uint8_t { kExact, kIgnored };

/// Which nodes of the left operand a comparison looks at.
enum class Quantifier : std::uint8_t { kFirst, kAny, kAll };

using ExprId = std::uint32_t;
inline constexpr ExprId kNoExpr = 0xFFFFFFFFU;

/// Where a step finds its candidates, seen from one context node.
enum class Axis : std::uint8_t {
  kChild,
  kAttribute,
  kSelf,
  kParent,
  kGroup,     ///< the whole set of an expression
  kAncestor,  ///< the nearest ancestor that matches an expression
  kContext,   ///< the context of a query or of an enclosing selection
  kIdText,    ///< the element with an ID that is written in the pattern
  kIdNodes,   ///< the elements with the IDs that the nodes of an expression hold
};

/// What a node's name must be.
enum class NameRule : std::uint8_t {
  kAny,
  kWritten,        ///< the qualified name as written
  kPrefix,         ///< the prefix as written
  kNamespace,      ///< the namespace
  kNamespaceName,  ///< namespace and local name
};

constexpr std::uint16_t TypeBit(dom::NodeType type) {
  return static_cast<std::uint16_t>(1U << static_cast<unsigned>(type));
}

struct NodeTest {
  std::uint16_t types = 0;  ///< TypeBit of each kind that passes
  NameRule rule = NameRule::kAny;
  std::uint32_t name = 0;  ///< in Code::names: the qualified name, the prefix or the local name
  std::uint32_t uri = 0;   ///< in Code::uris
};

/// What a filter asks of a candidate. The special kinds give what kTruth would, faster.
enum class FilterKind : std::uint8_t {
  kTruth,            ///< an expression
  kPosition,         ///< a place in the list, counted from 0, or from -1 at its end
  kLast,             ///< end()
  kHasAttribute,     ///< @name
  kAttributeEquals,  ///< @name = 'literal'
};

struct Filter {
  FilterKind kind = FilterKind::kTruth;
  bool positional = false;  ///< asks for the candidate's place
  bool counted = false;     ///< asks for the length of the list
  std::int32_t position = 0;
  ExprId expr = kNoExpr;
  std::uint32_t name = 0;     ///< of the attribute, in Code::names
  std::uint32_t literal = 0;  ///< in Code::literals
};

struct Step {
  Axis axis = Axis::kChild;
  bool descend = false;     ///< from each node below the context node as well
  bool positional = false;  ///< some filter asks for places
  bool counted = false;     ///< some filter asks for the length of the list
  NodeTest test;            ///< of children and attributes
  std::uint32_t firstFilter = 0;
  std::uint32_t filterCount = 0;
  ExprId expr = kNoExpr;      ///< of a group, an ancestor, an ID from nodes
  std::int32_t number = 0;    ///< of a context
  std::uint32_t literal = 0;  ///< of an ID from text
};

enum class ExprKind : std::uint8_t {
  kPath,
  kUnion,
  kAnd,
  kOr,
  kNot,
  kCompare,
  kInfo,     ///< an information method
  kLiteral,  ///< right operands and arguments only
  kNumber,
};

enum class InfoMethod : std::uint8_t {
  kIndex,
  kEnd,
  kNodeName,
  kNodeType,
  kNodeTypeString,
  kValue,
  kNumber,
  kDate,
};

struct Expr {
  ExprKind kind = ExprKind::kPath;
  bool positional = false;  ///< asks for the place of the candidate whose filter this stands in
  bool counted = false;     ///< asks for the length of that candidate's list
  bool absolute = false;    ///< a path from the document
  bool invariant = false;   ///< nodes: the same whatever the context node is
  bool straight = false;    ///< a short path of children, attributes and "." only
  bool chain = false;       ///< a path of children and attributes, at any depth, only
  bool downward = false;    ///< gives nothing but the context node and what is below it
  bool below = false;       ///< gives nothing but what is below the context node
  Quantifier quantifier = Quantifier::kFirst;
  Comparison comparison = Comparison::kEqual;
  CaseRule caseRule = CaseRule::kExact;
  InfoMethod method = InfoMethod::kValue;
  std::uint32_t first = 0;  ///< the first step of a path, the first link of a union, "and", "or"
  std::uint32_t count = 0;  ///< how many of them; the index of a literal
  /// Of a comparison and of "not"; of a method the nodes that it is asked of, kNoExpr for the
  /// context node.
  ExprId left = kNoExpr;
  /// Of a comparison; of a method its argument.
  ExprId right = kNoExpr;
  double number = 0;
};

/// Steps that a path may have to count as straight.
inline constexpr std::uint32_t kMostStraightSteps = 8;

/// What a whole pattern gives.
enum class PatternResult : std::uint8_t { kNodes, kTruth };

struct Code : runtime::AtomicCounted {
  std::string text;
  std::vector<TextRange> names;     ///< in `text`
  std::vector<TextRange> literals;  ///< in `text`
  std::vector<std::string> uris;    ///< of the prefixes that were given a namespace
  std::vector<Step> steps;
  std::vector<Filter> filters;
  std::vector<Expr> exprs;
  std::vector<ExprId> links;
  ExprId root = kNoExpr;
  PatternResult result = PatternResult::kNodes;

  [[nodiscard]] std::string_view TextOf(TextRange range) const noexcept {
    return std::string_view(text).substr(range.begin, range.length);
  }
  [[nodiscard]] std::string_view Name(std::uint32_t index) const noexcept {
    return TextOf(names[index]);
  }
  [[nodiscard]] std::string_view Literal(std::uint32_t index) const noexcept {
    return TextOf(literals[index]);
  }
};

}  // namespace kx::patterns
