// What a run of kxmsg edit may do.
#include "kxmsg/edit_budget.h"

#include "kxmessage/error.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <limits>

namespace kxmsg {
namespace {

constexpr auto kOutOfMemory = static_cast<std::int32_t>(0x800A0007);
constexpr std::size_t kHuge = std::numeric_limits<std::size_t>::max();

template <typename Action>
std::int32_t NumberOf(Action action) {
  try {
    action();
    return 0;
  } catch (const kx::Error& error) {
    return error.Number();
  }
}

TEST(EditBudget, ElementsAreAddedUpToTheBoundAndWhatIsRefusedIsNotTaken) {
  EditBudget budget(10, 0);
  EXPECT_EQ(budget.MostFound(), 10U);
  budget.TakeElements(6);
  EXPECT_EQ(NumberOf([&] { budget.TakeElements(5); }), kOutOfMemory);
  EXPECT_EQ(NumberOf([&] { budget.TakeElements(kHuge); }), kOutOfMemory);
  EXPECT_EQ(NumberOf([&] { budget.TakeElements(4); }), 0);
  EXPECT_EQ(NumberOf([&] { budget.TakeElements(0); }), 0);
  EXPECT_EQ(NumberOf([&] { budget.TakeElements(1); }), kOutOfMemory);
}

TEST(EditBudget, AValueCountsForEveryElementThatGetsIt) {
  EditBudget budget(10, 100);
  EXPECT_EQ(NumberOf([&] { budget.TakeValues(3, 34); }), kOutOfMemory);
  EXPECT_EQ(NumberOf([&] { budget.TakeValues(3, 33); }), 0);
  EXPECT_EQ(NumberOf([&] { budget.TakeValues(2, 1); }), kOutOfMemory);
  EXPECT_EQ(NumberOf([&] { budget.TakeValues(0, kHuge); }), 0);
  EXPECT_EQ(NumberOf([&] { budget.TakeValues(kHuge, 0); }), 0);
  EXPECT_EQ(NumberOf([&] { budget.TakeValues(kHuge / 2 + 1, 2); }), kOutOfMemory);
  EXPECT_EQ(NumberOf([&] { budget.TakeValues(1, 1); }), 0);
}

}  // namespace
}  // namespace kxmsg
