#include <quillon/memory/AsciiText.h>
#include <quillon/memory/TimeUnits.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <utility>

#include "Digits.h"

namespace quillon::memory {
namespace {

constexpr std::string_view BLANKS = " \t";
constexpr long SECOND = 1000000;
constexpr long MINUTE = 60 * SECOND;
constexpr double END_OF_LONG = 9223372036854775808.0;

/// A unit's spellings, and its length: so many microseconds are `divisor` of it.
struct Unit {
  std::string_view spellings;
  long microseconds;
  long divisor;
};

constexpr std::array<Unit, 8> UNITS = {{
    {" weeks week ", 7 * MICROSECONDS_PER_DAY, 1},
    {" days day d ", MICROSECONDS_PER_DAY, 1},
    {" hours hour hrs hr h ", 60 * MINUTE, 1},
    {" minutes minute mins min ", MINUTE, 1},
    {" seconds second secs sec s ", SECOND, 1},
    {" milliseconds millisecond millisecs millisec msecs msec ms ", 1000, 1},
    {" microseconds microsecond microsecs microsec usecs usec us ", 1, 1},
    {" nanoseconds nanosecond nanosecs nanosec nsecs nsec ns ", 1, 1000},
}};

// The first name of a calendar is the one that it is given.
constexpr std::array<std::pair<std::string_view, Calendar>, 9> CALENDARS = {{
    {"standard", Calendar::Standard},
    {"gregorian", Calendar::Standard},
    {"none", Calendar::Standard},
    {"", Calendar::Standard},
    {"proleptic_gregorian", Calendar::ProlepticGregorian},
    {"julian", Calendar::Julian},
    {"noleap", Calendar::NoLeap},
    {"365_day", Calendar::NoLeap},
    {"360_day", Calendar::Day360},
}};

void skipBlanks(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(BLANKS), text.size()));
}

/// Takes the front of `text` up to a blank, and the blanks around it.
std::string_view takeWord(std::string_view& text) {
  skipBlanks(text);
  const std::string_view word = text.substr(0, text.find_first_of(BLANKS));
  text.remove_prefix(word.size());
  skipBlanks(text);
  return word;
}

bool takeCharacter(std::string_view& text, char c) {
  const bool isThere = !text.empty() && text.front() == c;
  text.remove_prefix(isThere ? 1 : 0);
  return isThere;
}

/// Takes `separator` and the number behind it, of one or two digits; false where there is a
/// separator without a number.
bool takeField(std::string_view& text, char separator, int& field, bool& isThere) {
  isThere = takeCharacter(text, separator);
  const std::optional<int> number = isThere ? takeNumber(text, 1, 2) : std::nullopt;
  field = number.value_or(field);
  return !isThere || number.has_value();
}

bool takeDate(std::string_view& text, CivilTime& civil) {
  const bool isNegative = takeCharacter(text, '-');
  if (!isNegative) {
    takeCharacter(text, '+');
  }
  const std::optional<int> year = takeNumber(text, 1, 6);
  if (!year) {
    return false;
  }
  civil.year = isNegative ? -*year : *year;
  bool isThere = false;
  return takeField(text, '-', civil.month, isThere) &&
         (!isThere || takeField(text, '-', civil.day, isThere));
}

/// Takes the digits of a second behind the point, of which six count.
bool takeFraction(std::string_view& text, CivilTime& civil) {
  const std::size_t before = text.size();
  const std::optional<int> number = takeNumber(text, 1, 6);
  if (!number) {
    return false;
  }
  civil.microsecond = *number;
  for (std::size_t digits = before - text.size(); digits < 6; ++digits) {
    civil.microsecond *= 10;
  }
  text.remove_prefix(std::min(text.find_first_not_of("0123456789"), text.size()));
  return true;
}

/// Takes a time of day, of the hours alone at least.
bool takeTimeOfDay(std::string_view& text, CivilTime& civil) {
  const std::optional<int> hour = takeNumber(text, 1, 2);
  if (!hour) {
    return false;
  }
  civil.hour = *hour;
  bool isThere = false;
  return takeField(text, ':', civil.minute, isThere) &&
         (!isThere || (takeField(text, ':', civil.second, isThere) &&
                       (!takeCharacter(text, '.') || takeFraction(text, civil))));
}

