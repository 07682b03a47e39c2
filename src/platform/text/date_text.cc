// The calendar, the two ways to write a date, and the reader of dates. Month names and the order of
// month and day are English (United States) by rule, not by locale.
#include "platform/text/date_text.h"

#include "platform/text/number_text.h"
#include "platform/text/unicode.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

namespace kx::text {
namespace {

constexpr int kSecondsPerDay = 86400;
// Days from 1 January of year 1 to 30 December 1899.
constexpr int kEpochOffset = 693593;

constexpr std::array<std::string_view, 12> kMonthNames = {
    "january", "february", "march",     "april",   "may",      "june",
    "july",    "august",   "september", "october", "november", "december"};

constexpr std::array<int, 13> kDaysBeforeMonth = {0,   31,  59,  90,  120, 151, 181,
                                                  212, 243, 273, 304, 334, 365};

// Days from 1 January of year 1 to 1 January of `year`.
int DaysBeforeYear(int year) noexcept {
  const int past = year - 1;
  return past * 365 + past / 4 - past / 100 + past / 400;
}

int DayOfYear(int year, int month, int day) noexcept {
  const int leap = month > 2 && IsLeapYear(year) ? 1 : 0;
  return kDaysBeforeMonth[static_cast<std::size_t>(month - 1)] + leap + day - 1;
}

// Turns the number of a day into its year, month and day.
CalendarTime CalendarFromDay(int dayNumber) noexcept {
  const int days = dayNumber + kEpochOffset;
  int year = static_cast<int>(days / 365.2425) + 1;
  while (DaysBeforeYear(year) > days) --year;
  while (DaysBeforeYear(year + 1) <= days) ++year;
  int rest = days - DaysBeforeYear(year);
  int month = 1;
  for (; rest >= DaysInMonth(year, month); ++month) rest -= DaysInMonth(year, month);
  return {year, month, rest + 1, 0, 0, 0};
}

std::string Padded(int value, std::size_t width) {
  std::string digits = std::to_string(value);
  if (digits.size() < width) digits.insert(0, width - digits.size(), '0');
  return digits;
}

std::string FormatClock(const CalendarTime& time) {
  const int hour = time.hour % 12 == 0 ? 12 : time.hour % 12;
  return std::to_string(hour) + ":" + Padded(time.minute, 2) + ":" + Padded(time.second, 2) +
         (time.hour < 12 ? " AM" : " PM");
}

bool IsMidnight(const CalendarTime& time) noexcept {
  return time.hour == 0 && time.minute == 0 && time.second == 0;
}

// ---- Patterns -----------------------------------------------------------------------------------

// One run of the same letter of a pattern as text; nothing when it means no part of a date.
std::optional<std::string> FormatPart(const CalendarTime& time, char letter, std::size_t length,
                                      bool afterHour) {
  if (letter == 'y' && length == 4) return Padded(time.year, 4);
  if (letter == 'y' && length == 2) return Padded(time.year % 100, 2);
  if (length > 2) return std::nullopt;
  switch (letter) {
    case 'm':
      return Padded(afterHour ? time.minute : time.month, length);
    case 'd':
      return Padded(time.day, length);
    case 'h':
      return Padded(time.hour, length);
    case 'n':
      return Padded(time.minute, length);
    case 's':
      return Padded(time.second, length);
    default:
      return std::nullopt;
  }
}

bool IsPatternLiteral(char c) noexcept {
  return std::string_view("-/: ,.").find(c) != std::string_view::npos;
}

// ---- Reading ------------------------------------------------------------------------------------

struct DateNumber {
  int value = 0;
  std::size_t digitCount = 0;

  // Three digits and more, or more than a month has days, can only be a year.
  [[nodiscard]] bool IsYear() const noexcept { return digitCount > 2 || value > 31; }
};

// Reads one text in a single pass: numbers and month names of the date in the order in which they
// stand, and one time of day. Numbers are kept until all is read, because the first can be a month,
// a day or a year.
class DateReader {
 public:
  explicit DateReader(std::string_view text) : text_(text) {}

  std::optional<double> Read() {
    TakeBlanks();
    if (AtEnd()) return std::nullopt;
    while (!AtEnd()) {
      if (!TakeElement() || !TakeSeparator()) return std::nullopt;
    }
    if (separatorOpen_) return std::nullopt;
    return Assemble();
  }

 private:
  [[nodiscard]] bool AtEnd() const { return at_ >= text_.size(); }
  [[nodiscard]] char Peek() const { return AtEnd() ? '\0' : text_[at_]; }
  [[nodiscard]] bool AtDigit() const { return IsAsciiDigit(static_cast<unsigned char>(Peek())); }
  [[nodiscard]] bool AtLetter() const { return IsAsciiLetter(static_cast<unsigned char>(Peek())); }

