#include <gmock/gmock.h>

#include <functional>
#include <stdexcept>
#include <vector>

#include "IO/GridIteration.h"

namespace object_model {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

template <std::size_t N>
using Grid = std::array<unsigned long, N>;
template <std::size_t N>
using Mask = std::array<unsigned char, N>;

template <std::size_t N>
std::vector<Grid<N>> positionsOf(const Grid<N>& shape, const Grid<N>& start, const Mask<N>& mask) {
  std::vector<Grid<N>> positions;
  iterate<N, N - 1>(
      shape, [&](const Grid<N>& position) { positions.push_back(position); }, start, mask);
  return positions;
}

TEST(GridIteration, VisitsALineInOrder) {
  EXPECT_THAT(positionsOf<1>({3}, {0}, {0}), ElementsAre(Grid<1>{0}, Grid<1>{1}, Grid<1>{2}));
}

TEST(GridIteration, VariesDimension0Fastest) {
  EXPECT_THAT(positionsOf<2>({2, 3}, {0, 0}, {0, 0}),
              ElementsAre(Grid<2>{0, 0}, Grid<2>{1, 0}, Grid<2>{0, 1}, Grid<2>{1, 1}, Grid<2>{0, 2},
                          Grid<2>{1, 2}));
}

TEST(GridIteration, WalksThreeDimensions) {
  EXPECT_THAT(positionsOf<3>({2, 1, 2}, {0, 0, 0}, {0, 0, 0}),
              ElementsAre(Grid<3>{0, 0, 0}, Grid<3>{1, 0, 0}, Grid<3>{0, 0, 1}, Grid<3>{1, 0, 1}));
}

TEST(GridIteration, KeepsAFixedDimensionAtItsStart) {
  EXPECT_THAT(positionsOf<3>({2, 3, 2}, {0, 5, 0}, {0, 1, 0}),
              ElementsAre(Grid<3>{0, 5, 0}, Grid<3>{1, 5, 0}, Grid<3>{0, 5, 1}, Grid<3>{1, 5, 1}));
}

TEST(GridIteration, TakesAnyNonZeroMaskAsFixed) {
  EXPECT_THAT(positionsOf<2>({2, 3}, {0, 2}, {0, 255}), ElementsAre(Grid<2>{0, 2}, Grid<2>{1, 2}));
}

TEST(GridIteration, StartsWalkedDimensionsAt0WhateverTheStart) {
  EXPECT_THAT(positionsOf<2>({2, 1}, {7, 9}, {0, 0}), ElementsAre(Grid<2>{0, 0}, Grid<2>{1, 0}));
}

TEST(GridIteration, EndsAtOnceWhenADimensionInsideAnEndlessOneIsEmpty) {
  EXPECT_THAT(positionsOf<2>({0, ~0UL}, {0, 0}, {0, 0}), IsEmpty());
  EXPECT_THAT(positionsOf<3>({2, 0, ~0UL}, {0, 0, 0}, {0, 0, 0}), IsEmpty());
  EXPECT_THAT(positionsOf<3>({0, 0, 2}, {7, 8, 9}, {1, 1, 0}),
              ElementsAre(Grid<3>{7, 8, 0}, Grid<3>{7, 8, 1}));
}

TEST(GridIteration, CallsNothingWhenAWalkedDimensionIsEmpty) {
  EXPECT_THAT(positionsOf<3>({2, 0, 4}, {0, 0, 0}, {0, 0, 0}), IsEmpty());
  EXPECT_THAT(positionsOf<3>({0, 9, 4}, {0, 3, 0}, {0, 1, 0}), IsEmpty());
  EXPECT_THAT(positionsOf<1>({0}, {0}, {0}), IsEmpty());
}

TEST(GridIteration, CallsOnceWithTheStartWhenEveryDimensionIsFixed) {
  EXPECT_THAT(positionsOf<3>({2, 3, 4}, {7, 8, 9}, {1, 1, 1}), ElementsAre(Grid<3>{7, 8, 9}));
}

TEST(GridIteration, NeverReadsTheExtentOfAFixedDimension) {
  EXPECT_THAT(positionsOf<2>({2, 0}, {0, 4}, {0, 1}), ElementsAre(Grid<2>{0, 4}, Grid<2>{1, 4}));
}

TEST(GridIteration, EnteredBelowTheTopLeavesTheUpperDimensionsAtTheStart) {
  std::vector<Grid<3>> positions;
  iterate<3, 0>(
      Grid<3>{2, 5, 5}, [&](const Grid<3>& position) { positions.push_back(position); },
      Grid<3>{9, 3, 4}, Mask<3>{0, 0, 0});
  EXPECT_THAT(positions, ElementsAre(Grid<3>{0, 3, 4}, Grid<3>{1, 3, 4}));
}

TEST(GridIteration, AnEmptyCallbackFailsAtTheFirstPosition) {
  const std::function<void(const Grid<1>&)> empty;
  EXPECT_THROW((iterate<1, 0>(Grid<1>{1}, empty, Grid<1>{0}, Mask<1>{0})), std::bad_function_call);
  EXPECT_NO_THROW((iterate<1, 0>(Grid<1>{0}, empty, Grid<1>{0}, Mask<1>{0})));
}

TEST(GridIteration, LetsAnExceptionOfTheCallbackThrough) {
  int calls = 0;
  const auto failAtSecond = [&](const Grid<1>& /*position*/) {
    if (++calls == 2) {
      throw std::domain_error("second");
    }
  };
  EXPECT_THROW((iterate<1, 0>(Grid<1>{5}, failAtSecond, Grid<1>{0}, Mask<1>{0})),
               std::domain_error);
  EXPECT_EQ(calls, 2);
}

// Every shape up to 3 in each dimension under every mask, against counting with carry.
TEST(GridIteration, AgreesWithCountingForEveryShapeAndMask) {
  for (unsigned long code = 0; code < 64 * 8; ++code) {
    const Grid<3> shape = {code & 3, code >> 2 & 3, code >> 4 & 3};
    Mask<3> mask = {};
    Grid<3> start = {};
    unsigned long calls = 1;
    for (std::size_t k = 0; k < 3; ++k) {
      mask[k] = static_cast<unsigned char>(code >> (6 + k) & 1);
      start[k] = mask[k] != 0 ? 5 : 0;
      calls *= mask[k] != 0 ? 1 : shape[k];
    }
    std::vector<Grid<3>> expected;
    Grid<3> position = start;
    for (unsigned long i = 0; i < calls; ++i) {
      expected.push_back(position);
      for (std::size_t k = 0; k < 3; ++k) {
        if (mask[k] == 0 && ++position[k] < shape[k]) {
          break;
        }
        position[k] = start[k];
      }
    }
    EXPECT_EQ(positionsOf<3>(shape, start, mask), expected) << "code " << code;
  }
}

}  // namespace
}  // namespace object_model