/// How far a time zone such as "+01:00", "-0630", "-6", "Z" or "UTC" is ahead, in microseconds.
std::optional<long> zoneOf(std::string_view text) {
  const std::string name = lowerCase(text);
  if (name.empty() || name == "z" || name == "utc" || name == "gmt") {
    return 0;
  }
  const bool isBehind = takeCharacter(text, '-');
  if (!isBehind && !takeCharacter(text, '+')) {
    return std::nullopt;
  }
  const std::optional<int> hours = takeNumber(text, 1, 2);
  takeCharacter(text, ':');
  const std::optional<int> minutes = text.empty() ? 0 : takeNumber(text, 2, 2);
  if (!hours || !minutes || !text.empty() || *hours > 23 || *minutes > 59) {
    return std::nullopt;
  }
  const long ahead = (*hours * 60L + *minutes) * MINUTE;
  return isBehind ? -ahead : ahead;
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// The point in time at which the numbers begin.
std::optional<long> originOf(std::string_view text, Calendar calendar) {
  CivilTime civil;
  if (!takeDate(text, civil)) {
    return std::nullopt;
  }
  const bool isMarked = takeCharacter(text, 'T') || takeCharacter(text, 't');
  if (!isMarked && !text.empty() && isDigit(text.front())) {
    return std::nullopt;  // of a date that is one number, such as "20110801"
  }
  text = trimmed(text);
  const bool hasTime = isMarked || (!text.empty() && isDigit(text.front()));
  if (hasTime && !takeTimeOfDay(text, civil)) {
    return std::nullopt;
  }
  const std::optional<long> zone = zoneOf(trimmed(text));
  const std::optional<long> local = timeOf(civil, calendar);
  long origin = 0;
  if (!zone || !local || __builtin_sub_overflow(*local, *zone, &origin)) {
    return std::nullopt;
  }
  return origin;
}

long orMissing(bool isBeyond, long time) { return isBeyond ? MISSING_TIME : time; }

}  // namespace

std::optional<Calendar> calendarCalled(std::string_view name) {
  const std::string lower = lowerCase(trimmed(name));
  const auto* const found =
      std::find_if(CALENDARS.begin(), CALENDARS.end(),
                   [&lower](const auto& calendar) { return calendar.first == lower; });
  return found == CALENDARS.end() ? std::nullopt : std::optional(found->second);
}

std::string nameOf(Calendar calendar) {
  const auto* const found =
      std::find_if(CALENDARS.begin(), CALENDARS.end(),
                   [calendar](const auto& known) { return known.second == calendar; });
  return found == CALENDARS.end() ? "" : std::string(found->first);
}

std::optional<TimeUnits> TimeUnits::parse(std::string_view text, Calendar calendar) {
  const std::string spelling = " " + lowerCase(takeWord(text)) + " ";
  const auto* const unit = std::find_if(UNITS.begin(), UNITS.end(), [&spelling](const Unit& known) {
    return known.spellings.find(spelling) != std::string_view::npos;
  });
  if (unit == UNITS.end() || lowerCase(takeWord(text)) != "since") {
    return std::nullopt;
  }
  const std::optional<long> origin = originOf(text, calendar);
  if (!origin) {
    return std::nullopt;
  }
  return TimeUnits(*origin, unit->microseconds, unit->divisor, calendar);
}

long TimeUnits::timeOf(long number) const {
  const long rest = number % m_divisor;  // at most half of a microsecond is rounded away
  const long rounding = 2 * rest >= m_divisor ? 1 : 2 * rest < -m_divisor ? -1 : 0;
  const long whole = number / m_divisor + rounding;
  long passed = 0;
  long time = 0;
  const bool isBeyond = __builtin_mul_overflow(whole, m_microseconds, &passed) ||
                        __builtin_add_overflow(m_origin, passed, &time);
  return orMissing(isBeyond, time);
}

long TimeUnits::timeOf(unsigned long number) const {
  const auto narrow = static_cast<long>(number);
  return narrow < 0 ? MISSING_TIME : timeOf(narrow);
}

// The whole units are exact in 64 bits, and so is what is left of them in a double. Of the units of
// which many are a microsecond that is left away: it moves none to another nearest microsecond.
long TimeUnits::timeOf(double number) const {
  const double whole = std::floor(number);
  if (!(whole >= -END_OF_LONG && whole < END_OF_LONG)) {
    return MISSING_TIME;
  }
  const long begin = timeOf(static_cast<long>(whole));
  if (m_divisor != 1 || begin == MISSING_TIME) {
    return begin;
  }
  long time = 0;
  const long rest = std::lround((number - whole) * static_cast<double>(m_microseconds));
  const bool isBeyond = __builtin_add_overflow(begin, rest, &time);
  return orMissing(isBeyond, time);
}

}  // namespace quillon::memory
