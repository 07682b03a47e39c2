// From the library's objects to the handles that callers hold, and back.
#pragma once

#include "kxmessage/handle.h"

#include "platform/runtime/counted.h"
#include "platform/runtime/error.h"

#include <string_view>

namespace kx {

/// The one friend of every handle class.
class HandleAccess {
 public:
  /// A handle of `object`; of nothing when that is nothing.
  template <typename T, typename Impl>
  [[nodiscard]] static T Wrap(const runtime::Counted<Impl>& object) {
    return T(ObjectRef(object.Get()));
  }
  template <typename T>
  [[nodiscard]] static T Wrap(const ObjectRef& object) {
    return T(object);
  }
  /// The object behind a handle, which is one of class `Impl`; null for a handle of nothing.
  template <typename Impl>
  [[nodiscard]] static Impl* Find(const Handle& handle) noexcept {
    return static_cast<Impl*>(handle.object_.Get());
  }
  /// The same. Raises: 91 for a handle of nothing.
  template <typename Impl>
  [[nodiscard]] static Impl& Of(const Handle& handle) {
    Impl* const object = Find<Impl>(handle);
    if (object == nullptr) runtime::RaiseRuntimeError(runtime::kObjectNotSet);
    return *object;
  }
};

/// A text argument of a caller, for whom one of nothing is an empty one.
[[nodiscard]] constexpr std::string_view NotNull(std::string_view text) noexcept {
  return text.data() == nullptr ? std::string_view("") : text;
}

}  // namespace kx
