#include <gmock/gmock.h>
#include <rapidcheck/gtest.h>

#include <numeric>
#include <tuple>

#include "Support.h"
#include "support/Properties.h"
#include "support/Thrown.h"

namespace quillon::compare {
namespace {

using memory::DoubleArray;

using Extents = std::vector<unsigned long>;

constexpr unsigned long VALUES = 24;

/// The figures of the part of two rows from `first` to `last`, the latter excluded.
Figures figuresOfPart(const std::vector<double>& a, const std::vector<double>& b,
                      unsigned long first, unsigned long last, const Options& options) {
  const auto part = [&](const std::vector<double>& values) {
    return row<double>(
        "a", {values.begin() + static_cast<long>(first), values.begin() + static_cast<long>(last)});
  };
  return figures(part(a), part(b), options, {first}, {a.size()});
}

bool areEqual(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

void requireSame(const Figures& a, const Figures& b) {
  RC_ASSERT(a.values == b.values);
  RC_ASSERT(a.count == b.count);
  RC_ASSERT(a.missing == b.missing);
  RC_ASSERT(a.deltas == b.deltas);
  RC_ASSERT(areEqual(a.largestRelative, b.largestRelative));
  RC_ASSERT((areEqual(a.mean(), b.mean()) || std::abs(a.mean() - b.mean()) <= 1e-15 * a.mean()));
  RC_ASSERT(a.kept == b.kept);
  RC_ASSERT(a.largest.size() == b.largest.size());
  for (std::size_t k = 0; k < a.largest.size(); ++k) {
    RC_ASSERT(a.largest[k].offset == b.largest[k].offset);
    RC_ASSERT(areEqual(a.largest[k].delta, b.largest[k].delta));
  }
}

std::vector<double> anyValues() {
  return *rc::gen::container<std::vector<double>>(
      VALUES, rc::gen::elementOf(std::vector<double>{0, 1, 1, 2, 1e-9, 1e17, NOT_A_NUMBER, INFINITE,
                                                     -INFINITE, 0.1}));
}

TEST(FiguresTest, APairStandsFirstAndWithoutADeltaUnlessToldOtherwise) {
  EXPECT_EQ(Pair().offset, 0U);
  EXPECT_EQ(Pair().delta, 0.0);
}

TEST(FiguresTest, BlocksOfLargeArraysAreReadWhereTheyLie) {
  using Wide = std::complex<double>;  // of which few fill a block
  Options options;
  options.largest = 2;
  // More than a block has, of lines that are in one and of lines that are not.
  for (const Extents& shape : {Extents{301, 301}, Extents{75'001, 2}}) {
    std::vector<Wide> values(productOf(shape));
    for (std::size_t k = 0; k < values.size(); ++k) {
      values[k] = static_cast<double>(k);
    }
    std::vector<Wide> others = values;
    others[values.size() / 2] += 1;
    others.back() += 2;
    for (const Way way : {Way::InPlace, Way::InBlocks}) {
      const StoredArray<Wide> second("b", shape, others, way);
      for (const Way firstWay : {Way::InPlace, Way::Transposed, Way::InBlocks}) {
        const Figures found = figures(StoredArray<Wide>("a", shape, values, firstWay), second,
                                      options, Extents(shape.size(), 0), shape);
        EXPECT_EQ(found.count, 2);
        ASSERT_EQ(found.largest.size(), 2U);
        EXPECT_EQ(found.largest[0].offset, values.size() - 1);
        EXPECT_EQ(found.largest[0].delta, 2);
        EXPECT_EQ(found.largest[1].offset, values.size() / 2);
      }
    }
  }
}

RC_GTEST_PROP(FiguresProperty, AnySplitMergesInAnyOrderToTheFiguresOfAll, ()) {
  const std::vector<double> a = anyValues();
  const std::vector<double> b = anyValues();
  Options options;
  options.largest = ::test::pick<unsigned long>(5);
  std::vector<Figures> parts = {Figures()};
  for (unsigned long first = 0; first < VALUES;) {
    const auto last = *rc::gen::inRange(first, VALUES) + 1;
    parts.push_back(figuresOfPart(a, b, first, last, options));
    first = last;
  }
  // Two neighbours in a random order of parts become one until one is left.
  while (parts.size() > 1) {
    const auto k = *rc::gen::inRange<std::size_t>(0, parts.size());
    std::swap(parts[k], parts.back());
    const auto n = *rc::gen::inRange<std::size_t>(0, parts.size() - 1);
    parts[n] = merge(parts[n], parts.back());
    parts.pop_back();
  }
  requireSame(parts[0], figuresOfPart(a, b, 0, VALUES, options));
}

RC_GTEST_PROP(FiguresProperty, MergeIsAssociativeAndCommutative, ()) {
  const std::vector<double> a = anyValues();
  const std::vector<double> b = anyValues();
  const auto part = [&](unsigned long first, unsigned long last) {
    Options options;
    options.largest = ::test::pick<unsigned long>(4);
    return figuresOfPart(a, b, first, last, options);
  };
  const Figures x = part(0, 8);
  const Figures y = part(8, 16);
  const Figures z = part(16, VALUES);
  requireSame(merge(x, y), merge(y, x));
  requireSame(merge(merge(x, y), z), merge(x, merge(y, z)));
  requireSame(merge(Figures(), x), x);
}

TEST(FiguresTest, OfNoValuesAreNeutral) {
  const Figures none;
  EXPECT_EQ(none.values, 0);
  EXPECT_TRUE(std::isnan(none.mean()));
  EXPECT_TRUE(std::isnan(none.largestRelative));
}

TEST(FiguresTest, MeanIsExactWhereAPlainSumWouldNotBe) {
  std::vector<double> zeros(1000, 0);
  std::vector<double> values(1000, 1e-3);
  values[0] = 1e15;
  const Figures found = figures(row<double>("a", zeros), row<double>("a", values), {});
  EXPECT_DOUBLE_EQ(found.mean(), 1e12 + 999e-6);
}

TEST(FiguresTest, RestIsWhatTheRoundingOfTheSumLeftOut) {
  const auto ofDeltas = [](const std::vector<double>& deltas) {
    return figures(row<double>("a", std::vector<double>(deltas.size())), row<double>("b", deltas),
                   {});
  };
  const Figures two = ofDeltas({1e16, 1});
  EXPECT_EQ(two.sum, 1e16);
  EXPECT_EQ(two.rest, 1);
  const Figures three = ofDeltas({1e16, 1, 1e16});
  EXPECT_EQ(three.sum, 2e16);
  EXPECT_EQ(three.rest, 1);
  const Figures merged = merge(two, two);
  EXPECT_EQ(merged.sum, 2e16);
  EXPECT_EQ(merged.rest, 2);
  const Figures infinite = figures(row<double>("a", {INFINITE, 0}), row<double>("b", {0, 1}), {});
  EXPECT_EQ(infinite.sum, INFINITE);
  EXPECT_EQ(infinite.rest, 0);
}

TEST(FiguresTest, MergedOnesHaveNoMorePairsThanThereAre) {
  Options options;
  options.largest = 5;
  const Figures left = figures(row<double>("a", {1}), row<double>("b", {2}), options, {0}, {2});
  const Figures right = figures(row<double>("a", {1}), row<double>("b", {4}), options, {1}, {2});
  const Figures merged = merge(left, right);
  EXPECT_EQ(merged.kept, 5);
  ASSERT_EQ(merged.largest.size(), 2);
  EXPECT_EQ(merged.largest[0].offset, 1);
  EXPECT_EQ(merged.largest[1].offset, 0);
}

TEST(FiguresTest, PairsOfEqualDeltasGoByTheirPlaceButIntegersByTheirDistance) {
  constexpr long FAR = std::numeric_limits<long>::max();
  const Pair numbers{1, 1, 1.0, 2.0};
  const Pair mixed{1, 1, 1L, 2.0};
  const Pair mixedUnsigned{1, 1, 1UL, 2.0};
  EXPECT_FALSE(isBefore(numbers, numbers));
  for (const Pair& a : {numbers, mixed, mixedUnsigned}) {
    for (Pair b : {numbers, mixed, mixedUnsigned}) {
      b.offset = 2;
      EXPECT_TRUE(isBefore(a, b));
      EXPECT_FALSE(isBefore(b, a));
    }
  }
  const Pair near{1, 9223372036854775808.0, 1L, FAR};
  const Pair far{2, 9223372036854775808.0, 0L, FAR};
  EXPECT_TRUE(isBefore(far, near));
  EXPECT_FALSE(isBefore(near, far));
}

TEST(FiguresTest, OffsetsAreThoseOfTheWholeGrid) {
  const DoubleArray a("a", {{"x", 2}, {"y", 2}}, {0, 0, 0, 0});
  const DoubleArray b("b", {{"x", 2}, {"y", 2}}, {0, 1, 0, 2});
  Options options;
  options.largest = 2;
  const Figures found = figures(a, b, options, {3, 1}, {10, 5});
  ASSERT_EQ(found.largest.size(), 2);
  EXPECT_EQ(found.largest[0].offset, 4 + 2 * 10);
  EXPECT_EQ(found.largest[1].offset, 4 + 1 * 10);
  EXPECT_EQ(found.values, 4);
}

TEST(FiguresTest, OffsetsOfABlockOfOneIndexAreThoseOfTheGrid) {
  const DoubleArray a("a", {{"x", 1}, {"y", 3}}, {0, 0, 0});
  const DoubleArray b("b", {{"x", 1}, {"y", 3}}, {0, 1, 2});
  EXPECT_EQ(figures(a, b, {}, {3, 1}, {10, 5}).largest.at(0).offset, 3 + 3 * 10);
  const memory::StringArray s("a", {{"x", 1}, {"y", 3}}, {"", "", ""});
  const memory::StringArray t("b", {{"x", 1}, {"y", 3}}, {"", "", "t"});
  EXPECT_EQ(figures(s, t, {}, {3, 1}, {10, 5}).largest.at(0).offset, 3 + 3 * 10);
}

TEST(FiguresTest, BlocksMustFitEachOtherAndTheGrid) {
  const DoubleArray a = row<double>("a", {1, 2});
  const auto sentence = [](const object_model::Array& first, const object_model::Array& second,
                           const std::vector<unsigned long>& start,
                           const std::vector<unsigned long>& shape) {
    return test::thrownBy<std::invalid_argument>(
        [&] { return figures(first, second, {}, start, shape); });
  };
  EXPECT_EQ(sentence(a, row<double>("a", {1}), {}, {}),
            "Blocks of different shapes have no figures");
  EXPECT_EQ(sentence(a, row<std::string>("a", {"1", "2"}), {}, {}),
            "Values of Double and String have no figures");
  EXPECT_EQ(sentence(a, a, {1}, {}),
            "Start and shape of the grid need 1 numbers, one for each dimension");
  EXPECT_EQ(sentence(a, a, {1}, {2}),
            "The block from 1 on, of 2, does not lie in dimension 0 of the grid, of 2");
  EXPECT_EQ(sentence(a, a, {3}, {2}),
            "The block from 3 on, of 2, does not lie in dimension 0 of the grid, of 2");
  const DoubleArray square("a", {{"x", 2}, {"y", 2}}, {1, 2, 3, 4});
  EXPECT_EQ(sentence(square, square, {0, 1}, {2, 2}),
            "The block from 1 on, of 2, does not lie in dimension 1 of the grid, of 2");
  const DoubleArray empty = row<double>("a", {});
  EXPECT_EQ(figures(empty, empty, {}, {2}, {2}).values, 0);
  for (const auto& [start, shape] :
       {std::pair(Extents{}, Extents{2}), std::pair(Extents{0}, Extents{}),
        std::pair(Extents{0}, Extents{2, 2}), std::pair(Extents{0, 0}, Extents{2})}) {
    EXPECT_EQ(sentence(a, a, start, shape),
              "Start and shape of the grid need 1 numbers, one for each dimension");
  }
  EXPECT_THROW(std::ignore = figures(a, a, within(-1)), std::invalid_argument);
}

TEST(FiguresTest, RowOfMergedFiguresIsThatOfOneComparison) {
  const DoubleArray a = row<double>("a", {1, 2, 3, 4});
  const DoubleArray b = row<double>("b", {1, 5, 3, 9});
  const Figures left = figures(row<double>("a", {1, 2}), row<double>("b", {1, 5}), {}, {0}, {4});
  const Figures right = figures(row<double>("a", {3, 4}), row<double>("b", {3, 9}), {}, {2}, {4});
  Report report = compare(a, b);
  Report merged = report;
  merged.rows = {differenceOf("/", merge(right, left), a)};
  EXPECT_EQ(toJson(merged, "", ""), toJson(report, "", ""));
}

TEST(FiguresTest, ProgressCountsTheValues) {
  unsigned long done = 0;
  Options options;
  options.progress = [&](unsigned long values) { done += values; };
  const DoubleArray a = row<double>("a", {1, 2, 3});
  EXPECT_EQ(figures(a, a, options).values, 3);
  EXPECT_EQ(done, 3);
}

}  // namespace
}  // namespace quillon::compare
