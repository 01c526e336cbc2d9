#include <gmock/gmock.h>
#include <quillon/memory/InvalidCall.h>
#include <quillon/memory/TypedArray.h>
#include <quillon/memory/Values.h>

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

TEST(ValuesTest, ArrayWithoutDimensionsIsOneValue) {
  EXPECT_THAT(valuesOf<long>(IntArray("a", {}, {-7}), {}), ElementsAre(-7));
  EXPECT_THAT(valuesOf<double>(CountingArray({}), {}), ElementsAre(0));
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

TEST(BlockLayoutTest, WholeGridIsOneBlockWhereItFits) {
  const BlockLayout layout({3, 2}, 6);
  const Block block = layout.blockAt(5);
  EXPECT_EQ(block.first, 0);
  EXPECT_EQ(block.count, 6);
  EXPECT_THAT(block.start, ElementsAre(0, 0));
  EXPECT_THAT(block.extent, ElementsAre(3, 2));
}

TEST(BlockLayoutTest, LargerGridsAreCutAlongTheSlowestDimensionThatFits) {
  const BlockLayout layout({3, 4, 2}, 7);
  const Block block = layout.blockAt(12 + 7);
  EXPECT_EQ(block.first, 12 + 6);
  EXPECT_EQ(block.count, 6);
  EXPECT_THAT(block.start, ElementsAre(0, 2, 1));
  EXPECT_THAT(block.extent, ElementsAre(3, 2, 1));
}

TEST(BlockLayoutTest, BlocksEndWhereChunksDo) {
  const unsigned long chunks[] = {3, 2};
  const BlockLayout layout({3, 10}, 15, chunks);
  EXPECT_THAT(layout.blockAt(0).extent, ElementsAre(3, 4));
}

/// How many values the first block has by which a grid of 8-byte values is read.
unsigned long valuesRead(std::vector<unsigned long> shape, const unsigned long* chunks = nullptr) {
  return BlockLayout::forReading(std::move(shape), 8, chunks).blockAt(0).count;
}

TEST(BlockLayoutTest, AMebibyteIsReadAtATime) {
  EXPECT_EQ(valuesRead({1UL << 20U}), 1UL << 17U);
  EXPECT_EQ(BlockLayout::forReading({1UL << 20U}, 1).blockAt(0).count, 1UL << 20U);
  EXPECT_EQ(valuesRead({1000, 1000}), 131000);
  EXPECT_EQ(valuesRead({}), 1);
}

TEST(BlockLayoutTest, ALayerOfChunksIsReadAtOnce) {
  const unsigned long chunks[] = {50, 50, 3};
  EXPECT_EQ(valuesRead({400, 350, 300}, chunks), 400 * 350 * 3);
  const unsigned long small[] = {50, 50, 1};
  EXPECT_EQ(valuesRead({100, 100, 300}, small), 100 * 100 * 13);  // a mebibyte of layers
}

TEST(BlockLayoutTest, OfALayerOfLargeChunksSixteenMebibytesAreRead) {
  const unsigned long chunks[] = {50, 50, 300};
  EXPECT_EQ(valuesRead({400, 350, 600}, chunks), 400 * 350 * 14);
  constexpr unsigned long HUGE_EXTENT = 1UL << 31U;
  const unsigned long huge[] = {HUGE_EXTENT, HUGE_EXTENT, 1};
  EXPECT_EQ(valuesRead({HUGE_EXTENT, HUGE_EXTENT, 1}, huge), 1UL << 21U);
}

TEST(BlockLayoutTest, EmptyGridHasNoValuesAndAScalarHasOne) {
  EXPECT_EQ(BlockLayout({3, 0}, 15).size(), 0);
  EXPECT_EQ(BlockLayout({}, 15).size(), 1);
  EXPECT_EQ(BlockLayout({}, 15).blockAt(0).count, 1);
}

}  // namespace
}  // namespace quillon::memory
