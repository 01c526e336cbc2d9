#include <gtest/gtest.h>
#include <tabra/MemoryDataFrame.h>

#include <array>

#include "support/Threads.h"

namespace tabra {
namespace {

void expectSettled(const MemoryDataFrame& frame) {
  long value = 0;
  EXPECT_EQ(frame.columnName(0), "b");
  EXPECT_EQ(frame.columnUnit(0), "m");
  EXPECT_EQ(frame.columnDataType(0).id(), DataTypeId::Int64);
  frame.read(0, 1, 1, &value);
  EXPECT_EQ(value, 20);
  EXPECT_EQ(frame.shape(), (std::array<unsigned long, 2>{1, 2}));
}

// The first call after a run of removals renumbers the columns, even when it is a const one: such
// calls may still run at the same time. The thread sanitizer watches.
TEST(MemoryDataFrameThreadTest, ConstCallsRightAfterRemovalsMayRunConcurrently) {
  constexpr int THREADS = 4;
  const std::array<long, 2> values = {10, 20};
  for (int round = 0; round < 100; ++round) {
    MemoryDataFrame frame;
    frame.addRows(0, 2);
    for (const char* name : {"a", "b", "c"}) {
      frame.addColumn(name, DataType(DataTypeId::Int64));
    }
    frame.write(1, 0, 2, values.data());
    frame.setUnit(1, "m");
    frame.removeColumn(0);
    frame.removeColumn(2);
    test::concurrently(THREADS, [&frame](int /*k*/) { expectSettled(frame); });
  }
}

}  // namespace
}  // namespace tabra
