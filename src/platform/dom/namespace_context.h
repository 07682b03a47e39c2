// Which namespace each prefix is bound to while elements are written: the declarations of the
// elements that are open at the moment, the innermost last.
//
// Invariants:
//   - A look-up costs the same however many declarations are open, or were.
//   - Version() names a state: it is never the same for two different sets of bindings, and is the
//     former one again when an element's declarations go out of scope.
#pragma once

#include "platform/dom/name_table.h"

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace kx::dom {

class NamespaceContext {
 public:
  /// What a prefix without declaration is bound to; differs from every namespace of a document.
  static constexpr UriId kUnbound = 0xFFFFFFFFU;

  /// The namespace that `prefix` (a qualified name's index, 0 for the default namespace) is bound
  /// to. The default namespace begins as none.
  [[nodiscard]] UriId Find(std::uint32_t prefix) const noexcept {
    const std::size_t index = FindIndex(prefix);
    if (index != kNowhere) return bindings_[index].uri;
    return prefix == 0 ? kNoUri : kUnbound;
  }
  /// True when `element` itself declares `prefix`.
  [[nodiscard]] bool IsDeclaredBy(NodeId element, std::uint32_t prefix) const noexcept {
    const std::size_t index = FindIndex(prefix);
    return index != kNowhere && bindings_[index].element == element;
  }
  /// `element`, which is the innermost open one, declares `prefix`, once.
  void Declare(NodeId element, std::uint32_t prefix, UriId uri);
  /// The declarations of `element`, the innermost open one, go out of scope.
  void Leave(NodeId element) noexcept {
    while (element == innermost_) Forget();
  }

  [[nodiscard]] std::uint32_t Version() const noexcept { return version_; }
  /// The innermost element that declares anything; kNoNode when none does.
  [[nodiscard]] NodeId Innermost() const noexcept { return innermost_; }

 private:
  static constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);
  static constexpr std::size_t kMostWithoutIndex = 16;

  struct Binding {
    std::uint32_t prefix;
    UriId uri;
    NodeId element;
    NodeId outerElement;  // what Innermost() was before
    std::uint32_t outerVersion;
    std::size_t shadowed;  // the next outer binding of the prefix; kept by indexed bindings only
  };

  [[nodiscard]] std::size_t FindIndex(std::uint32_t prefix) const noexcept;
  [[nodiscard]] bool Indexed() const noexcept { return !latest_.empty(); }
  void BuildIndex();
  void Forget() noexcept;

  std::vector<Binding> bindings_;
  std::unordered_map<std::uint32_t, std::size_t> latest_;  // by prefix, once there are many
  NodeId innermost_ = kNoNode;
  std::uint32_t version_ = 1;
  std::uint32_t versions_ = 1;
};

}  // namespace kx::dom
