// The text form of identifiers.
#include "platform/host/guid_text.h"

#include <gtest/gtest.h>

namespace kx::host {
namespace {

TEST(GuidText, WritesTheBytesInOrderInFiveGroups) {
  constexpr GuidBytes kBytes = {0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF,
                                0xFE, 0xDC, 0xBA, 0x98, 0x76, 0x54, 0x32, 0x10};
  EXPECT_EQ(GuidText(kBytes), "01234567-89ab-cdef-fedc-ba9876543210");
}

TEST(GuidText, MarksRandomBytesAsSuch) {
  EXPECT_EQ(RandomGuidText(GuidBytes{}), "00000000-0000-4000-8000-000000000000");
  GuidBytes ones;
  ones.fill(0xFF);
  EXPECT_EQ(RandomGuidText(ones), "ffffffff-ffff-4fff-bfff-ffffffffffff");
}

}  // namespace
}  // namespace kx::host
