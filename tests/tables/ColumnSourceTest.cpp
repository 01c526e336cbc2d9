#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <quillon/tables/Cursor.h>
#include <quillon/tables/Error.h>
#include <quillon/tables/Writers.h>

#include <string>

#include "SomeCells.h"
#include "TestArrays.h"
#include "support/Thrown.h"

namespace quillon::tables {
namespace {

using ::testing::ElementsAre;

std::vector<bool> missingOf(const Table& table, unsigned long column) {
  bool missing[3] = {true, true, true};
  table.readMissing(column, 0, 3, missing);
  return std::vector<bool>(missing, missing + 3);
}

TEST(ColumnSourceTest, ATableIsMadeOfColumnsOfOnesOwn) {
  const Table table = nullables();
  EXPECT_EQ(table.rows(), 3U);
  EXPECT_THAT(namesOf(table), ElementsAre("i", "b", "t", "d"));
  EXPECT_EQ(table.columns()[0].unit, "m");
  EXPECT_THAT(cellsOf<int>(table, 0), ElementsAre(1, 2, 3));
  EXPECT_EQ(table.cellsInPlace(0, 0, 3), nullptr);
}

/// Truth values of which the source says no more than it must.
class Plain final : public ColumnSource {
 public:
  void describe(Column& column) const override {
    column.name = "b";
    column.type = ColumnType::Boolean;
    column.isNullable = true;
  }
  void read(unsigned long /*firstRow*/, unsigned long count, void* destination) const override {
    std::fill_n(static_cast<bool*>(destination), count, true);
  }
};

TEST(ColumnSourceTest, NoCellIsMissingUnlessTheSourceSaysSo) {
  bool missing[] = {true, true, true};
  Plain().readMissing(0, 2, missing);
  EXPECT_THAT(missing, ElementsAre(false, false, true));
}

/// Truth values in blocks, that knows what it was asked for.
class InBlocks final : public ColumnSource {
 public:
  explicit InBlocks(std::vector<unsigned long>& asked) : m_asked(asked) {}
  void describe(Column& column) const override {
    column.name = "b";
    column.type = ColumnType::Boolean;
    column.isNullable = true;
  }
  void read(unsigned long /*firstRow*/, unsigned long count, void* destination) const override {
    m_asked.push_back(count);
    std::fill_n(static_cast<bool*>(destination), count, true);
  }
  void readMissing(unsigned long /*firstRow*/, unsigned long count,
                   bool* destination) const override {
    m_asked.push_back(count);
    std::fill_n(destination, count, true);
  }
  const void* cellsInPlace(unsigned long /*firstRow*/, unsigned long count) const override {
    m_asked.push_back(count);
    return this;
  }
  bool isInMemory() const override { return false; }
  std::vector<unsigned long> chunks() const override { return {300'000}; }

 private:
  std::vector<unsigned long>& m_asked;
};

Table inBlocks(std::vector<unsigned long>& asked) {
  std::vector<std::unique_ptr<ColumnSource>> columns;
  columns.push_back(std::make_unique<InBlocks>(asked));
  return {std::move(columns), 2'000'000};
}

TEST(ColumnSourceTest, RunsAreWholeBlocksOfTheFirstColumn) {
  std::vector<unsigned long> asked;
  EXPECT_EQ(inBlocks(asked).runFrom(0), 900'000U);  // of 2^20 cells
}

TEST(ColumnSourceTest, OneColumnInMemoryHasRunsOfAllCellsThatAreReadTogether) {
  std::vector<std::unique_ptr<ColumnSource>> columns;
  columns.push_back(std::make_unique<SomeCells<int>>(
      "i", ColumnType::Int32, std::vector<int>(70'000), std::vector<bool>()));
  EXPECT_EQ(Table(std::move(columns), 70'000).runFrom(0), 65'536U);
}

TEST(ColumnSourceTest, ASourceIsNeverAskedForNoCells) {
  std::vector<unsigned long> asked;
  const Table table = inBlocks(asked);
  bool cells[2] = {};
  table.read(0, 5, 0, cells);
  table.readMissing(0, 5, 0, cells);
  EXPECT_EQ(table.cellsInPlace(0, 5, 0), nullptr);
  EXPECT_THAT(asked, ElementsAre());
  table.read(0, 5, 2, cells);
  table.readMissing(0, 5, 1, cells);
  EXPECT_THAT(asked, ElementsAre(2, 1));
}

TEST(ColumnSourceTest, ATableMayHaveRowsWithoutColumns) {
  const Table table(std::vector<std::unique_ptr<ColumnSource>>(), 5);
  EXPECT_EQ(table.rows(), 5U);
  EXPECT_TRUE(table.columns().empty());
}

TEST(ColumnSourceTest, TwoColumnsOfOneNameAreRefused) {
  std::vector<std::unique_ptr<ColumnSource>> columns;
  for (int k = 0; k < 2; ++k) {
    columns.push_back(std::make_unique<SomeCells<int>>("i", ColumnType::Int32, std::vector<int>{1},
                                                       std::vector<bool>()));
  }
  EXPECT_EQ(::test::thrownBy<Error>([&] { Table(std::move(columns), 1); }),
            "Two columns are called 'i'");
}

TEST(ColumnSourceTest, ACellIsMissingByItsValueOrByItsSource) {
  const Table table = nullables();
  EXPECT_THAT(missingOf(table, 0), ElementsAre(false, true, false));
  EXPECT_THAT(missingOf(table, 1), ElementsAre(true, false, false));
  EXPECT_THAT(missingOf(table, 2), ElementsAre(false, false, true));
  EXPECT_THAT(missingOf(table, 3), ElementsAre(true, false, true));
}

TEST(ColumnSourceTest, ACursorTellsWhatIsMissing) {
  Cursor cursor(nullables());
  ASSERT_TRUE(cursor.next());
  EXPECT_TRUE(cursor.isMissing(0, 1));
  EXPECT_FALSE(cursor.isMissing(0, 2));
  EXPECT_TRUE(cursor.isMissing(3, 0));
  EXPECT_TRUE(cursor.isMissing(3, 2));
  EXPECT_EQ(cursor.missing(0)[1], true);
}

TEST(ColumnSourceTest, WritersLeaveOutWhatIsMissing) {
  std::string csv;
  writeCsv(nullables(), into(csv));
  EXPECT_EQ(csv, "i,b,t,d\n1,,a,\n,true,b,0.5\n3,false,,\n");
  std::string lines;
  writeJsonLines(nullables(), into(lines));
  EXPECT_EQ(lines,
            "{\"i\": 1, \"b\": null, \"t\": \"a\", \"d\": null}\n"
            "{\"i\": null, \"b\": true, \"t\": \"b\", \"d\": 0.5}\n"
            "{\"i\": 3, \"b\": false, \"t\": null, \"d\": null}\n");
  std::string text;
  writeText(nullables(), into(text));
  EXPECT_EQ(text,
            "i  b      t    d\n"
            "m  m      m    m\n"
            "1         a\n"
            "   true   b  0.5\n"
            "3  false\n"
            "[3 rows x 4 columns]\n");
}

/// Integers in the least that a source has to say, all of which may be missing.
class LeastSource final : public ColumnSource {
 public:
  explicit LeastSource(ColumnType type) : m_type(type) {}
  void describe(Column& column) const override {
    column.name = "least";
    column.type = m_type;
    column.isNullable = true;
  }
  void read(unsigned long firstRow, unsigned long count, void* destination) const override {
    const long cells[] = {memory::MISSING_TIME, 0, 1};
    std::copy_n(cells + firstRow, count, static_cast<long*>(destination));
  }

 private:
  ColumnType m_type;
};

Table leastTable(ColumnType type) {
  std::vector<std::unique_ptr<ColumnSource>> columns;
  columns.push_back(std::make_unique<LeastSource>(type));
  return {std::move(columns), 3};
}

TEST(ColumnSourceTest, NothingIsMissingUnlessTheSourceOrAValueSaysSo) {
  EXPECT_THAT(missingOf(leastTable(ColumnType::Int64), 0), ElementsAre(false, false, false));
  EXPECT_THAT(missingOf(leastTable(ColumnType::Time), 0), ElementsAre(true, false, false));
}

TEST(ColumnSourceTest, TimesAreDatesUnlessTheSourceSaysOtherwise) {
  EXPECT_EQ(leastTable(ColumnType::Time).timeForm(0), memory::TimeForm::Date);
}

TEST(ColumnSourceTest, FloatsThatAreNoNumbersAreMissing) {
  std::vector<std::unique_ptr<ColumnSource>> columns;
  columns.push_back(std::make_unique<SomeCells<float>>(
      "f", ColumnType::Float32, std::vector<float>{1, std::nanf(""), 2}, std::vector<bool>()));
  columns.push_back(std::make_unique<SomeCells<int>>(
      "i", ColumnType::Int32, std::vector<int>{1, 2, 3}, std::vector<bool>()));
  const Table table(std::move(columns), 3);
  EXPECT_THAT(missingOf(table, 0), ElementsAre(false, true, false));
  EXPECT_THAT(missingOf(table, 1), ElementsAre(false, false, false));
}

TEST(ColumnSourceTest, NoCellsAreNeitherMissingNorThere) {
  const Table table = nullables();
  bool missing[1] = {true};
  table.readMissing(0, 3, 0, missing);
  table.readMissing(3, 3, 0, missing);
  EXPECT_THAT(missing, ElementsAre(true));
}

}  // namespace
}  // namespace quillon::tables
