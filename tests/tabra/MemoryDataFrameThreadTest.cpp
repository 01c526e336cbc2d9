#include <gtest/gtest.h>
#include <tabra/MemoryDataFrame.h>

#include <array>
#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace tabra {
namespace {

/// Makes every thread begin at the same moment, as far as that goes.
class StartLine {
 public:
  explicit StartLine(int runners) : m_missing(runners) {}
  void wait() {
    --m_missing;
    while (m_missing > 0) {
      std::this_thread::yield();
    }
  }

 private:
  std::atomic<int> m_missing;
};

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
    StartLine start(THREADS);
    std::vector<std::thread> readers;
    for (int k = 0; k < THREADS; ++k) {
      readers.emplace_back([&] {
        start.wait();
        expectSettled(frame);
      });
    }
    for (std::thread& reader : readers) {
      reader.join();
    }
  }
}

}  // namespace
}  // namespace tabra
