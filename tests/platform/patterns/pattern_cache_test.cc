#include "platform/patterns/pattern_cache.h"

#include "kxmessage/error.h"

#include <gtest/gtest.h>
#include <string>
#include <utility>

namespace kx::patterns {
namespace {

TEST(PatternCache, CompilesATextOnce) {
  PatternCache cache;
  const Code* const first = &cache.Get("a/b").GetCode();
  EXPECT_EQ(&cache.Get("a/b").GetCode(), first);
  static_cast<void>(cache.Get("c"));
  EXPECT_EQ(&cache.Get(std::string("a/b")).GetCode(), first);
  EXPECT_EQ(cache.Size(), 2U);
}

TEST(PatternCache, IsBoundedAndKeepsWhatIsAskedOften) {
  PatternCache cache;
  const Code* const often = &cache.Get("often").GetCode();
  for (int i = 0; i < 1000; ++i) {
    EXPECT_EQ(cache.Get("a" + std::to_string(i)).Text(), "a" + std::to_string(i));
    EXPECT_EQ(&cache.Get("often").GetCode(), often);
  }
  EXPECT_EQ(cache.Size(), PatternCache::kSets * PatternCache::kWays);
}

TEST(PatternCache, DoesNotKeepLongTexts) {
  PatternCache cache;
  const std::string longest(PatternCache::kLongestText, 'a');
  EXPECT_EQ(cache.Get(longest).Text(), longest);
  EXPECT_EQ(cache.Size(), 1U);
  EXPECT_EQ(cache.Get(longest + "a").Text(), longest + "a");
  EXPECT_EQ(cache.Get(longest + "a").Text(), longest + "a");
  EXPECT_EQ(cache.Size(), 1U);
}

TEST(PatternCache, KeepsNoFailureAndSurvivesIt) {
  PatternCache cache;
  const Code* const good = &cache.Get("a").GetCode();
  for (int i = 0; i < 3; ++i) {
    EXPECT_THROW(static_cast<void>(cache.Get("a[")), Error);
    EXPECT_THROW(static_cast<void>(cache.Get("a = 1")), Error);
    EXPECT_THROW(static_cast<void>(cache.Get("")), Error);
    EXPECT_THROW(static_cast<void>(cache.Get(std::string_view())), Error);
  }
  EXPECT_EQ(cache.Size(), 1U);
  EXPECT_EQ(&cache.Get("a").GetCode(), good);
}

TEST(PatternCache, MayBeMoved) {
  PatternCache cache;
  const Code* const code = &cache.Get("a").GetCode();
  PatternCache moved = std::move(cache);
  EXPECT_EQ(&moved.Get("a").GetCode(), code);
}

}  // namespace
}  // namespace kx::patterns
