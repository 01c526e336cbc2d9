#include <gtest/gtest.h>
#include <quillon/memory/Dictionary.h>
#include <quillon/tables/Formats.h>

#include "TestArrays.h"
#include "support/Allocations.h"

namespace quillon::tables {
namespace {

memory::Dictionary measurements() {
  memory::Dictionary data("data");
  data.add(memory::DoubleArray("a column with a long name", {{"x", 2}, {"c", 2}}, {1, 2, 3, 4}));
  data.add(memory::StringArray("s", {{"x", 2}}, {"short", "a text that needs memory of its own"}));
  data.add(Hours("t", {{"x", 2}}, {0, 1}));
  return data;
}

void expectNothingLeft(const ::test::OutOfMemory& outcome) {
  EXPECT_TRUE(outcome.badAlloc);
  EXPECT_EQ(outcome.leakedBlocks, 0);
}

TEST(OutOfMemoryTest, ThereIsNoPlan) {
  const memory::Dictionary data = measurements();
  EXPECT_GE(::test::failEachAllocation([&] { return plan(data); }, expectNothingLeft), 10);
}

TEST(OutOfMemoryTest, ThereIsNoTable) {
  const memory::Dictionary data = measurements();
  const Plan planned = plan(data);
  EXPECT_GE(
      ::test::failEachAllocation([&] { const Table table(data, planned); }, expectNothingLeft), 3);
}

// Half a table must not read as a whole one: the caller is told, whatever was written before.
TEST(OutOfMemoryTest, WritersTellTheCaller) {
  const memory::Dictionary data = measurements();
  const Table table(data, plan(data));
  for (const std::string& format : formatNames()) {
    SCOPED_TRACE(format);
    std::string whole;
    whole.reserve(100'000);
    const auto writeAll = [&] {
      whole.clear();
      write(table, *formatOf(format), [&](std::string_view piece) {
        const ::test::SparedAllocations spared;
        whole.append(piece);
      });
    };
    EXPECT_GE(::test::failEachAllocation(writeAll, expectNothingLeft), 1);
  }
}

}  // namespace
}  // namespace quillon::tables
