#include "platform/dom/namespace_context.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <set>

namespace kx::dom {
namespace {

constexpr std::uint32_t kDefault = 0;
constexpr std::uint32_t kP = 7;
constexpr UriId kU = 11;
constexpr UriId kV = 12;

TEST(NamespaceContext, BeginsWithNoDefaultNamespaceAndNoPrefixes) {
  const NamespaceContext context;
  EXPECT_EQ(context.Find(kDefault), kNoUri);
  EXPECT_EQ(context.Find(kP), NamespaceContext::kUnbound);
  EXPECT_EQ(context.Innermost(), kNoNode);
}

TEST(NamespaceContext, FindsTheInnermostDeclarationUntilItsElementIsLeft) {
  NamespaceContext context;
  context.Declare(1, kP, kU);
  context.Declare(1, kDefault, kU);
  context.Declare(2, kP, kV);
  EXPECT_EQ(context.Find(kP), kV);
  EXPECT_EQ(context.Find(kDefault), kU);
  EXPECT_EQ(context.Innermost(), 2U);
  context.Leave(2);
  EXPECT_EQ(context.Find(kP), kU);
  EXPECT_EQ(context.Innermost(), 1U);
  context.Leave(1);
  EXPECT_EQ(context.Find(kP), NamespaceContext::kUnbound);
  EXPECT_EQ(context.Find(kDefault), kNoUri);
}

TEST(NamespaceContext, TellsWhichElementDeclaresAPrefix) {
  NamespaceContext context;
  context.Declare(1, kP, kU);
  EXPECT_TRUE(context.IsDeclaredBy(1, kP));
  EXPECT_FALSE(context.IsDeclaredBy(2, kP));
  EXPECT_FALSE(context.IsDeclaredBy(1, kDefault));
}

TEST(NamespaceContext, LeavingAnElementWithoutDeclarationsChangesNothing) {
  NamespaceContext context;
  context.Declare(1, kP, kU);
  const std::uint32_t version = context.Version();
  context.Leave(2);
  EXPECT_EQ(context.Find(kP), kU);
  EXPECT_EQ(context.Version(), version);
}

TEST(NamespaceContext, VersionComesBackWithTheBindingsAndIsNeverReusedForOthers) {
  NamespaceContext context;
  const std::uint32_t empty = context.Version();
  std::set<std::uint32_t> seen = {empty};
  context.Declare(1, kP, kU);
  const std::uint32_t outer = context.Version();
  EXPECT_TRUE(seen.insert(outer).second);
  for (NodeId element = 2; element < 100; ++element) {
    context.Declare(element, kP, kV);
    context.Declare(element, kDefault, kV);
    EXPECT_TRUE(seen.insert(context.Version()).second);
    context.Leave(element);
    EXPECT_EQ(context.Version(), outer);
  }
  context.Leave(1);
  EXPECT_EQ(context.Version(), empty);
}

// Enough declarations for the index that takes over from searching, undone one by one.
TEST(NamespaceContext, KeepsManyPrefixesOfManyElementsApart) {
  NamespaceContext context;
  constexpr std::uint32_t kElements = 300;
  constexpr std::uint32_t kPrefixes = 10;
  for (NodeId element = 1; element <= kElements; ++element) {
    for (std::uint32_t prefix = 0; prefix < kPrefixes; ++prefix) {
      if ((element + prefix) % 3 == 0) context.Declare(element, prefix, element + 100);
    }
  }
  for (NodeId element = kElements; element != 0; --element) {
    for (std::uint32_t prefix = 0; prefix < kPrefixes; ++prefix) {
      const NodeId innermost = element - (element + prefix) % 3;
      const UriId none = prefix == kDefault ? kNoUri : NamespaceContext::kUnbound;
      const bool declared = innermost != 0 && innermost <= element;
      ASSERT_EQ(context.Find(prefix), declared ? innermost + 100 : none)
          << "element " << element << ", prefix " << prefix;
      EXPECT_EQ(context.IsDeclaredBy(element, prefix), (element + prefix) % 3 == 0);
    }
    context.Leave(element);
  }
  EXPECT_EQ(context.Innermost(), kNoNode);
}

}  // namespace
}  // namespace kx::dom
