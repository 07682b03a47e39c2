// Room for decoded and edited texts: what is stored comes back, what is freed is used again.
#include "platform/dom/text_heap.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kx::dom {
namespace {

std::string_view TextAt(const TextHeap& heap, std::uint32_t offset, std::size_t length) {
  return {heap.Base() + offset, length};
}

TEST(TextHeap, GivesBackWhatWasStored) {
  TextHeap heap;
  std::vector<std::pair<std::uint32_t, std::string>> stored;
  for (std::size_t length = 0; length < 300; ++length) {
    const std::string text(length, static_cast<char>('a' + length % 26));
    stored.emplace_back(heap.Store(text), text);
  }
  for (const auto& [offset, text] : stored) EXPECT_EQ(TextAt(heap, offset, text.size()), text);
  EXPECT_GE(heap.CapacityBytes(), heap.UsedBytes());
  EXPECT_EQ(heap.UsedBytes(), heap.LiveBytes());
}

TEST(TextHeap, StoresATextThatLiesInItself) {
  TextHeap heap;
  std::uint32_t offset = heap.Store(std::string(100, 'x') + "tail");
  for (int i = 0; i < 200; ++i) {  // the block moves now and then
    offset = heap.Store(TextAt(heap, offset, 104));
    ASSERT_EQ(TextAt(heap, offset + 100, 4), "tail");
  }
  const std::uint32_t part = heap.Store(TextAt(heap, offset + 100, 4));
  EXPECT_EQ(TextAt(heap, part, 4), "tail");
}

struct ReuseCase {
  std::uint32_t freed;
  std::uint32_t wanted;
  bool reused;
  const char* why;
};

constexpr ReuseCase kReuse[] = {
    {10, 10, true, "the same length"},
    {1, 16, true, "the smallest class holds sixteen bytes"},
    {16, 17, false, "the next class does not"},
    {17, 24, true, "up to one and a half times"},
    {24, 25, false, "then up to twice"},
    {25, 32, true, "then up to twice"},
    {33, 48, true, "and so on"},
    {1000, 1024, true, "for long texts too"},
    {1024, 1025, false, "a longer one needs other room"},
    {0, 16, true, "an empty text takes room too"},
};

TEST(TextHeap, UsesFreedRoomForTextsOfItsClass) {
  for (const ReuseCase& row : kReuse) {
    SCOPED_TRACE(row.why);
    TextHeap heap;
    const std::uint32_t first = heap.Allocate(row.freed);
    heap.Allocate(row.freed);
    heap.Free(first, row.freed);
    EXPECT_EQ(heap.Allocate(row.wanted) == first, row.reused);
  }
}

TEST(TextHeap, CountsWhatIsLive) {
  TextHeap heap;
  EXPECT_EQ(heap.LiveBytes(), 0U);
  const std::uint32_t a = heap.Store("0123456789");
  const std::uint32_t b = heap.Store(std::string(20, 'x'));
  EXPECT_EQ(heap.LiveBytes(), 16U + 24U);
  heap.Free(a, 10);
  EXPECT_EQ(heap.LiveBytes(), 24U);
  EXPECT_EQ(heap.UsedBytes(), 16U + 24U) << "the high-water mark stays";
  heap.Free(b, 20);
  EXPECT_EQ(heap.LiveBytes(), 0U);
}

TEST(TextHeap, EndlessReplacementNeedsNoMoreRoomThanItsLargestMoment) {
  TextHeap heap;
  constexpr std::uint32_t kTexts = 64;
  std::vector<std::pair<std::uint32_t, std::uint32_t>> texts;
  const auto lengthOf = [](std::uint32_t round, std::uint32_t i) {
    return (round * 7 + i * 13) % 200;
  };
  for (std::uint32_t i = 0; i < kTexts; ++i) {
    texts.emplace_back(heap.Allocate(lengthOf(0, i)), lengthOf(0, i));
  }
  const auto replaceAll = [&](std::uint32_t round) {
    for (std::uint32_t i = 0; i < kTexts; ++i) {
      heap.Free(texts[i].first, texts[i].second);
      texts[i] = {heap.Allocate(lengthOf(round, i)), lengthOf(round, i)};
    }
  };
  for (std::uint32_t round = 1; round <= 200; ++round) replaceAll(round);
  const std::size_t capacity = heap.CapacityBytes();
  for (std::uint32_t round = 201; round <= 15'000; ++round) replaceAll(round);
  EXPECT_EQ(heap.CapacityBytes(), capacity);
}

TEST(TextHeap, ACopyHasTheSameOffsetsAndGoesItsOwnWay) {
  TextHeap heap;
  const std::uint32_t a = heap.Store("first");
  const std::uint32_t b = heap.Store("second");
  heap.Free(a, 5);
  TextHeap copy;
  copy.CopyFrom(heap);
  EXPECT_EQ(TextAt(copy, b, 6), "second");
  EXPECT_EQ(copy.LiveBytes(), heap.LiveBytes());
  EXPECT_EQ(copy.Store("third"), a) << "freed room is free in the copy";
  EXPECT_EQ(heap.Store("other"), a);
  EXPECT_EQ(TextAt(copy, a, 5), "third");
  EXPECT_EQ(TextAt(heap, a, 5), "other");
}

TEST(TextHeap, ACopyOfAnEmptyHeapIsEmpty) {
  TextHeap copy;
  copy.Store("gone");
  copy.CopyFrom(TextHeap());
  EXPECT_EQ(copy.UsedBytes(), 0U);
  EXPECT_EQ(copy.LiveBytes(), 0U);
  EXPECT_EQ(TextAt(copy, copy.Store("new"), 3), "new");
}

TEST(TextHeap, RefusesATextThatNoOffsetReaches) {
  TextHeap heap;
  EXPECT_THROW(heap.Allocate(0x80000001U), std::bad_alloc);
  // Nothing of a text is looked at when its length is refused, not even one that wraps in 32 bits.
  const char* const text = "x";
  for (const std::size_t length : {std::size_t{0x80000001U}, std::size_t{0x100000001U}}) {
    EXPECT_THROW(heap.Store({text, length}), std::bad_alloc);
  }
  EXPECT_EQ(heap.LiveBytes(), 0U);
}

}  // namespace
}  // namespace kx::dom
