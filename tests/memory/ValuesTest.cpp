#include <gmock/gmock.h>
#include <quillon/memory/InvalidCall.h>
#include <quillon/memory/StridedArray.h>
#include <quillon/memory/TypedArray.h>
#include <quillon/memory/Values.h>

#include <numeric>

#include "support/Thrown.h"

namespace quillon::memory {
namespace {

using ::testing::ElementsAre;
using ::testing::IsNull;
using ::testing::NotNull;

/// An array that is read by its accessor alone.
class CountingArray final : public ArrayBase {
 public:
  explicit CountingArray(std::vector<Axis> axes)
      : ArrayBase("counted", object_model::ElementType::Double, std::move(axes)) {}
  double getValueAsDouble(const object_model::Tuple& index) const override {
    return static_cast<double>(offsetOf(index));
  }
};

/// Floats that are read in bulk but lie nowhere; each is its position, one digit for a dimension.
class ChunkedArray final : public ArrayBase, public object_model::BulkValues {
 public:
  ChunkedArray(std::vector<Axis> axes, std::vector<unsigned long> chunks)
      : ArrayBase("chunked", object_model::ElementType::Double, std::move(axes)),
        m_chunks(std::move(chunks)) {}
  object_model::StoredType storedType() const override { return object_model::StoredType::Float32; }
  void readValues(const unsigned long* start, const unsigned long* extent,
                  void* destination) const override {
    auto* next = static_cast<float*>(destination);
    for (unsigned long y = start[1]; y < start[1] + extent[1]; ++y) {
      for (unsigned long x = start[0]; x < start[0] + extent[0]; ++x) {
        *next++ = static_cast<float>(10 * x + y);
      }
    }
  }
  const unsigned long* chunkExtents() const override { return m_chunks.data(); }