  bool TakeBlanks() {
    const std::size_t begin = at_;
    while (IsXmlSpace(static_cast<unsigned char>(Peek()))) ++at_;
    return at_ > begin;
  }

  std::optional<DateNumber> TakeNumber() {
    DateNumber number;
    for (; AtDigit(); ++at_, ++number.digitCount) {
      if (number.digitCount == 4) return std::nullopt;
      number.value = number.value * 10 + (Peek() - '0');
    }
    if (number.digitCount == 0) return std::nullopt;
    return number;
  }

  std::string TakeWord() {
    const std::size_t begin = at_;
    while (AtLetter()) ++at_;
    return AsciiLowerCase(text_.substr(begin, at_ - begin));
  }

  bool TakeElement() {
    separatorOpen_ = false;
    if (AtLetter()) return TakeMonthName();
    const std::optional<DateNumber> number = TakeNumber();
    if (!number) return false;
    if (Peek() == ':') return TakeTime(*number);
    if (const auto half = TakeHalfOfDay()) return SetTime(number->value, 0, 0, half);
    if (numberCount_ == numbers_.size()) return false;
    numbers_[numberCount_++] = *number;
    return true;
  }

  bool TakeMonthName() {
    const std::string word = TakeWord();
    const auto* found = std::find_if(
        kMonthNames.begin(), kMonthNames.end(),
        [&word](std::string_view name) { return word == name || word == name.substr(0, 3); });
    if (found == kMonthNames.end() || month_ != 0) return false;
    month_ = static_cast<int>(found - kMonthNames.begin()) + 1;
    return true;
  }

  enum class HalfOfDay { kMorning, kAfternoon };

  // AM, PM, A or P, with or without blanks in front; otherwise nothing is taken.
  std::optional<HalfOfDay> TakeHalfOfDay() {
    const std::size_t begin = at_;
    TakeBlanks();
    const std::string word = TakeWord();
    if (word == "am" || word == "a") return HalfOfDay::kMorning;
    if (word == "pm" || word == "p") return HalfOfDay::kAfternoon;
    at_ = begin;
    return std::nullopt;
  }

  bool TakeTime(const DateNumber& hour) {
    std::array<int, 2> parts{};
    for (std::size_t i = 0; i < parts.size() && Peek() == ':'; ++i) {
      ++at_;
      const std::optional<DateNumber> part = TakeNumber();
      if (!part || part->digitCount > 2) return false;
      parts[i] = part->value;
    }
    if (hour.digitCount > 2) return false;
    return SetTime(hour.value, parts[0], parts[1], TakeHalfOfDay());
  }

  bool SetTime(int hour, int minute, int second, std::optional<HalfOfDay> half) {
    if (timeSeen_ || minute > 59 || second > 59 || hour > (half ? 12 : 23)) return false;
    timeSeen_ = true;
    // A time in the middle of a date is none: remember how much of the date stands before it.
    elementsBeforeTime_ = DateElementCount();
    time_.hour = half ? hour % 12 + (half == HalfOfDay::kAfternoon ? 12 : 0) : hour;
    time_.minute = minute;
    time_.second = second;
    return true;
  }

  // What may stand between two elements: blanks, or one of "/", "-", "," with or without blanks.
  bool TakeSeparator() {
    const bool blanks = TakeBlanks();
    if (AtEnd()) return true;
    const char c = Peek();
    if (c == '/' || c == '-' || c == ',') {
      ++at_;
      separatorOpen_ = true;
      TakeBlanks();
      return true;
    }
    return blanks;
  }

  [[nodiscard]] std::size_t DateElementCount() const {
    return numberCount_ + (month_ != 0 ? 1U : 0U);
  }

  std::optional<double> Assemble() {
    const std::size_t count = DateElementCount();
    if (timeSeen_ && elementsBeforeTime_ != 0 && elementsBeforeTime_ != count) return std::nullopt;
    if (count == 0 || (count == 3 && PlaceDate() && IsValidCalendarTime(time_))) {
      return DateFromCalendar(time_);
    }
    return std::nullopt;
  }

  bool PlaceDate() {
    if (month_ != 0) {
      const std::size_t year = numbers_[0].IsYear() ? 0 : 1;
      return SetDate(numbers_[year], month_, numbers_[1 - year].value);
    }
    if (numbers_[0].IsYear()) return SetMonthAndDay(numbers_[0], numbers_[1], numbers_[2]);
    return SetMonthAndDay(numbers_[2], numbers_[0], numbers_[1]);
  }

