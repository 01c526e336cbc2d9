#include <gmock/gmock.h>
#include <quillon/memory/Facets.h>
#include <quillon/memory/TimeArray.h>
#include <rapidcheck/gtest.h>

#include <set>

#include "BoxComparison.h"
#include "Oracle.h"
#include "support/Properties.h"

namespace quillon::compare {
namespace {

using memory::DoubleArray;
using ::testing::ElementsAre;

constexpr long LONG_MIN_VALUE = std::numeric_limits<long>::min();
constexpr long LONG_MAX_VALUE = std::numeric_limits<long>::max();
constexpr unsigned long UINT_MAX_VALUE = std::numeric_limits<unsigned long>::max();

template <class T>
unsigned long differing(T a, T b, const Options& options = {}) {
  const memory::TypedArray<T> first = row<T>("a", {a});
  const memory::TypedArray<T> second = row<T>("a", {b});
  const Report report = compare(first, second, options);
  return report.rows.empty() ? 0 : report.rows[0].count;
}

template <class T>
double deltaOf(T a, T b) {
  return compare(row<T>("a", {a}), row<T>("a", {b})).rows.at(0).largest.at(0).delta;
}

TEST(ValuesComparisonTest, BothTolerancesAddUp) {
  EXPECT_EQ(differing(11.0, 10.0, within(0.5, 0.05)), 0);
  EXPECT_EQ(differing(11.1, 10.0, within(0.5, 0.05)), 1);
}

TEST(ValuesComparisonTest, RelativeToleranceIsOfTheSecondsMagnitude) {
  EXPECT_EQ(differing(-11.0, -10.0, within(0, 0.1)), 0);
  EXPECT_EQ(differing(10.0, 11.0, within(0, 0.0999)), 0);
  EXPECT_EQ(differing(11.0, 10.0, within(0, 0.0999)), 1);
  EXPECT_EQ(differing(25.0, -40.0, within(0, 0.01)), 1);
}

TEST(ValuesComparisonTest, InfinitiesAreTheSameOnlyAsThemselves) {
  EXPECT_EQ(differing(INFINITE, INFINITE), 0);
  EXPECT_EQ(differing(INFINITE, -INFINITE, within(INFINITE)), 1);
  EXPECT_EQ(differing(1.0, INFINITE, within(0, 1)), 1);
  EXPECT_EQ(differing(INFINITE, 1.0, within(INFINITE)), 1);
  EXPECT_EQ(differing(1.0, 1e300, within(INFINITE)), 0);
}

TEST(ValuesComparisonTest, InfiniteRelativeToleranceIsNoneForZeros) {
  const Options relative = within(0, INFINITE);
  EXPECT_EQ(differing(1L, 0L, relative), 1);
  EXPECT_EQ(differing(1.0, 0.0, relative), 1);
  EXPECT_EQ(differing(0L, 1L, relative), 0);
  EXPECT_EQ(differing(0.0, 1.0, relative), 0);
}

TEST(ValuesComparisonTest, MissingValuesAreTheSameUnlessTheyDiffer) {
  EXPECT_EQ(differing(NOT_A_NUMBER, NOT_A_NUMBER), 0);
  EXPECT_EQ(differing(NOT_A_NUMBER, 1.0, within(INFINITE)), 1);
  Options options;
  options.nanEqual = false;
  const DoubleArray nan = row<double>("a", {NOT_A_NUMBER});
  const Report report = compare(nan, nan, options);
  ASSERT_EQ(report.rows.size(), 1);
  EXPECT_EQ(report.rows[0].count, 1);
  EXPECT_EQ(report.rows[0].missing, 0);
}

TEST(ValuesComparisonTest, MissingTimesAreNoNumbers) {
  const memory::TimeArray first("t", {{"x", 4}},
                                {5, memory::MISSING_TIME, memory::MISSING_TIME, 7});
  const memory::TimeArray second("t", {{"x", 4}}, {5, memory::MISSING_TIME, 6, 9});
  Options options = within(INFINITE);
  Report report = compare(first, second, options);
  ASSERT_EQ(report.rows.size(), 1);
  EXPECT_EQ(report.rows[0].count, 1);
  EXPECT_EQ(report.rows[0].missing, 1);
  EXPECT_EQ(
      text(report),
      "/: 1 of 4 values differ, 1 missing in one file alone; the first is at x=2: none and 6");
  options.nanEqual = false;
  report = compare(first, second, options);
  EXPECT_EQ(report.rows[0].count, 2);
  EXPECT_EQ(report.rows[0].missing, 1);
  EXPECT_EQ(compare(first, second).rows[0].largest.at(0).delta, 2);
  EXPECT_EQ(
      text(compare(second, first, within(INFINITE))),
      "/: 1 of 4 values differ, 1 missing in one file alone; the first is at x=2: 6 and none");
  EXPECT_EQ(differing(memory::MISSING_TIME, memory::MISSING_TIME, options), 0);
  EXPECT_EQ(compare(first, first, options).rows.at(0).count, 2);
}

// 1 - -1e-17 is 1 in double and more than 1 in long double.
TEST(ValuesComparisonTest, DistancesOfDoublesAreRoundedToDouble) {
  const DoubleArray first = row<double>("a", {1, 5});
  const DoubleArray second = row<double>("a", {-1e-17, 100});
  EXPECT_EQ(text(compare(first, second, within(1))),
            "/: 1 of 2 values differ; the largest delta is 95 at x=1: 5 and 100");
}

TEST(ValuesComparisonTest, IntegersAreToldApartWithoutRounding) {
  EXPECT_EQ(differing(LONG_MAX_VALUE, LONG_MAX_VALUE - 1), 1);
  EXPECT_EQ(differing(LONG_MAX_VALUE, LONG_MAX_VALUE - 1, within(0.999)), 1);
  EXPECT_EQ(differing(LONG_MAX_VALUE, LONG_MAX_VALUE - 1, within(1)), 0);
  EXPECT_EQ(differing(UINT_MAX_VALUE, 0UL, within(18446744073709549568.0)), 1);
  EXPECT_EQ(differing(UINT_MAX_VALUE, 0UL, within(18446744073709551616.0)), 0);
  EXPECT_EQ(differing(UINT_MAX_VALUE, 0UL, within(INFINITE)), 0);
  EXPECT_EQ(differing(9007199254740993L, 0L, within(9007199254740992.0)), 1);
  EXPECT_EQ(differing(5UL, 3UL, within(1.9)), 1);
  EXPECT_EQ(differing(3UL, 5UL, within(2.5)), 0);
}

TEST(ValuesComparisonTest, DeltasOfIntegersDoNotOverflow) {
  EXPECT_EQ(deltaOf(UINT_MAX_VALUE, 0UL), 18446744073709551616.0);
  EXPECT_EQ(deltaOf(LONG_MIN_VALUE, LONG_MAX_VALUE), 18446744073709551616.0);
  EXPECT_EQ(deltaOf(LONG_MIN_VALUE, 0L), 9223372036854775808.0);
}

TEST(ValuesComparisonTest, LargestIntegerDeltaIsFoundWithoutRounding) {
  const memory::IntArray zero = row<long>("a", {0, 0});
  const memory::IntArray far = row<long>("a", {LONG_MAX_VALUE - 1, LONG_MAX_VALUE});
  EXPECT_EQ(compare(zero, far).rows.at(0).largest.at(0).at.at(0).index, 1);
}

TEST(ValuesComparisonTest, NumbersOfDifferentTypesAreComparedAsNumbers) {
  const Report report = compare(row<unsigned long>("a", {UINT_MAX_VALUE, 1}),
                                row<double>("a", {18446744073709551616.0, 1}));
  ASSERT_EQ(report.rows.size(), 2);
  EXPECT_EQ(report.rows[1].count, 1);
  EXPECT_EQ(report.rows[1].largest.at(0).delta, 1);
}

TEST(ValuesComparisonTest, ComplexNumbersDifferByTheModulus) {
  using Complex = std::complex<double>;
  EXPECT_EQ(deltaOf(Complex(3, 0), Complex(0, 4)), 5);
  EXPECT_EQ(deltaOf(Complex(INFINITE, 1), Complex(INFINITE, 2)), 1);
  EXPECT_EQ(differing(Complex(3, 0), Complex(0, 4), within(1, 1)), 0);
  EXPECT_EQ(differing(Complex(NOT_A_NUMBER, 0), Complex(1, NOT_A_NUMBER)), 0);
}

TEST(ValuesComparisonTest, OfEqualDeltasAndOfNoneTheFirstInStorageOrderGoesFirst) {
  const std::vector<unsigned long> shape = {70, 70};
  const StoredArray<double> zeros("a", shape, std::vector<double>(4900));
  for (const double other : {1.0, NOT_A_NUMBER}) {
    std::vector<double> others(4900, other);
    std::fill_n(others.begin(), 66, 0.0);
    const StoredArray<double> transposed("a", shape, others, Way::Transposed);
    Options options;
    options.largest = 2;
    const Difference difference = compare(zeros, transposed, options).rows.at(0);
    EXPECT_EQ(difference.largest.at(0).at.at(1).index, 66) << other;
    EXPECT_EQ(difference.largest.at(0).at.at(0).index, 0) << other;
    EXPECT_EQ(difference.largest.at(1).at.at(1).index, 67) << other;
  }
}

TEST(ValuesComparisonTest, FiguresAreTakenOverTheValuesThatDifferAndHaveADelta) {
  const Difference difference =
      compare(row<double>("a", {1, 2, NOT_A_NUMBER, 4, 5}), row<double>("a", {1, 4, 3, 0, 4}))
          .rows.at(0);
  EXPECT_EQ(difference.count, 4);
  EXPECT_EQ(difference.size, 5);
  EXPECT_EQ(difference.missing, 1);
  EXPECT_EQ(difference.largestRelative, INFINITE);
  EXPECT_DOUBLE_EQ(difference.mean, 7.0 / 3);
  EXPECT_EQ(difference.first, Value(4.0));
  EXPECT_EQ(difference.second, Value(0.0));
}

TEST(ValuesComparisonTest, LargestMayBeNone) {
  Options options;
  options.largest = 0;
  const Difference difference =
      compare(row<double>("a", {1}), row<double>("a", {2}), options).rows.at(0);
  EXPECT_EQ(difference.count, 1);
  EXPECT_TRUE(difference.largest.empty());
}

// Random arrays of all types and ways against the oracle.

/// The values of the other side: mostly the same ones, as far as the type holds them.
template <class T, class U>
std::vector<U> alike(const std::vector<T>& values) {
  std::vector<U> result;
  const std::vector<U> others = specials<U>();
  for (const T& value : values) {
    if constexpr (std::is_convertible_v<T, U> &&
                  std::is_same_v<memory::ElementOf<T>, memory::ElementOf<U>>) {
      if (::test::pick(4) != 0 && (sizeof(U) >= sizeof(T))) {
        result.push_back(static_cast<U>(value));
        continue;
      }
    }
    result.push_back(others[::test::pick<std::size_t>(others.size())]);
  }
  return result;
}

template <class T>
std::unique_ptr<object_model::Array> anyArray(const std::vector<unsigned long>& shape,
                                              const std::vector<T>& values) {
  const int way = ::test::pick(4);
  if constexpr (std::is_same_v<T, memory::ElementOf<T>>) {
    if (way == 3) {
      return std::make_unique<AccessorArray<T>>("a", shape, values);
    }
  }
  const Way ways[] = {Way::InPlace, Way::Transposed, Way::InBlocks, Way::InBlocks};
  return std::make_unique<StoredArray<T>>("a", shape, values, ways[way]);
}

std::vector<unsigned long> anyShape() {
  const unsigned long dimensions = ::test::pick<unsigned long>(4);
  std::vector<unsigned long> shape;
  for (unsigned long k = 0; k < dimensions; ++k) {
    shape.push_back(*rc::gen::elementOf(std::vector<unsigned long>{1, 2, 3, 5, 70, 0}));
  }
  return productOf(shape) > 30'000 ? std::vector<unsigned long>{70, 70} : shape;
}

Options anyOptions() {
  Options options = within(*rc::gen::elementOf(std::vector<double>{0, 0.5, 1, 1e300}),
                           *rc::gen::elementOf(std::vector<double>{0, 0.1, 1, 3}));
  options.nanEqual = *rc::gen::arbitrary<bool>();
  options.largest = *rc::gen::elementOf(std::vector<unsigned long>{1, 3, 0, 100'000});
  return options;
}

template <class T, class U>
void checkAgainstOracle() {
  const std::vector<unsigned long> shape = anyShape();
  const std::vector<T> pool = specials<T>();
  std::vector<T> values;
  // Few different ones, in a cheap pattern: it is the pairs that matter.
  const auto step = ::test::pick<std::size_t>(pool.size());
  for (unsigned long k = 0; k < productOf(shape); ++k) {
    values.push_back(pool[(k * step + k / 7) % pool.size()]);
  }
  std::vector<U> others = alike<T, U>(
      std::vector<T>(values.begin(),
                     values.begin() + static_cast<long>(std::min<std::size_t>(values.size(), 60))));
  for (std::size_t k = others.size(); k < values.size(); ++k) {
    others.push_back(others[k % 60]);
  }
  const auto first = anyArray(shape, values);
  const auto second = anyArray(shape, others);
  const Options options = anyOptions();
  RC_ASSERT(differenceOf(figures(*first, *second, options),
                         Oracle(*first, *second, options).figures()) == "");
}

RC_GTEST_PROP(ValuesComparisonProperty, DoublesAgreeWithTheOracle, ()) {
  checkAgainstOracle<double, double>();
}
RC_GTEST_PROP(ValuesComparisonProperty, FloatsAgreeWithTheOracle, ()) {
  checkAgainstOracle<float, float>();
  checkAgainstOracle<float, double>();
  checkAgainstOracle<double, float>();
}
RC_GTEST_PROP(ValuesComparisonProperty, IntegersAgreeWithTheOracle, ()) {
  checkAgainstOracle<long, long>();
  checkAgainstOracle<short, short>();
  checkAgainstOracle<signed char, long>();
  checkAgainstOracle<int, short>();
}
RC_GTEST_PROP(ValuesComparisonProperty, UnsignedIntegersAgreeWithTheOracle, ()) {
  checkAgainstOracle<unsigned long, unsigned long>();
  checkAgainstOracle<unsigned char, unsigned char>();
  checkAgainstOracle<unsigned int, unsigned short>();
}
RC_GTEST_PROP(ValuesComparisonProperty, ComplexNumbersAgreeWithTheOracle, ()) {
  checkAgainstOracle<std::complex<double>, std::complex<double>>();
  checkAgainstOracle<std::complex<float>, std::complex<double>>();
}
RC_GTEST_PROP(ValuesComparisonProperty, NumbersOfDifferentTypesAgreeWithTheOracle, ()) {
  checkAgainstOracle<long, unsigned long>();
  checkAgainstOracle<unsigned short, long>();
  checkAgainstOracle<int, double>();
  checkAgainstOracle<float, unsigned long>();
  checkAgainstOracle<long, std::complex<double>>();
  checkAgainstOracle<std::complex<float>, float>();
}

/// A row of numbers that are the same as any other array's but for the blocks from some positions
/// on, of which nothing is known.
class BytesArray final : public memory::ArrayBase,
                         public object_model::BulkValues,
                         public memory::HasStoredBytes {
 public:
  BytesArray(unsigned long size, double value, std::set<unsigned long> unknown = {},
             unsigned long chunk = 1UL << 18U)
      : ArrayBase("a", object_model::ElementType::Double, {memory::Axis("x", size)}),
        m_value(value),
        m_unknown(std::move(unknown)),
        m_chunk(chunk) {}

  object_model::StoredType storedType() const override { return object_model::StoredType::Float64; }
  void readValues(const unsigned long* start, const unsigned long* extent,
                  void* destination) const override {
    reads.push_back(start[0]);
    std::fill_n(static_cast<double*>(destination), extent[0], m_value);
  }
  const unsigned long* chunkExtents() const override { return &m_chunk; }
  bool holdsSameBytes(const object_model::Array& other, const unsigned long* start,
                      const unsigned long* /*extent*/) const override {
    asked.push_back(start[0]);
    if (dynamic_cast<const BytesArray*>(&other) == nullptr) {
      throw std::runtime_error("cut");
    }
    return m_unknown.count(start[0]) == 0;
  }

  mutable std::vector<unsigned long> reads;
  mutable std::vector<unsigned long> asked;

 private:
  double m_value;
  std::set<unsigned long> m_unknown;
  unsigned long m_chunk;
};

constexpr unsigned long BLOCK = 1UL << 20U;  // values of the blocks in which chunks are fetched

TEST(ValuesComparisonTest, WhatIsStoredInTheSameBytesIsNotRead) {
  const BytesArray first(2 * BLOCK + 1, 1);
  const BytesArray second(2 * BLOCK + 1, 2);
  unsigned long progress = 0;
  Options options;
  options.progress = [&](unsigned long values) { progress += values; };
  const Report report = compare(first, second, options);
  EXPECT_TRUE(report.same);
  EXPECT_EQ(report.values, 2 * BLOCK + 1);
  EXPECT_EQ(progress, 2 * BLOCK + 1);
  EXPECT_THAT(first.asked, ElementsAre(0, BLOCK, 2 * BLOCK));
  EXPECT_THAT(first.reads, ElementsAre());
  EXPECT_THAT(second.reads, ElementsAre());
}

TEST(ValuesComparisonTest, BlockWhoseBytesAreNotKnownToBeTheSameIsRead) {
  const BytesArray first(2 * BLOCK + 1, 1, {2 * BLOCK});
  const BytesArray second(2 * BLOCK + 1, 2);
  const Report report = compare(first, second, within(5));
  EXPECT_TRUE(report.same);
  EXPECT_THAT(second.reads, ElementsAre(2 * BLOCK));
  const Report exact = compare(first, second);
  ASSERT_EQ(exact.rows.size(), 1);
  EXPECT_EQ(exact.rows[0].count, 1);
  EXPECT_EQ(exact.rows[0].largest[0].at.at(0).index, 2 * BLOCK);
  EXPECT_EQ(exact.values, 2 * BLOCK + 1);
}

TEST(ValuesComparisonTest, ChunkTooLargeForABlockIsReadInParts) {
  constexpr unsigned long PART = 1UL << 17U;  // values of the blocks that caches hold
  const BytesArray first(2 * BLOCK + 1, 1, {2 * BLOCK}, 2 * BLOCK + 1);
  const BytesArray second(2 * BLOCK + 1, 2, {}, 2 * BLOCK + 1);
  EXPECT_EQ(text(compare(first, second)),
            "/: 1 of 2097153 values differ; the largest delta is 1 at x=2097152: 1 and 2");
  std::vector<unsigned long> starts(17);
  for (std::size_t k = 0; k < starts.size(); ++k) {
    starts[k] = k * PART;
  }
  EXPECT_EQ(first.asked, starts);
  EXPECT_THAT(first.reads, ElementsAre(2 * BLOCK));
  EXPECT_THAT(second.reads, ElementsAre(2 * BLOCK));
}

/// Zeros that take no memory, in place unless they have chunks.
template <class T>
class ZerosInBulk final : public memory::ArrayBase,
                          public object_model::BulkValues,
                          public memory::HasStoredBytes {
 public:
  ZerosInBulk(const std::vector<unsigned long>& shape, std::vector<unsigned long> chunks)
      : ArrayBase("a", memory::ElementTraits<memory::ElementOf<T>>::TYPE, axesOf(shape)),
        m_chunks(std::move(chunks)),
        m_strides(shape.size(), 0) {}

  object_model::StoredType storedType() const override { return memory::StoredTraits<T>::TYPE; }
  object_model::ValuesInPlace valuesInPlace() const override {
    return m_chunks.empty() ? object_model::ValuesInPlace{&m_zero, m_strides.data()}
                            : object_model::ValuesInPlace();
  }
  void readValues(const unsigned long* /*start*/, const unsigned long* extent,
                  void* destination) const override {
    const std::vector<unsigned long> extents(extent, extent + m_strides.size());
    std::fill_n(static_cast<T*>(destination), productOf(extents), T());
  }
  const unsigned long* chunkExtents() const override {
    return m_chunks.empty() ? nullptr : m_chunks.data();
  }
  bool holdsSameBytes(const object_model::Array& other, const unsigned long* /*start*/,
                      const unsigned long* /*extent*/) const override {
    return dynamic_cast<const ZerosInBulk*>(&other) != nullptr;
  }

 private:
  T m_zero = T();
  std::vector<unsigned long> m_chunks;
  std::vector<long> m_strides;
};

using Shape = std::vector<unsigned long>;
using Zeros = std::unique_ptr<object_model::Array> (*)(const Shape& shape);

template <class T>
std::unique_ptr<object_model::Array> zerosInPlace(const Shape& shape) {
  return std::make_unique<ZerosInBulk<T>>(shape, Shape());
}

template <class T, unsigned long... CHUNK>
std::unique_ptr<object_model::Array> zerosInChunks(const Shape& shape) {
  return std::make_unique<ZerosInBulk<T>>(shape, Shape{CHUNK...});
}

std::unique_ptr<object_model::Array> zerosByAccessor(const Shape& shape) {
  return std::make_unique<AccessorArray<double>>("a", shape, std::vector<double>(productOf(shape)));
}

std::unique_ptr<object_model::Array> noTexts(const Shape& shape) {
  return std::make_unique<memory::StringArray>("a", axesOf(shape),
                                               std::vector<std::string>(productOf(shape)));
}

struct BlocksCase {
  const char* rule;
  Zeros first;
  Zeros second;
  Shape shape;
  std::vector<unsigned long> blocks;  // how many values each has
};
void PrintTo(const BlocksCase& row, std::ostream* out) { *out << row.rule; }

class BlocksTest : public ::testing::TestWithParam<BlocksCase> {};

TEST_P(BlocksTest, AreOfTheSizeThatSuitsBothArrays) {
  std::vector<unsigned long> blocks;
  Options options;
  options.progress = [&](unsigned long values) { blocks.push_back(values); };
  const auto first = GetParam().first(GetParam().shape);
  const auto second = GetParam().second(GetParam().shape);
  EXPECT_EQ(figures(*first, *second, options).count, 0);
  EXPECT_EQ(blocks, GetParam().blocks);
}

INSTANTIATE_TEST_SUITE_P(
    ValuesComparison, BlocksTest,
    ::testing::Values(BlocksCase{"values in place: 1 MiB",
                                 zerosInPlace<signed char>,
                                 zerosInPlace<signed char>,
                                 {(1UL << 20U) + 1},
                                 {1UL << 20U, 1}},
                      BlocksCase{"chunks: as many as 8 MiB hold",
                                 zerosInChunks<signed char, 3>,
                                 zerosInChunks<signed char, 3>,
                                 {(1UL << 23U) + 1},
                                 {(1UL << 23U) - 2, 3}},
                      BlocksCase{"the first's chunks, beside values in place",
                                 zerosInChunks<double, 300>,
                                 zerosInPlace<double>,
                                 {BLOCK + 1},
                                 {BLOCK - 76, 77}},
                      BlocksCase{"the second's chunks, where the first has none",
                                 zerosInPlace<double>,
                                 zerosInChunks<double, 300>,
                                 {BLOCK + 1},
                                 {BLOCK - 76, 77}},
                      BlocksCase{"the first's chunks, where both have some",
                                 zerosInChunks<double, 300>,
                                 zerosInChunks<double, 7>,
                                 {BLOCK + 1},
                                 {BLOCK - 76, 77}},
                      BlocksCase{"a chunk far beyond 1 MiB in all its dimensions: parts of 1 MiB",
                                 zerosInChunks<double, 4096, 1024>,
                                 zerosInPlace<double>,
                                 {4096, 1024},
                                 Shape(32, 1UL << 17U)},
                      BlocksCase{"the first by its accessor: 4096 calls",
                                 zerosByAccessor,
                                 zerosInPlace<double>,
                                 {5000},
                                 {4096, 904}},
                      BlocksCase{"the second by its accessor: 4096 calls",
                                 zerosInPlace<double>,
                                 zerosByAccessor,
                                 {5000},
                                 {4096, 904}},
                      BlocksCase{"both by their accessors: 4096 calls",
                                 zerosByAccessor,
                                 zerosByAccessor,
                                 {5000},
                                 {4096, 904}},
                      BlocksCase{"the first's chunks, whatever calls the second takes",
                                 zerosInChunks<double, 10>,
                                 zerosByAccessor,
                                 {5000},
                                 {5000}},
                      BlocksCase{"the second's chunks, whatever calls the first takes",
                                 zerosByAccessor,
                                 zerosInChunks<double, 10>,
                                 {5000},
                                 {5000}},
                      BlocksCase{"texts: 4096 calls", noTexts, noTexts, {5000}, {4096, 904}}));

/// Extent, strides of both sides and step in the grid of each dimension.
std::vector<std::vector<long>> joinedOf(const std::vector<BoxDimension>& dimensions) {
  std::vector<std::vector<long>> result;
  for (const BoxDimension& each : joined(dimensions)) {
    result.push_back({static_cast<long>(each.extent), each.firstStride, each.secondStride,
                      static_cast<long>(each.gridStep)});
  }
  return result;
}

TEST(ValuesComparisonTest, DimensionsThatContinueTheOneBeforeAreJoined) {
  using Dimensions = std::vector<std::vector<long>>;
  const BoxDimension fastest{5, 8, 4, 2};
  EXPECT_EQ(joinedOf({fastest, {3, 40, 20, 10}, {2, 120, 60, 30}}), (Dimensions{{30, 8, 4, 2}}));
  EXPECT_EQ(joinedOf({fastest, {3, 48, 20, 10}}), (Dimensions{{5, 8, 4, 2}, {3, 48, 20, 10}}));
  EXPECT_EQ(joinedOf({fastest, {3, 40, 24, 10}}), (Dimensions{{5, 8, 4, 2}, {3, 40, 24, 10}}));
  EXPECT_EQ(joinedOf({fastest, {3, 40, 20, 12}}), (Dimensions{{5, 8, 4, 2}, {3, 40, 20, 12}}));
  EXPECT_EQ(joinedOf({fastest, {3, 48, 24, 12}, {2, 144, 72, 36}}),
            (Dimensions{{5, 8, 4, 2}, {6, 48, 24, 12}}));
}

TEST(ValuesComparisonTest, DimensionsOfOneIndexAreLeftOut) {
  using Dimensions = std::vector<std::vector<long>>;
  EXPECT_EQ(joinedOf({{1, 8, 8, 1}, {5, 16, 8, 1}, {1, 9, 9, 9}, {3, 80, 40, 5}, {1, 0, 0, 0}}),
            (Dimensions{{15, 16, 8, 1}}));
  EXPECT_EQ(joinedOf({{0, 8, 8, 1}}), (Dimensions{{0, 8, 8, 1}}));
  const Dimensions one = {{1, 0, 0, 1}};
  EXPECT_EQ(joinedOf({}), one);
  EXPECT_EQ(joinedOf({{1, 8, 8, 1}, {1, 8, 8, 1}}), one);
}

TEST(ValuesComparisonTest, BytesTellNothingWhereNanDiffersFromItself) {
  const BytesArray nan(4, NOT_A_NUMBER);
  Options options;
  options.nanEqual = false;
  const Report report = compare(nan, nan, options);
  ASSERT_EQ(report.rows.size(), 1);
  EXPECT_EQ(report.rows[0].count, 4);
  EXPECT_THAT(nan.asked, ElementsAre());
}

TEST(ValuesComparisonTest, ArrayThatFailsToCompareBytesIsNotCompared) {
  const BytesArray first(4, 1);
  const Report report = compare(first, row<double>("a", {1, 1, 1, 1}));
  EXPECT_FALSE(report.same);
  ASSERT_EQ(report.notCompared.size(), 1);
  EXPECT_EQ(report.notCompared[0].reason, "cut");
}

/// Integers the lowest of which stands for none.
class SparseInts final : public memory::ArrayBase, public memory::HasMissing {
 public:
  explicit SparseInts(std::vector<long> values)
      : ArrayBase("a", object_model::ElementType::Int, {memory::Axis("x", values.size())}),
        m_values(std::move(values)) {}
  long getValueAsInt(const object_model::Tuple& index) const override { return m_values[index[0]]; }

 private:
  std::vector<long> m_values;
};

TEST(ValuesComparisonTest, LowestIntegerIsMissingWhereItIsSoOnBothSides) {
  const SparseInts some({LONG_MIN_VALUE, 7});
  EXPECT_EQ(
      text(compare(some, SparseInts({6, 7}), within(INFINITE))),
      "/: 1 of 2 values differ, 1 missing in one file alone; the first is at x=0: none and 6");
  const std::string numbers = "/: 1 of 2 values differ; the largest delta is 9.22337e+18 at x=0: ";
  EXPECT_EQ(text(compare(some, row<long>("a", {0, 7}))), numbers + "-9223372036854775808 and 0");
  EXPECT_EQ(text(compare(row<long>("a", {0, 7}), some)), numbers + "0 and -9223372036854775808");
}

TEST(ValuesComparisonTest, TextsOfManyBlocksStandAtTheirPlaces) {
  const std::vector<memory::Axis> axes = {{"x", 40}, {"y", 7}, {"z", 50}};
  std::vector<std::string> texts(14'000);
  const memory::StringArray same("a", axes, texts);
  texts[3 + 40 * (6 + 7 * 1)] = "near";
  texts[39 + 40 * (5 + 7 * 49)] = "far";
  Options options;
  options.largest = 5;
  EXPECT_THAT(
      lines(compare(same, memory::StringArray("a", axes, texts), options), {20, 5}),
      ElementsAre("/: 2 of 14000 values differ; the first is at z=1, y=6, x=3: '' and "
                  "'near'",
                  "  at z=1, y=6, x=3: '' and 'near'", "  at z=49, y=5, x=39: '' and 'far'"));
}

/// Numbers in memory, the last one first.
class ReversedArray final : public memory::ArrayBase, public memory::InPlaceValues<double> {
 public:
  explicit ReversedArray(std::vector<double> values)
      : ArrayBase("a", object_model::ElementType::Double, {memory::Axis("x", values.size())}),
        m_values(std::move(values)) {
    setPlace(&m_values.back(), {-static_cast<long>(sizeof(double))});
  }

 private:
  std::vector<double> m_values;
};

TEST(ValuesComparisonTest, ValuesMayLieBackwards) {
  const unsigned long size = 2 * BLOCK + 3;
  std::vector<double> values(size);
  for (unsigned long k = 0; k < size; ++k) {
    values[k] = static_cast<double>(k);
  }
  const ReversedArray backwards(values);
  std::reverse(values.begin(), values.end());
  EXPECT_TRUE(compare(backwards, row<double>("a", values)).same);
  values[size - 2] = -1;
  EXPECT_EQ(text(compare(backwards, row<double>("a", values))),
            "/: 1 of 2097155 values differ; the largest delta is 2 at x=2097153: 1 and -1");
}

}  // namespace
}  // namespace quillon::compare
