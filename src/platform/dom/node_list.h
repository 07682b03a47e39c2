// Lists of nodes: the children of a node and the elements of a name below it, both live, and a
// fixed list of nodes, which keeps what it was given.
#pragma once

#include "platform/dom/node.h"
#include "platform/runtime/counted.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kx::dom {

/// Keeps the node whose list it is. A default-constructed list is "nothing" and tests false; the
/// other members of it raise the run-time error 91. Copies have positions of their own for
/// NextNode. For one thread at a time.
class NodeList {
 public:
  NodeList() noexcept = default;
  [[nodiscard]] static NodeList OfChildren(const Node& parent);
  /// Elements below `root`, in document order; `name` is a qualified name, or "*" for all.
  [[nodiscard]] static NodeList OfElements(const Node& root, std::string_view name);
  [[nodiscard]] static NodeList OfNodes(std::vector<Node> nodes);
  /// A fixed list of that node; without members when it is nothing. Allocates nothing.
  [[nodiscard]] static NodeList OfNode(Node node);

  explicit operator bool() const noexcept { return kind_ != Kind::kNothing; }

  [[nodiscard]] std::int32_t Length() const;
  /// Counted from 0; nothing outside. Walking a list by position costs no more than by links, also
  /// when each item is asked of a new list.
  [[nodiscard]] Node Item(std::int32_t index) const;
  /// The next one in turn, from the first; nothing after the last. Item does not move the turn.
  Node NextNode();
  void Reset() noexcept { next_ = 0; }

 private:
  enum class Kind : unsigned char { kNothing, kChildren, kElements, kFixed };

  class Fixed : public runtime::PlainCounted {
   public:
    explicit Fixed(std::vector<Node> list) noexcept : nodes(std::move(list)) {}
    const std::vector<Node> nodes;
  };
  /// Where the last walk of this list ended, good while the content is the same.
  struct Place {
    const DocumentData* data = nullptr;
    NodeId root = kNoNode;
    std::uint64_t version = 0;
    std::uint32_t index = 0;
    Cursor at;
    std::int64_t length = -1;
  };

  NodeList(Kind kind, Node root) noexcept : kind_(kind), root_(std::move(root)) {}
  [[nodiscard]] Cursor First(const Cursor& root) const;
  [[nodiscard]] Cursor Next(const Cursor& root, const Cursor& at) const;
  [[nodiscard]] Cursor ElementFrom(const Cursor& root, Cursor at) const;
  [[nodiscard]] bool IsWalked(const Cursor& root) const;
  [[nodiscard]] Place& CurrentPlace(const Cursor& root) const;
  [[nodiscard]] Cursor Walk(const Cursor& root, std::uint32_t index) const;
  [[nodiscard]] std::int32_t WalkedLength(const Cursor& root) const;

  Kind kind_ = Kind::kNothing;
  std::int32_t next_ = 0;
  Node root_;         // of a fixed list without `fixed_` its one member
  std::string name_;  // of the elements
  runtime::Counted<Fixed> fixed_;
  mutable Place place_;
};

}  // namespace kx::dom
