#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <numeric>
#include <ostream>

#include "WindowLayout.h"

namespace quillon::netcdf {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct LayoutCase {
  const char* rule;
  std::vector<std::size_t> shape;
  std::size_t maxValues;
  std::vector<std::size_t> chunks;
  std::vector<unsigned long> counts;  // of the blocks in storage order
};

void PrintTo(const LayoutCase& c, std::ostream* os) { *os << c.rule; }

unsigned long valuesIn(const std::vector<std::size_t>& extents) {
  return std::accumulate(extents.begin(), extents.end(), 1UL, std::multiplies<>());
}

unsigned long offsetOf(const std::vector<std::size_t>& shape,
                       const std::vector<std::size_t>& position) {
  unsigned long offset = 0;
  for (std::size_t k = 0; k < shape.size(); ++k) {
    offset = offset * shape[k] + position[k];
  }
  return offset;
}

// The last position of a block; the hyperslab is one run when it is as far off as the block counts.
std::vector<std::size_t> lastOf(const Block& block) {
  std::vector<std::size_t> last = block.start;
  for (std::size_t k = 0; k < last.size(); ++k) {
    last[k] += block.extent[k] - 1;
  }
  return last;
}

class WindowLayoutTest : public testing::TestWithParam<LayoutCase> {};

TEST_P(WindowLayoutTest, BlocksFollowEachOther) {
  const LayoutCase& c = GetParam();
  const WindowLayout layout(c.shape, c.maxValues, c.chunks);
  std::vector<unsigned long> counts;
  for (unsigned long offset = 0; offset < valuesIn(c.shape); offset += counts.back()) {
    const Block block = layout.blockAround(offset);
    EXPECT_EQ(block.first, offset);
    counts.push_back(block.count);
    ASSERT_GT(block.count, 0U);
  }
  EXPECT_EQ(counts, c.counts);
}

TEST_P(WindowLayoutTest, EveryValueIsInItsBlockAndEveryBlockIsOneRun) {
  const LayoutCase& c = GetParam();
  const WindowLayout layout(c.shape, c.maxValues, c.chunks);
  for (unsigned long offset = 0; offset < valuesIn(c.shape); ++offset) {
    const Block block = layout.blockAround(offset);
    EXPECT_LE(block.first, offset);
    EXPECT_GT(block.first + block.count, offset);
    EXPECT_EQ(valuesIn(block.extent), block.count);
    EXPECT_EQ(offsetOf(c.shape, block.start), block.first);
    EXPECT_EQ(offsetOf(c.shape, lastOf(block)), block.first + block.count - 1);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Rules, WindowLayoutTest,
    testing::ValuesIn(std::vector<LayoutCase>{
        {"ScalarIsOneBlock", {}, 10, {}, {1}},
        {"WholeGridThatFitsIsOneBlock", {2, 3, 4}, 24, {}, {24}},
        {"OneValueLessThanTheGridCutsItsSlowestDimension", {2, 3, 4}, 23, {}, {12, 12}},
        {"AsManySlabsAsFit", {5, 2, 2}, 11, {}, {8, 8, 4}},
        {"ExactlyOneSlabFits", {3, 2, 2}, 4, {}, {4, 4, 4}},
        {"SlabThatIsTooLargeIsCutItself", {2, 3, 2}, 3, {}, {2, 2, 2, 2, 2, 2}},
        {"SubSlabsDoNotReachIntoTheNextSlab", {2, 3, 2}, 4, {}, {4, 2, 4, 2}},
        {"OneValuePerBlock", {2, 2}, 1, {}, {1, 1, 1, 1}},
        {"NoRoomStillHoldsOneValue", {2, 2}, 0, {}, {1, 1, 1, 1}},
        {"PrimeSizesLeaveARemainder", {7}, 3, {}, {3, 3, 1}},
        {"PrimeRowsAndColumns", {3, 5}, 2, {}, {2, 2, 1, 2, 2, 1, 2, 2, 1}},
        {"DimensionsOfOneDoNotHinder", {1, 6, 1}, 4, {}, {4, 2}},
        {"BlocksEndAtChunks", {10}, 5, {4}, {4, 4, 2}},
        {"BlocksSmallerThanAChunkStayAsTheyAre", {10}, 3, {4}, {3, 3, 3, 1}},
        {"BlocksOfExactlyOneChunk", {10}, 4, {4}, {4, 4, 2}},
        {"WholeGridThatFitsIsNotCutAtChunks", {10}, 10, {4}, {10}},
        {"ChunksCountAlongTheDimensionThatIsCut", {7, 2}, 11, {2, 1}, {8, 6}},
    }),
    [](const auto& c) { return c.param.rule; });

TEST(WindowLayout, GridWithoutValuesIsLaidOut) { EXPECT_NO_THROW(WindowLayout({3, 0, 2}, 4)); }

TEST(WindowLayout, BlockIsAHyperslab) {
  const Block block = WindowLayout({4, 5, 6}, 12).blockAround(2 * 30 + 3 * 6 + 1);
  EXPECT_THAT(block.start, ElementsAre(2, 2, 0));
  EXPECT_THAT(block.extent, ElementsAre(1, 2, 6));
}

TEST(WindowLayout, ScalarHasNoPosition) {
  EXPECT_THAT(WindowLayout({}, 4).blockAround(0).start, IsEmpty());
}

TEST(WindowLayout, HugeGridIsCutWithoutOverflow) {
  const WindowLayout layout({1UL << 20U, 1UL << 20U, 1UL << 20U}, 1UL << 23U);
  const Block last = layout.blockAround((1UL << 60U) - 1);
  EXPECT_EQ(last.count, 1UL << 23U);
  EXPECT_EQ(last.first, (1UL << 60U) - (1UL << 23U));
}

}  // namespace
}  // namespace quillon::netcdf
