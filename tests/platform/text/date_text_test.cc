// Calendar arithmetic, written dates, and what is read as a date.
#include "platform/text/date_text.h"

#include <cmath>
#include <gtest/gtest.h>

namespace kx::text {
namespace {

struct MomentCase {
  double value;
  CalendarTime time;
  const char* why;
};

constexpr MomentCase kMoments[] = {
    {0, {1899, 12, 30, 0, 0, 0}, "the epoch"},
    {1, {1899, 12, 31, 0, 0, 0}, "the day after"},
    {2, {1900, 1, 1, 0, 0, 0}, "the first day of 1900"},
    {60, {1900, 2, 28, 0, 0, 0}, "1900 has no leap day"},
    {61, {1900, 3, 1, 0, 0, 0}, "so March follows"},
    {36526, {2000, 1, 1, 0, 0, 0}, "the year 2000"},
    {36585, {2000, 2, 29, 0, 0, 0}, "which has one"},
    {41408.08625, {2013, 5, 14, 2, 4, 12}, "a time of day"},
    {-1, {1899, 12, 29, 0, 0, 0}, "the day before"},
    {-1.25, {1899, 12, 29, 6, 0, 0}, "the time counts forward before the epoch too"},
    {0.5, {1899, 12, 30, 12, 0, 0}, "noon of day 0"},
    {-657434, {100, 1, 1, 0, 0, 0}, "the first day"},
    {2958465, {9999, 12, 31, 0, 0, 0}, "the last day"},
};

TEST(CalendarTime, BelongsToItsValueBothWays) {
  for (const MomentCase& row : kMoments) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(CalendarFromDate(row.value), row.time);
    EXPECT_NEAR(DateFromCalendar(row.time), row.value, 1e-9);
  }
}

TEST(CalendarTime, ComesBackForEveryDay) {
  for (int day = static_cast<int>(kMinDate); day < static_cast<int>(kEndDate); ++day) {
    const std::optional<CalendarTime> time = CalendarFromDate(day);
    ASSERT_TRUE(time.has_value()) << day;
    ASSERT_TRUE(IsValidCalendarTime(*time)) << day;
    ASSERT_EQ(DayNumber(time->year, time->month, time->day), day);
  }
}

TEST(CalendarFromDate, RoundsToWholeSeconds) {
  constexpr double kSecond = 1.0 / 86400;
  EXPECT_EQ(CalendarFromDate(10 + 59.4 * kSecond)->second, 59);
  EXPECT_EQ(CalendarFromDate(10 + 59.6 * kSecond)->minute, 1);
  const CalendarTime carried{1900, 1, 10, 0, 0, 0};
  EXPECT_EQ(CalendarFromDate(11 - 0.4 * kSecond), carried) << "into the next day";
  const CalendarTime before{1899, 12, 29, 0, 0, 0};
  EXPECT_EQ(CalendarFromDate(-2 - (1 - 0.4 * kSecond)), before) << "before the epoch as well";
  const CalendarTime end{9999, 12, 31, 23, 59, 59};
  EXPECT_EQ(CalendarFromDate(kEndDate - 0.1 * kSecond), end) << "but not beyond the last day";
}

TEST(CalendarFromDate, RefusesWhatLiesOutside) {
  EXPECT_FALSE(CalendarFromDate(kMinDate - 1).has_value());
  EXPECT_FALSE(CalendarFromDate(kEndDate).has_value());
  EXPECT_FALSE(CalendarFromDate(std::nan("")).has_value());
  EXPECT_FALSE(CalendarFromDate(INFINITY).has_value());
  EXPECT_FALSE(FormatGeneralDate(kEndDate).has_value());
  EXPECT_FALSE(FormatDatePattern(kEndDate, "yyyy").has_value());
}

TEST(IsLeapYear, FollowsTheGregorianRule) {
  for (const int year : {400, 1996, 2000, 2004, 2400}) EXPECT_TRUE(IsLeapYear(year)) << year;
  for (const int year : {100, 1900, 2001, 2100, 2200}) EXPECT_FALSE(IsLeapYear(year)) << year;
  EXPECT_EQ(DaysInMonth(2000, 2), 29);
  EXPECT_EQ(DaysInMonth(1900, 2), 28);
  EXPECT_EQ(DaysInMonth(2001, 12), 31);
  EXPECT_EQ(DaysInMonth(2001, 4), 30);
}

TEST(IsValidCalendarTime, RefusesEachFieldOutsideItsRange) {
  const CalendarTime refused[] = {
      {99, 1, 1, 0, 0, 0},    {10000, 1, 1, 0, 0, 0}, {2000, 0, 1, 0, 0, 0},
      {2000, 13, 1, 0, 0, 0}, {2000, 1, 0, 0, 0, 0},  {2000, 1, 32, 0, 0, 0},
      {2001, 2, 29, 0, 0, 0}, {2000, 1, 1, 24, 0, 0}, {2000, 1, 1, -1, 0, 0},
      {2000, 1, 1, 0, 60, 0}, {2000, 1, 1, 0, 0, 60}};
  for (const CalendarTime& time : refused) {
    EXPECT_FALSE(IsValidCalendarTime(time)) << time.year << " " << time.month << " " << time.day;
  }
  EXPECT_TRUE(IsValidCalendarTime({2000, 2, 29, 23, 59, 59}));
}

struct WrittenCase {
  CalendarTime time;
  const char* text;
  const char* why;
};

constexpr WrittenCase kWritten[] = {
    {{2008, 3, 14, 9, 5, 7}, "3/14/2008 9:05:07 AM", "date and time"},
    {{2008, 12, 1, 13, 0, 9}, "12/1/2008 1:00:09 PM", "afternoon"},
    {{2008, 3, 14, 0, 0, 1}, "3/14/2008 12:00:01 AM", "just after midnight"},
    {{2008, 3, 14, 12, 0, 0}, "3/14/2008 12:00:00 PM", "noon"},
    {{2008, 3, 14, 0, 0, 0}, "3/14/2008", "no time at midnight"},
    {{1899, 12, 30, 6, 0, 0}, "6:00:00 AM", "no date on day 0"},
    {{1899, 12, 30, 0, 0, 0}, "12:00:00 AM", "day 0 at midnight"},
    {{1899, 12, 29, 6, 0, 0}, "12/29/1899 6:00:00 AM", "the day before has a date"},
    {{100, 1, 1, 0, 0, 0}, "1/1/100", "a year of three digits"},
};

TEST(FormatGeneralDate, WritesMonthDayYearAndTwelveHours) {
  for (const WrittenCase& row : kWritten) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(FormatGeneralDate(DateFromCalendar(row.time)), row.text);
  }
}

