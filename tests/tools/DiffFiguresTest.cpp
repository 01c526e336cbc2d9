#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <quillon/memory/TypedArray.h>

#include <complex>
#include <limits>
#include <numeric>

#include "DiffFigures.h"
#include "Failure.h"

namespace quillon::tools {
namespace {

using memory::Axis;
using memory::TypedArray;
using object_model::helper::ComparisonType;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

void ignore(unsigned long /*positions*/) {}

template <class T>
DiffFigures figuresOfValues(const std::vector<T>& a, const std::vector<T>& b,
                            const ComparisonRule& rule = {}) {
  const TypedArray<T> first("x", {Axis("n", a.size())}, a);
  const TypedArray<T> second("x", {Axis("n", b.size())}, b);
  return figuresOf(first, second, rule, ignore);
}

TEST(DiffFiguresTest, LargestDeltaHasThePositionAndTheValues) {
  const DiffFigures figures = figuresOfValues<double>({1, 2, 3, 4}, {1, 2.5, 7, 4.25});
  EXPECT_EQ(figures.values, 4);
  EXPECT_EQ(figures.differing, 3);
  EXPECT_EQ(figures.visited, 3);
  EXPECT_EQ(figures.delta, "4");
  EXPECT_THAT(figures.example.position, ElementsAre(2));
  EXPECT_EQ(figures.example.values, TextPair("3", "7"));
}

TEST(DiffFiguresTest, FirstOfEqualDeltasIsShown) {
  EXPECT_THAT(figuresOfValues<long>({1, 2, 3}, {1, 4, 5}).example.position, ElementsAre(1));
}

TEST(DiffFiguresTest, RelativeDeltaIsThatOfTheRule) {
  const DiffFigures figures =
      figuresOfValues<double>({100, 2}, {200, 8}, {ComparisonType::Relative, 0.1});
  EXPECT_EQ(figures.delta, "0.75");
  EXPECT_THAT(figures.example.position, ElementsAre(1));
}

TEST(DiffFiguresTest, NaNHasNoDelta) {
  const DiffFigures figures = figuresOfValues<double>({NOT_A_NUMBER, 1, NOT_A_NUMBER, 1},
                                                      {5, NOT_A_NUMBER, NOT_A_NUMBER, 1});
  EXPECT_EQ(figures.differing, 2);
  EXPECT_EQ(figures.nanInOne, 2);
  EXPECT_EQ(figures.delta, "");
  EXPECT_THAT(figures.example.position, ElementsAre(0));
  EXPECT_EQ(figures.example.values, TextPair("nan", "5"));
}

TEST(DiffFiguresTest, DeltaGoesBeforeNaN) {
  const DiffFigures figures = figuresOfValues<double>({NOT_A_NUMBER, 1}, {5, 2});
  EXPECT_EQ(figures.delta, "1");
  EXPECT_THAT(figures.example.position, ElementsAre(1));
}

TEST(DiffFiguresTest, DeltasOfIntegersAreExact) {
  constexpr unsigned long MOST = std::numeric_limits<unsigned long>::max();
  const DiffFigures figures = figuresOfValues<unsigned long>({0, 1, MOST}, {MOST - 1, MOST, MOST});
  EXPECT_EQ(figures.differing, 2);
  EXPECT_EQ(figures.delta, std::to_string(MOST - 1));
  EXPECT_EQ(figuresOfValues<unsigned long>({1, 0}, {MOST, MOST}).delta, std::to_string(MOST));
}

TEST(DiffFiguresTest, TextsAndBooleansHaveNoDelta) {
  const DiffFigures texts = figuresOfValues<std::string>({"a", "b"}, {"a", "c"});
  EXPECT_EQ(texts.differing, 1);
  EXPECT_EQ(texts.delta, "");
  EXPECT_EQ(texts.example.values, TextPair("'b'", "'c'"));
  const DiffFigures booleans = figuresOfValues<bool>({true, true}, {true, false});
  EXPECT_EQ(booleans.example.values, TextPair("true", "false"));
  EXPECT_EQ(booleans.delta, "");
}

TEST(DiffFiguresTest, ComplexNumbersDifferByTheModulus) {
  EXPECT_EQ(figuresOfValues<std::complex<double>>({{0, 0}}, {{3, 4}}).delta, "5");
}

TEST(DiffFiguresTest, ValuesThatPassThroughALoopholeAreCounted) {
  const DiffFigures figures =
      figuresOfValues<double>({1, 1, 1e-20, 3}, {1, -1, 2e-20, 3}, {ComparisonType::Relative, 0.1});
  EXPECT_EQ(figures.differing, 0);
  EXPECT_EQ(figures.negativeReferences, 1);
  EXPECT_EQ(figures.smallReferences, 1);
  EXPECT_THAT(figures.passed.position, ElementsAre(1));
  EXPECT_EQ(figures.passed.values, TextPair("1", "-1"));
}

TEST(DiffFiguresTest, SingleValueHasNoIndices) {
  const DiffFigures figures =
      figuresOf(memory::IntArray("x", {}, {1}), memory::IntArray("x", {}, {2}), {}, ignore);
  EXPECT_EQ(figures.values, 1);
  EXPECT_THAT(figures.example.position, IsEmpty());
}

TEST(DiffFiguresTest, EveryPositionOfManyDimensionsIsLookedAt) {
  const std::vector<Axis> axes(6, Axis("x", 2));
  std::vector<long> values(64);
  std::iota(values.begin(), values.end(), 0);
  const memory::IntArray first("x", axes, values);
  for (std::size_t i = 0; i < values.size(); ++i) {
    std::vector<long> changed = values;
    changed[i] = 100;
    const DiffFigures figures = figuresOf(first, memory::IntArray("x", axes, changed), {}, ignore);
    EXPECT_EQ(figures.values, 64);
    EXPECT_EQ(figures.differing, 1);
    EXPECT_EQ(figures.visited, i < 8 ? 1 : 0);
    EXPECT_EQ(figures.example.position[5], i / 32);
  }
}

TEST(DiffFiguresTest, FourDimensionsAreVisitedWhole) {
  const std::vector<Axis> axes(4, Axis("x", 2));
  const DiffFigures figures =
      figuresOf(memory::IntArray("x", axes, std::vector<long>(16, 1)),
                memory::IntArray("x", axes, std::vector<long>(16, 2)), {}, ignore);
  EXPECT_EQ(figures.visited, 16);
}

TEST(DiffFiguresTest, ArrayWithoutValuesIsTheSame) {
  const std::vector<Axis> axes = {Axis("x", 2), Axis("y", 0)};
  const memory::IntArray array("x", axes, {});
  const DiffFigures figures = figuresOf(array, array, {}, ignore);
  EXPECT_EQ(figures.values, 0);
  EXPECT_EQ(figures.differing, 0);
}

TEST(DiffFiguresTest, EveryPositionIsTold) {
  const std::vector<long> values(10000, 1);
  const memory::IntArray array("x", {Axis("n", values.size())}, values);
  unsigned long told = 0;
  figuresOf(array, array, {}, [&told](unsigned long positions) { told += positions; });
  EXPECT_EQ(told, 10000);
}

TEST(DiffFiguresTest, DictionariesAreNoValues) {
  const memory::DictionaryArray array("x", {Axis("n", 0)}, {});
  EXPECT_THROW(figuresOf(array, array, {}, ignore), Failure);
}

}  // namespace
}  // namespace quillon::tools
