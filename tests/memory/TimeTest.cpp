#include <gtest/gtest.h>
#include <quillon/memory/Time.h>
#include <quillon/memory/TimeUnits.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <limits>
#include <ostream>
#include <tuple>
#include <vector>

namespace quillon::memory {
namespace {

const std::vector<Calendar> CALENDARS = {Calendar::Standard, Calendar::ProlepticGregorian,
                                         Calendar::Julian, Calendar::NoLeap, Calendar::Day360};

auto fieldsOf(const CivilTime& civil) {
  return std::make_tuple(civil.year, civil.month, civil.day, civil.hour, civil.minute, civil.second,
                         civil.microsecond);
}

long midnight(long year, int month, int day, Calendar calendar) {
  return timeOf({year, month, day, 0, 0, 0, 0}, calendar).value();
}

// The slow, obvious version: from day to day.

bool isLeapYear(long year, Calendar calendar) {
  const bool isFourth = year % 4 == 0;
  const bool isGregorian = isFourth && (year % 100 != 0 || year % 400 == 0);
  switch (calendar) {
    case Calendar::Standard:
      return year > 1582 ? isGregorian : isFourth;
    case Calendar::ProlepticGregorian:
      return isGregorian;
    case Calendar::Julian:
      return isFourth;
    default:
      return false;
  }
}

int lengthOf(long year, int month, Calendar calendar) {
  const int lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (calendar == Calendar::Day360) {
    return 30;
  }
  return lengths[month - 1] + (month == 2 && isLeapYear(year, calendar) ? 1 : 0);
}

void stepForward(CivilTime& date, Calendar calendar) {
  ++date.day;
  if (calendar == Calendar::Standard && date.year == 1582 && date.month == 10 && date.day == 5) {
    date.day = 15;
  }
  if (date.day > lengthOf(date.year, date.month, calendar)) {
    date.day = 1;
    ++date.month;
  }
  if (date.month > 12) {
    date.month = 1;
    ++date.year;
  }
}

void stepBack(CivilTime& date, Calendar calendar) {
  --date.day;
  if (calendar == Calendar::Standard && date.year == 1582 && date.month == 10 && date.day == 14) {
    date.day = 4;
  }
  if (date.day == 0) {
    --date.month;
    if (date.month == 0) {
      date.month = 12;
      --date.year;
    }
    date.day = lengthOf(date.year, date.month, calendar);
  }
}

class CalendarTest : public ::testing::TestWithParam<Calendar> {
 protected:
  /// Walks away from 1970 up to a year and counts the days that differ from the slow version.
  template <class Step>
  static long differencesUpTo(long year, long direction, const Step& step) {
    long differences = 0;
    CivilTime date;
    for (long day = 0; date.year != year; day += direction) {
      const long time = day * MICROSECONDS_PER_DAY;
      const bool isSame = fieldsOf(civilTimeOf(time, GetParam())) == fieldsOf(date) &&
                          timeOf(date, GetParam()) == time &&
                          daysInMonth(date.year, date.month, GetParam()) ==
                              lengthOf(date.year, date.month, GetParam());
      differences += isSame ? 0 : 1;
      step(date, GetParam());
    }
    return differences;
  }
};

TEST_P(CalendarTest, EveryDayAfter1970IsTheNextOne) {
  EXPECT_EQ(differencesUpTo(2410, 1, stepForward), 0);
}

TEST_P(CalendarTest, EveryDayBefore1970IsThePreviousOne) {
  EXPECT_EQ(differencesUpTo(-10, -1, stepBack), 0);
}

RC_GTEST_PROP(TimeTest, AnyTimeReadsBack, ()) {
  const Calendar calendar = *rc::gen::elementOf(CALENDARS);
  const long limit = 106751990L * MICROSECONDS_PER_DAY;
  const long time = *rc::gen::arbitrary<long>();
  RC_PRE(time > -limit && time < limit);
  RC_ASSERT(timeOf(civilTimeOf(time, calendar), calendar) == time);
  const auto span = parseTime(timeText(time, calendar, TimeForm::DateAndTime), calendar);
  RC_ASSERT(span.has_value());
  RC_ASSERT(span->first == time);
  RC_ASSERT(span->last >= time);
}

INSTANTIATE_TEST_SUITE_P(All, CalendarTest, ::testing::ValuesIn(CALENDARS),
                         [](const auto& row) { return nameOf(row.param); });

TEST(TimeTest, CenturiesBefore1582HaveALeapDayInTheStandardCalendar) {
  EXPECT_EQ(daysInMonth(1500, 2, Calendar::Standard), 29);
  EXPECT_EQ(daysInMonth(1500, 2, Calendar::Julian), 29);
  EXPECT_EQ(daysInMonth(1500, 2, Calendar::ProlepticGregorian), 28);
  EXPECT_EQ(daysInMonth(1700, 2, Calendar::Standard), 28);
  EXPECT_EQ(daysInMonth(1700, 2, Calendar::Julian), 29);
}

TEST(TimeTest, TheDayBeforeTheGregorianCalendarBeginsIsJulian) {
  const auto dayOf = [](long days) {
    return timeText(days * MICROSECONDS_PER_DAY, Calendar::Standard, TimeForm::Date);
  };
  EXPECT_EQ(dayOf(-141'427), "1582-10-15");
  EXPECT_EQ(dayOf(-141'428), "1582-10-04");
}

TEST(TimeTest, KnownDaysHaveTheirNumbers) {
  EXPECT_EQ(midnight(2000, 1, 1, Calendar::Standard), 946684800000000L);
  EXPECT_EQ(midnight(1582, 10, 15, Calendar::Standard), -141427 * MICROSECONDS_PER_DAY);
  EXPECT_EQ(midnight(1582, 10, 4, Calendar::Standard), -141428 * MICROSECONDS_PER_DAY);
  EXPECT_EQ(midnight(1, 1, 1, Calendar::ProlepticGregorian), -719162 * MICROSECONDS_PER_DAY);
  EXPECT_EQ(midnight(294247, 1, 9, Calendar::ProlepticGregorian), 106751990 * MICROSECONDS_PER_DAY);
  EXPECT_EQ(midnight(-290308, 12, 23, Calendar::ProlepticGregorian),
            -106751990 * MICROSECONDS_PER_DAY);
  EXPECT_EQ(midnight(2011, 1, 1, Calendar::NoLeap), 41 * 365 * MICROSECONDS_PER_DAY);
  EXPECT_EQ(midnight(1971, 2, 30, Calendar::Day360), 419 * MICROSECONDS_PER_DAY);
}

struct NoTime {
  const char* rule;
  CivilTime civil;
  Calendar calendar;
};

void PrintTo(const NoTime& row, std::ostream* out) { *out << row.rule; }

class NoTimeTest : public ::testing::TestWithParam<NoTime> {};

TEST_P(NoTimeTest, IsNone) {
  EXPECT_EQ(timeOf(GetParam().civil, GetParam().calendar), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, NoTimeTest,
    ::testing::Values(
        NoTime{"MonthBefore", {2011, 0, 1, 0, 0, 0, 0}, Calendar::Standard},
        NoTime{"MonthAfter", {2011, 13, 1, 0, 0, 0, 0}, Calendar::Standard},
        NoTime{"DayBefore", {2011, 1, 0, 0, 0, 0, 0}, Calendar::Standard},
        NoTime{"DayAfter", {2011, 2, 29, 0, 0, 0, 0}, Calendar::Standard},
        NoTime{"LeapDay", {2012, 2, 29, 0, 0, 0, 0}, Calendar::NoLeap},
        NoTime{"DayThirtyOne", {2012, 1, 31, 0, 0, 0, 0}, Calendar::Day360},
        NoTime{"SkippedFirst", {1582, 10, 5, 0, 0, 0, 0}, Calendar::Standard},
        NoTime{"SkippedLast", {1582, 10, 14, 0, 0, 0, 0}, Calendar::Standard},
        NoTime{"Hour", {2011, 1, 1, 24, 0, 0, 0}, Calendar::Standard},
        NoTime{"Minute", {2011, 1, 1, 0, 60, 0, 0}, Calendar::Standard},
        NoTime{"Second", {2011, 1, 1, 0, 0, 60, 0}, Calendar::Standard},
        NoTime{"Microsecond", {2011, 1, 1, 0, 0, 0, 1000000}, Calendar::Standard},
        NoTime{"Negative", {2011, 1, 1, -1, 0, 0, 0}, Calendar::Standard},
        NoTime{"DayBehindTheLast", {294247, 1, 10, 0, 0, 0, 0}, Calendar::ProlepticGregorian},
        NoTime{"DayBeforeTheFirst", {-290308, 12, 22, 0, 0, 0, 0}, Calendar::ProlepticGregorian},
        NoTime{"FarYear", {295000, 1, 1, 0, 0, 0, 0}, Calendar::Standard},
        NoTime{"AbsurdYear",
               {std::numeric_limits<long>::max(), 1, 1, 0, 0, 0, 0},
               Calendar::Standard}),
    [](const auto& row) { return row.param.rule; });

// Texts

struct TextCase {
  const char* rule;
  CivilTime civil;
  const char* text;
};

void PrintTo(const TextCase& row, std::ostream* out) { *out << row.rule; }

class TimeTextTest : public ::testing::TestWithParam<TextCase> {};

TEST_P(TimeTextTest, IsIso8601) {
  const long time = timeOf(GetParam().civil, Calendar::ProlepticGregorian).value();
  EXPECT_EQ(timeText(time, Calendar::ProlepticGregorian, TimeForm::DateAndTime), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, TimeTextTest,
    ::testing::Values(
        TextCase{"WholeSeconds", {2011, 8, 1, 6, 5, 4, 0}, "2011-08-01T06:05:04"},
        TextCase{"Quarter", {2011, 8, 1, 6, 0, 0, 250000}, "2011-08-01T06:00:00.25"},
        TextCase{"Microsecond", {2011, 8, 1, 6, 0, 0, 1}, "2011-08-01T06:00:00.000001"},
        TextCase{"Midnight", {2011, 8, 1, 0, 0, 0, 0}, "2011-08-01T00:00:00"},
        TextCase{"Before1970", {1969, 12, 31, 23, 59, 59, 999999}, "1969-12-31T23:59:59.999999"},
        TextCase{"EarlyYear", {33, 1, 2, 0, 0, 0, 0}, "0033-01-02T00:00:00"},
        TextCase{"YearZero", {0, 2, 29, 0, 0, 0, 0}, "0000-02-29T00:00:00"},
        TextCase{"YearBefore", {-1, 1, 1, 0, 0, 0, 0}, "-0001-01-01T00:00:00"},
        TextCase{"LastPlainYear", {9999, 1, 1, 0, 0, 0, 0}, "9999-01-01T00:00:00"},
        TextCase{"FirstYearWithASign", {10000, 1, 1, 0, 0, 0, 0}, "+10000-01-01T00:00:00"},
        TextCase{"LateYear", {12345, 1, 1, 0, 0, 0, 0}, "+12345-01-01T00:00:00"}),
    [](const auto& row) { return row.param.rule; });

TEST(TimeTextTest, ADateHasNoTime) {
  EXPECT_EQ(timeText(midnight(2011, 8, 1, Calendar::NoLeap), Calendar::NoLeap, TimeForm::Date),
            "2011-08-01");
}

TEST(TimeTextTest, AMissingTimeIsEmpty) {
  EXPECT_EQ(timeText(MISSING_TIME, Calendar::Standard, TimeForm::Date), "");
  EXPECT_EQ(timeText(MISSING_TIME, Calendar::Standard, TimeForm::DateAndTime), "");
}

TEST(TimeFormTest, IsTheDateWhereAllAreMidnights) {
  const std::vector<long> times = {0, -3 * MICROSECONDS_PER_DAY, MISSING_TIME,
                                   MICROSECONDS_PER_DAY + 1};
  EXPECT_EQ(timeFormOf(times.data(), 3), TimeForm::Date);
  EXPECT_EQ(timeFormOf(times.data(), 4), TimeForm::DateAndTime);
  EXPECT_EQ(timeFormOf(times.data(), 0), TimeForm::Date);
}

// Parsing

struct SpanCase {
  const char* rule;
  const char* text;
  CivilTime first;
  CivilTime last;
};

void PrintTo(const SpanCase& row, std::ostream* out) { *out << row.rule; }

class ParseTimeTest : public ::testing::TestWithParam<SpanCase> {};

TEST_P(ParseTimeTest, SpansWhatTheTextLeavesOpen) {
  const std::optional<TimeSpan> span = parseTime(GetParam().text, Calendar::Standard);
  ASSERT_TRUE(span.has_value());
  EXPECT_EQ(fieldsOf(civilTimeOf(span->first, Calendar::Standard)), fieldsOf(GetParam().first));
  EXPECT_EQ(fieldsOf(civilTimeOf(span->last, Calendar::Standard)), fieldsOf(GetParam().last));
}

INSTANTIATE_TEST_SUITE_P(
    Rules, ParseTimeTest,
    ::testing::Values(
        SpanCase{"Year", "2011", {2011, 1, 1, 0, 0, 0, 0}, {2011, 12, 31, 23, 59, 59, 999999}},
        SpanCase{"Month", "2012-02", {2012, 2, 1, 0, 0, 0, 0}, {2012, 2, 29, 23, 59, 59, 999999}},
        SpanCase{"Day", "2011-08-01", {2011, 8, 1, 0, 0, 0, 0}, {2011, 8, 1, 23, 59, 59, 999999}},
        SpanCase{
            "Hour", "2011-08-01T06", {2011, 8, 1, 6, 0, 0, 0}, {2011, 8, 1, 6, 59, 59, 999999}},
        SpanCase{"Minute",
                 "2011-08-01T06:30",
                 {2011, 8, 1, 6, 30, 0, 0},
                 {2011, 8, 1, 6, 30, 59, 999999}},
        SpanCase{"Second",
                 "2011-08-01T06:30:15",
                 {2011, 8, 1, 6, 30, 15, 0},
                 {2011, 8, 1, 6, 30, 15, 999999}},
        SpanCase{"Blank",
                 "2011-08-01 06:30:15",
                 {2011, 8, 1, 6, 30, 15, 0},
                 {2011, 8, 1, 6, 30, 15, 999999}},
        SpanCase{"Tenth",
                 "2011-08-01T06:30:15.2",
                 {2011, 8, 1, 6, 30, 15, 200000},
                 {2011, 8, 1, 6, 30, 15, 299999}},
        SpanCase{"Microsecond",
                 "2011-08-01T06:30:15.000002",
                 {2011, 8, 1, 6, 30, 15, 2},
                 {2011, 8, 1, 6, 30, 15, 2}},
        SpanCase{"Nanosecond",
                 "2011-08-01T06:30:15.000002000",
                 {2011, 8, 1, 6, 30, 15, 2},
                 {2011, 8, 1, 6, 30, 15, 2}},
        SpanCase{"NegativeYear",
                 "-0044-03-15",
                 {-44, 3, 15, 0, 0, 0, 0},
                 {-44, 3, 15, 23, 59, 59, 999999}},
        SpanCase{
            "SignedYear", "+12345", {12345, 1, 1, 0, 0, 0, 0}, {12345, 12, 31, 23, 59, 59, 999999}},
        SpanCase{"SignedYearOfSixDigits",
                 "+294246",
                 {294246, 1, 1, 0, 0, 0, 0},
                 {294246, 12, 31, 23, 59, 59, 999999}},
        SpanCase{"MonthOfTheGap",
                 "1582-10",
                 {1582, 10, 1, 0, 0, 0, 0},
                 {1582, 10, 31, 23, 59, 59, 999999}}),
    [](const auto& row) { return row.param.rule; });

class NoTimeTextTest : public ::testing::TestWithParam<const char*> {};

TEST_P(NoTimeTextTest, IsRefused) { EXPECT_FALSE(parseTime(GetParam(), Calendar::Standard)); }

INSTANTIATE_TEST_SUITE_P(Texts, NoTimeTextTest,
                         ::testing::Values("", "-", "noon", "201", "20111", "2011-", "2011-8",
                                           "2011-011", "2011-13", "2011-00", "2011-02-29",
                                           "2011-02-00", "2011-08-01T", "2011-08-01x06",
                                           "2011-08-01T24", "2011-08-01T06:60",
                                           "2011-08-01T06:00:60", "2011-08-01T06:00:00.",
                                           "2011-08-01T06:00:00.0000001", "2011-08-01T06:00:00Z",
                                           "2011/08", " 2011", "2011 ", "1582-10-10", "+294247",
                                           "+999999", "+1234567", "+0294246"));

TEST(ParseTimeTest, TheLastDayDependsOnTheCalendar) {
  const auto lastDay = [](const char* text, Calendar calendar) {
    return civilTimeOf(parseTime(text, calendar)->last, calendar).day;
  };
  EXPECT_EQ(lastDay("2012-02", Calendar::NoLeap), 28);
  EXPECT_EQ(lastDay("2012-02", Calendar::Day360), 30);
  EXPECT_EQ(lastDay("2012", Calendar::Day360), 30);
  EXPECT_EQ(lastDay("1900-02", Calendar::Julian), 29);
  EXPECT_EQ(lastDay("1900-02", Calendar::Standard), 28);
}

}  // namespace
}  // namespace quillon::memory
