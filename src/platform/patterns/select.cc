// See select.h.
#include "platform/patterns/select.h"

#include "platform/dom/document_impl.h"
#include "platform/patterns/evaluator.h"

#include <utility>
#include <vector>

namespace kx::patterns {

using dom::Cursor;
using dom::Node;
using dom::NodeId;
using dom::NodeList;

namespace {

// Where a query begins. A node that a load has left behind belongs to no tree of the document any
// more, but a leading slash still leads to the document, as it is now.
Cursor BeginningOf(const Node& start, const Code& code) {
  const Cursor at = start.At();
  const dom::DocumentImpl* owner = at.Data().Owner();
  if (owner == nullptr || owner->current == &at.Data()) return at;
  const Expr& root = code.exprs[code.root];
  return root.kind == ExprKind::kPath && root.absolute ? Cursor(owner->current, dom::kDocumentNode)
                                                       : at;
}

Node HandleOf(const Cursor& context, NodeId id) { return Node(Cursor(&context.Data(), id)); }

}  // namespace

NodeList SelectNodes(const Node& start, const Pattern& pattern, const QueryOptions& options) {
  const Code& code = pattern.GetCode();
  const Cursor at = BeginningOf(start, code);
  NodeIds found;
  Evaluator(code, at, options).SelectAll(found);
  const std::span<const NodeId> ids = found.All();
  if (ids.size() <= 1) return NodeList::OfNode(ids.empty() ? Node() : HandleOf(at, ids.front()));
  std::vector<Node> nodes;
  nodes.reserve(ids.size());
  for (const NodeId id : ids) nodes.push_back(HandleOf(at, id));
  return NodeList::OfNodes(std::move(nodes));
}

Node SelectSingleNode(const Node& start, const Pattern& pattern, const QueryOptions& options) {
  const Code& code = pattern.GetCode();
  const Cursor at = BeginningOf(start, code);
  return HandleOf(at, Evaluator(code, at, options).SelectFirst());
}

NodeList SelectNodes(const Node& start, std::string_view text, const QueryOptions& options) {
  return SelectNodes(start, Compile(text), options);
}

Node SelectSingleNode(const Node& start, std::string_view text, const QueryOptions& options) {
  return SelectSingleNode(start, Compile(text), options);
}

NodeList SelectNodes(const Node& start, std::string_view text, PatternCache& cache,
                     const QueryOptions& options) {
  return SelectNodes(start, cache.Get(text), options);
}

Node SelectSingleNode(const Node& start, std::string_view text, PatternCache& cache,
                      const QueryOptions& options) {
  return SelectSingleNode(start, cache.Get(text), options);
}

bool Holds(const Node& node, const Pattern& condition, const QueryOptions& options) {
  return Evaluator(condition.GetCode(), node.At(), options).Holds();
}

bool Matches(const Node& node, const Pattern& pattern, const QueryOptions& options) {
  const Cursor at = node.At();
  return Evaluator(pattern.GetCode(), at, options).Matches(at.Id());
}

}  // namespace kx::patterns
