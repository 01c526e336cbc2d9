// A program of its own: it replaces the global allocation functions to let chosen allocations fail.
#include <gtest/gtest.h>
#include <object_model/TupleX.h>

#include <array>
#include <atomic>
#include <cstdlib>
#include <memory>
#include <new>
#include <vector>

#include "support/Values.h"

namespace {

std::atomic<long> liveBlocks{0};
std::atomic<long> allocationsUntilFailure{-1};  // negative: none fails

}  // namespace

void* operator new(std::size_t size) {
  if (allocationsUntilFailure.load() >= 0 && allocationsUntilFailure.fetch_sub(1) == 0) {
    throw std::bad_alloc();
  }
  void* block = std::malloc(size == 0 ? 1 : size);
  if (block == nullptr) {
    throw std::bad_alloc();
  }
  ++liveBlocks;
  return block;
}

void operator delete(void* block) noexcept {
  if (block != nullptr) {
    --liveBlocks;
    std::free(block);
  }
}

void operator delete(void* block, std::size_t /*size*/) noexcept { operator delete(block); }

namespace object_model {
namespace {

using test::valuesOf;
using Values = std::vector<unsigned long>;

/// Runs `call` with its allocation number `failing` (from 0) out of memory. Tells whether that was
/// reported as std::bad_alloc, and how many more blocks are in use afterwards.
struct Outcome {
  bool badAlloc;
  long leakedBlocks;
};

template <class Call>
Outcome runOutOfMemory(long failing, const Call& call) {
  Outcome outcome = {false, 0};
  const long before = liveBlocks;
  allocationsUntilFailure = failing;
  try {
    call();
  } catch (const std::bad_alloc&) {
    outcome.badAlloc = true;
  }
  allocationsUntilFailure = -1;
  outcome.leakedBlocks = liveBlocks - before;
  return outcome;
}

template <class Construct>
void expectCleanFailures(long allocations, const Construct& construct) {
  for (long failing = 0; failing < allocations; ++failing) {
    const Outcome outcome = runOutOfMemory(failing, construct);
    EXPECT_TRUE(outcome.badAlloc) << "allocation " << failing;
    EXPECT_EQ(outcome.leakedBlocks, 0) << "allocation " << failing;
  }
  const Outcome enough = runOutOfMemory(allocations, construct);
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
  const Outcome outcome = runOutOfMemory(0, [&] { tuple.resize(100); });
  EXPECT_TRUE(outcome.badAlloc);
  EXPECT_EQ(outcome.leakedBlocks, 0);
  EXPECT_EQ(valuesOf(tuple), (Values{1, 2}));
}

TEST(TupleXAllocationTest, AFailedAssignmentChangesNothing) {
  TupleX tuple({1, 2});
  const TupleX source(100UL);
  const Outcome outcome = runOutOfMemory(0, [&] { tuple = source; });
  EXPECT_TRUE(outcome.badAlloc);
  EXPECT_EQ(outcome.leakedBlocks, 0);
  EXPECT_EQ(valuesOf(tuple), (Values{1, 2}));
}

TEST(TupleXAllocationTest, ShrinkingAndFittingAssignmentsNeedNoMemory) {
  TupleX tuple({1, 2, 3});
  const TupleX source({8, 9});
  EXPECT_FALSE(runOutOfMemory(0, [&] { tuple = source; }).badAlloc);
  EXPECT_EQ(valuesOf(tuple), (Values{8, 9}));
  EXPECT_FALSE(runOutOfMemory(0, [&] { tuple.resize(1); }).badAlloc);
  EXPECT_EQ(valuesOf(tuple), Values{8});
}

TEST(TupleXAllocationTest, DestroyingThroughTheBaseReleasesTheStorage) {
  const Outcome outcome = runOutOfMemory(
      -1, [] { const std::unique_ptr<Tuple> tuple = std::make_unique<TupleX>(3UL); });
  EXPECT_EQ(outcome.leakedBlocks, 0);
}

}  // namespace
}  // namespace object_model