struct PatternCase {
  const char* pattern;
  std::optional<std::string> text;
  const char* why;
};

const PatternCase kPatterns[] = {
    {"yyyy-mm-dd hh:nn:ss", "2008-03-04 15:06:07", "the whole"},
    {"YYYY-MM-DD HH:NN:SS", "2008-03-04 15:06:07", "in capitals"},
    {"hh:mm:ss", "15:06:07", "m directly after h is minutes"},
    {"hh:mm mm", "15:06 03", "and a month again later"},
    {"mm hh", "03 15", "before h it is the month"},
    {"m/d/yy", "3/4/08", "short forms"},
    {"h:n:s", "15:6:7", "short times"},
    {"yyyy", "2008", "one part"},
    {"", "", "nothing"},
    {"yyyy-mm-ddThh:nn", std::nullopt, "another letter"},
    {"yyy", std::nullopt, "a run of another length"},
    {"mmm", std::nullopt, "month names are not made"},
    {"hh:nn AM/PM", std::nullopt, "nor a 12-hour clock"},
};

TEST(FormatDatePattern, WritesOnA24HourClock) {
  const double date = DateFromCalendar({2008, 3, 4, 15, 6, 7});
  for (const PatternCase& row : kPatterns) {
    SCOPED_TRACE(row.pattern);
    SCOPED_TRACE(row.why);
    EXPECT_EQ(FormatDatePattern(date, row.pattern), row.text);
  }
}

TEST(FormatDatePattern, RoundsFractionsOfSeconds) {
  const double almost = DateFromCalendar({2008, 12, 31, 23, 59, 59}) + 0.7 / 86400;
  EXPECT_EQ(FormatDatePattern(almost, "yyyy-mm-dd hh:nn:ss"), "2009-01-01 00:00:00");
  EXPECT_EQ(FormatDatePattern(DateFromCalendar({100, 1, 1, 0, 0, 0}), "yyyy"), "0100");
}

struct ReadCase {
  const char* text;
  std::optional<CalendarTime> time;
  const char* why;
};

