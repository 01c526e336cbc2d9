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
  EXPECT_EQ(test::thrownBy<InvalidCall>([&] {
              copyValues(CountingArray({{"x", 1}}), {0, 1, {0}, {1}}, &value);
            }),
            "Array 'counted' holds Double, not int64");
  EXPECT_EQ(value, 0);
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
  constexpr unsigned long HUGE_EXTENT = 1UL << 31U;
  const unsigned long huge[] = {HUGE_EXTENT, HUGE_EXTENT};
  EXPECT_THAT(BoxLayout({HUGE_EXTENT, HUGE_EXTENT}, 100, huge).boxAt(0).extent,
              ElementsAre(100, 1));
}

TEST(BoxLayoutTest, EmptyGridHasNoBoxAndAScalarHasOne) {
  EXPECT_EQ(BoxLayout({3, 0}, 15).size(), 0);
  EXPECT_EQ(BoxLayout({0, 3}, 15).size(), 0);
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
