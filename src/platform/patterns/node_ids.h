// A list of nodes as indices. The first few need no memory of their own, so that a query which
// finds little allocates nothing for it.
#pragma once

#include "platform/dom/node_record.h"

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace kx::patterns {

class NodeIds {
 public:
  static constexpr std::size_t kFew = 16;

  [[nodiscard]] std::size_t Size() const noexcept { return many_.empty() ? size_ : many_.size(); }
  [[nodiscard]] std::span<const dom::NodeId> All() const noexcept {
    return many_.empty() ? std::span(few_.data(), size_) : std::span(many_);
  }
  void Append(dom::NodeId id) {
    if (many_.empty() && size_ < kFew) {
      few_[size_++] = id;
      return;
    }
    if (many_.empty()) many_.assign(few_.begin(), few_.end());
    many_.push_back(id);
  }
  /// Takes over a list; what was there is dropped.
  void Assign(std::vector<dom::NodeId> ids) noexcept {
    size_ = 0;
    many_ = std::move(ids);
  }

 private:
  std::size_t size_ = 0;  // in few_, while many_ is empty
  std::array<dom::NodeId, kFew> few_;
  std::vector<dom::NodeId> many_;
};

}  // namespace kx::patterns
