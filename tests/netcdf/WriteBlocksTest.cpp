#include <gtest/gtest.h>
#include <quillon/memory/TypedArray.h>

#include <utility>
#include <vector>

#include "WriteBlocks.h"

namespace quillon::netcdf {
namespace {

/// Where each block begins, and how many values it has.
std::vector<std::pair<unsigned long, unsigned long>> blocksOf(const object_model::Array& array,
                                                              unsigned long maxValues) {
  std::vector<std::pair<unsigned long, unsigned long>> blocks;
  forEachBlock(array, maxValues, [&blocks](const memory::Block& block) {
    blocks.emplace_back(block.first, block.count);
  });
  return blocks;
}

using Blocks = decltype(blocksOf(std::declval<const object_model::Array&>(), 0));

TEST(WriteBlocksTest, FollowEachOtherUntilTheArrayEnds) {
  const memory::TypedArray<int> array("v", {{"x", 5}, {"y", 2}}, std::vector<int>(10));
  EXPECT_EQ(blocksOf(array, 3), (Blocks{{0, 3}, {3, 2}, {5, 3}, {8, 2}}));
  EXPECT_EQ(blocksOf(array, 5), (Blocks{{0, 5}, {5, 5}}));
  EXPECT_EQ(blocksOf(array, 10), (Blocks{{0, 10}}));
}

TEST(WriteBlocksTest, ArrayWithoutValuesHasNone) {
  const memory::TypedArray<int> array("v", {{"x", 0}}, {});
  EXPECT_EQ(blocksOf(array, 3), Blocks());
}

}  // namespace
}  // namespace quillon::netcdf