  // Month first, unless that cannot be and the other way round can.
  bool SetMonthAndDay(const DateNumber& year, const DateNumber& first, const DateNumber& second) {
    if (first.value > 12 && second.value <= 12) return SetDate(year, second.value, first.value);
    return SetDate(year, first.value, second.value);
  }

  bool SetDate(const DateNumber& year, int month, int day) {
    time_.year = year.value;
    if (year.digitCount <= 2) time_.year += year.value <= 29 ? 2000 : 1900;
    time_.month = month;
    time_.day = day;
    return true;
  }

  std::string_view text_;
  std::size_t at_ = 0;
  bool separatorOpen_ = false;
  std::array<DateNumber, 3> numbers_;
  std::size_t numberCount_ = 0;
  int month_ = 0;
  bool timeSeen_ = false;
  std::size_t elementsBeforeTime_ = 0;
  CalendarTime time_;
};

// A lone number as a day number. Deliberate: 0 is no date here, although the number 0 is one.
std::optional<double> ReadDayNumber(std::string_view text) {
  const std::optional<ParsedNumber> number = ParseNumber(text);
  if (!number) return std::nullopt;
  const double value = ValueOf(*number).value;
  if (value == 0 || value < kMinDate || value >= kEndDate) return std::nullopt;
  return value;
}

}  // namespace

bool IsLeapYear(int year) noexcept { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

int DaysInMonth(int year, int month) noexcept {
  const auto index = static_cast<std::size_t>(month);
  const int days = kDaysBeforeMonth[index] - kDaysBeforeMonth[index - 1];
  return month == 2 && IsLeapYear(year) ? days + 1 : days;
}

int DayNumber(int year, int month, int day) noexcept {
  return DaysBeforeYear(year) + DayOfYear(year, month, day) - kEpochOffset;
}

bool IsValidCalendarTime(const CalendarTime& time) noexcept {
  return time.year >= 100 && time.year <= 9999 && time.month >= 1 && time.month <= 12 &&
         time.day >= 1 && time.day <= DaysInMonth(time.year, time.month) && time.hour >= 0 &&
         time.hour < 24 && time.minute >= 0 && time.minute < 60 && time.second >= 0 &&
         time.second < 60;
}

double DateFromCalendar(const CalendarTime& time) noexcept {
  const int day = DayNumber(time.year, time.month, time.day);
  const double clock =
      static_cast<double>(time.hour * 3600 + time.minute * 60 + time.second) / kSecondsPerDay;
  return day < 0 ? day - clock : day + clock;
}

std::optional<CalendarTime> CalendarFromDate(double date) noexcept {
  if (!(date >= kMinDate && date < kEndDate)) return std::nullopt;
  const double wholeDays = std::trunc(date);
  int day = static_cast<int>(wholeDays);
  int seconds = static_cast<int>(std::floor(std::abs(date - wholeDays) * kSecondsPerDay + 0.5));
  if (seconds == kSecondsPerDay) {
    // The last second of the last year stays where it is.
    const bool last = day + 1 >= static_cast<int>(kEndDate);
    seconds = last ? kSecondsPerDay - 1 : 0;
    day += last ? 0 : 1;
  }
  CalendarTime time = CalendarFromDay(day);
  time.hour = seconds / 3600;
  time.minute = seconds / 60 % 60;
  time.second = seconds % 60;
  return time;
}

std::optional<std::string> FormatGeneralDate(double date) {
  const std::optional<CalendarTime> time = CalendarFromDate(date);
  if (!time) return std::nullopt;
  if (DayNumber(time->year, time->month, time->day) == 0) return FormatClock(*time);
  std::string out = std::to_string(time->month) + "/" + std::to_string(time->day) + "/" +
                    std::to_string(time->year);
  if (!IsMidnight(*time)) out += " " + FormatClock(*time);
  return out;
}

std::optional<std::string> FormatDatePattern(double date, std::string_view pattern) {
  const std::optional<CalendarTime> time = CalendarFromDate(date);
  if (!time) return std::nullopt;
  std::string out;
  bool afterHour = false;
  for (std::size_t i = 0; i < pattern.size();) {
    const char letter = AsciiToLower(pattern[i]);
    if (IsPatternLiteral(letter)) {
      out.push_back(pattern[i++]);
      continue;
    }
    const std::size_t begin = i;
    while (i < pattern.size() && AsciiToLower(pattern[i]) == letter) ++i;
    const auto part = FormatPart(*time, letter, i - begin, afterHour);
    if (!part) return std::nullopt;
    out += *part;
    afterHour = letter == 'h';
  }
  return out;
}

std::optional<double> ParseDate(std::string_view text) {
  if (const auto date = DateReader(text).Read()) return date;
  return ReadDayNumber(text);
}

}  // namespace kx::text
