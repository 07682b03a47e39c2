// See date_text_form.h.
#include "platform/datatypes/date_text_form.h"

#include "platform/text/date_text.h"

namespace kx::datatypes {

namespace {

class Reader {
 public:
  explicit Reader(std::string_view text) noexcept : text_(text) {}

  [[nodiscard]] bool AtEnd() const noexcept { return text_.empty(); }
  bool Take(char c) noexcept {
    if (text_.empty() || text_.front() != c) return false;
    text_.remove_prefix(1);
    return true;
  }
  // A number of exactly `width` digits that is at most `most`.
  bool TakeNumber(std::size_t width, int most, int& value) noexcept {
    if (text_.size() < width) return false;
    value = 0;
    for (std::size_t i = 0; i < width; ++i) {
      const char c = text_[i];
      if (c < '0' || c > '9') return false;
      value = value * 10 + (c - '0');
    }
    text_.remove_prefix(width);
    return value <= most;
  }
  // A point and at least one digit.
  bool TakeFraction() noexcept {
    if (!Take('.')) return true;
    std::size_t digits = 0;
    while (digits < text_.size() && text_[digits] >= '0' && text_[digits] <= '9') ++digits;
    text_.remove_prefix(digits);
    return digits != 0;
  }

 private:
  std::string_view text_;
};

bool TakeDate(Reader& reader, DateParts& parts) noexcept {
  parts.hasDate = true;
  return reader.TakeNumber(4, 9999, parts.year) && parts.year != 0 && reader.Take('-') &&
         reader.TakeNumber(2, 12, parts.month) && parts.month != 0 && reader.Take('-') &&
         reader.TakeNumber(2, 31, parts.day) && parts.day != 0 &&
         parts.day <= text::DaysInMonth(parts.year, parts.month);
}

bool TakeTime(Reader& reader, DateParts& parts) noexcept {
  return reader.TakeNumber(2, 23, parts.hour) && reader.Take(':') &&
         reader.TakeNumber(2, 59, parts.minute) && reader.Take(':') &&
         reader.TakeNumber(2, 59, parts.second) && reader.TakeFraction();
}

bool TakeZone(Reader& reader, DateParts& parts) noexcept {
  if (reader.AtEnd() || reader.Take('Z')) return true;
  const bool negative = reader.Take('-');
  int hours = 0;
  int minutes = 0;
  if (!negative && !reader.Take('+')) return false;
  if (!reader.TakeNumber(2, 23, hours) || !reader.Take(':') || !reader.TakeNumber(2, 59, minutes)) {
    return false;
  }
  parts.zoneMinutes = (hours * 60 + minutes) * (negative ? -1 : 1);
  return true;
}

}  // namespace

std::optional<DateParts> ReadDateParts(DataType type, std::string_view text) noexcept {
  Reader reader(text);
  DateParts parts;
  const bool timeOnly = type == DataType::kTime || type == DataType::kTimeTz;
  const bool zone = type == DataType::kDateTimeTz || type == DataType::kTimeTz;
  if (!timeOnly && !TakeDate(reader, parts)) return std::nullopt;
  const bool timeFollows = timeOnly || (type != DataType::kDate && reader.Take('T'));
  if (timeFollows && !TakeTime(reader, parts)) return std::nullopt;
  if (zone && !TakeZone(reader, parts)) return std::nullopt;
  if (!reader.AtEnd()) return std::nullopt;
  return parts;
}

std::optional<double> DateValue(const DateParts& parts) noexcept {
  constexpr int kDaySeconds = 86400;
  int days = parts.hasDate ? text::DayNumber(parts.year, parts.month, parts.day) : 0;
  int seconds = parts.hour * 3600 + (parts.minute + parts.zoneMinutes) * 60 + parts.second;
  while (seconds < 0) {
    seconds += kDaySeconds;
    --days;
  }
  while (seconds >= kDaySeconds) {
    seconds -= kDaySeconds;
    ++days;
  }
  // Before the epoch the time of day still counts upwards from midnight.
  const double time = static_cast<double>(seconds) / kDaySeconds;
  const double value = days < 0 ? days - time : days + time;
  if (days < static_cast<int>(text::kMinDate) || value >= text::kEndDate) return std::nullopt;
  return value;
}

}  // namespace kx::datatypes