const CalendarTime kDay{2008, 3, 14, 0, 0, 0};

const ReadCase kRead[] = {
    {"2013-05-14 02:04:12", CalendarTime{2013, 5, 14, 2, 4, 12}, "year first, with a time"},
    {"2008-03-14", kDay, "year first"},
    {"2008/3/14", kDay, "year first with slashes"},
    {"3/14/2008", kDay, "month first"},
    {"03/14/2008", kDay, "leading zeros"},
    {"3-14-2008", kDay, "hyphens"},
    {"3 14 2008", kDay, "blanks"},
    {"3, 14, 2008", kDay, "commas"},
    {" 3/14/2008 ", kDay, "blanks around"},
    {"3 / 14 / 2008", kDay, "blanks around the separators"},
    {"14-mar-2008", kDay, "day, short month, year"},
    {"14 March 2008", kDay, "day month year"},
    {"14 March, 2008", kDay, "with a comma"},
    {"March 14, 2008", kDay, "month first by name"},
    {"MARCH 14 2008", kDay, "capitals"},
    {"2008 mar 14", kDay, "year first by name"},
    {"1-May-2008", CalendarTime{2008, 5, 1, 0, 0, 0}, "a name as short as it is long"},
    {"Sep 1 2008", CalendarTime{2008, 9, 1, 0, 0, 0}, "September"},
    {"13-1-1970", CalendarTime{1970, 1, 13, 0, 0, 0}, "swapped: 13 cannot be a month"},
    {"14/3/2008", kDay, "swapped with slashes"},
    {"1970-1-13", CalendarTime{1970, 1, 13, 0, 0, 0}, "four digits first are the year"},
    {"1970-13-1", CalendarTime{1970, 1, 13, 0, 0, 0}, "then swapped as well"},
    {"12-11-1970", CalendarTime{1970, 12, 11, 0, 0, 0}, "not swapped when both could be"},
    {"1/1/00", CalendarTime{2000, 1, 1, 0, 0, 0}, "two digits from 0"},
    {"1/1/29", CalendarTime{2029, 1, 1, 0, 0, 0}, "to 29 are 20xx"},
    {"1/1/30", CalendarTime{1930, 1, 1, 0, 0, 0}, "others are 19xx"},
    {"1/1/99", CalendarTime{1999, 1, 1, 0, 0, 0}, "to 99"},
    {"1 Jan 70", CalendarTime{1970, 1, 1, 0, 0, 0}, "two digits behind a name"},
    {"1/1/100", CalendarTime{100, 1, 1, 0, 0, 0}, "three digits are the year itself"},
    {"2/29/2000", CalendarTime{2000, 2, 29, 0, 0, 0}, "a leap day"},
    {"6:00", CalendarTime{1899, 12, 30, 6, 0, 0}, "hours and minutes"},
    {"9:05:07", CalendarTime{1899, 12, 30, 9, 5, 7}, "with seconds"},
    {"23:59:59", CalendarTime{1899, 12, 30, 23, 59, 59}, "the last second"},
    {"9:05 AM", CalendarTime{1899, 12, 30, 9, 5, 0}, "morning"},
    {"9:05PM", CalendarTime{1899, 12, 30, 21, 5, 0}, "afternoon, attached"},
    {"9:05 p", CalendarTime{1899, 12, 30, 21, 5, 0}, "one letter"},
    {"9:05a", CalendarTime{1899, 12, 30, 9, 5, 0}, "one letter, attached"},
    {"12:00 AM", CalendarTime{1899, 12, 30, 0, 0, 0}, "midnight"},
    {"12:30 PM", CalendarTime{1899, 12, 30, 12, 30, 0}, "after noon"},
    {"3/14/2008 9:05:07 AM", CalendarTime{2008, 3, 14, 9, 5, 7}, "date, then time"},
    {"9:05:07 AM 3/14/2008", CalendarTime{2008, 3, 14, 9, 5, 7}, "time, then date"},
    {"9:05 3/14/2008", CalendarTime{2008, 3, 14, 9, 5, 0}, "24-hour time, then date"},
    {"14 March 2008 21:05", CalendarTime{2008, 3, 14, 21, 5, 0}, "month name and time"},
    {"", std::nullopt, "empty"},
    {"  ", std::nullopt, "blanks"},
    {"abc", std::nullopt, "letters"},
    {"0", std::nullopt, "a single zero"},
    {"0:60", std::nullopt, "minute 60"},
    {"24:00", std::nullopt, "hour 24"},
    {"0:00:60", std::nullopt, "second 60"},
    {"02:04:12.017", std::nullopt, "a fraction of a second"},
    {"2013-05-14 02:04:12.017", std::nullopt, "a fraction of a second behind a date"},
    {"2008-03-14T09:05:07", std::nullopt, "the T form"},
    {"2008-03-14 09:05:07Z", std::nullopt, "a zone"},
    {"2008-03-14 09:05:07+01:00", std::nullopt, "an offset"},
    {"14.3.2008", std::nullopt, "full stops"},
    {"2/30/2008", std::nullopt, "a day that does not exist"},
    {"2/29/2001", std::nullopt, "no leap day"},
    {"13/13/2008", std::nullopt, "no month at all"},
    {"0/1/2008", std::nullopt, "month 0"},
    {"1/0/2008", std::nullopt, "day 0"},
    {"1/1/99999", std::nullopt, "five digits"},
    {"1/1/050", std::nullopt, "three digits below year 100"},
    {"3/14/2008/1", std::nullopt, "four numbers"},
    {"3//14/2008", std::nullopt, "two separators"},
    {"3/14/2008/", std::nullopt, "a separator at the end"},
    {"/3/14/2008", std::nullopt, "a separator first"},
    {"Friday, March 14, 2008", std::nullopt, "the name of the weekday"},
    {"Marc 14 2008", std::nullopt, "half a name"},
    {"March March 2008", std::nullopt, "two months"},
    {"March 2008 1 2", std::nullopt, "three numbers and a name"},
    {"9:05 9:05", std::nullopt, "two times"},
    {"3/14 9:05 2008", std::nullopt, "a time within the date"},
    {"9:05:07:08", std::nullopt, "four parts of time"},
    {"9:", std::nullopt, "no minutes"},
    {"9:005", std::nullopt, "three digits of minutes"},
    {"13:00 AM", std::nullopt, "no such hour of the morning"},
    {"3/14/2008x", std::nullopt, "a letter behind"},
    {"M\xC3\xA4rz 14 2008", std::nullopt, "another language"},
};

