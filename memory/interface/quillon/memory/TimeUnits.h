/// @file
/// What the numbers of a time axis stand for: "hours since 1970-01-01" and the like.
#pragma once

#include <quillon/memory/Time.h>

#include <optional>
#include <string>
#include <string_view>

namespace quillon::memory {

/// The calendar that the CF conventions call so, in any case: `standard`, `gregorian`, `none` and
/// no name at all, `proleptic_gregorian`, `julian`, `noleap` and `365_day`, `360_day`. None for
/// others.
[[nodiscard]] std::optional<Calendar> calendarCalled(std::string_view name);

/// What the CF conventions call a calendar; the first of its names where it has several.
[[nodiscard]] std::string nameOf(Calendar calendar);

/// A unit of time and the point in time at which numbers of it begin.
///
/// Threads: const operations may run concurrently.
class TimeUnits {
 public:
  /// The units that a text such as "hours since 1970-01-01 06:00:00 +01:00" stands for: weeks, days
  /// or less, down to nanoseconds, in the usual spellings and any case; a date, with or without a
  /// time of day and a time zone, whose fields may have few digits. None for what is nothing of the
  /// kind, for months and years, whose lengths differ, and for a date that the calendar does not
  /// have.
  static std::optional<TimeUnits> parse(std::string_view text, Calendar calendar);

  /// The calendar in which the beginning was read.
  Calendar calendar() const { return m_calendar; }

  /// The time that a number of these units stands for, to the nearest microsecond; MISSING_TIME for
  /// one that is not finite or that 64 bits do not hold.
  long timeOf(long number) const;
  /// @copydoc timeOf
  long timeOf(unsigned long number) const;
  /// @copydoc timeOf
  long timeOf(double number) const;

 private:
  TimeUnits(long origin, long microseconds, long divisor, Calendar calendar)
      : m_origin(origin), m_microseconds(microseconds), m_divisor(divisor), m_calendar(calendar) {}

  long m_origin;
  long m_microseconds;  // of so many units
  long m_divisor;
  Calendar m_calendar;
};

}  // namespace quillon::memory
