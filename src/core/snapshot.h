// The list of objects that a collection keeps for its enumerations, and the walk over it.
#pragma once

#include "kxmessage/handle.h"

#include "platform/runtime/counted.h"

#include <cstddef>
#include <cstdint>
#include <list>
#include <utility>
#include <vector>

namespace kx::core {

/// A list of objects, complete once it is shared. Enumerations keep it after its collection has
/// dropped it.
///
/// The items may keep lists of their own, and so on, as deep as a document is: the end of a list
/// puts its items in line with those of the lists that are ending around it.
class Snapshot final : public runtime::PlainCounted {
 public:
  explicit Snapshot(std::vector<ObjectRef> items) { items_.push_back(std::move(items)); }
  Snapshot(const Snapshot&) = delete;
  Snapshot& operator=(const Snapshot&) = delete;
  ~Snapshot() override;

  [[nodiscard]] std::size_t Size() const noexcept { return items_.front().size(); }
  [[nodiscard]] const ObjectRef& At(std::size_t index) const noexcept {
    return items_.front()[index];
  }

 private:
  using Lists = std::list<std::vector<ObjectRef>>;
  Lists items_;  // one list, in a node that can change hands without allocating
};
using SharedSnapshot = runtime::Counted<const Snapshot>;

/// A walk over `snapshot` from its start.
[[nodiscard]] ObjectRef Enumerate(SharedSnapshot snapshot);

/// `count` as the 16-bit number by which snapshots are made. Raises: 6 beyond 32,767.
std::int16_t SnapshotCount(std::int64_t count);

}  // namespace kx::core
