#include "platform/patterns/lead_table.h"

#include <gtest/gtest.h>
#include <vector>

namespace kx::patterns {
namespace {

std::vector<Rank> RowOf(const LeadTable& table, Rank from, std::uint32_t places) {
  std::vector<Rank> row;
  for (std::uint32_t place = 0; place < places; ++place) row.push_back(table.At(from, place));
  return row;
}

TEST(LeadTable, KeepsTheFirstFewInOrderWithoutDuplicates) {
  LeadTable table(10, 3, LeadEnd::kFirst);
  EXPECT_TRUE(table.LeadsNowhere(4));
  for (const Rank to : {7U, 2U, 7U, 9U, 1U, 2U}) table.Add(4, to);
  EXPECT_EQ(RowOf(table, 4, 3), (std::vector<Rank>{1, 2, 7}));
  EXPECT_TRUE(table.LeadsNowhere(3));
  EXPECT_TRUE(table.LeadsNowhere(5));
}

TEST(LeadTable, KeepsTheLastFewFromTheEnd) {
  LeadTable table(10, 2, LeadEnd::kLast);
  for (const Rank to : {0U, 7U, 2U, 7U}) table.Add(0, to);
  EXPECT_EQ(RowOf(table, 0, 2), (std::vector<Rank>{7, 2}));
  table.Add(1, 0);
  EXPECT_EQ(RowOf(table, 1, 2), (std::vector<Rank>{0, kNoRank}));
}

TEST(LeadTable, JoinsWhatAnotherNodeLeadsTo) {
  for (const std::uint32_t places : {1U, 4U, LeadTable::kMostPlaces}) {
    LeadTable next(100, places, LeadEnd::kFirst);
    for (const Rank to : {5U, 10U, 20U}) next.Add(1, to);
    for (const Rank to : {3U, 10U, 30U, 31U}) next.Add(2, to);
    LeadTable table = next.Blank();
    table.Join(0, next, 1);
    table.Join(0, next, 2);
    table.Join(0, next, 3);
    const std::vector<Rank> all = {3, 5, 10, 20, 30, 31, kNoRank};
    for (std::uint32_t place = 0; place < std::min(places, 7U); ++place) {
      EXPECT_EQ(table.At(0, place), all[place]) << places;
    }
    next.Join(1, next, 2);
    EXPECT_EQ(next.First(1), 3U) << "a table joins its own rows";
  }
}

TEST(LeadTable, IsBoundedInSize) {
  EXPECT_TRUE(LeadTable::Fits(1000, 64));
  EXPECT_FALSE(LeadTable::Fits(1000, 65));
  EXPECT_FALSE(LeadTable::Fits(10'000'000, 64));
}

}  // namespace
}  // namespace kx::patterns
