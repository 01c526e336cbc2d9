#include <gtest/gtest.h>
#include <quillon/memory/Dictionary.h>
#include <quillon/tables/Cursor.h>

#include <cmath>
#include <stdexcept>

#include "SomeCells.h"
#include "TestArrays.h"
#include "support/Thrown.h"

namespace quillon::tables {
namespace {

using memory::Dictionary;
using memory::DoubleArray;

TEST(CursorTest, RunsFollowEachOtherToTheEnd) {
  constexpr unsigned long ROWS = 300'000;
  Dictionary data("data");
  data.add(DoubleArray("a", {{"x", ROWS}}, countedUp<double>(ROWS)));
  Cursor cursor(Table(data, plan(data)));
  unsigned long row = 0;
  unsigned long runs = 0;
  while (cursor.next()) {
    ASSERT_EQ(cursor.firstRow(), row);
    ASSERT_GT(cursor.rows(), 0U);
    for (unsigned long k = 0; k < cursor.rows(); ++k, ++row) {
      ASSERT_EQ(cursor.cells<unsigned long>(0)[k], row);
      ASSERT_EQ(cursor.cells<double>(1)[k], static_cast<double>(row));
    }
    ++runs;
  }
  EXPECT_EQ(row, ROWS);
  EXPECT_GT(runs, 1U);
  EXPECT_FALSE(cursor.next());
}

TEST(CursorTest, ARunIsABoxOfTheGrid) {
  Dictionary data("data");
  data.add(DoubleArray("a", {{"x", 1000}, {"y", 100}}, countedUp<double>(100'000)));
  Cursor cursor(Table(data, plan(data)));
  while (cursor.next()) {
    EXPECT_EQ(cursor.firstRow() % 1000, 0U);
    EXPECT_EQ(cursor.rows() % 1000, 0U);
  }
}

TEST(CursorTest, EndsWithTheMostRowsThatAreAskedFor) {
  Dictionary data("data");
  data.add(DoubleArray("a", {{"x", 20}}, countedUp<double>(20)));
  const Table table(data, plan(data));
  Cursor cursor(table, 7);
  EXPECT_TRUE(cursor.next());
  EXPECT_EQ(cursor.rows(), 7U);
  EXPECT_FALSE(cursor.next());
  Cursor more(table, 70);
  EXPECT_TRUE(more.next());
  EXPECT_EQ(more.rows(), 20U);
}

TEST(CursorTest, ATableWithoutRowsHasNoRun) {
  Dictionary data("data");
  data.add(DoubleArray("a", {{"x", 0}}, {}));
  Cursor cursor(Table(data, plan(data)));
  EXPECT_FALSE(cursor.next());
}

TEST(CursorTest, TellsWhatIsMissing) {
  Dictionary data("data");
  data.add(DoubleArray("a", {{"x", 2}}, {1, std::nan("")}));
  data.add(Hours("t", {{"x", 2}}, {std::nan(""), 1}));
  data.add(memory::IntArray("i", {{"x", 2}}, {memory::MISSING_TIME, 0}));
  data.add(Stored<float>("f", {{"x", 2}}, {std::nan(""), HUGE_VAL}));
  Cursor cursor(Table(data, plan(data)));
  ASSERT_TRUE(cursor.next());
  EXPECT_FALSE(cursor.isMissing(1, 0));
  EXPECT_TRUE(cursor.isMissing(1, 1));
  EXPECT_TRUE(cursor.isMissing(2, 0));
  EXPECT_FALSE(cursor.isMissing(2, 1));
  EXPECT_FALSE(cursor.isMissing(3, 0));
  EXPECT_TRUE(cursor.isMissing(4, 0));
  EXPECT_FALSE(cursor.isMissing(4, 1));
}

TEST(CursorTest, CellsOfAnotherTypeAreRefused) {
  Dictionary data("data");
  data.add(DoubleArray("a", {{"x", 2}}, {1, 2}));
  Cursor cursor(Table(data, plan(data)));
  ASSERT_TRUE(cursor.next());
  EXPECT_EQ(::test::thrownBy<std::invalid_argument>([&] { cursor.cells<float>(1); }),
            "The column is of another type than its cells were asked for");
  EXPECT_THROW(cursor.cells<double>(2), std::out_of_range);
}

TEST(CursorTest, OneRowTellsWhatIsMissing) {
  std::vector<std::unique_ptr<ColumnSource>> columns;
  columns.push_back(std::make_unique<SomeCells<int>>("i", ColumnType::Int32, std::vector<int>{1},
                                                     std::vector<bool>{true}));
  Cursor cursor(Table(std::move(columns), 1));
  ASSERT_TRUE(cursor.next());
  EXPECT_TRUE(cursor.missing(0)[0]);
}

TEST(CursorTest, ColumnsWhoseCellsTellThemselvesHaveNoOtherSign) {
  Dictionary data("data");
  data.add(DoubleArray("a", {{"x", 2}}, {1, std::nan("")}));
  Cursor cursor(Table(data, plan(data)));
  ASSERT_TRUE(cursor.next());
  EXPECT_EQ(cursor.missing(0), nullptr);
  EXPECT_EQ(cursor.missing(1), nullptr);
}

TEST(CursorTest, EachRunIsReportedAndNothingBehindTheLast) {
  Dictionary data("data");
  data.add(DoubleArray("a", {{"x", 65537}}, countedUp<double>(65537)));
  std::vector<unsigned long> runs;
  const Table table =
      Table(data, plan(data)).reporting([&](unsigned long rows) { runs.push_back(rows); });
  Cursor cursor(table, 32769);
  while (cursor.next()) {
  }
  EXPECT_FALSE(cursor.next());
  EXPECT_EQ(runs, (std::vector<unsigned long>{32768, 1}));
}

TEST(CursorTest, EachRunTellsWhatIsMissingInIt) {
  constexpr unsigned long ROWS = 200'000;
  std::vector<bool> missing(ROWS);
  missing[5] = true;
  missing[150'000] = true;
  std::vector<std::unique_ptr<ColumnSource>> columns;
  columns.push_back(std::make_unique<SomeCells<int>>("i", ColumnType::Int32, std::vector<int>(ROWS),
                                                     std::move(missing)));
  Cursor cursor(Table(std::move(columns), ROWS));
  std::vector<unsigned long> found;
  unsigned long runs = 0;
  for (; cursor.next(); ++runs) {
    for (unsigned long k = 0; k < cursor.rows(); ++k) {
      if (cursor.isMissing(0, k)) {
        found.push_back(cursor.firstRow() + k);
      }
    }
  }
  EXPECT_GT(runs, 1U);
  EXPECT_EQ(found, (std::vector<unsigned long>{5, 150'000}));
}

}  // namespace
}  // namespace quillon::tables
