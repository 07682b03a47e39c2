// The list of objects that a collection keeps for its enumerations, and the walk over it.
#pragma once

#include "kxmessage/handle.h"

#include "platform/runtime/counted.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kx::core {

/// A list of objects, complete once it is shared. Enumerations keep it after its collection has
/// dropped it.
class Snapshot final : public runtime::PlainCounted {
 public:
  explicit Snapshot(std::vector<ObjectRef> items) noexcept : items_(std::move(items)) {}

  [[nodiscard]] std::size_t Size() const noexcept { return items_.size(); }
  [[nodiscard]] const ObjectRef& At(std::size_t index) const noexcept { return items_[index]; }

 private:
  std::vector<ObjectRef> items_;
};
using SharedSnapshot = runtime::Counted<const Snapshot>;

/// A walk over `snapshot` from its start.
[[nodiscard]] ObjectRef Enumerate(SharedSnapshot snapshot);

/// `count` as the 16-bit number by which snapshots are made. Raises: 6 beyond 32,767.
std::int16_t SnapshotCount(std::int64_t count);

}  // namespace kx::core
