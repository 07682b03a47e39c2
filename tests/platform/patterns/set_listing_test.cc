#include "platform/patterns/set_listing.h"

#include <gtest/gtest.h>
#include <utility>
#include <vector>

namespace kx::patterns {
namespace {

std::vector<Rank> SetOf(const SetListing& listing, Rank context) {
  std::vector<Rank> set;
  listing.AnySpan(context, [&](const SetListing::Span& span) {
    for (std::uint32_t i = span.begin; i < span.end; ++i) set.push_back(listing.Members()[i]);
    return false;
  });
  return set;
}

// Nodes 0 and 2 have 5 6 and 8, node 1 has nothing.
SetListing::Part ThreeRows(SetListing& listing) {
  const SetListing::Span all = listing.Append({5, 6, 7, 8});
  SetListing::Part part;
  part.spans = {{all.begin, all.begin + 2}, {all.begin + 3, all.end}};
  part.rows = {0, 2, 2, 4};
  part.spans.insert(part.spans.end(), part.spans.begin(), part.spans.end());
  return part;
}

TEST(SetListing, GivesTheSpansOfANodeOrOfItsTarget) {
  SetListing listing;
  listing.Add(ThreeRows(listing));
  EXPECT_TRUE(listing.IsOrdered());
  EXPECT_EQ(SetOf(listing, 0), (std::vector<Rank>{5, 6, 8}));
  EXPECT_EQ(SetOf(listing, 1), std::vector<Rank>{});
  EXPECT_EQ(listing.SizeOf(2), 3U);
  EXPECT_EQ(listing.MemberAt(2, 0), 5U);
  EXPECT_EQ(listing.MemberAt(2, 2), 8U);
  EXPECT_EQ(listing.MemberAt(2, 3), kNoRank);
  EXPECT_EQ(listing.MemberAt(1, 0), kNoRank);

  SetListing shared;
  SetListing::Part part = ThreeRows(shared);
  part.targets = {1, 2, kNoRank};
  shared.Add(std::move(part));
  EXPECT_EQ(shared.SizeOf(0), 0U);
  EXPECT_EQ(shared.SizeOf(1), 3U);
  EXPECT_EQ(shared.SizeOf(2), 0U) << "no target";
}

TEST(SetListing, JoinsPartsAndKnowsWhatIsMissing) {
  SetListing listing;
  listing.Add(ThreeRows(listing));
  SetListing::Part part = ThreeRows(listing);
  part.missing = {false, true};
  listing.Add(std::move(part));
  EXPECT_FALSE(listing.IsOrdered());
  EXPECT_EQ(SetOf(listing, 0), (std::vector<Rank>{5, 6, 8, 5, 6, 8}));
  EXPECT_TRUE(listing.Covers(0));
  EXPECT_FALSE(listing.Covers(1));
  EXPECT_TRUE(listing.Covers(2));
}

TEST(SetListing, VisitsSpansUntilOneIsEnough) {
  SetListing listing;
  listing.Add(ThreeRows(listing));
  int visits = 0;
  EXPECT_TRUE(listing.AnySpan(0, [&visits](const SetListing::Span&) { return ++visits == 1; }));
  EXPECT_EQ(visits, 1);
}

}  // namespace
}  // namespace kx::patterns
