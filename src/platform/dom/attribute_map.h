// The attributes of an element, or of an XML declaration, as a collection: live, in the order in
// which they were written, declarations of namespaces included at their place.
#pragma once

#include "platform/dom/node.h"

#include <cstdint>
#include <string_view>

namespace kx::dom {

/// Keeps its element. A map without element is "nothing" and tests false; the other members of it
/// raise the run-time error 91. Copies have positions of their own for NextNode.
class AttributeMap {
 public:
  AttributeMap() noexcept = default;
  /// The map of `owner`; no map for a kind that has no attributes.
  explicit AttributeMap(const Node& owner);

  explicit operator bool() const noexcept { return static_cast<bool>(owner_); }

  [[nodiscard]] std::int32_t Length() const;
  /// Counted from 0; nothing outside.
  [[nodiscard]] Node Item(std::int32_t index) const;
  /// By qualified name as written; nothing when absent. Raises: E_INVALIDARG for null.
  [[nodiscard]] Node GetNamedItem(std::string_view name) const;
  /// By name without prefix and namespace; nothing when absent.
  [[nodiscard]] Node GetQualifiedItem(std::string_view baseName, std::string_view uri) const;
  /// Adds a detached attribute at the end, or in the place of one of the same qualified name, and
  /// returns it. Raises: as Node::SetAttributeNode.
  Node SetNamedItem(const Node& attribute) const;
  /// Takes an attribute out and returns it; nothing when absent. Raises: E_INVALIDARG for null.
  Node RemoveNamedItem(std::string_view name) const;
  Node RemoveQualifiedItem(std::string_view baseName, std::string_view uri) const;

  /// The next one in turn, from the first; nothing after the last. Item does not move the turn.
  Node NextNode();
  void Reset() noexcept { next_ = 0; }

 private:
  [[nodiscard]] Cursor FindQualified(std::string_view baseName, std::string_view uri) const;
  Node Remove(const Cursor& attribute) const;

  Node owner_;
  std::int32_t next_ = 0;
};

}  // namespace kx::dom
