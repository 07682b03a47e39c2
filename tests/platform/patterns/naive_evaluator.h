// A second evaluator of patterns, made from the rules as they are written down: no compiled form,
// no early stop, whole sets at every step, everything recursive. Slow and obvious is its whole
// merit; the library's evaluator is compared with it.
//
// It has a parser of its own, which takes only what the generators of tests write: correct
// patterns.
#pragma once

#include "platform/dom/cursor.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kx::patterns::naive {

struct Ast;

/// A document as a plain tree: nodes in document order, attributes included.
struct Tree {
  struct Node {
    dom::NodeId id;
    dom::NodeType type;
    std::string name;
    std::string ownText;
    int parent = -1;
    std::vector<int> children;
    std::vector<int> attributes;
  };
  explicit Tree(const dom::DocumentData& data);
  [[nodiscard]] int Find(dom::NodeId id) const;

  std::vector<Node> nodes;

 private:
  int Add(const dom::Cursor& at, int parent);
};

class Query {
 public:
  explicit Query(std::string_view text);
  ~Query();
  Query(const Query&) = delete;
  Query& operator=(const Query&) = delete;

  /// The nodes from the node `start`, in document order.
  [[nodiscard]] std::vector<dom::NodeId> Select(const Tree& tree, dom::NodeId start) const;
  /// Whether the pattern matches the node.
  [[nodiscard]] bool Matches(const Tree& tree, dom::NodeId node) const;

 private:
  std::unique_ptr<Ast> root_;
};

}  // namespace kx::patterns::naive
