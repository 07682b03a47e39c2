// See namespace_context.h.
#include "platform/dom/namespace_context.h"

namespace kx::dom {

std::size_t NamespaceContext::FindIndex(std::uint32_t prefix) const noexcept {
  if (Indexed()) {
    const auto found = latest_.find(prefix);
    return found == latest_.end() ? kNowhere : found->second;
  }
  for (std::size_t i = bindings_.size(); i != 0; --i) {
    if (bindings_[i - 1].prefix == prefix) return i - 1;
  }
  return kNowhere;
}

void NamespaceContext::Declare(NodeId element, std::uint32_t prefix, UriId uri) {
  if (!Indexed() && bindings_.size() == kMostWithoutIndex) BuildIndex();
  if (bindings_.capacity() == 0) bindings_.reserve(4);
  const std::size_t index = bindings_.size();
  bindings_.push_back({prefix, uri, element, innermost_, version_, kNowhere});
  if (Indexed()) {
    const auto [slot, added] = latest_.try_emplace(prefix, index);
    if (!added) {
      bindings_[index].shadowed = slot->second;
      slot->second = index;
    }
  }
  innermost_ = element;
  version_ = ++versions_;
}

void NamespaceContext::BuildIndex() {
  for (std::size_t i = 0; i < bindings_.size(); ++i) {
    const auto [slot, added] = latest_.try_emplace(bindings_[i].prefix, i);
    bindings_[i].shadowed = added ? kNowhere : slot->second;
    slot->second = i;
  }
}

void NamespaceContext::Forget() noexcept {
  const Binding& binding = bindings_.back();
  if (Indexed()) latest_.find(binding.prefix)->second = binding.shadowed;
  innermost_ = binding.outerElement;
  version_ = binding.outerVersion;
  bindings_.pop_back();
}

}  // namespace kx::dom
