#include "platform/datatypes/date_text_form.h"

#include <gtest/gtest.h>

namespace kx::datatypes {
namespace {

struct DateCase {
  DataType type;
  const char* text;
  double value;
  const char* why;
};
constexpr DateCase kDates[] = {
    {DataType::kDate, "1899-12-30", 0, "the epoch"},
    {DataType::kDate, "1900-01-01", 2, "two days later"},
    {DataType::kDateTime, "1899-12-31", 1, "no time is midnight"},
    {DataType::kDateTime, "1899-12-30T12:00:00.999", 0.5, "fractions of a second are dropped"},
    {DataType::kDateTime, "1899-12-29T06:00:00", -1.25, "the time of day counts upwards"},
    {DataType::kDateTimeTz, "1900-01-01T06:00:00Z", 2.25, "Z changes nothing"},
    {DataType::kDateTimeTz, "1900-01-01T06:00:00+06:00", 2.5, "an offset is added"},
    {DataType::kDateTimeTz, "1900-01-01T06:00:00-12:00", 1.75, "or subtracted, by its sign"},
    {DataType::kDateTimeTz, "1899-12-30T00:00:00-06:00", -1.75, "to before the epoch"},
    {DataType::kTime, "18:00:00", 0.75, "a time is of day 0"},
    {DataType::kTimeTz, "23:21:01+03:21", (26 * 3600 + 42 * 60 + 1) / 86400.0, "beyond midnight"},
};
TEST(DateTextForm, CountsDaysFromTheEpoch) {
  for (const DateCase& row : kDates) {
    SCOPED_TRACE(row.why);
    const auto parts = ReadDateParts(row.type, row.text);
    ASSERT_TRUE(parts);
    EXPECT_DOUBLE_EQ(DateValue(*parts).value_or(-99999), row.value) << row.text;
  }
}

TEST(DateTextForm, HasNoValueOutsideTheYearsOfTheDateType) {
  EXPECT_FALSE(DateValue(*ReadDateParts(DataType::kDate, "0099-12-31")));
  EXPECT_TRUE(DateValue(*ReadDateParts(DataType::kDate, "0100-01-01")));
  EXPECT_FALSE(DateValue(*ReadDateParts(DataType::kDateTimeTz, "9999-12-31T23:00:00+02:00")));
}

}  // namespace
}  // namespace kx::datatypes
