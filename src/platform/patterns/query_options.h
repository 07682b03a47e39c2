// What a caller may tell a query besides its pattern and its start node.
#pragma once

#include "platform/dom/node_record.h"
#include "platform/patterns/node_typing.h"

#include <cstdint>
#include <optional>
#include <span>

namespace kx::patterns {

/// A node that a style sheet has selected, and its place in the list that selected it.
struct ContextFrame {
  dom::NodeId node = dom::kNoNode;
  std::uint32_t index = 0;
  std::uint32_t count = 1;
};

struct QueryOptions {
  /// The data types of nodes; null for what the document itself says (WrittenTyping).
  const NodeTyping* typing = nullptr;
  /// What context(...) leads to, the outermost first: the node that a transform was called on,
  /// then the node of each selection; all of the start node's document. Empty: the start node.
  std::span<const ContextFrame> contexts;
  /// Visited nodes after which overlapping work is answered by a table; the size of the document
  /// unless set. It changes no result.
  std::optional<std::uint64_t> patience;
};

}  // namespace kx::patterns
