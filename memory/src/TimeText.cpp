#include <quillon/memory/TimeText.h>

#include <algorithm>

namespace quillon::memory {
namespace {

constexpr long SECOND = 1'000'000;
constexpr long DAY = 86'400 * SECOND;

// Days since 1970-01-01 of the Gregorian calendar.
constexpr long FIRST_GREGORIAN_DAY = -141'427;  // 1582-10-15
constexpr long JULIAN_LAG = 13;                 // 1970-01-01 is 1969-12-19 of the Julian calendar

struct Date {
  long year;
  long month;
  long day;
};

long floorDivided(long number, long divisor) {
  return number / divisor - (number % divisor < 0 ? 1 : 0);
}

/// The date of a year that begins with March, so that a leap day is its last one: `day` counts from
/// that 1st of March on.
Date dateInMarchYear(long marchYear, long day) {
  const long month = (5 * day + 2) / 153;  // of 31, 30, 31, 30, 31 days, over and over
  const long dayOfMonth = day - (153 * month + 2) / 5 + 1;
  return month < 10 ? Date{marchYear, month + 3, dayOfMonth}
                    : Date{marchYear + 1, month - 9, dayOfMonth};
}

Date gregorianDate(long days) {
  constexpr long CYCLE = 146'097;  // days in 400 years
  const long sinceMarch0 = days + 719'468;
  const long cycle = floorDivided(sinceMarch0, CYCLE);
  const long day = sinceMarch0 - cycle * CYCLE;
  const long year = (day - day / 1'460 + day / 36'524 - day / 146'096) / 365;
  return dateInMarchYear(400 * cycle + year, day - (365 * year + year / 4 - year / 100));
}

/// `days` since 1970-01-01 of the Julian calendar.
Date julianDate(long days) {
  constexpr long CYCLE = 1'461;  // days in 4 years
  const long sinceMarch0 = days + 719'483;
  const long cycle = floorDivided(sinceMarch0, CYCLE);
  const long day = sinceMarch0 - cycle * CYCLE;
  const long year = (day - day / 1'460) / 365;
  return dateInMarchYear(4 * cycle + year, day - 365 * year);
}

Date noLeapDate(long days) {
  const long sinceMarch0 = days + 718'991;
  const long year = floorDivided(sinceMarch0, 365);
  return dateInMarchYear(year, sinceMarch0 - year * 365);
}

Date day360Date(long days) {
  const long year = floorDivided(days, 360);
  const long day = days - year * 360;
  return {1970 + year, day / 30 + 1, day % 30 + 1};
}

Date dateOf(long days, Calendar calendar) {
  switch (calendar) {
    case Calendar::Julian:
      return julianDate(days);
    case Calendar::NoLeap:
      return noLeapDate(days);
    case Calendar::Day360:
      return day360Date(days);
    case Calendar::Standard:
      return days < FIRST_GREGORIAN_DAY ? julianDate(days - JULIAN_LAG) : gregorianDate(days);
    case Calendar::ProlepticGregorian:
      break;
  }
  return gregorianDate(days);
}

std::string padded(long number, std::size_t digits) {
  const std::string text = std::to_string(number < 0 ? -number : number);
  return (number < 0 ? "-" : "") + std::string(digits - std::min(digits, text.size()), '0') + text;
}

std::string fractionText(long microseconds) {
  if (microseconds == 0) {
    return {};
  }
  std::string text = "." + padded(microseconds, 6);
  text.erase(text.find_last_not_of('0') + 1);
  return text;
}

}  // namespace

bool isMidnight(long time) { return time == MISSING_TIME || time % DAY == 0; }

std::string dayText(long time, Calendar calendar) {
  if (time == MISSING_TIME) {
    return {};
  }
  const Date date = dateOf(floorDivided(time, DAY), calendar);
  return padded(date.year, 4) + "-" + padded(date.month, 2) + "-" + padded(date.day, 2);
}

std::string timeText(long time, Calendar calendar) {
  if (time == MISSING_TIME) {
    return {};
  }
  const long ofDay = time - floorDivided(time, DAY) * DAY;
  const long seconds = ofDay / SECOND;
  return dayText(time, calendar) + "T" + padded(seconds / 3'600, 2) + ":" +
         padded(seconds / 60 % 60, 2) + ":" + padded(seconds % 60, 2) +
         fractionText(ofDay % SECOND);
}

}  // namespace quillon::memory
