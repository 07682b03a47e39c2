// What the store in memory tells a test beyond the contract.
#include "platform/settings/memory_settings_store.h"

#include <gtest/gtest.h>

namespace kx::settings {
namespace {

TEST(MemorySettingsStore, CountsTheWritesThatChangedSomething) {
  MemorySettingsStore store;
  store.Write("a", "");
  EXPECT_EQ(store.WriteCount(), 1) << "an empty text is stored as well";
  store.Write("a", "1");
  store.Write("A", "1");
  EXPECT_EQ(store.WriteCount(), 2);
}

}  // namespace
}  // namespace kx::settings
