// A byte array with bounds, as the run-time has it: it may be without bounds (never dimensioned),
// and every index and bound is checked. A kx::Variant holds plain bytes, whose bounds are 0 to n
// - 1.
#pragma once

#include "kxmessage/variant.h"

#include <cstdint>

namespace kx::runtime {

class ByteArray {
 public:
  /// Without bounds.
  ByteArray() noexcept = default;
  /// `bytes` with the bounds 0 to n - 1 (0 to -1 when there are none).
  explicit ByteArray(Variant::Bytes bytes) noexcept : bytes_(std::move(bytes)), hasBounds_(true) {}
  /// Zeros with the given bounds; `upper` is `lower` - 1 for no elements. Raises: 9.
  ByteArray(std::int32_t lower, std::int32_t upper);

  /// The bytes that a value holds. Raises: 13 when it is no array.
  [[nodiscard]] static ByteArray FromValue(const Variant& value);

  /// Raises: 9 without bounds.
  [[nodiscard]] std::int32_t LBound() const;
  [[nodiscard]] std::int32_t UBound() const;

  /// Raises: 9 outside the bounds.
  [[nodiscard]] std::uint8_t Get(std::int32_t index) const { return bytes_[OffsetOf(index)]; }
  void Set(std::int32_t index, std::uint8_t value) { bytes_[OffsetOf(index)] = value; }

  /// New bounds, keeping what lies within both; new elements are 0. Raises: 9 when the lower bound
  /// would change, or `upper` lies more than one below `lower`.
  void RedimPreserve(std::int32_t lower, std::int32_t upper);

  /// The elements without their bounds.
  [[nodiscard]] const Variant::Bytes& Elements() const noexcept { return bytes_; }
  [[nodiscard]] Variant ToValue() const { return bytes_; }

 private:
  [[nodiscard]] std::size_t OffsetOf(std::int32_t index) const;

  Variant::Bytes bytes_;
  std::int32_t lower_ = 0;
  bool hasBounds_ = false;
};

}  // namespace kx::runtime
