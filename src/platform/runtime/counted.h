// Counted references: the one place where objects are made on the heap one by one.
//
// An object counts itself. Choose the base: PlainCounted for what one thread uses at a time,
// AtomicCounted for what messages on different threads share; PlainObject and AtomicObject are the
// same for classes that a kx::Variant may hold. Make objects with MakeCounted, hold them with
// Counted<T>. Destruction of one object must not destroy a chain of others of its kind recursively.
//
// LiveObject marks a class whose objects callers hold: while one exists, the component may not be
// unloaded. Caches that live as long as the process are not marked.
#pragma once

#include "kxmessage/variant.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <type_traits>
#include <utility>

namespace kx::runtime {

/// A reference to an object that counts itself, or to nothing. Copies share the object; `==` is
/// identity.
template <typename T>
class Counted {
 public:
  constexpr Counted() noexcept = default;
  constexpr Counted(std::nullptr_t) noexcept {}  // NOLINT(google-explicit-constructor)
  /// Shares an existing object.
  explicit Counted(T* object) noexcept : object_(object) {
    if (object_ != nullptr) object_->Retain();
  }
  Counted(const Counted& other) noexcept : Counted(other.object_) {}
  Counted(Counted&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  /// From a reference to a derived or less const class.
  template <typename U>
  requires std::is_convertible_v<U*, T*> Counted(const Counted<U>& other)
  noexcept  // NOLINT(google-explicit-constructor)
      : Counted(static_cast<T*>(other.Get())) {}
  template <typename U>
  requires std::is_convertible_v<U*, T*> Counted(Counted<U>&& other)
  noexcept  // NOLINT(google-explicit-constructor)
      : object_(other.Detach()) {}
  ~Counted() {
    if (object_ != nullptr) object_->Release();
  }
  // NOLINTNEXTLINE(bugprone-unhandled-self-assignment): the copy holds its own count meanwhile
  Counted& operator=(const Counted& other) noexcept {
    Counted(other).Swap(*this);
    return *this;
  }
  Counted& operator=(Counted&& other) noexcept {
    Counted(std::move(other)).Swap(*this);
    return *this;
  }

  [[nodiscard]] T* Get() const noexcept { return object_; }
  T* operator->() const noexcept { return object_; }
  T& operator*() const noexcept { return *object_; }
  explicit operator bool() const noexcept { return object_ != nullptr; }

  void Reset() noexcept { Counted().Swap(*this); }
  void Swap(Counted& other) noexcept { std::swap(object_, other.object_); }
  /// Gives the count away: the caller owns one reference, this one is empty.
  [[nodiscard]] T* Detach() noexcept { return std::exchange(object_, nullptr); }
  /// Takes over a count that the caller owns.
  [[nodiscard]] static Counted Attach(T* object) noexcept {
    Counted reference;
    reference.object_ = object;
    return reference;
  }

  friend bool operator==(const Counted& a, const Counted& b) noexcept {
    return a.object_ == b.object_;
  }

 private:
  T* object_ = nullptr;
};

/// Makes an object and the first reference to it.
template <typename T, typename... Args>
[[nodiscard]] Counted<T> MakeCounted(Args&&... args) {
  return Counted<T>(new T(std::forward<Args>(args)...));
}

/// A count for objects that one thread uses at a time.
class PlainCount {
 public:
  void Increment() noexcept { ++value_; }
  /// True when it reached zero.
  [[nodiscard]] bool Decrement() noexcept { return --value_ == 0; }
  [[nodiscard]] std::size_t Value() const noexcept { return value_; }

 private:
  std::size_t value_ = 0;
};

/// A count for objects that threads share.
class AtomicCount {
 public:
  void Increment() noexcept { value_.fetch_add(1, std::memory_order_relaxed); }
  /// True when it reached zero; then everything done before other decrements is visible.
  [[nodiscard]] bool Decrement() noexcept {
    return value_.fetch_sub(1, std::memory_order_acq_rel) == 1;
  }
  [[nodiscard]] std::size_t Value() const noexcept {
    return value_.load(std::memory_order_acquire);
  }

 private:
  std::atomic<std::size_t> value_{0};
};

/// Base of counted classes that no Variant holds. Copies of an object start with a count of their
/// own.
template <typename CountType>
class CountedBase {
 public:
  void Retain() const noexcept { count_.Increment(); }
  void Release() const noexcept {
    if (count_.Decrement()) delete this;
  }
  [[nodiscard]] std::size_t ReferenceCount() const noexcept { return count_.Value(); }

 protected:
  CountedBase() noexcept = default;
  CountedBase(const CountedBase& /*other*/) noexcept {}
  CountedBase& operator=(const CountedBase& /*other*/) noexcept { return *this; }
  virtual ~CountedBase() = default;

 private:
  mutable CountType count_;
};
using PlainCounted = CountedBase<PlainCount>;
using AtomicCounted = CountedBase<AtomicCount>;

/// Base of counted classes whose objects travel in a kx::Variant.
template <typename CountType>
class CountedObjectBase : public Object {
 public:
  void Retain() const noexcept final { count_.Increment(); }
  void Release() const noexcept final {
    if (count_.Decrement()) delete this;
  }
  [[nodiscard]] std::size_t ReferenceCount() const noexcept { return count_.Value(); }

 protected:
  CountedObjectBase() noexcept = default;
  CountedObjectBase(const CountedObjectBase& /*other*/) noexcept : Object() {}
  CountedObjectBase& operator=(const CountedObjectBase& /*other*/) noexcept { return *this; }
  ~CountedObjectBase() override = default;

 private:
  mutable CountType count_;
};
using PlainObject = CountedObjectBase<PlainCount>;
using AtomicObject = CountedObjectBase<AtomicCount>;

/// Counts the objects that callers hold; a class derives from it to be counted.
class LiveObject {
 public:
  LiveObject() noexcept { Count().fetch_add(1, std::memory_order_relaxed); }
  LiveObject(const LiveObject& /*other*/) noexcept : LiveObject() {}
  LiveObject& operator=(const LiveObject& /*other*/) noexcept { return *this; }
  ~LiveObject() { Count().fetch_sub(1, std::memory_order_release); }

  /// How many marked objects exist in the process.
  [[nodiscard]] static std::size_t LiveCount() noexcept {
    return Count().load(std::memory_order_acquire);
  }

 private:
  [[nodiscard]] static std::atomic<std::size_t>& Count() noexcept;
};

}  // namespace kx::runtime

template <typename T>
struct std::hash<kx::runtime::Counted<T>> {
  std::size_t operator()(const kx::runtime::Counted<T>& reference) const noexcept {
    return std::hash<T*>()(reference.Get());
  }
};
