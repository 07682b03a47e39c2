// Calendar days and times of day as a double (whole days since 30 December 1899, the time as a
// fraction), and their text forms in English (United States), whatever the host's locale.
//
// Days before the epoch are negative and their time of day is added as a positive amount: -1.25 is
// 29 December 1899, 6:00. The calendar is Gregorian, years 100 to 9999.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kx::text {

/// A moment in calendar fields.
struct CalendarTime {
  int year = 1899;
  int month = 12;  ///< 1 to 12
  int day = 30;    ///< 1 to 31
  int hour = 0;    ///< 0 to 23
  int minute = 0;
  int second = 0;

  friend bool operator==(const CalendarTime&, const CalendarTime&) = default;
};

/// The first value and the first beyond the last that a date may have.
inline constexpr double kMinDate = -657434.0;
inline constexpr double kEndDate = 2958466.0;

[[nodiscard]] bool IsLeapYear(int year) noexcept;
[[nodiscard]] int DaysInMonth(int year, int month) noexcept;
/// Days from 30 December 1899; the fields must name an existing day, year 1 to 9999.
[[nodiscard]] int DayNumber(int year, int month, int day) noexcept;
/// True for a year 100 to 9999, an existing day and a time from 0:00:00 to 23:59:59.
[[nodiscard]] bool IsValidCalendarTime(const CalendarTime& time) noexcept;

/// The date value of valid calendar fields.
[[nodiscard]] double DateFromCalendar(const CalendarTime& time) noexcept;
/// The fields of a date value, rounded to whole seconds; nothing outside the range of dates.
[[nodiscard]] std::optional<CalendarTime> CalendarFromDate(double date) noexcept;

/// "3/14/2008 9:05:07 AM"; no time at exactly midnight, no date on day 0, "12:00:00 AM" for both.
/// Nothing outside the range of dates.
[[nodiscard]] std::optional<std::string> FormatGeneralDate(double date);

/// The date written by a pattern of yyyy yy mm m dd d hh h nn n ss s and literal separators, on a
/// 24-hour clock, e.g. "yyyy-mm-dd hh:nn:ss". "m" directly after "h" (and separators) is minutes.
/// Nothing outside the range of dates or for another letter in the pattern.
[[nodiscard]] std::optional<std::string> FormatDatePattern(double date, std::string_view pattern);

/// Reads a date, a time, or both, as the conversions of the run-time accept them: numeric dates
/// month first (year first when it has four digits), month names, 12- and 24-hour times. A lone
/// number other than 0 is a day number. Nothing when the text is no date.
[[nodiscard]] std::optional<double> ParseDate(std::string_view text);

}  // namespace kx::text