 private:
  std::vector<unsigned long> m_chunks;
};

struct BlockCase {
  const char* rule;
  std::vector<unsigned long> shape;
  unsigned long maxValues;
  unsigned long offset;
  Block expected;
};

void PrintTo(const BlockCase& c, std::ostream* stream) { *stream << c.rule; }

void expectBlock(const Block& block, const Block& expected) {
  EXPECT_EQ(block.first, expected.first);
  EXPECT_EQ(block.count, expected.count);
  EXPECT_EQ(block.start, expected.start);
  EXPECT_EQ(block.extent, expected.extent);
}

template <class T>
std::vector<T> valuesOf(const object_model::Array& array, const Block& block) {
  std::vector<T> values(block.count);
  copyValues(array, block, values.data());
  return values;
}

TEST(ValuesTest, BlockOfAnArrayInMemoryComesInStorageOrder) {
  const DoubleArray array("a", {{"x", 3}, {"y", 2}}, {0, 1, 2, 3, 4, 5});
  EXPECT_THAT(valuesOf<double>(array, {0, 4, {1, 0}, {2, 2}}), ElementsAre(1, 2, 4, 5));
}

TEST(ValuesTest, BlockOfAnArrayWithAccessorsAloneIsTheSame) {
  const CountingArray array({{"x", 3}, {"y", 2}});
  EXPECT_THAT(bulkValuesOf(array), IsNull());
  EXPECT_THAT(valuesOf<double>(array, {0, 4, {1, 0}, {2, 2}}), ElementsAre(1, 2, 4, 5));
}

TEST(ValuesTest, BlocksOfThreeDimensionsComeInStorageOrder) {
  const Block block{0, 8, {1, 1, 1}, {2, 2, 2}};
  const CountingArray counted({{"x", 3}, {"y", 3}, {"z", 3}});
  EXPECT_THAT(valuesOf<double>(counted, block), ElementsAre(13, 14, 16, 17, 22, 23, 25, 26));
  std::vector<double> values(27);
  std::iota(values.begin(), values.end(), 0);
  const DoubleArray inMemory("a", {{"x", 3}, {"y", 3}, {"z", 3}}, values);
  EXPECT_THAT(valuesOf<double>(inMemory, block), ElementsAre(13, 14, 16, 17, 22, 23, 25, 26));
}

TEST(ValuesTest, ArrayWithoutDimensionsIsOneValue) {
  EXPECT_THAT(valuesOf<long>(IntArray("a", {}, {-7}), {}), ElementsAre(-7));
  EXPECT_THAT(valuesOf<double>(CountingArray({}), {}), ElementsAre(0));
}

TEST(ValuesTest, OnlyTheOneValueIsWrittenForAnArrayWithoutDimensions) {
  double values[] = {-1, -1};
  copyValues(CountingArray({}), Block(), values);
  EXPECT_THAT(values, ElementsAre(0, -1));
}

TEST(ValuesTest, ValuesInBulkComeAsTheyAreStoredOrAsElements) {
  const ChunkedArray array({{"x", 3}, {"y", 2}}, {3, 1});
  EXPECT_THAT(valuesOf<float>(array, {0, 4, {1, 0}, {2, 2}}), ElementsAre(10, 20, 11, 21));
  EXPECT_THAT(valuesOf<double>(array, {0, 4, {1, 0}, {2, 2}}), ElementsAre(10, 20, 11, 21));
}

TEST(ValuesTest, ValuesAsFarApartAsElementsAreLargeAreWidenedOneByOne) {
  const int memory[] = {-1, 10, -2, 11, -3, 12};
  const StridedArray<int> array("a", {{"x", 3}}, memory, {sizeof(long)});
  EXPECT_THAT(valuesOf<long>(array, {0, 3, {0}, {3}}), ElementsAre(-1, -2, -3));
}

TEST(ValuesTest, EmptyBlockCopiesNothing) {
  const DoubleArray array("a", {{"x", 3}, {"y", 2}}, {0, 1, 2, 3, 4, 5});
  EXPECT_THAT(valuesOf<double>(array, {0, 0, {1, 0}, {2, 0}}), ElementsAre());
}

TEST(ValuesTest, TextsAreReadByTheAccessor) {
  const StringArray array("a", {{"x", 2}}, {"one", "two"});
  EXPECT_THAT(valuesOf<std::string>(array, {0, 2, {0}, {2}}), ElementsAre("one", "two"));
}

TEST(ValuesTest, AnotherTypeIsRefusedByName) {
  const DoubleArray array("a", {{"x", 1}}, {0});
  long value = 0;
  EXPECT_EQ(test::thrownBy<InvalidCall>([&] {
              copyValues(array, {0, 1, {0}, {1}}, &value);
            }),
            "Array 'a' holds Double, not int64");
  EXPECT_EQ(test::thrownBy<InvalidCall>([&] {
              copyValues(CountingArray({{"x", 1}}), {0, 1, {0}, {1}}, &value);
            }),
            "Array 'counted' holds Double, not int64");
  EXPECT_EQ(value, 0);
  std::string text;
  EXPECT_EQ(test::thrownBy<InvalidCall>([&] {
              copyValues(array, {0, 1, {0}, {1}}, &text);
            }),
            "Array 'a' holds Double, not String");
}

TEST(ValuesTest, TypedArraysOfNumbersLieInPlace) {
  const DoubleArray array("a", {{"x", 3}, {"y", 2}}, {0, 1, 2, 3, 4, 5});
  const object_model::BulkValues* bulk = bulkValuesOf(array);
  ASSERT_THAT(bulk, NotNull());
  EXPECT_EQ(bulk->storedType(), object_model::StoredType::Float64);
  const object_model::ValuesInPlace values = bulk->valuesInPlace();
  EXPECT_EQ(*static_cast<const double*>(values.first), 0);
  EXPECT_EQ(values.strides[0], 8);
  EXPECT_EQ(values.strides[1], 24);
}

class BlockAtTest : public ::testing::TestWithParam<BlockCase> {};

TEST_P(BlockAtTest, IsFoundByAValueOfIt) {
  const BlockCase& c = GetParam();
  expectBlock(BlockLayout(c.shape, c.maxValues).blockAt(c.offset), c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Grids, BlockAtTest,
    ::testing::ValuesIn(std::vector<BlockCase>{
        {"TheWholeGridWhereItFits", {3, 2}, 6, 5, {0, 6, {0, 0}, {3, 2}}},
        {"SlabsOfTheSlowestDimension", {3, 4, 2}, 12, 13, {12, 12, {0, 0, 1}, {3, 4, 1}}},
        {"RowsWhereASlabDoesNotFit", {3, 4, 2}, 7, 12 + 7, {12 + 6, 6, {0, 2, 1}, {3, 2, 1}}},
        {"FewerRowsAtTheEnd", {3, 5}, 6, 14, {12, 3, {0, 4}, {3, 1}}},
        {"APositionAlongEachSlowerDimension",
         {2, 3, 2, 2},
         2,
         17,
         {16, 2, {0, 2, 0, 1}, {2, 1, 1, 1}}},
        {"OneValueAtLeast", {3, 2}, 0, 4, {4, 1, {1, 1}, {1, 1}}},
        {"TheValueOfNoDimensions", {}, 15, 0, {0, 1, {}, {}}},
    }),
    [](const auto& c) { return c.param.rule; });

TEST(BlockLayoutTest, ChunksOfAnArrayAreItsOwn) {
  const std::vector<Axis> axes = {{"x", 3}, {"y", 10}};
  EXPECT_THAT(BlockLayout(ChunkedArray(axes, {3, 2}), 15).blockAt(0).extent, ElementsAre(3, 4));
  EXPECT_THAT(BlockLayout(CountingArray(axes), 15).blockAt(0).extent, ElementsAre(3, 5));
}

TEST(BlockLayoutTest, BlocksEndWhereChunksDo) {
  const unsigned long chunks[] = {3, 2};
  const BlockLayout layout({3, 10}, 15, chunks);
  EXPECT_THAT(layout.blockAt(0).extent, ElementsAre(3, 4));
  const unsigned long others[] = {3, 3};
  EXPECT_THAT(BlockLayout({3, 4}, 15, others).blockAt(0).extent, ElementsAre(3, 4));
}

TEST(BlockLayoutTest, EmptyGridHasNoValuesAndAScalarHasOne) {
  using Shape = std::vector<unsigned long>;
  EXPECT_EQ(BlockLayout(Shape{3, 0}, 15).size(), 0);
  EXPECT_EQ(BlockLayout(Shape{}, 15).size(), 1);
  EXPECT_EQ(BlockLayout(Shape{}, 15).blockAt(0).count, 1);
}

TEST(BoxLayoutTest, WithoutChunksBoxesAreRunsInStorageOrder) {
  const BoxLayout layout({3, 4, 2}, 7);
  ASSERT_EQ(layout.size(), 4);
  EXPECT_THAT(layout.boxAt(0).extent, ElementsAre(3, 2, 1));
  EXPECT_THAT(layout.boxAt(3).start, ElementsAre(0, 2, 1));
  EXPECT_EQ(layout.boxAt(3).first, 18);
  EXPECT_EQ(layout.boxAt(3).count, 6);
  EXPECT_EQ(BoxLayout({3, 4, 2}, 24).size(), 1);
}

TEST(BoxLayoutTest, BoxesAreOfWholeChunks) {
  const unsigned long chunks[] = {2, 3};
  EXPECT_THAT(BoxLayout({10, 7}, 6, chunks).boxAt(0).extent, ElementsAre(2, 3));
  EXPECT_THAT(BoxLayout({10, 7}, 13, chunks).boxAt(0).extent, ElementsAre(4, 3));
  EXPECT_THAT(BoxLayout({10, 7}, 30, chunks).boxAt(0).extent, ElementsAre(10, 3));
  EXPECT_THAT(BoxLayout({10, 7}, 60, chunks).boxAt(0).extent, ElementsAre(10, 6));
  EXPECT_THAT(BoxLayout({10, 7}, 60, chunks).boxAt(1).extent, ElementsAre(10, 1));
}

TEST(BoxLayoutTest, OneChunkIsABoxUnlessItIsVeryLarge) {
  const unsigned long chunks[] = {4, 8};
  EXPECT_THAT(BoxLayout({8, 8}, 2, chunks).boxAt(0).extent, ElementsAre(4, 8));
  EXPECT_THAT(BoxLayout({8, 8}, 1, chunks).boxAt(0).extent, ElementsAre(1, 1));
  const unsigned long sixteen[] = {16};
  EXPECT_THAT(BoxLayout({20}, 1, sixteen).boxAt(0).extent, ElementsAre(16));
  const unsigned long seventeen[] = {17};
  EXPECT_THAT(BoxLayout({20}, 1, seventeen).boxAt(0).extent, ElementsAre(1));
  const unsigned long one[] = {1, 1};
  EXPECT_THAT(BoxLayout({4, 2}, 1, one).boxAt(0).extent, ElementsAre(1, 1));
  constexpr unsigned long HUGE_EXTENT = 1UL << 31U;
  const unsigned long huge[] = {HUGE_EXTENT, HUGE_EXTENT};
  EXPECT_THAT(BoxLayout({HUGE_EXTENT, HUGE_EXTENT}, 100, huge).boxAt(0).extent,
              ElementsAre(100, 1));
}

TEST(BoxLayoutTest, EmptyGridHasNoBoxAndAScalarHasOne) {
  EXPECT_EQ(BoxLayout({3, 0}, 15).size(), 0);
  EXPECT_EQ(BoxLayout({0, 3}, 15).size(), 0);
  const unsigned long chunks[] = {2, 3};
  EXPECT_EQ(BoxLayout({0, 3}, 15, chunks).size(), 0);
  ASSERT_EQ(BoxLayout({}, 15).size(), 1);
  EXPECT_EQ(BoxLayout({}, 15).boxAt(0).count, 1);
}

TEST(BoxLayoutTest, BoxesMeetEachValueOnce) {
  const unsigned long chunks[] = {2, 3, 1};
  for (unsigned long most = 1; most < 80; ++most) {
    const BoxLayout layout({5, 7, 2}, most, chunks);
    std::vector<int> met(70, 0);
    for (unsigned long number = 0; number < layout.size(); ++number) {
      const Block box = layout.boxAt(number);
      EXPECT_EQ(box.first, box.start[0] + 5 * (box.start[1] + 7 * box.start[2]));
      for (unsigned long k = 0; k < box.count; ++k) {
        const unsigned long x = k % box.extent[0];
        const unsigned long y = k / box.extent[0] % box.extent[1];
        const unsigned long z = k / box.extent[0] / box.extent[1];
        ++met.at(box.first + x + 5 * (y + 7 * z));
      }
    }
    EXPECT_EQ(met, std::vector<int>(70, 1)) << most;
  }
}

}  // namespace
}  // namespace quillon::memory
