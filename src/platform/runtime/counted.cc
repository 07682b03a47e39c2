// The process's count of live objects: it answers whether the component may be unloaded.
#include "platform/runtime/counted.h"

namespace kx::runtime {

std::atomic<std::size_t>& LiveObject::Count() noexcept {
  static std::atomic<std::size_t> count{0};
  return count;
}

}  // namespace kx::runtime
