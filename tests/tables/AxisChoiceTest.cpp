#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <quillon/tables/Error.h>

#include <cmath>
#include <tuple>

#include "AxisChoice.h"
#include "TestArrays.h"
#include "support/Thrown.h"

namespace quillon::tables {
namespace {

struct CoordinateAxis {
  CoordinateValues coordinates;
  unsigned long size;
};

CoordinateAxis levels() {
  return {valuesOf(memory::DoubleArray("l", {{"l", 4}}, {1000, 500, 250, 100})), 4};
}
CoordinateAxis labels() {
  return {valuesOf(memory::StringArray("c", {{"c", 3}}, {"DAPI", "GFP", "a:b"})), 3};
}
/// Texts that are parts of each other.
CoordinateAxis pieces() {
  return {valuesOf(memory::StringArray("c", {{"c", 4}}, {"a", "a:b", "b", "a:"})), 4};
}
CoordinateAxis smallNumbers() {
  return {valuesOf(memory::DoubleArray("l", {{"l", 3}}, {1e-30, 2e-30, HUGE_VAL})), 3};
}
/// Four times a day from 1970-01-01 on, ten days.
CoordinateAxis days() {
  std::vector<double> hours = countedUp<double>(40);
  for (double& hour : hours) {
    hour *= 6;
  }
  return {valuesOf(Hours("t", {{"t", 40}}, hours)), 40};
}

struct ChoiceCase {
  const char* rule;
  CoordinateAxis axis;
  std::string text;
  unsigned long first;
  unsigned long count;
  bool isSingle;
};
void PrintTo(const ChoiceCase& some, std::ostream* out) { *out << some.rule; }

class ChoiceTest : public ::testing::TestWithParam<ChoiceCase> {};

TEST_P(ChoiceTest, ChoosesPositions) {
  const ChoiceCase& some = GetParam();
  const AxisSelection selection = parseSelection("q=" + some.text);
  EXPECT_EQ(selection.axis, "q");
  const ChosenIndices chosen =
      choose(selection.choice, "q", some.axis.size, &some.axis.coordinates);
  EXPECT_EQ(chosen.first, some.first);
  EXPECT_EQ(chosen.count, some.count);
  EXPECT_EQ(chosen.step, 1U);
  EXPECT_EQ(chosen.isSingle, some.isSingle);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, ChoiceTest,
    ::testing::Values(
        ChoiceCase{"Position", levels(), "3", 3, 1, true},
        ChoiceCase{"TheLast", levels(), "-1", 3, 1, true},
        ChoiceCase{"TheFirstFromTheEnd", levels(), "-4", 0, 1, true},
        ChoiceCase{"RangeWithoutItsEnd", levels(), "0:3", 0, 3, false},
        ChoiceCase{"RangeOfOne", levels(), "2:3", 2, 1, false},
        ChoiceCase{"RangeFromTheEnd", levels(), "-2:", 2, 2, false},
        ChoiceCase{"RangeUpToTheEnd", levels(), ":-1", 0, 3, false},
        ChoiceCase{"RangeOverTheEnd", levels(), "1:100", 1, 3, false},
        ChoiceCase{"Nearest", levels(), "@480", 1, 1, true},
        ChoiceCase{"TheFirstOfTwoAsNear", levels(), "@750", 0, 1, true},
        ChoiceCase{"NearestOfOneDigit", levels(), "@1", 3, 1, true},
        ChoiceCase{"NearestOfSmallNumbers", smallNumbers(), "@2e-30", 1, 1, true},
        ChoiceCase{"NearestToInfinity", levels(), "@inf", 0, 1, true},
        ChoiceCase{"InfinityIsNearestToItself", smallNumbers(), "@inf", 2, 1, true},
        ChoiceCase{"CoordinatesEndIncluded", levels(), "@250:1000", 0, 3, false},
        ChoiceCase{"CoordinatesInTheirOwnOrder", levels(), "@500:100", 1, 3, false},
        ChoiceCase{"Text", labels(), "@GFP", 1, 1, true},
        ChoiceCase{"TextWithAColon", labels(), "@a:b", 2, 1, true},
        ChoiceCase{"TextWithAColonRatherThanARange", pieces(), "@a:b", 1, 1, true},
        ChoiceCase{"RangeOfATextThatEndsWithAColon", pieces(), "@a::b", 2, 2, false},
        ChoiceCase{"RangeOfTexts", labels(), "@GFP:a:b", 1, 2, false},
        ChoiceCase{"RangeOfTextsBackwards", labels(), "@a:b:GFP", 1, 2, false},
        ChoiceCase{"Time", days(), "@1970-01-02T06:00", 5, 1, true},
        ChoiceCase{"NearestTime", days(), "@1970-01-02T07:00:00", 5, 1, true},
        ChoiceCase{"TimesToTheEndOfTheDay", days(), "@1970-01-02:1970-01-03", 4, 8, false},
        ChoiceCase{"TimesToTheEndOfTheMonth", days(), "@1970-01-09:1970-01", 32, 8, false},
        ChoiceCase{"TimesBackwardsToTheEndOfTheDay", days(), "@1970-01-03:1970-01-02", 4, 8, false},
        ChoiceCase{"NearestToTheBeginningOfTheDay", days(), "@1970-01-02", 4, 1, true},
        ChoiceCase{"TimesWithColons", days(), "@1970-01-01T06:00:1970-01-01T18:00:00", 1, 3,
                   false}),
    [](const auto& some) { return some.param.rule; });

struct RefusedCase {
  const char* rule;
  CoordinateAxis axis;
  std::string text;
  std::string sentence;
};
void PrintTo(const RefusedCase& some, std::ostream* out) { *out << some.rule; }

class RefusedChoiceTest : public ::testing::TestWithParam<RefusedCase> {};

TEST_P(RefusedChoiceTest, SaysWhatIsWrong) {
  const RefusedCase& some = GetParam();
  const AxisSelection selection = parseSelection("q=" + some.text);
  try {
    choose(selection.choice, "q", some.axis.size, &some.axis.coordinates);
    FAIL() << "no error";
  } catch (const Error& error) {
    EXPECT_EQ(error.what(), some.sentence);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Rules, RefusedChoiceTest,
    ::testing::Values(
        RefusedCase{"PositionBehindTheEnd", levels(), "4",
                    "The axis 'q' has 4 positions and none of number 4"},
        RefusedCase{"PositionBeforeTheFirst", levels(), "-5",
                    "The axis 'q' has 4 positions and none of number -5"},
        RefusedCase{"EmptyRange", levels(), "2:2",
                    "There is no position of the axis 'q' from 2 to 2, end excluded; it has 4 "
                    "positions"},
        RefusedCase{"RangeBehindTheEnd", levels(), "7:9",
                    "There is no position of the axis 'q' from 7 to 9, end excluded; it has 4 "
                    "positions"},
        RefusedCase{"OpenRangeBehindTheEnd", levels(), "9:",
                    "There is no position of the axis 'q' from 9 to 4, end excluded; it has 4 "
                    "positions"},
        RefusedCase{"RangeToTheFirst", levels(), ":0",
                    "There is no position of the axis 'q' from 0 to 0, end excluded; it has 4 "
                    "positions"},
        RefusedCase{"FromTheLastMomentOfADayToItsEnd", days(),
                    "@1970-01-02T23:59:59.999999:1970-01-02",
                    "No coordinate of the axis 'q' is in the chosen range"},
        RefusedCase{"NoCoordinateInTheRange", levels(), "@110:120",
                    "No coordinate of the axis 'q' is in the chosen range"},
        RefusedCase{"UnknownText", labels(), "@dapi",
                    "The axis 'q' has no coordinate 'dapi'; it has DAPI, GFP, a:b"},
        RefusedCase{"NoNumber", levels(), "@high",
                    "The coordinates of the axis 'q' are numbers, and 'high' is none"},
        RefusedCase{"NumberWithMoreBehindIt", levels(), "@5x",
                    "The coordinates of the axis 'q' are numbers, and '5x' is none"},
        RefusedCase{"NotANumber", levels(), "@nan",
                    "The coordinates of the axis 'q' are numbers, and 'nan' is none"},
        RefusedCase{"NoTime", days(), "@500",
                    "The coordinates of the axis 'q' are times, and '500' is none"}),
    [](const auto& some) { return some.param.rule; });

TEST(ChoiceTest, CoordinatesInNoOrderHaveNoRangeUnlessTheyStandTogether) {
  const CoordinateValues values = valuesOf(memory::DoubleArray("l", {{"l", 4}}, {1, 3, 2, 9}));
  EXPECT_EQ(choose(CoordinateText{"2:3"}, "l", 4, &values).first, 1U);
  EXPECT_EQ(::test::thrownBy<Error>([&] { choose(CoordinateText{"1:2"}, "l", 4, &values); }),
            "The coordinates of the axis 'l' are in no order, so that a range of them is none of "
            "positions");
}

TEST(ChoiceTest, MissingCoordinatesAreNeverNearest) {
  const CoordinateValues values = valuesOf(memory::DoubleArray("l", {{"l", 2}}, {std::nan(""), 7}));
  EXPECT_EQ(choose(Nearest{1.0}, "l", 2, &values).first, 1U);
  const CoordinateValues none = valuesOf(memory::DoubleArray("l", {{"l", 1}}, {std::nan("")}));
  EXPECT_EQ(::test::thrownBy<Error>([&] { choose(Nearest{1.0}, "l", 1, &none); }),
            "The axis 'l' has no coordinate that is not missing");
  const CoordinateValues times = valuesOf(Hours("t", {{"t", 2}}, {std::nan(""), 0}));
  const TimePoint early = {-9'000'000'000'000'000'000};
  EXPECT_EQ(choose(Nearest{early}, "t", 2, &times).first, 1U);
}

TEST(ChoiceTest, AnAxisWithoutCoordinatesIsChosenFromByPosition) {
  EXPECT_EQ(choose(Position{1}, "l", 2, nullptr).first, 1U);
  const Choice byCoordinate[] = {Nearest{1.0}, CoordinateRange{1.0, 2.0}, CoordinateText{"1"},
                                 CoordinateText{"1:2"}};
  for (const Choice& choice : byCoordinate) {
    EXPECT_EQ(::test::thrownBy<Error>([&] { choose(choice, "l", 2, nullptr); }),
              "The axis 'l' has no coordinates; choose by position");
  }
}

TEST(ChoiceTest, LargeIntegersAreToldApart) {
  const long large = 9'007'199'254'740'993;
  const CoordinateValues values = valuesOf(memory::IntArray("l", {{"l", 2}}, {large - 1, large}));
  EXPECT_EQ(choose(CoordinateText{"9007199254740993"}, "l", 2, &values).first, 1U);
  EXPECT_EQ(values.asTexts()[1], "9007199254740993");
  EXPECT_EQ(valuesOf(memory::UIntArray("l", {{"l", 1}}, {18446744073709551615UL})).asTexts()[0],
            "18446744073709551615");
}

TEST(ChoiceTest, ProgramsGiveNumbersTimesAndSteps) {
  const CoordinateAxis some = days();
  EXPECT_EQ(choose(Nearest{TimePoint{86'400'000'000}}, "t", 40, &some.coordinates).first, 4U);
  const ChosenIndices stepped = choose(PositionRange{1, 8, 3}, "t", 40, nullptr);
  EXPECT_EQ(stepped.count, 3U);
  EXPECT_EQ(stepped.step, 3U);
  EXPECT_EQ(::test::thrownBy<Error>([&] {
              choose(PositionRange{0, 3, 0}, "t", 40, nullptr);
            }),
            "The step along the axis 't' must be at least 1, not 0");
  EXPECT_THROW(choose(Nearest{5.0}, "t", 40, &some.coordinates), Error);
}

TEST(ChoiceTest, NumbersAndTimesAreLookedForInTextsAsTheyAreWritten) {
  const CoordinateValues values =
      valuesOf(memory::StringArray("l", {{"l", 2}}, {"1970-01-02T00:00:00", "0.5"}));
  EXPECT_EQ(choose(Nearest{0.5}, "l", 2, &values).first, 1U);
  EXPECT_EQ(choose(Nearest{TimePoint{86'400'000'000}}, "l", 2, &values).first, 0U);
}

TEST(ChoiceTest, ATimeIsNoNumber) {
  const CoordinateAxis some = levels();
  EXPECT_EQ(::test::thrownBy<Error>(
                [&] { choose(Nearest{TimePoint{0}}, "l", some.size, &some.coordinates); }),
            "The coordinates of the axis 'l' are numbers, and '1970-01-01T00:00:00' is none");
  const TimePoint beforeTheReform = {-12'219'292'801'000'000};
  EXPECT_EQ(::test::thrownBy<Error>(
                [&] { choose(Nearest{beforeTheReform}, "l", some.size, &some.coordinates); }),
            "The coordinates of the axis 'l' are numbers, and '1582-10-04T23:59:59' is none");
}

TEST(ChoiceTest, NothingIsNearestToWhatIsNoNumber) {
  const CoordinateAxis some = levels();
  EXPECT_EQ(::test::thrownBy<Error>(
                [&] { choose(Nearest{std::nan("")}, "l", some.size, &some.coordinates); }),
            "The coordinates of the axis 'l' are numbers, and 'nan' is none");
}

TEST(ChoiceTest, TruthValuesAreTexts) {
  const CoordinateValues values = valuesOf(memory::BooleanArray("l", {{"l", 2}}, {false, true}));
  EXPECT_THAT(values.asTexts(), ::testing::ElementsAre("false", "true"));
  EXPECT_EQ(choose(CoordinateText{"true"}, "l", 2, &values).first, 1U);
}

TEST(ChoiceTest, TimesAreOfTheCalendarOfTheirArray) {
  const CoordinateValues values =
      valuesOf(Hours("t", {{"t", 2}}, {0, (2 * 365 + 59) * 24}, memory::Calendar::NoLeap));
  EXPECT_EQ(values.asTexts()[1], "1972-03-01");
  EXPECT_EQ(choose(CoordinateText{"1972-03-01:1972-03-01"}, "t", 2, &values).first, 1U);
}

TEST(SelectionTest, TheFirstEqualsSignEndsTheNameOfTheAxis) {
  const AxisSelection selection = parseSelection("q=@a=b");
  EXPECT_EQ(selection.axis, "q");
  EXPECT_EQ(std::get<CoordinateText>(selection.choice).text, "a=b");
}

TEST(SelectionTest, WhatStandsBehindTheTextIsNotRead) {
  const AxisSelection selection = parseSelection(std::string_view("q=1:23").substr(0, 5));
  const auto& range = std::get<PositionRange>(selection.choice);
  EXPECT_EQ(range.first, 1);
  EXPECT_EQ(range.last, 2);
}

class NoSelectionTest : public ::testing::TestWithParam<std::string> {};

TEST_P(NoSelectionTest, IsRefused) {
  try {
    std::ignore = parseSelection(GetParam());
    FAIL() << "no error";
  } catch (const Error& error) {
    EXPECT_EQ(error.what(),
              "'" + GetParam() +
                  "' selects nothing; write AXIS=3, AXIS=0:3 (positions, end excluded), AXIS=@500 "
                  "or AXIS=@FIRST:LAST (coordinates, end included)");
  }
}

INSTANTIATE_TEST_SUITE_P(Texts, NoSelectionTest,
                         ::testing::Values("", "time", "3", "time=", "=3", "time=x", "time=1:2:3",
                                           "time=@", "time=1:x", "time=x:1", "time=1.5"));

}  // namespace
}  // namespace quillon::tables
