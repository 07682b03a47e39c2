// What the classes of the library have in common: each is a handle, one counted reference to an
// object or to nothing, and some can be enumerated.
#pragma once

#include "kxmessage/export.h"
#include "kxmessage/variant.h"

#include <cstddef>
#include <iterator>
#include <utility>

namespace kx {

class HandleAccess;

/// One reference to an object of the library. Copying a handle shares the object. `==` tells
/// whether two handles name the same object: two reads of one child give two objects, which differ.
/// A handle of nothing tests false, and every other member of it raises the run-time error 91.
class KX_EXPORT Handle {
 public:
  explicit operator bool() const noexcept { return static_cast<bool>(object_); }
  friend bool operator==(const Handle& a, const Handle& b) noexcept = default;
  /// The reference itself, as a Variant holds it.
  [[nodiscard]] const ObjectRef& AsObject() const noexcept { return object_; }

 protected:
  Handle() noexcept = default;
  explicit Handle(ObjectRef object) noexcept : object_(std::move(object)) {}

 private:
  friend class HandleAccess;
  ObjectRef object_;
};

/// What an enumeration has still to give. Made by the library.
class KX_EXPORT Enumeration : public Object {
 public:
  /// The next object; an empty reference after the last one.
  [[nodiscard]] virtual ObjectRef Next() = 0;
};

/// Walks a published enumeration; `T` is the class of its items. Every walk begins anew, over the
/// list that the collection keeps for enumerations at that moment.
template <typename T>
class EnumerationIterator {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = T;
  using difference_type = std::ptrdiff_t;
  using pointer = const T*;
  using reference = const T&;

  /// The end.
  EnumerationIterator() noexcept = default;
  explicit EnumerationIterator(ObjectRef enumeration) : enumeration_(std::move(enumeration)) {
    ++*this;
  }

  [[nodiscard]] reference operator*() const noexcept { return item_; }
  [[nodiscard]] pointer operator->() const noexcept { return &item_; }
  EnumerationIterator& operator++() {
    item_ = T(static_cast<Enumeration*>(enumeration_.Get())->Next());
    if (!item_) enumeration_ = ObjectRef();
    return *this;
  }
  void operator++(int) { ++*this; }
  friend bool operator==(const EnumerationIterator& a, const EnumerationIterator& b) noexcept {
    return a.enumeration_ == b.enumeration_;
  }

 private:
  ObjectRef enumeration_;
  T item_{nullptr};
};

}  // namespace kx
