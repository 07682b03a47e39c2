// Counted references and the count of live objects.
#include "platform/runtime/counted.h"

#include "platform/runtime/test_objects.h"

#include <gtest/gtest.h>
#include <thread>
#include <unordered_set>
#include <vector>

namespace kx::runtime {
namespace {

class Plain : public PlainCounted, public LiveObject {
 public:
  explicit Plain(int value = 0) : number(value) {}
  int number;
};
class Derived : public Plain {};
class Shared : public AtomicCounted, public LiveObject {};

TEST(Counted, EndsTheObjectWithItsLastReference) {
  Counted<Plain> first = MakeCounted<Plain>(7);
  EXPECT_EQ(first->ReferenceCount(), 1U);
  {
    Counted<Plain> second;
    second = first;
    EXPECT_EQ(first->ReferenceCount(), 2U);
    EXPECT_EQ(second, first);
    EXPECT_EQ(second->number, 7);
  }
  EXPECT_EQ(first->ReferenceCount(), 1U);
  EXPECT_EQ(LiveObject::LiveCount(), 1U);
  first.Reset();
  EXPECT_FALSE(first);
  EXPECT_EQ(LiveObject::LiveCount(), 0U);
}

TEST(Counted, MovesWithoutCounting) {
  Counted<Plain> first = MakeCounted<Plain>();
  Plain* object = first.Get();
  Counted<Plain> second = std::move(first);
  EXPECT_EQ(second.Get(), object);
  EXPECT_EQ(object->ReferenceCount(), 1U);
  first = std::move(second);
  EXPECT_EQ(first.Get(), object);
  EXPECT_EQ(object->ReferenceCount(), 1U);
}

TEST(Counted, SurvivesAssignmentToItself) {
  Counted<Plain> reference = MakeCounted<Plain>(3);
  const Counted<Plain>& alias = reference;
  reference = alias;
  EXPECT_EQ(reference->number, 3);
  EXPECT_EQ(reference->ReferenceCount(), 1U);
}

TEST(Counted, ConvertsToABaseClass) {
  const Counted<Derived> derived = MakeCounted<Derived>();
  const Counted<Plain> base = derived;
  EXPECT_EQ(base.Get(), derived.Get());
  EXPECT_EQ(base->ReferenceCount(), 2U);
  const Counted<const Plain> readOnly = base;
  EXPECT_EQ(readOnly->ReferenceCount(), 3U);
  const Counted<Plain> moved = MakeCounted<Derived>();
  EXPECT_EQ(moved->ReferenceCount(), 1U);
}

TEST(Counted, GivesItsCountAwayAndTakesItBack) {
  Counted<Plain> reference = MakeCounted<Plain>();
  Plain* object = reference.Detach();
  EXPECT_FALSE(reference);
  EXPECT_EQ(object->ReferenceCount(), 1U);
  reference = Counted<Plain>::Attach(object);
  EXPECT_EQ(object->ReferenceCount(), 1U);
}

TEST(Counted, ComparesAndHashesByIdentity) {
  const Counted<Plain> a = MakeCounted<Plain>();
  const Counted<Plain> b = MakeCounted<Plain>();
  EXPECT_NE(a, b);
  EXPECT_EQ(Counted<Plain>(), Counted<Plain>(nullptr));
  const std::unordered_set<Counted<Plain>> set{a, b, a};
  EXPECT_EQ(set.size(), 2U);
}

TEST(Counted, CopiesOfAnObjectStartTheirOwnCount) {
  const Counted<Plain> first = MakeCounted<Plain>(5);
  Counted<Plain> again;
  again = first;
  const Counted<Plain> copy = MakeCounted<Plain>(*first);
  EXPECT_EQ(copy->ReferenceCount(), 1U);
  EXPECT_EQ(copy->number, 5);
  EXPECT_EQ(LiveObject::LiveCount(), 2U);
}

TEST(AtomicCounted, CountsRightlyFromManyThreads) {
  {
    const Counted<Shared> shared = MakeCounted<Shared>();
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int i = 0; i < 4; ++i) {
      threads.emplace_back([&shared] {
        for (int n = 0; n < 10000; ++n) {
          Counted<Shared> mine;
          mine = shared;
          ASSERT_TRUE(mine);
        }
      });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(shared->ReferenceCount(), 1U);
  }
  EXPECT_EQ(LiveObject::LiveCount(), 0U);
}

TEST(Object, LivesAsLongAsAVariantHoldsIt) {
  Variant value = MakePlainThing();
  EXPECT_EQ(LiveObject::LiveCount(), 1U);
  Variant copy = value;
  value = 1;
  EXPECT_EQ(LiveObject::LiveCount(), 1U);
  copy = Variant();
  EXPECT_EQ(LiveObject::LiveCount(), 0U);
}

}  // namespace
}  // namespace kx::runtime
