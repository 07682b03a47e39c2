#include "platform/patterns/filter_forms.h"

#include "platform/patterns/pattern.h"

#include <gtest/gtest.h>
#include <string>

namespace kx::patterns {
namespace {

Filter FilterIn(const std::string& filter) {
  return Compile("a[" + filter + "]").GetCode().filters.back();
}

TEST(FilterForms, AreTakenForWhatMeansTheSame) {
  struct Row {
    const char* filter;
    FilterKind kind;
  };
  const Row rows[] = {
      {"0", FilterKind::kPosition},
      {"-1", FilterKind::kPosition},
      {"index() = 3", FilterKind::kPosition},
      {"index()='3'", FilterKind::kPosition},
      {"index()='03'", FilterKind::kTruth},
      {"index()=''", FilterKind::kTruth},
      {"index()='1234567890'", FilterKind::kTruth},
      {"index() = 1.5", FilterKind::kTruth},
      {"index() = -1", FilterKind::kTruth},
      {"index() > 3", FilterKind::kTruth},
      {"b!index() = 3", FilterKind::kTruth},
      {"end()", FilterKind::kLast},
      {"b!end()", FilterKind::kTruth},
      {"@k", FilterKind::kHasAttribute},
      {"@p:k", FilterKind::kHasAttribute},
      {"@*", FilterKind::kTruth},
      {"@k[0]", FilterKind::kTruth},
      {"./@k", FilterKind::kHasAttribute},
      {"b/@k", FilterKind::kTruth},
      {"@k = 'x'", FilterKind::kAttributeEquals},
      {"$any$ @k = 'x'", FilterKind::kAttributeEquals},
      {"$all$ @k = 'x'", FilterKind::kTruth},
      {"@k $ieq$ 'x'", FilterKind::kTruth},
      {"@k != 'x'", FilterKind::kTruth},
      {"@k = 1", FilterKind::kTruth},
  };
  for (const Row& row : rows) EXPECT_EQ(FilterIn(row.filter).kind, row.kind) << row.filter;
}

TEST(FilterForms, KnowWhatTheyAskOfTheList) {
  EXPECT_EQ(FilterIn("5").position, 5);
  EXPECT_FALSE(FilterIn("5").counted);
  EXPECT_TRUE(FilterIn("-5").counted);
  EXPECT_TRUE(FilterIn("end()").counted);
  EXPECT_TRUE(FilterIn("index() > 1").positional);
  EXPECT_FALSE(FilterIn("@k").positional);
  EXPECT_EQ(FilterIn("99999999999999999999").position, 2147483647);
  EXPECT_EQ(FilterIn("-99999999999999999999").position, -2147483647);
}

}  // namespace
}  // namespace kx::patterns
