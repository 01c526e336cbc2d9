#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>

#include "ObjectModel/ComparisonHelper/Samples.h"
#include "support/Recording.h"

namespace quillon::test {
namespace {

using object_model::Tuple;
using ::test::CallLog;
using ::test::record;
using testing::ElementsAre;
using testing::IsEmpty;

std::string show(const Tuple& position) {
  std::string text;
  for (unsigned long i = 0; i < position.size(); ++i) {
    text += std::to_string(position[i]);
  }
  return text;
}

/// Notes the positions at which it is read, each as its digits. Its values are all 1.
class ObservedArray : public memory::ArrayBase {
 public:
  explicit ObservedArray(const std::vector<unsigned long>& shape)
      : ArrayBase("A", ElementType::Double, axes(shape)) {}

  double getValueAsDouble(const Tuple& index) const override {
    positions.push_back(show(index));
    return 1;
  }

  mutable std::vector<std::string> positions;
};

std::vector<std::string> visited(const std::vector<unsigned long>& shape) {
  const ObservedArray first(shape);
  const ObservedArray second(shape);
  EXPECT_EQ(compareArrays(first, second), same());
  EXPECT_EQ(first.positions, second.positions);
  return first.positions;
}

TEST(AreSameArrays, VisitsTheEmptyPositionOfAnArrayWithoutDimensions) {
  EXPECT_THAT(visited({}), ElementsAre(""));
}

TEST(AreSameArrays, VisitsEveryPositionWithTheFirstIndexFastest) {
  EXPECT_THAT(visited({3}), ElementsAre("0", "1", "2"));
  EXPECT_THAT(visited({2, 3}), ElementsAre("00", "10", "01", "11", "02", "12"));
  EXPECT_THAT(visited({2, 1, 2}), ElementsAre("000", "100", "001", "101"));
}

TEST(AreSameArrays, VisitsFourDimensionsInFull) {
  EXPECT_THAT(visited({2, 2, 2, 2}),
              ElementsAre("0000", "1000", "0100", "1100", "0010", "1010", "0110", "1110",  //
                          "0001", "1001", "0101", "1101", "0011", "1011", "0111", "1111"));
}

TEST(AreSameArrays, VisitsFiveDimensionsOnlyAtIndices3And4Equal0AndRepeatsThem) {
  EXPECT_THAT(visited({2, 1, 2, 3, 2}), ElementsAre("00000", "10000", "00100", "10100",  //
                                                    "00000", "10000", "00100", "10100",  //
                                                    "00000", "10000", "00100", "10100"));
}

TEST(AreSameArrays, VisitsSixDimensionsLikeFive) {
  EXPECT_THAT(visited({1, 2, 1, 2, 5, 5}), ElementsAre("000000", "010000", "000000", "010000"));
}

TEST(AreSameArrays, VisitsNothingWhenATraversedExtentIs0) {
  for (const auto& shape : std::vector<std::vector<unsigned long>>{
           {0}, {0, 2}, {2, 0}, {2, 2, 0}, {2, 2, 2, 0}, {0, 2, 2, 2}, {2, 2, 2, 0, 2}}) {
    EXPECT_THAT(visited(shape), IsEmpty());
  }
}

TEST(AreSameArrays, VisitsIndex0OfADimensionThatIsNotTraversedEvenWhenItsExtentIs0) {
  EXPECT_THAT(visited({2, 1, 1, 1, 0}), ElementsAre("00000", "10000"));
}

TEST(AreSameArrays, ReadsFirstAndThenSecondAtEveryPosition) {
  CallLog log;
  const auto a = list<double>("A", {1, 2});
  const auto first = record(a, "1", log);
  const auto second = record(a, "2", log);
  EXPECT_EQ(compareArrays(*first->asArray(), *second->asArray()), same());
  EXPECT_THAT(log.calls(),
              ElementsAre("1.info", "1.name", "2.info", "2.name", "1.info", "1.elementType",
                          "2.info", "2.elementType", "1.size", "2.size", "1.double(0)",
                          "2.double(0)", "1.double(1)", "2.double(1)"));
}

TEST(AreSameArrays, NamesTheLastDifferentPosition) {
  EXPECT_EQ(compareArrays(array<long>("A", {2, 3}, {0, 1, 2, 3, 4, 5}),
                          array<long>("A", {2, 3}, {9, 1, 2, 3, 4, 8})),
            differs("The arrays 'A' have different values at the position (1;2)': '5' and '8'."));
}

TEST(AreSameArrays, NamesTheDifferentPositionAmongManyThatAreTheSame) {
  std::vector<unsigned long> values(10000);
  std::iota(values.begin(), values.end(), 0);
  auto others = values;
  others[7654] = 1;
  EXPECT_EQ(
      compareArrays(array<unsigned long>("A", {10, 10, 10, 10}, values),
                    array<unsigned long>("A", {10, 10, 10, 10}, others)),
      differs("The arrays 'A' have different values at the position (4;5;6;7)': '7654' and '1'."));
}

TEST(AreSameArrays, NamesTheEmptyPosition) {
  EXPECT_EQ(compareArrays(array<long>("A", {}, {1}), array<long>("A", {}, {2})),
            differs("The arrays 'A' have different values at the position (empty)': '1' and '2'."));
}

TEST(AreSameArrays, NamesAllIndicesOfAPositionWithFiveDimensions) {
  std::vector<long> values(32);
  auto others = values;
  others[7] = 1;  // (1;1;1;0;0)
  EXPECT_EQ(compareArrays(array<long>("A", {2, 2, 2, 2, 2}, values),
                          array<long>("A", {2, 2, 2, 2, 2}, others)),
            differs("The arrays 'A' have different values at the position (1;1;1;0;0)': "
                    "'0' and '1'."));
}

TEST(AreSameArrays, MissesADifferenceAtIndex3Or4OfFiveDimensions) {
  std::vector<long> values(32);
  auto others = values;
  others[8] = 1;   // (0;0;0;1;0)
  others[16] = 1;  // (0;0;0;0;1)
  EXPECT_EQ(compareArrays(array<long>("A", {2, 2, 2, 2, 2}, values),
                          array<long>("A", {2, 2, 2, 2, 2}, others)),
            same());
}

}  // namespace
}  // namespace quillon::test
