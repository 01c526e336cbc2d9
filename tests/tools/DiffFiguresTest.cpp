#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <object_model/BulkValues.h>
#include <quillon/memory/ElementTypes.h>
#include <quillon/memory/TypedArray.h>

#include <algorithm>
#include <complex>
#include <limits>
#include <numeric>
#include <random>
#include <tuple>

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
  EXPECT_THAT(figures.lastVisited, ElementsAre(3));
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

/// Has its values for the accessors only.
template <class Stored>
class PlainArray : public memory::ArrayBase {
 public:
  PlainArray(const std::vector<Axis>& axes, const std::vector<Stored>& values)
      : ArrayBase("x", memory::ElementTraits<memory::ElementOf<Stored>>::TYPE, axes),
        m_values(values) {}

  double getValueAsDouble(const object_model::Tuple& index) const override {
    return static_cast<double>(m_values[offsetOf(index)]);
  }
  long getValueAsInt(const object_model::Tuple& index) const override {
    return static_cast<long>(m_values[offsetOf(index)]);
  }
  unsigned long getValueAsUInt(const object_model::Tuple& index) const override {
    return static_cast<unsigned long>(m_values[offsetOf(index)]);
  }

 protected:
  std::vector<Stored> m_values;
};

/// Gives its values in bulk as well, in chunks of so many of the last dimension's indices.
template <class Stored>
class BulkArray final : public PlainArray<Stored>, public object_model::BulkValues {
 public:
  BulkArray(const std::vector<Axis>& axes, const std::vector<Stored>& values, unsigned long chunk)
      : PlainArray<Stored>(axes, values), m_chunks(axes.size(), 1) {
    m_chunks.back() = chunk;
  }

  object_model::StoredType storedType() const override {
    return memory::StoredTraits<Stored>::TYPE;
  }
  const unsigned long* chunkExtents() const override { return m_chunks.data(); }

  // The blocks that are asked for are runs.
  void readValues(const unsigned long* start, const unsigned long* extent,
                  void* destination) const override {
    ++m_reads;
    unsigned long offset = 0;
    unsigned long count = 1;
    for (unsigned long k = m_chunks.size(); k-- > 0;) {
      offset = offset * this->size()[k] + start[k];
      count *= extent[k];
    }
    std::copy_n(this->m_values.data() + offset, count, static_cast<Stored*>(destination));
  }

  unsigned long reads() const { return m_reads; }

 private:
  std::vector<unsigned long> m_chunks;
  mutable unsigned long m_reads = 0;
};

std::string textOf(const Example& example) {
  return ::testing::PrintToString(example.position) + ::testing::PrintToString(example.values);
}

std::string textOf(const DiffFigures& figures) {
  return ::testing::PrintToString(std::tuple(
      figures.values, figures.differing, figures.visited, figures.lastVisited, figures.nanInOne,
      figures.delta, textOf(figures.example), figures.negativeReferences, figures.smallReferences,
      figures.roundedIntegers, textOf(figures.passed)));
}

/// The figures of the same values in bulk and by the accessors, under all rules.
template <class Stored>
void expectTheSameFiguresInBulk(const std::vector<Axis>& axes, const std::vector<Stored>& a,
                                const std::vector<Stored>& b) {
  const BulkArray<Stored> first(axes, a, 1);
  const BulkArray<Stored> second(axes, b, 2);
  const PlainArray<Stored> plainSecond(axes, b);
  for (const ComparisonRule& rule :
       {ComparisonRule{}, ComparisonRule{ComparisonType::Absolute, 0.5},
        ComparisonRule{ComparisonType::Relative, 0.25}}) {
    const DiffFigures bulk = figuresOf(first, second, rule, ignore);
    const unsigned long reads = first.reads();
    EXPECT_GT(reads, 0);
    EXPECT_EQ(textOf(bulk), textOf(figuresOf(first, plainSecond, rule, ignore)));
    EXPECT_EQ(first.reads(), reads);
  }
}

/// Values that are mostly the same, so that many follow each other between differences.
template <class Stored>
void expectTheSameFiguresInBulk(const std::vector<Stored>& odd) {
  std::mt19937 random(1);  // NOLINT(bugprone-random-generator-seed): the same cases each time
  const auto below = [&random](unsigned long bound) { return random() % bound; };
  const std::vector<Axis> axes = {Axis("a", 7), Axis("b", 11), Axis("c", 5), Axis("d", 2),
                                  Axis("e", 3)};
  for (int round = 0; round < 60; ++round) {
    std::vector<Stored> a(2310);
    std::generate(a.begin(), a.end(), [&] { return odd[below(odd.size())]; });
    std::vector<Stored> b = a;
    for (unsigned long changes = below(2) * below(1500) + below(20); changes > 0; --changes) {
      b[below(b.size())] = odd[below(odd.size())];
    }
    expectTheSameFiguresInBulk(axes, a, b);
  }
}

TEST(DiffFiguresTest, FiguresInBulkAreThoseOfTheAccessors) {
  const double infinity = std::numeric_limits<double>::infinity();
  expectTheSameFiguresInBulk<double>(
      {0, -0.0, 1, 1.2, -1, -1.2, 1e-10, -3e-10, 1e-9, 1e300, NOT_A_NUMBER, infinity, -infinity});
  const float nan = std::numeric_limits<float>::quiet_NaN();
  expectTheSameFiguresInBulk<float>({0, 0.1F, 0.2F, 1, 1.2F, -1, -1.2F, 1e-10F, 1.5F, nan});
  expectTheSameFiguresInBulk<float>({4, 4.2F, 4.5F, 4.75F});
  expectTheSameFiguresInBulk<signed char>({-128, -127, 0, 1, 100, 127});
  expectTheSameFiguresInBulk<long>({0, 1, 1L << 62, (1L << 62) + 1, -(1L << 62)});
  expectTheSameFiguresInBulk<unsigned long>({0, 1, ~0UL, ~0UL - 1});
}

TEST(DiffFiguresTest, BlocksOfTwoArraysNeedNotEndTogether) {
  // A slab of the last dimension is over a mebibyte, so that the chunks decide on the blocks.
  const std::vector<Axis> axes = {Axis("a", 1000), Axis("b", 300), Axis("c", 5)};
  std::vector<float> a(1'500'000, 1);
  std::vector<float> b = a;
  for (std::size_t k = 0; k < a.size(); k += 99'991) {
    b[k] = static_cast<float>(k);
  }
  expectTheSameFiguresInBulk(axes, a, b);
}

TEST(DiffFiguresTest, DictionariesAreNoValues) {
  const memory::DictionaryArray array("x", {Axis("n", 0)}, {});
  EXPECT_THROW(figuresOf(array, array, {}, ignore), Failure);
}

}  // namespace
}  // namespace quillon::tools
