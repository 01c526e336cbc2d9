// A program of its own: it replaces the global allocation functions to let a chosen allocation
// fail.
#include <gtest/gtest.h>
#include <tabra/MemoryDataFrame.h>

#include <array>
#include <atomic>
#include <cstdlib>
#include <new>
#include <string>

#include "support/TableText.h"

namespace {

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
  return block;
}

void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t /*size*/) noexcept { std::free(block); }

// Lets absurd allocations fail under the sanitizers as they do without.
extern "C" __attribute__((visibility("default"))) const char* __asan_default_options() {
  return "allocator_may_return_null=1";
}
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_options() {
  return "allocator_may_return_null=1";
}

namespace tabra {
namespace {

template <class Call>
bool runsOutOfMemory(long failing, const Call& call) {
  bool badAlloc = false;
  allocationsUntilFailure = failing;
  try {
    call();
  } catch (const std::bad_alloc&) {
    badAlloc = true;
  }
  allocationsUntilFailure = -1;
  return badAlloc;
}

constexpr unsigned long FAR_TOO_MANY = 1UL << 59U;  // a vector may count them, no memory holds them

TEST(MemoryDataFrameAllocationTest, RowsThatNoMemoryHoldsChangeNothing) {
  MemoryDataFrame frame;
  frame.addRows(0, 2);
  frame.addColumn("a", DataType(DataTypeId::Int64));
  EXPECT_THROW(frame.addRows(1, FAR_TOO_MANY), std::bad_alloc);
  EXPECT_EQ(test::tableText(frame), "a () int: 0 0\n2 rows\n");
}

TEST(MemoryDataFrameAllocationTest, AColumnThatNoMemoryHoldsChangesNothing) {
  MemoryDataFrame frame;
  frame.addRows(0, FAR_TOO_MANY);
  EXPECT_THROW(frame.addColumn("huge", DataType(DataTypeId::Float64)), std::bad_alloc);
  EXPECT_EQ(frame.shape(), (std::array<unsigned long, 2>{0, FAR_TOO_MANY}));
  frame.removeRows(0, FAR_TOO_MANY);
  frame.addColumn("small", DataType(DataTypeId::Float64));
  EXPECT_EQ(test::tableText(frame), "small () double:\n0 rows\n");
}

// The first columns have grown by the time a later one finds no memory.
TEST(MemoryDataFrameAllocationTest, RunningOutOfMemoryInALaterColumnTakesTheRowsBack) {
  MemoryDataFrame frame;
  frame.addRows(0, 2);
  const std::array<long, 2> values = {1, 2};
  for (const char* name : {"a", "b", "c"}) {
    frame.addColumn(name, DataType(DataTypeId::Int64));
    frame.write(frame.shape()[0] - 1, 0, 2, values.data());
  }
  const std::string before = test::tableText(frame);
  long failures = 0;
  while (failures < 10 && runsOutOfMemory(failures, [&] { frame.addRows(1, 100); })) {
    EXPECT_EQ(test::tableText(frame), before) << "allocation " << failures;
    ++failures;
  }
  EXPECT_EQ(frame.shape()[1], 102U);
  EXPECT_GE(failures, 1);
}

TEST(MemoryDataFrameAllocationTest, RunningOutOfMemoryForAColumnChangesNothing) {
  MemoryDataFrame frame;
  frame.addRows(0, 2);
  frame.addColumn("a", DataType(DataTypeId::Int64));
  const std::string before = test::tableText(frame);
  const std::string longName(100, 'n');
  long failures = 0;
  while (failures < 10 && runsOutOfMemory(failures, [&] {
           frame.addColumn(longName, DataType(DataTypeId::UInt64));
         })) {
    EXPECT_EQ(test::tableText(frame), before) << "allocation " << failures;
    ++failures;
  }
  EXPECT_EQ(frame.shape()[0], 2U);
  EXPECT_GE(failures, 3);  // the name, the cells and the list of columns
}

}  // namespace
}  // namespace tabra
