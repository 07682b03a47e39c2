// Fails every test that ends while objects of the library are still alive. Linked into the programs
// that test the object model.
#include "platform/runtime/counted.h"

#include <gtest/gtest.h>

namespace kx::test {
namespace {

class LiveObjectCheck : public testing::EmptyTestEventListener {
 public:
  void OnTestEnd(const testing::TestInfo& test) override {
    EXPECT_EQ(runtime::LiveObject::LiveCount(), 0U)
        << "objects that " << test.test_suite_name() << "." << test.name() << " left alive";
  }
};

[[maybe_unused]] const bool kRegistered = [] {
  testing::UnitTest::GetInstance()->listeners().Append(new LiveObjectCheck);
  return true;
}();

}  // namespace
}  // namespace kx::test
