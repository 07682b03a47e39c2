// Storage for the texts of a document that are not ranges of its parse buffer: decoded and edited
// values. One growing block; a text is named by its offset. Freed texts are kept by size class
// and reused, so endless replacement needs no more room than the largest moment did.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace kx::dom {

class TextHeap {
 public:
  TextHeap() noexcept = default;

  /// Room for `length` bytes; the content is not initialised. Returns the offset.
  /// Raises: std::bad_alloc, also when the heap would outgrow 32-bit offsets.
  std::uint32_t Allocate(std::uint32_t length);
  /// Stores a copy of `text`, which may lie in this heap. Returns the offset.
  std::uint32_t Store(std::string_view text);
  /// Gives back a text of `length` bytes that was allocated with that length.
  void Free(std::uint32_t offset, std::uint32_t length) noexcept;

  [[nodiscard]] const char* Base() const noexcept { return block_.get(); }
  [[nodiscard]] char* Base() noexcept { return block_.get(); }
  /// Bytes ever handed out at one time (the high-water mark), and bytes in use now.
  [[nodiscard]] std::size_t UsedBytes() const noexcept { return used_; }
  [[nodiscard]] std::size_t LiveBytes() const noexcept { return live_; }
  [[nodiscard]] std::size_t CapacityBytes() const noexcept { return capacity_; }

  /// Makes this heap a copy of `other`, offsets included.
  void CopyFrom(const TextHeap& other);

 private:
  // Classes: 16, 24, 32, 48, 64, 96, ... two for each power of two up to 2^31.
  static constexpr std::size_t kClasses = 56;
  static constexpr std::uint32_t kNoOffset = 0xFFFFFFFFU;
  static constexpr std::uint32_t kLongestText = 0x80000000U;

  static std::size_t ClassOf(std::uint32_t length) noexcept;
  static std::uint32_t SizeOfClass(std::size_t sizeClass) noexcept;
  void Reserve(std::size_t bytes);

  struct FreeBlock {
    void operator()(char* block) const noexcept;
  };
  std::unique_ptr<char, FreeBlock> block_;
  std::size_t used_ = 0;
  std::size_t live_ = 0;
  std::size_t capacity_ = 0;
  // Offset of the first free text of each class; a free text begins with the next one's offset.
  std::unique_ptr<std::array<std::uint32_t, kClasses>> freeTexts_;
};

}  // namespace kx::dom
