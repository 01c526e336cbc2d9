#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "GridBoxes.h"

namespace quillon::tables {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Extents = std::vector<unsigned long>;

std::vector<GridBox> boxesOf(const Extents& shape, unsigned long first, unsigned long count) {
  std::vector<GridBox> boxes;
  forEachBox(shape, first, count, [&boxes](const GridBox& box) { boxes.push_back(box); });
  return boxes;
}

auto isBox(unsigned long offset, const Extents& start, const Extents& extent) {
  return ::testing::AllOf(::testing::Field(&GridBox::offset, offset),
                          ::testing::Field(&GridBox::start, start),
                          ::testing::Field(&GridBox::extent, extent));
}

TEST(GridBoxesTest, TheWholeGridIsOneBox) {
  EXPECT_THAT(boxesOf({3, 4}, 0, 12), ElementsAre(isBox(0, {0, 0}, {3, 4})));
}

TEST(GridBoxesTest, ARunHasABoxOfWholeLinesAndTheRests) {
  EXPECT_THAT(
      boxesOf({3, 4}, 1, 10),
      ElementsAre(isBox(0, {1, 0}, {2, 1}), isBox(2, {0, 1}, {3, 2}), isBox(8, {0, 3}, {2, 1})));
}

TEST(GridBoxesTest, AGridWithoutAxesIsOnePoint) {
  EXPECT_THAT(boxesOf({}, 0, 1), ElementsAre(isBox(0, {}, {})));
}

TEST(GridBoxesTest, NoPointsAreNoBox) { EXPECT_THAT(boxesOf({3, 0}, 0, 0), IsEmpty()); }

RC_GTEST_PROP(GridBoxesPropertyTest, TheBoxesAreThePointsOfTheRunInOrder, ()) {
  const auto shape =
      *rc::gen::container<Extents>(*rc::gen::inRange(0UL, 5UL), rc::gen::inRange(1UL, 6UL));
  const unsigned long points = pointsOf(shape);
  const unsigned long first = *rc::gen::inRange(0UL, points);
  const unsigned long count = *rc::gen::inRange(0UL, points - first + 1);
  unsigned long next = first;
  for (const GridBox& box : boxesOf(shape, first, count)) {
    RC_ASSERT(box.offset == next - first);
    for (unsigned long k = 0; k < pointsOf(box.extent); ++k) {
      unsigned long number = 0;
      unsigned long weight = 1;
      unsigned long rest = k;
      for (std::size_t axis = 0; axis < shape.size(); ++axis) {
        number += weight * (box.start[axis] + rest % box.extent[axis]);
        rest /= box.extent[axis];
        weight *= shape[axis];
      }
      RC_ASSERT(number == next);
      ++next;
    }
  }
  RC_ASSERT(next == first + count);
}

}  // namespace
}  // namespace quillon::tables
