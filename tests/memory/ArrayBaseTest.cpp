#include <gtest/gtest.h>
#include <quillon/memory/ArrayBase.h>
#include <quillon/memory/InvalidCall.h>
#include <quillon/memory/TypedArray.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <limits>
#include <ostream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "support/Thrown.h"
#include "support/Values.h"

namespace quillon::memory {
namespace {

using object_model::ElementType;
using object_model::Tuple;
using object_model::TupleX;
using test::thrownBy;
using Extents = std::vector<unsigned long>;

std::vector<Axis> axesOf(const Extents& extents) {
  std::vector<Axis> axes;
  for (const unsigned long extent : extents) {
    axes.emplace_back("axis", extent);
  }
  return axes;
}

ArrayBase arrayOf(const Extents& extents) {
  return ArrayBase("a", ElementType::Double, axesOf(extents));
}

TEST(ArrayBaseTest, TheShapeIsTheAxesSizes) {
  EXPECT_EQ(test::valuesOf(ArrayBase("a", ElementType::Int, axesOf({4, 3, 2})).size()),
            (Extents{4, 3, 2}));
}

TEST(ArrayBaseTest, TheDescriptorTellsWhatItWasMadeFrom) {
  ArrayBase array("SST", ElementType::Double, {{"x", 2}}, "temperature");
  EXPECT_EQ(array.getName(), "SST");
  EXPECT_EQ(array.getDescription(), "temperature");
  EXPECT_EQ(array.getElementType(), ElementType::Double);
  EXPECT_EQ(array.getInformation()->getAxisInfo(0)->getAxisName(), "x");
  array.setDescription("sea temperature");
  EXPECT_EQ(array.getDescription(), "sea temperature");
}

TEST(ArrayBaseTest, TheUnitIsBothUnitsUntilThePhysicalOneIsSet) {
  ArrayBase array("a", ElementType::Double, {});
  EXPECT_EQ(array.getUnit() + array.getPhysicalUnit(), "");
  array.setUnit("degC");
  EXPECT_EQ(array.getUnit(), "degC");
  EXPECT_EQ(array.getPhysicalUnit(), "degC");
  array.setPhysicalUnit("K");
  EXPECT_EQ(array.getUnit(), "degC");
  EXPECT_EQ(array.getPhysicalUnit(), "K");
}

TEST(ArrayBaseTest, HasNoWritingInterface) {
  ArrayBase array("a", ElementType::Double, {});
  EXPECT_EQ(array.getWritingInterface(), nullptr);
  EXPECT_EQ(std::as_const(array).getWritingInterface(), nullptr);
}

TEST(ArrayBaseTest, StandsInNoContainerAtFirst) {
  ArrayBase array("a", ElementType::Double, {});
  EXPECT_EQ(array.parent(), nullptr);
  EXPECT_EQ(std::as_const(array).parent(), nullptr);
}

struct CountCase {
  const char* rule;
  Extents extents;
  unsigned long count;
};
void PrintTo(const CountCase& row, std::ostream* out) { *out << row.rule; }

class ElementCountTest : public ::testing::TestWithParam<CountCase> {};

TEST_P(ElementCountTest, IsTheProductOfTheExtents) {
  EXPECT_EQ(arrayOf(GetParam().extents).numberOfElements(), GetParam().count);
}

constexpr unsigned long MAX = std::numeric_limits<unsigned long>::max();

INSTANTIATE_TEST_SUITE_P(
    Shapes, ElementCountTest,
    ::testing::Values(CountCase{"NoDimensionsHoldOne", {}, 1}, CountCase{"One", {7}, 7},
                      CountCase{"Five", {2, 3, 4, 5, 6}, 720},
                      CountCase{"AnExtentOfZeroHoldsNone", {3, 0}, 0},
                      CountCase{"AnExtentOfZeroHoldsNoneHoweverLargeTheOthers", {MAX, MAX, 0}, 0},
                      CountCase{"TheLargestCount", {MAX, 1}, MAX},
                      CountCase{
                          "ALargeProduct", {1UL << 32U, (1UL << 32U) - 1}, 0xFFFFFFFF00000000}),
    [](const auto& row) { return row.param.rule; });

TEST(ArrayBaseTest, MoreElementsThan64BitsCountAreRefused) {
  EXPECT_EQ(thrownBy<std::length_error>([] {
              arrayOf({1UL << 32U, 1UL << 32U});
            }),
            "Array 'a' of shape (4294967296;4294967296) has more elements than 64 bits can count");
  EXPECT_EQ(thrownBy<std::length_error>([] {
              arrayOf({MAX, 2});
            }),
            "Array 'a' of shape (18446744073709551615;2) has more elements than 64 bits can count");
}

struct PositionCase {
  const char* rule;
  Extents extents;
  Extents position;
  const char* message;
};
void PrintTo(const PositionCase& row, std::ostream* out) { *out << row.rule; }

class WrongPositionTest : public ::testing::TestWithParam<PositionCase> {};

TEST_P(WrongPositionTest, IsRefusedInOneSentence) {
  const ArrayBase array = arrayOf(GetParam().extents);
  const TupleX position(GetParam().position.data(), GetParam().position.size());
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { array.offsetOf(position); }), GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(
    Positions, WrongPositionTest,
    ::testing::Values(
        PositionCase{
            "TooFewIndices", {2, 3}, {1}, "Array 'a': position (1) is outside the shape (2;3)"},
        PositionCase{"TooManyIndices",
                     {2, 3},
                     {1, 1, 0},
                     "Array 'a': position (1;1;0) is outside the shape (2;3)"},
        PositionCase{"NoIndices", {2}, {}, "Array 'a': position () is outside the shape (2)"},
        PositionCase{
            "AnIndexWithoutDimensions", {}, {0}, "Array 'a': position (0) is outside the shape ()"},
        PositionCase{"TheFirstIndexIsItsExtent",
                     {2, 3},
                     {2, 0},
                     "Array 'a': position (2;0) is outside the shape (2;3)"},
        PositionCase{"TheLastIndexIsItsExtent",
                     {2, 3},
                     {0, 3},
                     "Array 'a': position (0;3) is outside the shape (2;3)"},
        PositionCase{"TheLargestIndex",
                     {2},
                     {MAX},
                     "Array 'a': position (18446744073709551615) is outside the shape (2)"},
        PositionCase{"AnyIndexOfAnEmptyDimension",
                     {0},
                     {0},
                     "Array 'a': position (0) is outside the shape (0)"}),
    [](const auto& row) { return row.param.rule; });

TEST(ArrayBaseTest, TheOnlyPositionWithoutDimensionsIsFirst) {
  EXPECT_EQ(arrayOf({}).offsetOf(Tuple()), 0U);
}

RC_GTEST_PROP(ArrayBasePropertyTest, OffsetsCountThePositionsWithDimensionZeroFastest, ()) {
  const auto dimensions = *rc::gen::inRange<std::size_t>(0, 6);
  const auto extents = *rc::gen::container<Extents>(dimensions, rc::gen::inRange(0UL, 5UL));
  const ArrayBase array = arrayOf(extents);
  // Steps through the shape as an odometer does, its first wheel fastest.
  TupleX position(dimensions);
  unsigned long steps = 0;
  bool done = array.numberOfElements() == 0;
  while (!done) {
    RC_ASSERT(array.offsetOf(position) == steps);
    ++steps;
    std::size_t k = 0;
    while (k < dimensions && ++position[k] == extents[k]) {
      position[k++] = 0;
    }
    done = k == dimensions;
  }
  RC_ASSERT(steps == array.numberOfElements());
}

struct AccessCase {
  const char* accessor;
  void (*call)(const ArrayBase&, const Tuple&);
  const char* asked;
};
void PrintTo(const AccessCase& row, std::ostream* out) { *out << row.accessor; }

class WrongAccessTest : public ::testing::TestWithParam<AccessCase> {};

TEST_P(WrongAccessTest, SaysWhatTheArrayHoldsAndWhatWasAsked) {
  const ArrayBase array("SST", ElementType::Boolean, {});
  EXPECT_EQ(
      thrownBy<InvalidCall>([&] { GetParam().call(array, Tuple()); }),
      std::string("Array 'SST' holds Boolean elements and cannot be read as ") + GetParam().asked);
}

TEST_P(WrongAccessTest, ShowsAnUnknownElementTypeAsItsNumber) {
  const ArrayBase array("odd", static_cast<ElementType>(-3), {});
  EXPECT_EQ(thrownBy<InvalidCall>([&] { GetParam().call(array, Tuple()); }),
            std::string("Array 'odd' holds element type -3 elements and cannot be read as ") +
                GetParam().asked);
}

INSTANTIATE_TEST_SUITE_P(
    Accessors, WrongAccessTest,
    ::testing::Values(
        AccessCase{"Double", [](const ArrayBase& a, const Tuple& i) { a.getValueAsDouble(i); },
                   "Double"},
        AccessCase{"UInt", [](const ArrayBase& a, const Tuple& i) { a.getValueAsUInt(i); }, "UInt"},
        AccessCase{"Int", [](const ArrayBase& a, const Tuple& i) { a.getValueAsInt(i); }, "Int"},
        AccessCase{"String", [](const ArrayBase& a, const Tuple& i) { a.getValueAsString(i); },
                   "String"},
        AccessCase{"Dictionary",
                   [](const ArrayBase& a, const Tuple& i) { a.getValueAsDictionary(i); },
                   "Dictionary"},
        AccessCase{"Boolean", [](const ArrayBase& a, const Tuple& i) { a.getValueAsBoolean(i); },
                   "Boolean"},
        AccessCase{"Complex", [](const ArrayBase& a, const Tuple& i) { a.getValueAsComplex(i); },
                   "Complex"}),
    [](const auto& row) { return row.param.accessor; });

// Coordinates

std::shared_ptr<const DoubleArray> along(const std::string& name, std::vector<double> values) {
  const std::vector<Axis> axes = {{name, values.size()}};
  return std::make_shared<const DoubleArray>(name, axes, std::move(values));
}

TEST(CoordinatesTest, AreKeptForEachDimension) {
  IntArray array("a", {{"x", 2}, {"y", 1}}, {1, 2});
  EXPECT_EQ(array.coordinates(0), nullptr);
  const auto y = along("y", {7});
  array.setCoordinates(1, y);
  EXPECT_EQ(array.coordinates(0), nullptr);
  EXPECT_EQ(array.coordinates(1), y);
  EXPECT_EQ(array.coordinates(2), nullptr);
  const IntArray moved(std::move(array));
  EXPECT_EQ(dynamic_cast<const HasCoordinates&>(moved).coordinates(1), y);
}

TEST(CoordinatesTest, AreTakenAwayByNull) {
  IntArray array("a", {{"x", 2}}, {1, 2});
  array.setCoordinates(0, along("x", {5, 6}));
  array.setCoordinates(0, nullptr);
  EXPECT_EQ(array.coordinates(0), nullptr);
}

TEST(CoordinatesTest, OfAnotherShapeAreRefused) {
  IntArray array("a", {{"x", 2}}, {1, 2});
  const auto x = along("x", {5, 6});
  array.setCoordinates(0, x);
  EXPECT_EQ(thrownBy<std::invalid_argument>([&] { array.setCoordinates(0, along("c", {5})); }),
            "Axis 'x' of array 'a' has 2 points and cannot take the coordinates 'c' of shape (1)");
  const auto two = std::make_shared<const DoubleArray>("c", std::vector<Axis>{{"x", 2}, {"y", 1}},
                                                       std::vector<double>{1, 2});
  EXPECT_EQ(
      thrownBy<std::invalid_argument>([&] { array.setCoordinates(0, two); }),
      "Axis 'x' of array 'a' has 2 points and cannot take the coordinates 'c' of shape (2;1)");
  EXPECT_EQ(array.coordinates(0), x);
}

TEST(CoordinatesTest, OfNoDimensionAreRefused) {
  IntArray array("a", {{"x", 2}}, {1, 2});
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { array.setCoordinates(1, along("y", {5})); }),
            "Array 'a' has 1 axes; there is none for dimension 1");
}

}  // namespace
}  // namespace quillon::memory
