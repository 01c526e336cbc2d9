#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <tuple>

#include "ObjectModel/ComparisonHelper/Samples.h"

namespace quillon::test {
namespace {

using Complex = std::complex<double>;
constexpr auto EXACT = ComparisonType::Exact;
constexpr auto ABSOLUTE = ComparisonType::Absolute;
constexpr auto RELATIVE = ComparisonType::Relative;
constexpr double DENORMAL = 5e-324;
constexpr unsigned long LARGEST_UINT = 18446744073709551615UL;
constexpr long LARGEST_INT = std::numeric_limits<long>::max();
constexpr long SMALLEST_INT = std::numeric_limits<long>::min();

/// Two elements compared under one mode. `values` is empty when they count as the same, or the part
/// of the sentence that shows them.
struct ElementCase {
  const char* rule;
  ComparisonType type;
  double tolerance;
  std::function<Outcome(ComparisonType, double)> compare;
  std::string values;
};

template <class T>
ElementCase element(const char* rule, ComparisonType type, double tolerance, T a, T b,
                    std::string values = "") {
  const auto compare = [a, b](ComparisonType mode, double limit) {
    return compareArrays(list<T>("A", {a}), list<T>("A", {b}), mode, limit);
  };
  return {rule, type, tolerance, compare, std::move(values)};
}

void PrintTo(const ElementCase& c, std::ostream* out) { *out << c.rule; }

class ElementTest : public testing::TestWithParam<ElementCase> {};

TEST_P(ElementTest, IsComparedByTheRule) {
  const ElementCase& c = GetParam();
  EXPECT_EQ(
      c.compare(c.type, c.tolerance),
      c.values.empty()
          ? same()
          : differs("The arrays 'A' have different values at the position (0)': " + c.values));
}

const auto nameOf = [](const auto& c) { return c.param.rule; };

INSTANTIATE_TEST_SUITE_P(
    UInt, ElementTest,
    testing::Values(
        element<unsigned long>("EqualLargest", EXACT, 0, LARGEST_UINT, LARGEST_UINT),
        element<unsigned long>("LargestAndItsNeighbourDifferExactly", EXACT, 0, LARGEST_UINT,
                               LARGEST_UINT - 1,
                               "'18446744073709551615' and '18446744073709551614'."),
        element<unsigned long>("ExactIgnoresTheTolerance", EXACT, 100, 1, 2, "'1' and '2'."),
        element<unsigned long>("AbsoluteDeltaEqualToTheTolerance", ABSOLUTE, 2, 1, 3),
        element<unsigned long>("AbsoluteDeltaAboveTheTolerance", ABSOLUTE, 1.5, 1, 3,
                               "'1' and '3'. The absolute delta is greater than 1.500000"),
        element<unsigned long>("AbsoluteDeltaIsTakenAsDoubles", ABSOLUTE, 0, LARGEST_UINT,
                               LARGEST_UINT - 1),
        element<unsigned long>("AbsoluteDeltaOfDoublesCanFail", ABSOLUTE, -1, LARGEST_UINT,
                               LARGEST_UINT - 1,
                               "'18446744073709551615' and '18446744073709551614'. "
                               "The absolute delta is greater than -1.000000"),
        element<unsigned long>("EqualUnderNegativeTolerance", ABSOLUTE, -1, 7, 7),
        element<unsigned long>("RelativeDividesBySecond", RELATIVE, 0.5, 5, 10),
        element<unsigned long>("RelativeAboveTheTolerance", RELATIVE, 0.75, 10, 5,
                               "'10' and '5'. The relative delta is greater than 0.750000"),
        element<unsigned long>("RelativeDividesByFirstWhenSecondIs0", RELATIVE, 1, 4, 0),
        element<unsigned long>("RelativeByFirstAboveTheTolerance", RELATIVE, 0.5, 4, 0,
                               "'4' and '0'. The relative delta is greater than 0.500000"),
        element<unsigned long>("RelativeReferenceIsNeverNegative", RELATIVE, 0.5, 0, LARGEST_UINT,
                               "'0' and '18446744073709551615'. "
                               "The relative delta is greater than 0.500000"),
        element<unsigned long>("EqualUnderNaNTolerance", RELATIVE, NOT_A_NUMBER, 0, 0)),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Int, ElementTest,
    testing::Values(element<long>("EqualSmallest", EXACT, 0, SMALLEST_INT, SMALLEST_INT),
                    element<long>("ExtremesAreShownInFull", EXACT, 0, SMALLEST_INT, LARGEST_INT,
                                  "'-9223372036854775808' and '9223372036854775807'."),
                    element<long>("AbsoluteDeltaDoesNotOverflow", ABSOLUTE, 1e19, SMALLEST_INT,
                                  LARGEST_INT,
                                  "'-9223372036854775808' and '9223372036854775807'. "
                                  "The absolute delta is greater than 10000000000000000000.000000"),
                    element<long>("AbsoluteDeltaEqualToTheTolerance", ABSOLUTE, 3, 1, -2),
                    element<long>("AbsoluteDeltaAboveTheTolerance", ABSOLUTE, 2, -2, 1,
                                  "'-2' and '1'. The absolute delta is greater than 2.000000"),
                    element<long>("RelativeToANegativeSecondPasses", RELATIVE, 0, 1, -1),
                    element<long>("RelativeToANegativeSecondFailsANegativeTolerance", RELATIVE, -3,
                                  1, -1,
                                  "'1' and '-1'. The relative delta is greater than -3.000000"),
                    element<long>("RelativeToAPositiveSecond", RELATIVE, 1, -1, 1,
                                  "'-1' and '1'. The relative delta is greater than 1.000000"),
                    element<long>("RelativeToANegativeFirstPasses", RELATIVE, 0, -5, 0),
                    element<long>("RelativeToFirst", RELATIVE, 0.5, 5, 0,
                                  "'5' and '0'. The relative delta is greater than 0.500000"),
                    element<long>("NeighboursAbove2To53HaveADeltaOf0", RELATIVE, 0,
                                  9007199254740993, 9007199254740992)),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Double, ElementTest,
    testing::Values(
        element<double>("ZeroEqualsNegativeZero", EXACT, 0, 0.0, -0.0),
        element<double>("NaNDiffersFromItselfExactly", EXACT, 0, NOT_A_NUMBER, NOT_A_NUMBER,
                        "'nan' and 'nan'."),
        element<double>("NaNDiffersFromItselfAbsolutely", ABSOLUTE, INFINITE, NOT_A_NUMBER,
                        NOT_A_NUMBER, "'nan' and 'nan'. The absolute delta is greater than inf"),
        element<double>("NaNDiffersFromItselfRelatively", RELATIVE, INFINITE, NOT_A_NUMBER,
                        NOT_A_NUMBER, "'nan' and 'nan'. The relative delta is greater than inf"),
        element<double>("NaNDiffersFromANumber", RELATIVE, 1, NOT_A_NUMBER, 5,
                        "'nan' and '5.000000'. The relative delta is greater than 1.000000"),
        element<double>("InfinitiesAreEqual", ABSOLUTE, 0, INFINITE, INFINITE),
        element<double>("OppositeInfinitiesDiffer", ABSOLUTE, 1e308, INFINITE, -INFINITE,
                        "'inf' and '-inf'. The absolute delta is greater than " +
                            std::to_string(1e308)),
        element<double>("OppositeInfinitiesPassAnInfiniteTolerance", ABSOLUTE, INFINITE, INFINITE,
                        -INFINITE),
        element<double>("InfinityRelativeToInfinityIsNaN", RELATIVE, INFINITE, -INFINITE, INFINITE,
                        "'-inf' and 'inf'. The relative delta is greater than inf"),
        element<double>("ANumberRelativeToInfinityIsNaN", RELATIVE, INFINITE, 1, INFINITE,
                        "'1.000000' and 'inf'. The relative delta is greater than inf"),
        element<double>("DenormalDiffersFromZeroExactly", EXACT, 0, DENORMAL, 0,
                        "'0.000000' and '0.000000'."),
        element<double>("DenormalPassesItsOwnDelta", ABSOLUTE, DENORMAL, DENORMAL, 0),
        element<double>("AbsoluteDeltaEqualToTheTolerance", ABSOLUTE, 0.5, 1.0, 1.5),
        element<double>("AbsoluteDeltaAboveTheTolerance", ABSOLUTE, 0.5, 1.0, 1.75,
                        "'1.000000' and '1.750000'. The absolute delta is greater than 0.500000"),
        element<double>("EqualUnderNegativeTolerance", ABSOLUTE, -1, 2.5, 2.5),
        element<double>("EqualUnderNaNTolerance", ABSOLUTE, NOT_A_NUMBER, 2.5, 2.5),
        element<double>("DifferentUnderNaNTolerance", ABSOLUTE, NOT_A_NUMBER, 2.5, 2.75,
                        "'2.500000' and '2.750000'. The absolute delta is greater than nan"),
        element<double>("RelativeDeltaBelowTheTolerance", RELATIVE, 0.1, 1.05, 1.0),
        element<double>("RelativeDeltaEqualToTheTolerance", RELATIVE, 0.5, 3, 2),
        element<double>("RelativeDeltaAboveTheTolerance", RELATIVE, 0.1, 1, 2,
                        "'1.000000' and '2.000000'. The relative delta is greater than 0.100000"),
        element<double>("RelativeToANegativeSecondPasses", RELATIVE, 0.1, 1.0, -1.0),
        element<double>("RelativeToANegativeSecondEqualToTheTolerance", RELATIVE, -2, 1.0, -1.0),
        element<double>("RelativeToANegativeSecondFailsANegativeTolerance", RELATIVE, -2.5, 1.0,
                        -1.0,
                        "'1.000000' and '-1.000000'. The relative delta is greater than -2.500000"),
        element<double>("RelativeToANegativeFirstPasses", RELATIVE, 0, -1.0, 0),
        element<double>("RelativeToFirstWhenSecondIsSmall", RELATIVE, 1, 2.0, 0),
        element<double>("SmallNumbersHaveAnUndividedDelta", RELATIVE, 0.1, 0, 1e-12),
        element<double>("SmallNumbersCanDiffer", RELATIVE, 1e-13, 0, 1e-12,
                        "'0.000000' and '0.000000'. The relative delta is greater than 0.000000"),
        element<double>("TheThresholdItselfIsNoReference", RELATIVE, 1e-9, 0, 1e-9),
        element<double>("JustAboveTheThresholdIsAReference", RELATIVE, 1e-9, 0,
                        std::nextafter(1e-9, 1),
                        "'0.000000' and '0.000000'. The relative delta is greater than 0.000000"),
        element<double>("TheThresholdItselfIsNoReferenceInFirst", RELATIVE, 1e-9, 1e-9, 0),
        element<double>("JustAboveTheThresholdIsAReferenceInFirst", RELATIVE, 0.5,
                        std::nextafter(1e-9, 1), 0,
                        "'0.000000' and '0.000000'. The relative delta is greater than 0.500000")),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Complex, ElementTest,
    testing::Values(
        element<Complex>("EqualParts", EXACT, 0, {1, -0.0}, {1, 0.0}),
        element<Complex>("DifferentRealPart", EXACT, 0, {1, 2}, {3, 2},
                         "'(1.000000;2.000000)' and '(3.000000;2.000000)'."),
        element<Complex>("DifferentImaginaryPart", EXACT, 0, {1, 2}, {1, -2.5},
                         "'(1.000000;2.000000)' and '(1.000000;-2.500000)'."),
        element<Complex>("NaNInOnePartDiffersFromItself", ABSOLUTE, 10, {NOT_A_NUMBER, 1},
                         {NOT_A_NUMBER, 1},
                         "'(nan;1.000000)' and '(nan;1.000000)'. "
                         "The absolute delta is greater than 10.000000"),
        element<Complex>("AbsoluteDeltaIsAModulus", ABSOLUTE, 5, {3, 4}, {0, 0}),
        element<Complex>("AbsoluteModulusAboveTheTolerance", ABSOLUTE, 4.5, {3, 4}, {0, 0},
                         "'(3.000000;4.000000)' and '(0.000000;0.000000)'. "
                         "The absolute delta is greater than 4.500000"),
        element<Complex>("EqualUnderNegativeTolerance", RELATIVE, -1, {3, 4}, {3, 4}),
        element<Complex>("RelativeToTheModulusOfSecond", RELATIVE, 1, {0, 0}, {3, 4}),
        element<Complex>("RelativeDeltaIsNeverNegative", RELATIVE, 1, {1, 0}, {-1, 0},
                         "'(1.000000;0.000000)' and '(-1.000000;0.000000)'. "
                         "The relative delta is greater than 1.000000"),
        element<Complex>("RelativeToTheModulusOfFirst", RELATIVE, 0.5, {-3, -4}, {0, 0},
                         "'(-3.000000;-4.000000)' and '(0.000000;0.000000)'. "
                         "The relative delta is greater than 0.500000"),
        element<Complex>("SmallNumbersHaveAnUndividedDelta", RELATIVE, 0.1, {0, 0}, {0, 1e-12}),
        element<Complex>("ModulusDoesNotOverflow", ABSOLUTE, 1.5e300, {1e300, 1e300}, {0, 0})),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    StringAndBoolean, ElementTest,
    testing::Values(element<std::string>("EqualTexts", EXACT, 0, "text", "text"),
                    element<std::string>("DifferentTextsUnderAbsoluteMode", ABSOLUTE, 100, "a", "b",
                                         "'a' and 'b'."),
                    element<std::string>("DifferentTextsUnderRelativeMode", RELATIVE, 100, "a", "",
                                         "'a' and ''."),
                    element<std::string>("TextsOfDifferentLength", EXACT, 0, "a",
                                         std::string("a\0", 2),
                                         "'a' and 'a" + std::string("\0", 1) + "'."),
                    element<bool>("EqualTruths", EXACT, 0, true, true),
                    element<bool>("DifferentTruths", EXACT, 0, true, false, "'1' and '0'."),
                    element<bool>("DifferentTruthsUnderAbsoluteMode", ABSOLUTE, 100, false, true,
                                  "'0' and '1'.")),
    nameOf);

/// Two elements, equal or not, under a mode that does not exist.
struct UnknownModeCase {
  const char* type;
  std::function<Outcome(ComparisonType)> compareEqual;
  std::function<Outcome(ComparisonType)> compareDifferent;
  Outcome equal;
  Outcome different;
};

template <class T>
UnknownModeCase unknownMode(const char* type, T a, T b, Outcome equal, Outcome different) {
  const auto compareAs = [](T x, T y) {
    return [x, y](ComparisonType mode) {
      return compareArrays(list<T>("A", {x}), list<T>("A", {y}), mode, 100);
    };
  };
  return {type, compareAs(a, a), compareAs(a, b), std::move(equal), std::move(different)};
}

void PrintTo(const UnknownModeCase& c, std::ostream* out) { *out << c.type; }

class UnknownModeTest : public testing::TestWithParam<std::tuple<int, UnknownModeCase>> {};

TEST_P(UnknownModeTest, IsRejectedForNumbersAloneEvenWhenTheyAreEqual) {
  const auto mode = static_cast<ComparisonType>(std::get<0>(GetParam()));
  const UnknownModeCase& c = std::get<1>(GetParam());
  EXPECT_EQ(c.compareEqual(mode), c.equal);
  EXPECT_EQ(c.compareDifferent(mode), c.different);
}

INSTANTIATE_TEST_SUITE_P(
    Modes, UnknownModeTest,
    testing::Combine(
        testing::Values(3, 7, -1),
        testing::Values(
            unknownMode<unsigned long>("UInt", 1, 2, rejectedAtLine(372), rejectedAtLine(372)),
            unknownMode<long>("Int", 1, 2, rejectedAtLine(382), rejectedAtLine(382)),
            unknownMode<double>("Double", 1, 2, rejectedAtLine(392), rejectedAtLine(392)),
            unknownMode<Complex>("Complex", 1, 2, rejectedAtLine(402), rejectedAtLine(402)),
            unknownMode<std::string>(
                "String", "a", "b", same(),
                differs("The arrays 'A' have different values at the position (0)': 'a' and 'b'.")),
            unknownMode<bool>("Boolean", true, false, same(),
                              differs("The arrays 'A' have different values at the position (0)': "
                                      "'1' and '0'.")))),
    [](const auto& c) {
      const int mode = std::get<0>(c.param);
      return std::string(std::get<1>(c.param).type) + "UnderMode" + (mode < 0 ? "Minus" : "") +
             std::to_string(std::abs(mode));
    });

TEST(AreSameArrays, NeverExaminesTheModeWithoutElements) {
  const auto mode = static_cast<ComparisonType>(7);
  EXPECT_EQ(compareArrays(list<double>("A", {}), list<double>("A", {}), mode), same());
  EXPECT_EQ(compareArrays(array<long>("A", {3, 0}, {}), array<long>("A", {3, 0}, {}), mode),
            same());
}

TEST(AreSameArrays, RejectsAnElementTypeOutsideTheEnumerationWithoutReading) {
  for (const int type : {7, 8, 1000, -1, std::numeric_limits<int>::min()}) {
    const UnreadableArray a("A", type, {2});
    EXPECT_EQ(compareArrays(a, a), rejectedAtLine(412)) << type;
    EXPECT_EQ(compareArrays(a, a, static_cast<ComparisonType>(7)), rejectedAtLine(412)) << type;
    const UnreadableArray scalar("A", type, {});
    EXPECT_EQ(compareArrays(scalar, scalar), rejectedAtLine(412)) << type;
  }
}

TEST(AreSameArrays, AcceptsAnElementTypeOutsideTheEnumerationWithoutElements) {
  const UnreadableArray a("A", 7, {2, 0});
  EXPECT_EQ(compareArrays(a, a), same());
}

TEST(AreSameArrays, TakesNoShortcutForAnArrayComparedWithItself) {
  const auto a = list<double>("A", {1, NOT_A_NUMBER, 2});
  EXPECT_EQ(compareArrays(a, a),
            differs("The arrays 'A' have different values at the position (1)': 'nan' and 'nan'."));
  EXPECT_EQ(compareArrays(a, a, static_cast<ComparisonType>(-1)), rejectedAtLine(392));
}

TEST(AreSameArrays, ShowsTheValuesOfTheLastDifferenceOfTexts) {
  const std::string longText(1000, 'x');
  EXPECT_EQ(compareArrays(list<std::string>("A", {"a", longText, "c"}),
                          list<std::string>("A", {"b", longText + "y", "c"})),
            differs("The arrays 'A' have different values at the position (1)': '" + longText +
                    "' and '" + longText + "y'."));
}

TEST(AreSameArrays, ShowsTruthsByTheirArraysName) {
  EXPECT_EQ(compareArrays(list<bool>("flags", {true}), list<bool>("flags", {false})),
            differs("The arrays 'flags' have different values at the position (0)': '1' and '0'."));
}

}  // namespace
}  // namespace quillon::test
