// Dates and times as data types write them: yyyy-mm-dd, hh:mm:ss, both joined by "T", a fraction of
// a second, a zone.
#pragma once

#include "platform/datatypes/data_type.h"

#include <optional>
#include <string_view>

namespace kx::datatypes {

/// The parts of a date text. A part that is not there is 0; `hasDate` tells a time from the rest.
struct DateParts {
  int year = 0;
  int month = 0;
  int day = 0;
  int hour = 0;
  int minute = 0;
  int second = 0;
  int zoneMinutes = 0;  ///< as written: +01:30 is 90
  bool hasDate = false;
};

/// Takes a trimmed text apart by the form of `type`, one of the date types; nothing when it is not
/// of that form, names no existing day, or a time outside 00:00:00 to 23:59:59.
[[nodiscard]] std::optional<DateParts> ReadDateParts(DataType type, std::string_view text) noexcept;

/// Days since 30 December 1899: the written clock time with the zone's offset *added*, fractions of
/// a second dropped. Nothing outside the years 100 to 9999.
[[nodiscard]] std::optional<double> DateValue(const DateParts& parts) noexcept;

}  // namespace kx::datatypes
