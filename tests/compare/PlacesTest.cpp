#include <gmock/gmock.h>
#include <object_model/InvalidCall.h>

#include "Support.h"
#include "support/BareArray.h"

namespace quillon::compare {
namespace {

using memory::Axis;
using memory::DoubleArray;
using ::testing::ElementsAre;

constexpr long DAY = 86'400'000'000;

std::shared_ptr<const object_model::Array> times(std::vector<long> values) {
  auto array = std::make_shared<RichArray>("time", std::vector<Axis>{{"time", values.size()}},
                                           std::vector<double>(values.size()));
  array->times = std::move(values);
  return array;
}

/// The lines, with coordinates, of arrays that differ in their last value.
std::vector<std::string> linesAt(
    std::vector<Axis> axes, std::vector<std::shared_ptr<const object_model::Array>> coordinates) {
  unsigned long count = 1;
  for (const Axis& axis : axes) {
    count *= axis.size();
  }
  std::vector<double> values(count);
  RichArray first("a", axes, values);
  values.back() = 0.5;
  const DoubleArray second("a", axes, values);
  first.located = std::move(coordinates);
  return lines(compare(first, second), {20, 1});
}

TEST(PlacesTest, CoordinatesAreNumbersTextsAndTimes) {
  const auto heights = std::make_shared<StoredArray<float>>("height", std::vector<unsigned long>{2},
                                                            std::vector<float>{0, 0.1F});
  const auto labels = std::make_shared<memory::StringArray>(
      "label", std::vector<Axis>{{"label", 2}}, std::vector<std::string>{"a", "b\n"});
  EXPECT_THAT(
      linesAt({{"label", 2}, {"height", 2}, {"time", 2}},
              {labels, heights, times({0, 15'187 * DAY})}),
      ElementsAre("/: 1 of 8 values differ; the largest delta is 0.5 at time=1, height=1, "
                  "label=1: 0 and 0.5",
                  "  0.5 at time=1 (2011-08-01), height=1 (0.1), label=1 (b\\n): 0 and 0.5"));
}

TEST(PlacesTest, TimesHaveHoursWhereOneOfThemHas) {
  EXPECT_THAT(linesAt({{"time", 2}}, {times({1, 15'187 * DAY})}).at(1),
              "  0.5 at time=1 (2011-08-01T00:00:00): 0 and 0.5");
}

TEST(PlacesTest, MissingTimesAndUnsuitableCoordinatesAreLeftOut) {
  EXPECT_THAT(linesAt({{"time", 2}}, {times({0, memory::MISSING_TIME})}).at(1),
              "  0.5 at time=1: 0 and 0.5");
  EXPECT_THAT(linesAt({{"time", 2}}, {times({0})}).at(1), "  0.5 at time=1: 0 and 0.5");
  EXPECT_THAT(linesAt({{"time", 2}}, {}).at(1), "  0.5 at time=1: 0 and 0.5");
}

TEST(PlacesTest, CoordinatesThatCannotBeReadAreLeftOut) {
  const auto failing =
      std::make_shared<FailingArray<std::runtime_error>>("x", std::runtime_error("no"));
  EXPECT_THAT(linesAt({{"x", 2}}, {failing}).at(1), "  0.5 at x=1: 0 and 0.5");
}

TEST(PlacesTest, DimensionsWithoutANameAndOfOneNameAreToldApart) {
  EXPECT_THAT(linesAt({{"", 2}, {"x", 1}, {"", 1}, {"x", 1}}, {}).at(0),
              "/: 1 of 2 values differ; the largest delta is 0.5 at x=0, dim_1=0, x (2)=0, "
              "dim_3=1: 0 and 0.5");
}

TEST(PlacesTest, EachDimensionOfOneNameHasANumber) {
  EXPECT_THAT(linesAt({{"x", 2}, {"x", 1}, {"x", 1}}, {}).at(0),
              "/: 1 of 2 values differ; the largest delta is 0.5 at x=0, x (2)=0, x (3)=1: 0 and "
              "0.5");
}

TEST(PlacesTest, CoordinatesOfTheSecondSideServeWhereTheFirstHasNone) {
  const DoubleArray first("a", {{"time", 1}}, {1});
  RichArray second("a", {{"time", 1}}, {2});
  second.located = {times({0})};
  EXPECT_EQ(compare(first, second).rows.at(0).largest.at(0).at.at(0).coordinate,
            Value(std::string("1970-01-01")));
}

TEST(PlacesTest, CoordinatesOfAnotherShapeAreLeftOut) {
  const auto longer =
      std::make_shared<DoubleArray>("x", std::vector<Axis>{{"x", 3}}, std::vector<double>{1, 2, 3});
  EXPECT_THAT(linesAt({{"x", 2}}, {longer}).at(1), "  0.5 at x=1: 0 and 0.5");
  const auto plane = std::make_shared<DoubleArray>("x", std::vector<Axis>{{"x", 2}, {"y", 1}},
                                                   std::vector<double>{1, 2});
  EXPECT_THAT(linesAt({{"x", 2}}, {plane}).at(1), "  0.5 at x=1: 0 and 0.5");
}

TEST(PlacesTest, CoordinatesThatFailInTheirOwnWayAreLeftOut) {
  const auto failing = std::make_shared<FailingArray<object_model::InvalidCall>>(
      "x", object_model::InvalidCall("closed"));
  EXPECT_THAT(linesAt({{"x", 2}}, {failing}).at(1), "  0.5 at x=1: 0 and 0.5");
}

TEST(PlacesTest, CoordinatesMayBeReadByTheirAccessor) {
  const auto numbers = std::make_shared<AccessorArray<long>>("x", std::vector<unsigned long>{2},
                                                             std::vector<long>{7, 8});
  EXPECT_THAT(linesAt({{"x", 2}}, {numbers}).at(1), "  0.5 at x=1 (8): 0 and 0.5");
}

TEST(PlacesTest, ArraysThatOfferNoCoordinatesHavePlaces) {
  const std::string difference =
      "/: 1 of 2 values differ; the largest delta is 0.5 at time=1: 0 and 0.5";
  const ::test::BareArray zeros("a", {{"time", 2}}, {0, 0});
  const ::test::BareArray half("a", {{"time", 2}}, {0, 0.5});
  EXPECT_THAT(lines(compare(zeros, half), {20, 1}),
              ElementsAre(difference, "  0.5 at time=1: 0 and 0.5"));
  RichArray located("a", {{"time", 2}}, {0, 0.5});
  located.located = {times({0, 15'187 * DAY})};
  EXPECT_THAT(lines(compare(zeros, located), {20, 1}),
              ElementsAre(difference, "  0.5 at time=1 (2011-08-01): 0 and 0.5"));
}

/// Times that cannot be read.
class ClosedTimes final : public memory::ArrayBase, public memory::HasTimes {
 public:
  ClosedTimes() : ArrayBase("time", object_model::ElementType::Double, {{"time", 2}}) {}
  memory::Calendar calendar() const override { return memory::Calendar::Standard; }
  void readTimes(const unsigned long* /*start*/, const unsigned long* /*extent*/,
                 long* /*destination*/) const override {
    throw std::runtime_error("closed");
  }
};

TEST(PlacesTest, TimesThatCannotBeReadAreLeftOut) {
  EXPECT_THAT(linesAt({{"time", 2}}, {std::make_shared<ClosedTimes>()}),
              ElementsAre("/: 1 of 2 values differ; the largest delta is 0.5 at time=1: 0 and 0.5",
                          "  0.5 at time=1: 0 and 0.5"));
  RichArray first("a", {{"time", 2}}, {0, 0});
  first.located = {std::make_shared<ClosedTimes>()};
  EXPECT_THAT(lines(compare(first, DoubleArray("a", {{"time", 2}}, {0.5, 0})), {20, 1}).at(1),
              "  0.5 at time=0: 0 and 0.5");
}

TEST(PlacesTest, PairsWithoutADeltaAreNotListedBesideThoseWithOne) {
  Options options;
  options.largest = 2;
  const Report report =
      compare(row<double>("a", {1, 1}), row<double>("a", {NOT_A_NUMBER, 2}), options);
  EXPECT_THAT(lines(report, {20, 2}),
              ElementsAre("/: 2 of 2 values differ, 1 missing in one file alone; the largest delta "
                          "is 1 at x=1: 1 and 2",
                          "  1 at x=1: 1 and 2"));
}

}  // namespace
}  // namespace quillon::compare
