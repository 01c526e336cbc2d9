#include <gtest/gtest.h>
#include <object_model/TupleX.h>

#include <array>
#include <memory>
#include <new>
#include <vector>

#include "support/Allocations.h"
#include "support/Values.h"

namespace object_model {
namespace {

using test::valuesOf;
using Values = std::vector<unsigned long>;

template <class Construct>
void expectCleanFailures(long allocations, const Construct& construct) {
  for (long failing = 0; failing < allocations; ++failing) {
    const test::OutOfMemory outcome = test::runOutOfMemory(failing, construct);
    EXPECT_TRUE(outcome.badAlloc) << "allocation " << failing;
    EXPECT_EQ(outcome.leakedBlocks, 0) << "allocation " << failing;
  }
  const test::OutOfMemory enough = test::runOutOfMemory(allocations, construct);
  EXPECT_FALSE(enough.badAlloc) << "more than " << allocations << " allocations";
  EXPECT_EQ(enough.leakedBlocks, 0);
}

TEST(TupleXAllocationTest, AFailedConstructionLeavesNothingBehind) {
  const std::array<unsigned long, 3> values = {1, 2, 3};
  const TupleX source({4, 5});
  expectCleanFailures(2, [] { const TupleX tuple(3UL); });
  expectCleanFailures(2, [&] { const TupleX tuple(values.data(), values.size()); });
  expectCleanFailures(2, [] { const TupleX tuple({6, 7}); });
  expectCleanFailures(2, [&] { const TupleX tuple(source); });
}

TEST(TupleXAllocationTest, AnEmptyTupleHasItsStorageToo) {
  expectCleanFailures(1, [] { const TupleX tuple(0UL); });
  expectCleanFailures(1, [] { const TupleX tuple(nullptr, 0); });
}

TEST(TupleXAllocationTest, AFailedResizeChangesNothing) {
  TupleX tuple({1, 2});
  const test::OutOfMemory outcome = test::runOutOfMemory(0, [&] { tuple.resize(100); });
  EXPECT_TRUE(outcome.badAlloc);
  EXPECT_EQ(outcome.leakedBlocks, 0);
  EXPECT_EQ(valuesOf(tuple), (Values{1, 2}));
}

TEST(TupleXAllocationTest, AFailedAssignmentChangesNothing) {
  TupleX tuple({1, 2});
  const TupleX source(100UL);
  const test::OutOfMemory outcome = test::runOutOfMemory(0, [&] { tuple = source; });
  EXPECT_TRUE(outcome.badAlloc);
  EXPECT_EQ(outcome.leakedBlocks, 0);
  EXPECT_EQ(valuesOf(tuple), (Values{1, 2}));
}

TEST(TupleXAllocationTest, ShrinkingAndFittingAssignmentsNeedNoMemory) {
  TupleX tuple({1, 2, 3});
  const TupleX source({8, 9});
  EXPECT_FALSE(test::runOutOfMemory(0, [&] { tuple = source; }).badAlloc);
  EXPECT_EQ(valuesOf(tuple), (Values{8, 9}));
  EXPECT_FALSE(test::runOutOfMemory(0, [&] { tuple.resize(1); }).badAlloc);
  EXPECT_EQ(valuesOf(tuple), Values{8});
}

TEST(TupleXAllocationTest, DestroyingThroughTheBaseReleasesTheStorage) {
  const test::OutOfMemory outcome = test::runOutOfMemory(
      -1, [] { const std::unique_ptr<Tuple> tuple = std::make_unique<TupleX>(3UL); });
  EXPECT_EQ(outcome.leakedBlocks, 0);
}

}  // namespace
}  // namespace object_model
