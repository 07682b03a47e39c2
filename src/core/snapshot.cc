// See snapshot.h.
#include "core/snapshot.h"

#include "platform/runtime/error.h"

#include <limits>
#include <utility>

namespace kx::core {

namespace {

class SnapshotEnumeration final : public Enumeration {
 public:
  explicit SnapshotEnumeration(SharedSnapshot snapshot) noexcept : snapshot_(std::move(snapshot)) {}

  void Retain() const noexcept override { count_.Increment(); }
  void Release() const noexcept override {
    if (count_.Decrement()) delete this;
  }
  [[nodiscard]] ObjectRef Next() override {
    return next_ < snapshot_->Size() ? snapshot_->At(next_++) : ObjectRef();
  }

 private:
  mutable runtime::PlainCount count_;
  SharedSnapshot snapshot_;
  std::size_t next_ = 0;
};

}  // namespace

Snapshot::~Snapshot() {
  thread_local Lists* ending = nullptr;
  if (ending != nullptr) {
    ending->splice(ending->end(), items_);
    return;
  }
  Lists line;
  line.splice(line.end(), items_);
  ending = &line;
  while (!line.empty()) {
    Lists first;
    first.splice(first.end(), line, line.begin());
  }
  ending = nullptr;
}

ObjectRef Enumerate(SharedSnapshot snapshot) {
  return ObjectRef(new SnapshotEnumeration(std::move(snapshot)));
}

std::int16_t SnapshotCount(std::int64_t count) {
  if (count > std::numeric_limits<std::int16_t>::max()) {
    runtime::RaiseRuntimeError(runtime::kOverflow);
  }
  return static_cast<std::int16_t>(count);
}

}  // namespace kx::core
