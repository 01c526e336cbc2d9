/// @file
/// Points in time: their arithmetic in all calendars and their text.
///
/// A time is a number of microseconds since 1970-01-01T00:00:00 of its calendar, MISSING_TIME where
/// there is none. Days have 86,400 seconds; there are no time zones. The year 0 exists.
/// Threads: everything here may be called concurrently.
#pragma once

#include <quillon/memory/Facets.h>

#include <optional>
#include <string>
#include <string_view>

namespace quillon::memory {

/// The microseconds of a day.
inline constexpr long MICROSECONDS_PER_DAY = 86400000000L;

/// A point in time as people write it.
struct CivilTime {
  long year = 1970;     ///< 0 and negative ones exist
  int month = 1;        ///< 1 to 12
  int day = 1;          ///< from 1
  int hour = 0;         ///< 0 to 23
  int minute = 0;       ///< 0 to 59
  int second = 0;       ///< 0 to 59
  int microsecond = 0;  ///< 0 to 999999
};

/// The number of the last day of a month, from 28 to 31. `month` must be 1 to 12.
[[nodiscard]] int daysInMonth(long year, int month, Calendar calendar);

/// The time that `civil` stands for; none where the calendar has no such day (such as 1582-10-10
/// in the standard one), where a field is out of its range, and outside of some 292,000 years
/// around 1970, which is what 64 bits hold.
[[nodiscard]] std::optional<long> timeOf(const CivilTime& civil, Calendar calendar);

/// What people write for `time`, which must not be MISSING_TIME.
[[nodiscard]] CivilTime civilTimeOf(long time, Calendar calendar);

/// How much of a time its text shows.
enum class TimeForm {
  Date,         ///< `2011-08-01`
  DateAndTime,  ///< `2011-08-01T06:00:00`, with as many digits of a second as needed
};

/// The form in which the `count` times from `times` on can be told apart: the date alone where all
/// are midnights. Missing ones do not count.
[[nodiscard]] TimeForm timeFormOf(const long* times, unsigned long count);

/// The time as ISO 8601 has it, such as `2011-08-01T06:00:00.25`; empty for MISSING_TIME. Years
/// before 0 and after 9999 have a sign and at least four digits.
[[nodiscard]] std::string timeText(long time, Calendar calendar, TimeForm form);

/// All times from `first` to `last`.
struct TimeSpan {
  long first;  ///< the first microsecond
  long last;   ///< the last microsecond
};

/// The times that a text stands for: a date and time as ISO 8601 has it (with a `T` or a blank
/// between them and up to six digits of a second), or less of it from the end on: `2011-08-01` is a
/// whole day, `2011-08` a month, `2011` a year, `2011-08-01T06` an hour. None where the text is
/// nothing of the kind or names a day that the calendar does not have.
[[nodiscard]] std::optional<TimeSpan> parseTime(std::string_view text, Calendar calendar);

}  // namespace quillon::memory
