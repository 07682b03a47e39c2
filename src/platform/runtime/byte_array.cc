// Bounds are 32-bit and may lie anywhere, so every difference is taken in 64 bits.
#include "platform/runtime/byte_array.h"

#include "platform/runtime/error.h"

namespace kx::runtime {
namespace {

std::size_t CountBetween(std::int32_t lower, std::int32_t upper) {
  const std::int64_t count = std::int64_t{upper} - lower + 1;
  if (count < 0) RaiseRuntimeError(kSubscriptOutOfRange);
  return static_cast<std::size_t>(count);
}

}  // namespace

ByteArray::ByteArray(std::int32_t lower, std::int32_t upper)
    : bytes_(CountBetween(lower, upper)), lower_(lower), hasBounds_(true) {}

ByteArray ByteArray::FromValue(const Variant& value) {
  const Variant::Bytes* bytes = value.IfBytes();
  if (bytes == nullptr) RaiseRuntimeError(kTypeMismatch);
  return ByteArray(*bytes);
}

std::int32_t ByteArray::LBound() const {
  if (!hasBounds_) RaiseRuntimeError(kSubscriptOutOfRange);
  return lower_;
}

std::int32_t ByteArray::UBound() const {
  return static_cast<std::int32_t>(LBound() + static_cast<std::int64_t>(bytes_.size()) - 1);
}

void ByteArray::RedimPreserve(std::int32_t lower, std::int32_t upper) {
  const std::size_t count = CountBetween(lower, upper);
  if (hasBounds_ && lower != lower_) RaiseRuntimeError(kSubscriptOutOfRange);
  bytes_.resize(count);
  lower_ = lower;
  hasBounds_ = true;
}

std::size_t ByteArray::OffsetOf(std::int32_t index) const {
  const std::int64_t offset = std::int64_t{index} - lower_;
  if (offset < 0 || offset >= static_cast<std::int64_t>(bytes_.size())) {
    RaiseRuntimeError(kSubscriptOutOfRange);
  }
  return static_cast<std::size_t>(offset);
}

}  // namespace kx::runtime
