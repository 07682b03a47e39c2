// See text_heap.h.
#include "platform/dom/text_heap.h"

#include <bit>
#include <cstdlib>
#include <cstring>
#include <new>

namespace kx::dom {

void TextHeap::FreeBlock::operator()(char* block) const noexcept { std::free(block); }

std::size_t TextHeap::ClassOf(std::uint32_t length) noexcept {
  if (length <= 16) return 0;
  const auto top = static_cast<std::uint32_t>(std::bit_width(length - 1));  // 2^(top-1) < length
  const std::uint32_t middle = 3U << (top - 2U);
  return 2U * (top - 4U) - (length <= middle ? 1U : 0U);
}

std::uint32_t TextHeap::SizeOfClass(std::size_t sizeClass) noexcept {
  const auto top = static_cast<std::uint32_t>(sizeClass + 1) / 2U + 4U;
  return sizeClass % 2 == 0 ? 1U << top : 3U << (top - 2U);
}

void TextHeap::Reserve(std::size_t bytes) {
  if (bytes <= capacity_) return;
  if (bytes > kNoOffset) throw std::bad_alloc();
  std::size_t wanted = capacity_ + capacity_ / 2 + 256;
  if (wanted < bytes) wanted = bytes;
  if (wanted > kNoOffset) wanted = kNoOffset;
  auto* grown = static_cast<char*>(std::realloc(block_.get(), wanted));
  if (grown == nullptr) throw std::bad_alloc();
  static_cast<void>(block_.release());  // realloc took it over
  block_.reset(grown);
  capacity_ = wanted;
}

std::uint32_t TextHeap::Allocate(std::uint32_t length) {
  if (length > kLongestText) throw std::bad_alloc();
  const std::size_t sizeClass = ClassOf(length);
  const std::uint32_t size = SizeOfClass(sizeClass);
  if (freeTexts_ && (*freeTexts_)[sizeClass] != kNoOffset) {
    const std::uint32_t offset = (*freeTexts_)[sizeClass];
    std::memcpy(&(*freeTexts_)[sizeClass], block_.get() + offset, sizeof(std::uint32_t));
    live_ += size;
    return offset;
  }
  Reserve(used_ + size);
  const auto offset = static_cast<std::uint32_t>(used_);
  used_ += size;
  live_ += size;
  return offset;
}

std::uint32_t TextHeap::Store(std::string_view text) {
  if (text.size() > kLongestText) throw std::bad_alloc();
  const bool own =
      block_ != nullptr && text.data() >= block_.get() && text.data() < block_.get() + used_;
  const std::size_t source = own ? static_cast<std::size_t>(text.data() - block_.get()) : 0;
  const std::uint32_t offset = Allocate(static_cast<std::uint32_t>(text.size()));
  const char* from = own ? block_.get() + source : text.data();
  if (!text.empty()) std::memmove(block_.get() + offset, from, text.size());
  return offset;
}

void TextHeap::Free(std::uint32_t offset, std::uint32_t length) noexcept {
  if (!freeTexts_) {
    freeTexts_.reset(new (std::nothrow) std::array<std::uint32_t, kClasses>);
    if (!freeTexts_) return;  // the text is lost until the document goes
    freeTexts_->fill(kNoOffset);
  }
  const std::size_t sizeClass = ClassOf(length);
  std::memcpy(block_.get() + offset, &(*freeTexts_)[sizeClass], sizeof(std::uint32_t));
  (*freeTexts_)[sizeClass] = offset;
  live_ -= SizeOfClass(sizeClass);
}

void TextHeap::CopyFrom(const TextHeap& other) {
  block_.reset();
  capacity_ = 0;
  Reserve(other.used_);
  if (other.used_ != 0) std::memcpy(block_.get(), other.block_.get(), other.used_);
  used_ = other.used_;
  live_ = other.live_;
  freeTexts_.reset(other.freeTexts_ ? new std::array<std::uint32_t, kClasses>(*other.freeTexts_)
                                    : nullptr);
}

}  // namespace kx::dom