TEST(ParseDate, ReadsEnglishDatesAndTimes) {
  for (const ReadCase& row : kRead) {
    SCOPED_TRACE(std::string(row.text) + ": " + row.why);
    const std::optional<double> date = ParseDate(row.text);
    ASSERT_EQ(date.has_value(), row.time.has_value());
    if (date) {
      EXPECT_EQ(*date, DateFromCalendar(*row.time));
    }
  }
}

TEST(ParseDate, TakesALoneNumberAsADayNumber) {
  EXPECT_EQ(ParseDate("1"), 1.0);
  EXPECT_EQ(ParseDate("41408.5"), 41408.5);
  EXPECT_EQ(ParseDate("-1"), -1.0);
  EXPECT_EQ(ParseDate("0.0"), std::nullopt) << "zero in any form is no date";
  EXPECT_EQ(ParseDate("2958466"), std::nullopt) << "behind the last day";
  EXPECT_EQ(ParseDate("1e400"), std::nullopt);
}

TEST(ParseDate, GivesTheValueInDays) {
  EXPECT_NEAR(*ParseDate("2013-05-14 02:04:12"), 41408.08625, 1e-9);
  EXPECT_EQ(ParseDate("12/29/1899 6:00"), -1.25);
}

TEST(ParseDate, ReadsBackEveryWrittenDate) {
  for (const MomentCase& row : kMoments) {
    SCOPED_TRACE(row.why);
    const std::optional<std::string> text = FormatGeneralDate(row.value);
    ASSERT_TRUE(text.has_value());
    const std::optional<double> read = ParseDate(*text);
    ASSERT_TRUE(read.has_value()) << *text;
    EXPECT_EQ(CalendarFromDate(*read), row.time);
  }
}

TEST(ParseDate, GivesUpOnLongTextsAtOnce) {
  EXPECT_FALSE(ParseDate(std::string(1'000'000, '1')).has_value());
  EXPECT_FALSE(ParseDate(std::string(1'000'000, ' ')).has_value());
  EXPECT_FALSE(ParseDate("1 " + std::string(1'000'000, 'a')).has_value());
}

}  // namespace
}  // namespace kx::text
