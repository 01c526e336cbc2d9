#include <quillon/memory/Time.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <limits>

#include "Digits.h"

namespace quillon::memory {
namespace {

constexpr long MICROSECONDS_PER_SECOND = 1000000;
constexpr long SECONDS_PER_DAY = 86400;

// Beyond these, microseconds do not fit 64 bits.
constexpr long MAX_DAY = 106751990;
constexpr long MAX_YEAR = 300000;

// The first day of the Gregorian calendar in the standard one, and the days before it that are
// missing there. A Julian date is 13 days behind in 1970.
constexpr long FIRST_GREGORIAN_DAY = -141427;  // 1582-10-15
constexpr long JULIAN_LAG = 13;

long floorDivide(long value, long divisor) {
  return value / divisor - (value % divisor < 0 ? 1 : 0);
}

/// How a calendar other than that of 360 days spreads its leap days.
enum class LeapRule { Gregorian, Julian, None };

/// The leap days from year 1 to `year`, negative before.
long leapDays(long year, LeapRule rule) {
  switch (rule) {
    case LeapRule::Gregorian:
      return floorDivide(year, 4) - floorDivide(year, 100) + floorDivide(year, 400);
    case LeapRule::Julian:
      return floorDivide(year, 4);
    default:
      return 0;
  }
}

/// The days from 0000-03-01 to the March 1 of `year`. Years that begin in March end with the leap
/// day.
long startOfMarchYear(long year, LeapRule rule) { return 365 * year + leapDays(year, rule); }

/// The days from March 1 to the first of the `month`, which counts from March as 0.
long startOfMarchMonth(long month) { return (153 * month + 2) / 5; }

long daysFromMarch0(const CivilTime& date, LeapRule rule) {
  const bool isBeforeMarch = date.month <= 2;
  const long month = date.month + (isBeforeMarch ? 9 : -3);
  return startOfMarchYear(date.year - (isBeforeMarch ? 1 : 0), rule) + startOfMarchMonth(month) +
         date.day - 1;
}

long daysSince1970(const CivilTime& date, LeapRule rule) {
  return daysFromMarch0(date, rule) - daysFromMarch0(CivilTime(), rule);
}

CivilTime dateOf(long daysSince1970, LeapRule rule) {
  const long days = daysSince1970 + daysFromMarch0(CivilTime(), rule);
  long year = floorDivide(days, 365);
  while (startOfMarchYear(year, rule) > days) {
    // Each step goes back by what the guess is too late, so that few are needed.
    year -= (startOfMarchYear(year, rule) - days) / 366 + 1;
  }
  while (startOfMarchYear(year + 1, rule) <= days) {
    ++year;
  }
  const long dayOfYear = days - startOfMarchYear(year, rule);
  const long month = (5 * dayOfYear + 2) / 153;
  CivilTime date;
  date.day = static_cast<int>(dayOfYear - startOfMarchMonth(month) + 1);
  date.month = static_cast<int>(month < 10 ? month + 3 : month - 9);
  date.year = year + (date.month <= 2 ? 1 : 0);
  return date;
}

long daysOf360(const CivilTime& date) {
  return 360 * (date.year - 1970) + 30L * (date.month - 1) + date.day - 1;
}

CivilTime dateOf360(long days) {
  const long year = floorDivide(days, 360);
  const long dayOfYear = days - 360 * year;
  CivilTime date;
  date.year = 1970 + year;
  date.month = static_cast<int>(dayOfYear / 30 + 1);
  date.day = static_cast<int>(dayOfYear % 30 + 1);
  return date;
}

long daysOf(const CivilTime& date, Calendar calendar) {
  switch (calendar) {
    case Calendar::Standard: {
      const long days = daysSince1970(date, LeapRule::Gregorian);
      return days >= FIRST_GREGORIAN_DAY ? days
                                         : daysSince1970(date, LeapRule::Julian) + JULIAN_LAG;
    }
    case Calendar::ProlepticGregorian:
      return daysSince1970(date, LeapRule::Gregorian);
    case Calendar::Julian:
      return daysSince1970(date, LeapRule::Julian);
    case Calendar::NoLeap:
      return daysSince1970(date, LeapRule::None);
    default:
      return daysOf360(date);
  }
}

CivilTime dateOf(long days, Calendar calendar) {
  switch (calendar) {
    case Calendar::Standard:
      return days >= FIRST_GREGORIAN_DAY ? dateOf(days, LeapRule::Gregorian)
                                         : dateOf(days - JULIAN_LAG, LeapRule::Julian);
    case Calendar::ProlepticGregorian:
      return dateOf(days, LeapRule::Gregorian);
    case Calendar::Julian:
      return dateOf(days, LeapRule::Julian);
    case Calendar::NoLeap:
      return dateOf(days, LeapRule::None);
    default:
      return dateOf360(days);
  }
}

LeapRule leapRuleOf(long year, Calendar calendar) {
  if (calendar == Calendar::NoLeap) {
    return LeapRule::None;
  }
  const bool isJulian =
      calendar == Calendar::Julian || (calendar == Calendar::Standard && year <= 1582);
  return isJulian ? LeapRule::Julian : LeapRule::Gregorian;
}

bool isIn(long value, long first, long last) { return value >= first && value <= last; }

bool isSkipped(const CivilTime& date, Calendar calendar) {
  return calendar == Calendar::Standard && date.year == 1582 && date.month == 10 &&
         isIn(date.day, 5, 14);
}

bool exists(const CivilTime& civil, Calendar calendar) {
  return isIn(civil.year, -MAX_YEAR, MAX_YEAR) && isIn(civil.month, 1, 12) &&
         isIn(civil.day, 1, daysInMonth(civil.year, civil.month, calendar)) &&
         !isSkipped(civil, calendar) && isIn(civil.hour, 0, 23) && isIn(civil.minute, 0, 59) &&
         isIn(civil.second, 0, 59) && isIn(civil.microsecond, 0, 999999);
}

/// Appends what stands before a number that is not negative, and the number in so many digits or
/// more.
void append(std::string& text, const char* before, long value, std::size_t digits) {
  std::array<char, std::numeric_limits<long>::digits10 + 1> number{};
  const char* const end = std::to_chars(number.data(), number.data() + number.size(), value).ptr;
  const auto count = static_cast<std::size_t>(end - number.data());
  text.append(before).append(digits - std::min(digits, count), '0').append(number.data(), count);
}

void appendYear(std::string& text, long year) {
  append(text, year < 0 ? "-" : year > 9999 ? "+" : "", std::abs(year), 4);
}

void appendFraction(std::string& text, int microsecond) {
  if (microsecond != 0) {
    append(text, ".", microsecond, 6);
    text.resize(text.find_last_not_of('0') + 1);
  }
}

std::optional<long> takeYear(std::string_view& text) {
  const bool hasSign = !text.empty() && (text[0] == '-' || text[0] == '+');
  const bool isNegative = hasSign && text[0] == '-';
  text.remove_prefix(hasSign ? 1 : 0);
  const std::optional<int> year = takeNumber(text, 4, hasSign ? 6 : 4);
  if (!year) {
    return std::nullopt;
  }
  return isNegative ? -*year : *year;
}

/// Takes the digits of a second behind the point. Those beyond microseconds must be 0.
bool takeFraction(std::string_view& text, CivilTime& first, CivilTime& last) {
  const std::size_t before = text.size();
  std::optional<int> value = takeNumber(text, 1, 6);
  if (!value) {
    return false;
  }
  int unit = 1;
  for (std::size_t digits = before - text.size(); digits < 6; ++digits) {
    unit *= 10;
  }
  first.microsecond = *value * unit;
  last.microsecond = first.microsecond + unit - 1;
  text.remove_prefix(std::min(text.find_first_not_of('0'), text.size()));
  return text.empty();
}

/// A part of a time that follows the year.
struct Part {
  std::string_view separators;
  int CivilTime::*field;
};

constexpr std::array<Part, 5> PARTS = {{{"-", &CivilTime::month},
                                        {"-", &CivilTime::day},
                                        {"T ", &CivilTime::hour},
                                        {":", &CivilTime::minute},
                                        {":", &CivilTime::second}}};

/// Takes what follows the year into both times. False where it is no time.
bool takeParts(std::string_view& text, CivilTime& first, CivilTime& last) {
  for (const Part& part : PARTS) {
    if (text.empty()) {
      return true;
    }
    const bool isSeparated = part.separators.find(text[0]) != std::string_view::npos;
    text.remove_prefix(1);
    const std::optional<int> value = takeNumber(text, 2, 2);
    if (!isSeparated || !value) {
      return false;
    }
    first.*part.field = *value;
    last.*part.field = *value;
  }
  if (text.empty()) {
    return true;
  }
  const bool isPoint = text[0] == '.';
  text.remove_prefix(1);
  return isPoint && takeFraction(text, first, last);
}

}  // namespace

int daysInMonth(long year, int month, Calendar calendar) {
  if (calendar == Calendar::Day360) {
    return 30;
  }
  if (month == 2) {
    const LeapRule rule = leapRuleOf(year, calendar);
    return static_cast<int>(28 + leapDays(year, rule) - leapDays(year - 1, rule));
  }
  return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

std::optional<long> timeOf(const CivilTime& civil, Calendar calendar) {
  if (!exists(civil, calendar)) {
    return std::nullopt;
  }
  const long days = daysOf(civil, calendar);
  if (!isIn(days, -MAX_DAY, MAX_DAY)) {
    return std::nullopt;
  }
  const long seconds =
      days * SECONDS_PER_DAY + civil.hour * 3600L + civil.minute * 60L + civil.second;
  return seconds * MICROSECONDS_PER_SECOND + civil.microsecond;
}

CivilTime civilTimeOf(long time, Calendar calendar) {
  const long days = floorDivide(time, MICROSECONDS_PER_DAY);
  const long rest = time - days * MICROSECONDS_PER_DAY;
  const long seconds = rest / MICROSECONDS_PER_SECOND;
  CivilTime civil = dateOf(days, calendar);
  civil.hour = static_cast<int>(seconds / 3600);
  civil.minute = static_cast<int>(seconds / 60 % 60);
  civil.second = static_cast<int>(seconds % 60);
  civil.microsecond = static_cast<int>(rest % MICROSECONDS_PER_SECOND);
  return civil;
}

TimeForm timeFormOf(const long* times, unsigned long count) {
  const bool areDates = std::all_of(times, times + count, [](long time) {
    return time == MISSING_TIME || time % MICROSECONDS_PER_DAY == 0;
  });
  return areDates ? TimeForm::Date : TimeForm::DateAndTime;
}

std::string timeText(long time, Calendar calendar, TimeForm form) {
  if (time == MISSING_TIME) {
    return {};
  }
  const CivilTime civil = civilTimeOf(time, calendar);
  std::string text;
  appendYear(text, civil.year);
  append(text, "-", civil.month, 2);
  append(text, "-", civil.day, 2);
  if (form == TimeForm::DateAndTime) {
    append(text, "T", civil.hour, 2);
    append(text, ":", civil.minute, 2);
    append(text, ":", civil.second, 2);
    appendFraction(text, civil.microsecond);
  }
  return text;
}

std::optional<TimeSpan> parseTime(std::string_view text, Calendar calendar) {
  const std::optional<long> year = takeYear(text);
  if (!year) {
    return std::nullopt;
  }
  CivilTime first = {*year, 1, 1, 0, 0, 0, 0};
  CivilTime last = {*year, 12, 0, 23, 59, 59, 999999};  // the day is known with the month
  if (!takeParts(text, first, last)) {
    return std::nullopt;
  }
  if (last.day == 0 && first.day == 1) {
    last.day = daysInMonth(last.year, last.month, calendar);
  }
  const std::optional<long> begin = timeOf(first, calendar);
  const std::optional<long> end = timeOf(last, calendar);
  if (!begin || !end) {
    return std::nullopt;
  }
  return TimeSpan{*begin, *end};
}

}  // namespace quillon::memory
