#include <gmock/gmock.h>
#include <quillon/memory/TimeText.h>

namespace quillon::memory {
namespace {

constexpr long SECOND = 1'000'000;
constexpr long DAY = 86'400 * SECOND;

struct DayCase {
  const char* rule;
  Calendar calendar;
  long day;  ///< since 1970-01-01
  std::string text;
};
void PrintTo(const DayCase& some, std::ostream* out) { *out << some.rule; }

class DayTextTest : public ::testing::TestWithParam<DayCase> {};

TEST_P(DayTextTest, SaysYearMonthAndDay) {
  const DayCase& some = GetParam();
  EXPECT_EQ(dayText(some.day * DAY, some.calendar), some.text);
  EXPECT_EQ(dayText(some.day * DAY + DAY - 1, some.calendar), some.text);
}

INSTANTIATE_TEST_SUITE_P(
    Calendars, DayTextTest,
    ::testing::ValuesIn(std::vector<DayCase>{
        {"EpochOfStandard", Calendar::Standard, 0, "1970-01-01"},
        {"LeapDayOf2000", Calendar::Standard, 11'016, "2000-02-29"},
        {"NoLeapDayIn1900", Calendar::Standard, -25'508, "1900-03-01"},
        {"DayBefore1900March", Calendar::Standard, -25'509, "1900-02-28"},
        {"FirstGregorianDay", Calendar::Standard, -141'427, "1582-10-15"},
        {"LastJulianDayOfStandard", Calendar::Standard, -141'428, "1582-10-04"},
        {"GregorianBeforeItsTime", Calendar::ProlepticGregorian, -141'428, "1582-10-14"},
        {"YearZeroExists", Calendar::ProlepticGregorian, -719'528, "0000-01-01"},
        {"YearsBeforeZero", Calendar::ProlepticGregorian, -719'529, "-0001-12-31"},
        {"YearsOfFiveDigits", Calendar::ProlepticGregorian, 2'932'897, "10000-01-01"},
        {"EpochOfJulian", Calendar::Julian, 0, "1970-01-01"},
        {"LeapDayOf1900InJulian", Calendar::Julian, -25'509, "1900-02-29"},
        {"YearZeroInJulian", Calendar::Julian, -719'543, "0000-01-01"},
        {"EpochOfNoLeap", Calendar::NoLeap, 0, "1970-01-01"},
        {"NoLeapDayIn1972", Calendar::NoLeap, 365 * 2 + 59, "1972-03-01"},
        {"DayBeforeEpochOfNoLeap", Calendar::NoLeap, -1, "1969-12-31"},
        {"EpochOf360Days", Calendar::Day360, 0, "1970-01-01"},
        {"FebruaryHas30DaysOf360", Calendar::Day360, 59, "1970-02-30"},
        {"DayBeforeEpochOf360Days", Calendar::Day360, -1, "1969-12-30"},
    }),
    [](const auto& row) { return row.param.rule; });

TEST(TimeTextTest, SecondsHaveAsManyDigitsAsTheyTake) {
  EXPECT_EQ(timeText(0, Calendar::Standard), "1970-01-01T00:00:00");
  EXPECT_EQ(timeText(6 * 3600 * SECOND + 250'000, Calendar::Standard), "1970-01-01T06:00:00.25");
  EXPECT_EQ(timeText(-1, Calendar::Standard), "1969-12-31T23:59:59.999999");
}

TEST(TimeTextTest, MissingTimeHasNoText) {
  EXPECT_EQ(timeText(MISSING_TIME, Calendar::Standard), "");
  EXPECT_EQ(dayText(MISSING_TIME, Calendar::Standard), "");
}

TEST(TimeTextTest, MidnightsAreTold) {
  EXPECT_TRUE(isMidnight(-2 * DAY));
  EXPECT_TRUE(isMidnight(MISSING_TIME));
  EXPECT_FALSE(isMidnight(1));
}

}  // namespace
}  // namespace quillon::memory
