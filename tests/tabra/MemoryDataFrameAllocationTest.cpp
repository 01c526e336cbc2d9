#include <gtest/gtest.h>
#include <tabra/MemoryDataFrame.h>

#include <array>
#include <new>
#include <string>

#include "support/Allocations.h"
#include "support/TableText.h"

namespace tabra {
namespace {

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
  while (failures < 10 && test::runOutOfMemory(failures, [&] { frame.addRows(1, 100); }).badAlloc) {
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
  while (failures < 10 && test::runOutOfMemory(failures, [&] {
                            frame.addColumn(longName, DataType(DataTypeId::UInt64));
                          }).badAlloc) {
    EXPECT_EQ(test::tableText(frame), before) << "allocation " << failures;
    ++failures;
  }
  EXPECT_EQ(frame.shape()[0], 2U);
  EXPECT_GE(failures, 3);  // the name, the cells and the list of columns
}

}  // namespace
}  // namespace tabra
