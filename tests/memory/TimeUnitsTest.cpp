#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <quillon/memory/TimeUnits.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <limits>
#include <ostream>
#include <string>
#include <variant>

namespace quillon::memory {
namespace {

struct UnitCase {
  const char* rule;
  std::string units;
  Calendar calendar;
  std::variant<long, double> number;
  std::string time;  // "none" for units that are nothing of the kind
};

void PrintTo(const UnitCase& c, std::ostream* os) { *os << c.rule; }

std::string timeOf(const UnitCase& c) {
  const std::optional<TimeUnits> units = TimeUnits::parse(c.units, c.calendar);
  if (!units) {
    return "none";
  }
  EXPECT_EQ(units->calendar(), c.calendar);
  const long time = std::visit([&units](auto number) { return units->timeOf(number); }, c.number);
  return timeText(time, c.calendar, TimeForm::DateAndTime);
}

class TimeUnitsTest : public ::testing::TestWithParam<UnitCase> {};

TEST_P(TimeUnitsTest, GiveTheTime) { EXPECT_EQ(timeOf(GetParam()), GetParam().time); }

constexpr Calendar STANDARD = Calendar::Standard;

INSTANTIATE_TEST_SUITE_P(
    Units, TimeUnitsTest,
    ::testing::ValuesIn(std::vector<UnitCase>{
        {"Weeks", "weeks since 2000-01-01", STANDARD, 2L, "2000-01-15T00:00:00"},
        {"Days", "days since 2000-01-01", STANDARD, 60L, "2000-03-01T00:00:00"},
        {"Hours", "hours since 2000-01-01", STANDARD, 25L, "2000-01-02T01:00:00"},
        {"Minutes", "min since 2000-01-01", STANDARD, -1L, "1999-12-31T23:59:00"},
        {"Seconds", "s since 2000-01-01", STANDARD, 61L, "2000-01-01T00:01:01"},
        {"Milliseconds", "msec since 2000-01-01", STANDARD, 1L, "2000-01-01T00:00:00.001"},
        {"Microseconds", "microseconds since 2000-01-01", STANDARD, 1L,
         "2000-01-01T00:00:00.000001"},
        {"NanosecondsToTheNearestMicrosecond", "nanoseconds since 2000-01-01", STANDARD, 1500L,
         "2000-01-01T00:00:00.000002"},
        {"NanosecondsBefore", "ns since 2000-01-01", STANDARD, -1501L,
         "1999-12-31T23:59:59.999998"},
        {"NanosecondsBelowHalfAMicrosecond", "ns since 2000-01-01", STANDARD, 1499L,
         "2000-01-01T00:00:00.000001"},
        {"NanosecondsHalfAMicrosecondBefore", "ns since 2000-01-01", STANDARD, -1500L,
         "1999-12-31T23:59:59.999999"},
        {"NanosecondsLessThanHalfAMicrosecondBefore", "ns since 2000-01-01", STANDARD, -1499L,
         "1999-12-31T23:59:59.999999"},
        {"NanosecondsAsFractions", "ns since 2000-01-01", STANDARD, 2000.4,
         "2000-01-01T00:00:00.000002"},
        {"NanosecondsAsFractionsBelowHalfAMicrosecond", "ns since 2000-01-01", STANDARD, 1499.6,
         "2000-01-01T00:00:00.000001"},
        {"NanosecondsAsFractionsBefore", "ns since 2000-01-01", STANDARD, -1500.4,
         "1999-12-31T23:59:59.999998"},
        {"AnyCase", "HOURS SINCE 2000-01-01", STANDARD, 1L, "2000-01-01T01:00:00"},
        {"BlanksAround", "  days   since   2000-01-01  ", STANDARD, 1L, "2000-01-02T00:00:00"},
        {"TabsAsBlanks", "\tdays\tsince\t2000-01-01\t06\t", STANDARD, 1L, "2000-01-02T06:00:00"},
        {"Months", "months since 2000-01-01", STANDARD, 1L, "none"},
        {"Years", "years since 2000-01-01", STANDARD, 1L, "none"},
        {"LetterOfAnotherUnit", "m since 2000-01-01", STANDARD, 1L, "none"},
        {"NoUnit", "since 2000-01-01", STANDARD, 1L, "none"},
        {"NoDate", "days since", STANDARD, 1L, "none"},
        {"DateInOneNumber", "days since 20110801", STANDARD, 1L, "none"},
        {"TimeWithoutABlank", "days since 2011-08-0106", STANDARD, 1L, "none"},
        {"NoSince", "days", STANDARD, 1L, "none"},
        {"Nothing", "", STANDARD, 1L, "none"},
        {"OtherWord", "days until 2000-01-01", STANDARD, 1L, "none"},
    }),
    [](const auto& c) { return c.param.rule; });

INSTANTIATE_TEST_SUITE_P(
    Dates, TimeUnitsTest,
    ::testing::ValuesIn(std::vector<UnitCase>{
        {"OfFewDigits", "days since 1-2-3", STANDARD, 0L, "0001-02-03T00:00:00"},
        {"YearAlone", "days since 1970", STANDARD, 1L, "1970-01-02T00:00:00"},
        {"YearAndMonth", "days since 1970-02", STANDARD, 0L, "1970-02-01T00:00:00"},
        {"YearZero", "hour since 0000-01-01 00:00:00", STANDARD, 366L, "0000-01-16T06:00:00"},
        {"SignedYear", "days since +2000-01-01", STANDARD, 0L, "2000-01-01T00:00:00"},
        {"MonthOfThreeDigits", "days since 2000-001-01", STANDARD, 0L, "none"},
        {"YearOfSixDigits", "days since 002000-01-01", STANDARD, 0L, "2000-01-01T00:00:00"},
        {"YearOfSevenDigits", "days since 0002000-01-01", STANDARD, 0L, "none"},
        {"MinusAndPlus", "days since -+2000-01-01", STANDARD, 0L, "none"},
        {"TwoSigns", "days since --2000-01-01", STANDARD, 0L, "none"},
        {"NegativeYear", "days since -4712-01-01", STANDARD, 0L, "-4712-01-01T00:00:00"},
        {"WithHour", "hours since 2000-01-01 06", STANDARD, 0L, "2000-01-01T06:00:00"},
        {"WithHourOfThreeDigits", "hours since 2000-01-01 006", STANDARD, 0L, "none"},
        {"WithHourNine", "hours since 2000-01-01 9:00", STANDARD, 0L, "2000-01-01T09:00:00"},
        {"WithMinutes", "hours since 2000-01-01 6:30", STANDARD, 0L, "2000-01-01T06:30:00"},
        {"WithSeconds", "hours since 2000-01-01 06:30:05", STANDARD, 0L, "2000-01-01T06:30:05"},
        {"WithFraction", "hours since 2000-01-01 00:00:0.25", STANDARD, 0L,
         "2000-01-01T00:00:00.25"},
        {"WithFractionOfOneDigit", "hours since 2000-01-01 00:00:00.5", STANDARD, 0L,
         "2000-01-01T00:00:00.5"},
        {"WithFractionAndZone", "hours since 2000-01-01 00:00:00.25 UTC", STANDARD, 0L,
         "2000-01-01T00:00:00.25"},
        {"WithMoreDigitsThanCount", "hours since 2000-01-01 00:00:00.1234560123456789", STANDARD,
         0L, "2000-01-01T00:00:00.123456"},
        {"WithT", "hours since 2000-01-01T06:00:00", STANDARD, 0L, "2000-01-01T06:00:00"},
        {"WithSmallT", "hours since 2000-01-01t06:00:00", STANDARD, 0L, "2000-01-01T06:00:00"},
        {"InUtc", "hours since 2000-01-01 06:00:00 UTC", STANDARD, 0L, "2000-01-01T06:00:00"},
        {"InUtcWithoutATime", "hours since 2000-01-01 UTC", STANDARD, 0L, "2000-01-01T00:00:00"},
        {"InGmt", "hours since 2000-01-01 06:00:00 GMT", STANDARD, 0L, "2000-01-01T06:00:00"},
        {"InZulu", "hours since 2000-01-01T06:00:00Z", STANDARD, 0L, "2000-01-01T06:00:00"},
        {"AheadOfUtc", "hours since 2000-01-01 06:00:00 +01:30", STANDARD, 0L,
         "2000-01-01T04:30:00"},
        {"BehindUtc", "hours since 2000-01-01 06:00:00 -6:00", STANDARD, 0L, "2000-01-01T12:00:00"},
        {"ZoneWithoutColon", "hours since 2000-01-01 06:00:00+0130", STANDARD, 0L,
         "2000-01-01T04:30:00"},
        {"ZoneThatIsFarthest", "hours since 2000-01-02 00:00 +23:59", STANDARD, 0L,
         "2000-01-01T00:01:00"},
        {"ZoneOfHours", "hours since 2000-01-01 06:00 -6", STANDARD, 0L, "2000-01-01T12:00:00"},
        {"DateInZulu", "days since 2000-01-01Z", STANDARD, 0L, "2000-01-01T00:00:00"},
        {"NoSuchDay", "days since 2001-02-29", STANDARD, 0L, "none"},
        {"DayThatTheCalendarLeftOut", "days since 1582-10-10", STANDARD, 0L, "none"},
        {"DayThatAnotherCalendarHas", "days since 2001-02-30", Calendar::Day360, 1L,
         "2001-03-01T00:00:00"},
        {"TextBehind", "days since 2000-01-01 noon", STANDARD, 0L, "none"},
        {"ZoneThatIsNone", "days since 2000-01-01 00:00 +25", STANDARD, 0L, "none"},
        {"ZoneOfADay", "days since 2000-01-01 00:00 +24", STANDARD, 0L, "none"},
        {"ZoneOfOneDigitOfMinutes", "days since 2000-01-01 00:00 +1:3", STANDARD, 0L, "none"},
        {"ZoneOfThreeDigitsOfMinutes", "days since 2000-01-01 00:00 +1:030", STANDARD, 0L, "none"},
        {"ZoneOfTooManyMinutes", "days since 2000-01-01 00:00 +01:60", STANDARD, 0L, "none"},
        {"ZoneOfASignAlone", "days since 2000-01-01 00:00 +", STANDARD, 0L, "none"},
        {"ZoneWithoutHours", "days since 2000-01-01 00:00 +x", STANDARD, 0L, "none"},
        {"ZoneWithTextForMinutes", "days since 2000-01-01 00:00 +1:x", STANDARD, 0L, "none"},
        {"TextBehindTheZone", "days since 2000-01-01 00:00 +01:00x", STANDARD, 0L, "none"},
        {"ZoneThatLeadsToTheLastHour", "us since 294247-01-09 23:00:00 -05:00", STANDARD, 0L,
         "+294247-01-10T04:00:00"},
        {"ZoneThatLeadsBeyondAllTimes", "us since 294247-01-09 23:00:00 -06:00", STANDARD, 0L,
         "none"},
        {"HourOfNoDay", "days since 2000-01-01 24:00", STANDARD, 0L, "none"},
        {"MissingMonth", "days since 2000-", STANDARD, 0L, "none"},
        {"MissingDay", "days since 2000-01-", STANDARD, 0L, "none"},
        {"MissingHour", "days since 2000-01-01T", STANDARD, 0L, "none"},
        {"MissingMinutes", "days since 2000-01-01 00:", STANDARD, 0L, "none"},
        {"MissingSeconds", "days since 2000-01-01 00:00:", STANDARD, 0L, "none"},
        {"MissingFraction", "days since 2000-01-01 00:00:00.", STANDARD, 0L, "none"},
    }),
    [](const auto& c) { return c.param.rule; });

INSTANTIATE_TEST_SUITE_P(
    Calendars, TimeUnitsTest,
    ::testing::ValuesIn(std::vector<UnitCase>{
        {"StandardLeavesDaysOut", "days since 1582-10-04", STANDARD, 1L, "1582-10-15T00:00:00"},
        {"ProlepticGregorianDoesNot", "days since 1582-10-04", Calendar::ProlepticGregorian, 1L,
         "1582-10-05T00:00:00"},
        {"Julian", "days since 1900-02-28", Calendar::Julian, 1L, "1900-02-29T00:00:00"},
        {"NoLeap", "days since 2000-02-28", Calendar::NoLeap, 1L, "2000-03-01T00:00:00"},
        {"Of360Days", "days since 2000-02-28", Calendar::Day360, 3L, "2000-03-01T00:00:00"},
        {"FractionsOfDays", "days since 1900-01-01", STANDARD, 36525.125, "2000-01-02T03:00:00"},
        {"FractionsOfHoursToTheMicrosecond", "hours since 1900-01-01", STANDARD, 0.1 / 3600,
         "1900-01-01T00:00:00.1"},
        {"FractionsBeforeTheBeginning", "hours since 2000-01-01", STANDARD, -0.5,
         "1999-12-31T23:30:00"},
        {"HalvesOfMicrosecondsAreRoundedUp", "us since 2000-01-01", STANDARD, 0.5,
         "2000-01-01T00:00:00.000001"},
        {"NaNIsMissing", "days since 2000-01-01", STANDARD,
         std::numeric_limits<double>::quiet_NaN(), ""},
        {"InfinityIsMissing", "days since 2000-01-01", STANDARD,
         -std::numeric_limits<double>::infinity(), ""},
        {"BeyondAllTimesIsMissing", "days since 2000-01-01", STANDARD, 200000000L, ""},
        {"MicrosecondsBeyondAllTimesAreMissing", "us since 2000-01-01", STANDARD,
         std::numeric_limits<long>::max(), ""},
        {"FractionsBeyondAreMissing", "days since 2000-01-01", STANDARD, 1e30, ""},
        {"NumbersBehindTheLastLongAreMissing", "us since 2000-01-01", STANDARD,
         9223372036854775808.0, ""},
        {"NumbersBeforeTheFirstLongAreMissing", "us since 2000-01-01", STANDARD,
         -9223372036854777856.0, ""},
        {"FractionsOfDaysBeyondAreMissing", "days since 2000-01-01", STANDARD, 200000000.5, ""},
        {"BeforeAllTimesIsMissing", "s since 2000-01-01", STANDARD,
         std::numeric_limits<long>::min(), ""},
    }),
    [](const auto& c) { return c.param.rule; });

TEST(TimeUnits, MayBeSpeltInSeveralWays) {
  const std::pair<std::vector<std::string>, long> lengths[] = {
      {{"weeks", "week"}, 7 * MICROSECONDS_PER_DAY},
      {{"days", "day", "d"}, MICROSECONDS_PER_DAY},
      {{"hours", "hour", "hrs", "hr", "h"}, 3600000000L},
      {{"minutes", "minute", "mins", "min"}, 60000000L},
      {{"seconds", "second", "secs", "sec", "s"}, 1000000L},
      {{"milliseconds", "millisecond", "millisecs", "millisec", "msecs", "msec", "ms"}, 1000L},
      {{"microseconds", "microsecond", "microsecs", "microsec", "usecs", "usec", "us"}, 1L},
  };
  for (const auto& [spellings, length] : lengths) {
    for (const std::string& spelling : spellings) {
      const auto units = TimeUnits::parse(spelling + " since 1970-01-01", STANDARD);
      ASSERT_TRUE(units.has_value()) << spelling;
      EXPECT_EQ(units->timeOf(3L), 3 * length) << spelling;
    }
  }
  for (const std::string spelling :
       {"nanoseconds", "nanosecond", "nanosecs", "nanosec", "nsecs", "nsec", "ns"}) {
    const auto units = TimeUnits::parse(spelling + " since 1970-01-01", STANDARD);
    ASSERT_TRUE(units.has_value()) << spelling;
    EXPECT_EQ(units->timeOf(3000000L), 3000) << spelling;
  }
}

TEST(TimeUnits, NumberWithoutSignBeyondLongIsMissing) {
  const TimeUnits units = TimeUnits::parse("us since 1970-01-01", STANDARD).value();
  EXPECT_EQ(units.timeOf(0UL), 0);
  EXPECT_EQ(units.timeOf(5UL), 5);
  EXPECT_EQ(units.timeOf(1UL << 63U), MISSING_TIME);
  EXPECT_EQ(units.timeOf(std::numeric_limits<unsigned long>::max()), MISSING_TIME);
}

TEST(TimeUnits, TheFirstLongIsANumberAsAnyOther) {
  const TimeUnits units = TimeUnits::parse("us since 1970-01-02", STANDARD).value();
  constexpr long FIRST = std::numeric_limits<long>::min();
  EXPECT_EQ(units.timeOf(FIRST), FIRST + MICROSECONDS_PER_DAY);
  EXPECT_EQ(units.timeOf(static_cast<double>(FIRST)), FIRST + MICROSECONDS_PER_DAY);
}

TEST(Calendars, AreCalledAsTheConventionsSay) {
  for (const char* name : {"", "none", "standard", "gregorian", "Gregorian", " standard "}) {
    EXPECT_EQ(calendarCalled(name), STANDARD) << name;
  }
  EXPECT_EQ(calendarCalled("proleptic_gregorian"), Calendar::ProlepticGregorian);
  EXPECT_EQ(calendarCalled("julian"), Calendar::Julian);
  EXPECT_EQ(calendarCalled("noleap"), Calendar::NoLeap);
  EXPECT_EQ(calendarCalled("365_day"), Calendar::NoLeap);
  EXPECT_EQ(calendarCalled("360_day"), Calendar::Day360);
  for (const char* name : {"all_leap", "366_day", "tai", "lunar"}) {
    EXPECT_EQ(calendarCalled(name), std::nullopt) << name;
  }
}

TEST(Calendars, HaveTheFirstOfTheirNames) {
  EXPECT_EQ(nameOf(STANDARD), "standard");
  EXPECT_EQ(nameOf(Calendar::ProlepticGregorian), "proleptic_gregorian");
  EXPECT_EQ(nameOf(Calendar::Julian), "julian");
  EXPECT_EQ(nameOf(Calendar::NoLeap), "noleap");
  EXPECT_EQ(nameOf(Calendar::Day360), "360_day");
  EXPECT_EQ(nameOf(static_cast<Calendar>(99)), "");
}

RC_GTEST_PROP(TimeUnitsLaw, WholeNumbersGiveTheSameTimeInEveryType, ()) {
  const TimeUnits units = TimeUnits::parse("hours since 1850-06-15 12:00", STANDARD).value();
  const long number = *rc::gen::inRange(-100000000L, 100000000L);
  RC_ASSERT(units.timeOf(static_cast<double>(number)) == units.timeOf(number));
  RC_ASSERT(units.timeOf(number + 24) - units.timeOf(number) == MICROSECONDS_PER_DAY);
}

RC_GTEST_PROP(TimeUnitsLaw, FractionsAreWithinHalfAMicrosecond, ()) {
  const TimeUnits units = TimeUnits::parse("days since 1970-01-01", STANDARD).value();
  constexpr long MOST = 1L << 50U;
  const double number = static_cast<double>(*rc::gen::inRange(-MOST, MOST)) / (1L << 33U);
  const long double exact = static_cast<long double>(number) * MICROSECONDS_PER_DAY;
  RC_ASSERT(std::abs(static_cast<long double>(units.timeOf(number)) - exact) <= 0.501L);
}

}  // namespace
}  // namespace quillon::memory
