#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <object_model/TupleX.h>
#include <quillon/memory/Dictionary.h>
#include <quillon/memory/TimeArray.h>
#include <quillon/tables/Error.h>
#include <quillon/tables/Table.h>
#include <quillon/tables/Writers.h>
#include <rapidcheck/gtest.h>
#include <tabra/MemoryDataFrame.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <tuple>

#include "TestArrays.h"
#include "support/BareArray.h"
#include "support/Properties.h"
#include "support/Thrown.h"

namespace quillon::tables {
namespace {

using memory::Dictionary;
using memory::DoubleArray;
using ::testing::ElementsAre;

Request withIndex(const std::vector<std::string>& names) {
  Request request;
  request.index = names;
  return request;
}

TEST(TableTest, ColumnsHaveTheTypesInWhichValuesAreStored) {
  Dictionary data("data");
  data.add(Stored<short>("s", {{"x", 2}}, {1, 2}));
  data.add(Stored<float>("f", {{"x", 2}}, {0.5, 2}));
  data.add(Stored<unsigned char>("b", {{"x", 2}}, {0, 255}));
  data.add(memory::BooleanArray("yes", {{"x", 2}}, {true, false}));
  data.add(memory::StringArray("t", {{"x", 2}}, {"a", "b"}));
  data.add(Hours("when", {{"x", 2}}, {0, 1}, memory::Calendar::NoLeap));
  DoubleArray metres("d", {{"x", 2}}, {1, 2});
  metres.setUnit("m");
  data.add(std::move(metres));
  const Table table(data, plan(data));
  std::vector<ColumnType> types;
  for (const Column& column : table.columns()) {
    types.push_back(column.type);
  }
  EXPECT_THAT(types, ElementsAre(ColumnType::UInt64, ColumnType::Int16, ColumnType::Float32,
                                 ColumnType::UInt8, ColumnType::Boolean, ColumnType::Text,
                                 ColumnType::Time, ColumnType::Float64));
  EXPECT_EQ(table.columns()[7].unit, "m");
  EXPECT_EQ(table.columns()[6].unit, "");
  EXPECT_EQ(table.columns()[6].calendar, memory::Calendar::NoLeap);
  EXPECT_THAT(cellsOf<short>(table, 1), ElementsAre(1, 2));
  EXPECT_THAT(cellsOf<float>(table, 2), ElementsAre(0.5F, 2.0F));
  EXPECT_THAT(cellsOf<unsigned char>(table, 3), ElementsAre(0, 255));
  bool truths[2] = {};
  table.read(4, 0, 2, truths);
  EXPECT_THAT(truths, ElementsAre(true, false));
  EXPECT_THAT(cellsOf<std::string>(table, 5), ElementsAre("a", "b"));
  EXPECT_THAT(cellsOf<long>(table, 6), ElementsAre(0, 3'600'000'000));
}

TEST(TableTest, AColumnIsOneOfNumbersThatAreAllThereUnlessDescribedOtherwise) {
  const Column column;
  EXPECT_EQ(column.type, ColumnType::Float64);
  EXPECT_EQ(column.calendar, memory::Calendar::Standard);
  EXPECT_FALSE(column.isIndex);
  EXPECT_FALSE(column.isNullable);
}

TEST(TableTest, TimesAndFractionsTellWhetherTheyAreMissing) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(isMissing(nan, ColumnType::Float64));
  EXPECT_TRUE(isMissing(static_cast<float>(nan), ColumnType::Float32));
  EXPECT_FALSE(isMissing(0.0, ColumnType::Float64));
  EXPECT_TRUE(isMissing(memory::MISSING_TIME, ColumnType::Time));
  EXPECT_FALSE(isMissing(0L, ColumnType::Time));
  EXPECT_FALSE(isMissing(memory::MISSING_TIME, ColumnType::Int64));
  EXPECT_FALSE(isMissing(false, ColumnType::Boolean));
  EXPECT_FALSE(isMissing(std::string(), ColumnType::Text));
  EXPECT_TRUE(tellsMissing(ColumnType::Time));
  EXPECT_TRUE(tellsMissing(ColumnType::Float32));
  EXPECT_TRUE(tellsMissing(ColumnType::Float64));
  EXPECT_FALSE(tellsMissing(ColumnType::Int64));
}

TEST(TableTest, TheFirstIndexAxisVariesFastest) {
  Dictionary data("data");
  data.add(DoubleArray("a", {{"x", 2}, {"y", 3}}, countedUp<double>(6)));
  data.add(DoubleArray("b", {{"y", 3}}, {10, 20, 30}));
  const Table table(data, plan(data, withIndex({"y", "x"})));
  EXPECT_THAT(namesOf(table), ElementsAre("y", "x", "a", "b"));
  EXPECT_THAT(cellsOf<unsigned long>(table, 0), ElementsAre(0, 1, 2, 0, 1, 2));
  EXPECT_THAT(cellsOf<unsigned long>(table, 1), ElementsAre(0, 0, 0, 1, 1, 1));
  EXPECT_THAT(cellsOf<double>(table, 2), ElementsAre(0, 2, 4, 1, 3, 5));
  EXPECT_THAT(cellsOf<double>(table, 3), ElementsAre(10, 20, 30, 10, 20, 30));
}

TEST(TableTest, IndexColumnsHoldCoordinates) {
  Dictionary data("data");
  data.add(DoubleArray("a", {{"x", 2}, {"y", 2}}, countedUp<double>(4)));
  data.add(memory::StringArray("x", {{"x", 2}}, {"left", "right"}));
  const Table table(data, plan(data, withIndex({"x", "y"})));
  EXPECT_THAT(cellsOf<std::string>(table, 0), ElementsAre("left", "right", "left", "right"));
  EXPECT_TRUE(table.columns()[0].isIndex);
  EXPECT_FALSE(table.columns()[2].isIndex);
}

TEST(TableTest, PositionsAreThoseOfTheArrayAfterASelection) {
  Dictionary data("data");
  data.add(DoubleArray("a", {{"x", 6}, {"y", 2}}, countedUp<double>(12)));
  Request request = withIndex({"x"});
  request.selections = {{"x", PositionRange{1, 6, 2}}, {"y", Position{1}}};
  const Table table(data, plan(data, request));
  EXPECT_THAT(namesOf(table), ElementsAre("y", "x", "a"));
  EXPECT_THAT(cellsOf<unsigned long>(table, 0), ElementsAre(1, 1, 1));
  EXPECT_THAT(cellsOf<unsigned long>(table, 1), ElementsAre(1, 3, 5));
  EXPECT_THAT(cellsOf<double>(table, 2), ElementsAre(7, 9, 11));
}

TEST(TableTest, ReadsArraysOfFilesInBlocksOfLimitedSize) {
  constexpr unsigned long SIDE = 1200;
  Dictionary data("data");
  auto& stored =
      data.add(Stored<double>("a", {{"x", SIDE}, {"y", SIDE}}, countedUp<double>(SIDE * SIDE)));
  const Table table(data, plan(data, withIndex({"y", "x"})));
  const std::vector<double> cells = cellsOf<double>(table, 2);
  for (unsigned long row = 0; row < cells.size(); ++row) {
    ASSERT_EQ(cells[row], static_cast<double>(row / SIDE + SIDE * (row % SIDE)));
  }
  EXPECT_LE(stored.largestBlock, 1UL << 19U);
  EXPECT_LE(stored.blocks, 8U);
}

TEST(TableTest, OnePlaneOfAFileIsReadAlone) {
  Dictionary data("data");
  auto& stored = data.add(Stored<double>("a", {{"x", 3}, {"y", 2}}, countedUp<double>(6)));
  Request request;
  request.selections = {{"y", Position{0}}};
  EXPECT_THAT(cellsOf<double>(Table(data, plan(data, request)), 2), ElementsAre(0, 1, 2));
  request.selections = {{"y", Position{1}}};
  EXPECT_THAT(cellsOf<double>(Table(data, plan(data, request)), 2), ElementsAre(3, 4, 5));
  EXPECT_EQ(stored.blocks, 2U);
  EXPECT_EQ(stored.largestBlock, 3U);
}

TEST(TableTest, PartsOfALargeBlockGoBetweenEachOther) {
  constexpr unsigned long SIZE = 300'000;
  Dictionary data("data");
  auto& stored =
      data.add(Stored<double>("a", {{"x", SIZE}, {"y", 2}}, countedUp<double>(2 * SIZE)));
  const std::vector<double> cells =
      cellsOf<double>(Table(data, plan(data, withIndex({"y", "x"}))), 2);
  ASSERT_EQ(cells.size(), 2 * SIZE);
  for (unsigned long row = 0; row < cells.size(); ++row) {
    ASSERT_EQ(cells[row], static_cast<double>(row / 2 + SIZE * (row % 2)));
  }
  EXPECT_EQ(stored.blocks, 2U);
  EXPECT_EQ(stored.largestBlock, SIZE);
}

TEST(TableTest, PartsOfALargeBlockAreRepeatedAlongOtherAxes) {
  Dictionary data("data");
  auto& stored = data.add(Stored<double>("a", {{"x", 600'001}}, countedUp<double>(600'001)));
  data.add(DoubleArray("b", {{"u", 2}, {"v", 2}}, countedUp<double>(4)));
  Request request = withIndex({"u", "x", "v"});
  request.selections = {{"x", PositionRange{0, {}, 600'000}}};
  const Table table(data, plan(data, request));
  EXPECT_THAT(namesOf(table), ElementsAre("u", "x", "v", "a", "b"));
  EXPECT_THAT(cellsOf<double>(table, 3),
              ElementsAre(0, 0, 600'000, 600'000, 0, 0, 600'000, 600'000));
  EXPECT_THAT(cellsOf<double>(table, 4), ElementsAre(0, 1, 0, 1, 2, 3, 2, 3));
  EXPECT_EQ(stored.largestBlock, 1U);
}

TEST(TableTest, RunsEndWhereBlocksOfTheFirstStoredArrayDo) {
  constexpr unsigned long SIZE = 600'000;
  Dictionary data("data");
  data.add(Stored<double>("a", {{"x", SIZE}, {"y", 1}}, countedUp<double>(SIZE))).chunks = {100'000,
                                                                                            1};
  data.add(Stored<double>("b", {{"x", SIZE}}, countedUp<double>(SIZE))).chunks = {70'000};
  Request request;
  request.selections = {{"y", Position{0}}};
  const Table table(data, plan(data, request));
  EXPECT_THAT(namesOf(table), ElementsAre("y", "x", "a", "b"));
  EXPECT_EQ(table.runFrom(0), 200'000U);  // of 2^20 / 4 cells of each column
  EXPECT_EQ(table.runFrom(200'000), 200'000U);
  request.selections.push_back({"x", PositionRange{{}, {}, 2}});
  EXPECT_EQ(Table(data, plan(data, request)).runFrom(0), 250'000U);
}

TEST(TableTest, RunsAreWholeBlocksAlongSeveralAxes) {
  Dictionary data("data");
  data.add(Stored<double>("a", {{"x", 1000}, {"y", 1000}}, countedUp<double>(1'000'000))).chunks = {
      1000, 300};
  const Table table(data, plan(data));
  EXPECT_EQ(table.runFrom(0), 300'000U);  // of 2^20 / 3 cells of each column
  EXPECT_EQ(table.runFrom(900'000), 100'000U);
}

TEST(TableTest, WideStepsDoNotReadWhatLiesBetween) {
  Dictionary data("data");
  auto& stored = data.add(Stored<double>("a", {{"x", 3'000'000}}, countedUp<double>(3'000'000)));
  Request request;
  request.selections = {{"x", PositionRange{0, {}, 1'500'000}}};
  const Table table(data, plan(data, request));
  EXPECT_THAT(cellsOf<double>(table, 1), ElementsAre(0, 1'500'000));
  EXPECT_EQ(stored.largestBlock, 1U);
}

TEST(TableTest, WhatIsSplitIsWholeWhereItsHalvesAreNot) {
  constexpr unsigned long SIZE = 700'001;
  Dictionary data("data");
  auto& stored =
      data.add(Stored<double>("a", {{"x", SIZE}, {"y", 1}, {"z", 1}}, countedUp<double>(SIZE)));
  Request request = withIndex({"x", "y"});
  request.selections = {{"z", Position{0}}};
  const Table table(data, plan(data, request));
  EXPECT_TRUE(cellsOf<double>(table, 3) == countedUp<double>(SIZE));
  EXPECT_EQ(stored.largestBlock, 350'001U);
}

TEST(TableTest, TwoDimensionsAlongOneAxisAreTheDiagonal) {
  Dictionary data("data");
  data.add(DoubleArray("a", {{"x", 3}, {"y", 3}}, countedUp<double>(9)));
  Plan planned = plan(data, withIndex({"x"}));
  planned.columns.resize(2);
  planned.columns[1].dimensions = {{0, 1, 0}, {0, 1, 0}};
  EXPECT_THAT(cellsOf<double>(Table(data, planned), 1), ElementsAre(0, 4, 8));
}

TEST(TableTest, CellsOfThreeAxesLieInPlace) {
  Dictionary data("data");
  const auto& array =
      data.add(DoubleArray("a", {{"x", 2}, {"y", 3}, {"z", 4}}, countedUp<double>(24)));
  const Table table(data, plan(data, withIndex({"x", "y", "z"})));
  EXPECT_EQ(table.cellsInPlace(3, 0, 24), array.data());
}

TEST(TableTest, CellsLieInPlaceWhereTheirOrderIsThatOfTheRows) {
  Dictionary data("data");
  const auto& array = data.add(DoubleArray("a", {{"x", 2}, {"y", 3}}, countedUp<double>(6)));
  const Table table(data, plan(data, withIndex({"x", "y"})));
  EXPECT_EQ(table.cellsInPlace(2, 0, 6), array.data());
  EXPECT_EQ(table.cellsInPlace(2, 1, 4), array.data() + 1);
  EXPECT_EQ(table.cellsInPlace(2, 6, 0), nullptr);
  EXPECT_EQ(table.cellsInPlace(0, 0, 2), nullptr);  // positions are counted, not kept
  EXPECT_THROW(std::ignore = table.cellsInPlace(3, 0, 1), std::out_of_range);
  EXPECT_THROW(std::ignore = table.cellsInPlace(2, 5, 2), std::out_of_range);
  EXPECT_EQ(::test::thrownBy<std::out_of_range>([&] { (void)table.cellsInPlace(2, 7, 1); }),
            "The table has 6 rows, not 1 from row 7 on");
  const Table turned(data, plan(data, withIndex({"y", "x"})));
  EXPECT_EQ(turned.cellsInPlace(2, 0, 6), nullptr);
  EXPECT_EQ(turned.cellsInPlace(2, 4, 1), array.data() + 3);  // y 1, x 1
  EXPECT_EQ(turned.cellsInPlace(2, 2, 2), nullptr);           // y 2, x 0 and y 0, x 1
}

TEST(TableTest, CellsOfOnePlaneLieInPlace) {
  Dictionary data("data");
  const auto& array = data.add(DoubleArray("a", {{"x", 2}, {"y", 3}}, countedUp<double>(6)));
  Request request = withIndex({"x"});
  request.selections = {{"y", Position{2}}};
  const Table table(data, plan(data, request));
  EXPECT_EQ(table.cellsInPlace(2, 0, 2), array.data() + 4);
  request.index = {"y"};
  request.selections = {};
  const Table spread(data, plan(data, request));
  EXPECT_EQ(spread.cellsInPlace(1, 0, 3), nullptr);
}

TEST(TableTest, WhatIsReadInBlocksAndTimesDoNotLieInPlace) {
  Dictionary data("data");
  data.add(Stored<double>("s", {{"x", 2}}, {1, 2}));
  data.add(memory::TimeArray("t", {{"x", 2}}, {1, 2}));
  data.add(memory::StringArray("w", {{"x", 2}}, {"a", "b"}));
  const Table table(data, plan(data));
  for (unsigned long column = 1; column < 4; ++column) {
    EXPECT_EQ(table.cellsInPlace(column, 0, 2), nullptr) << column;
  }
}

TEST(TableTest, ADataFrameIsATable) {
  tabra::MemoryDataFrame frame;
  frame.addRows(0, 2);
  frame.addColumn("i", tabra::DataType(tabra::DataTypeId::UInt64));
  frame.addColumn("l", tabra::DataType(tabra::DataTypeId::Int64));
  frame.addColumn("d", tabra::DataType(tabra::DataTypeId::Float64));
  frame.setUnit(2, "K");
  const std::vector<double> values = {1.5, std::nan("")};
  frame.write(2, 0, 2, values.data());
  const Table table(frame);
  EXPECT_EQ(table.rows(), 2U);
  EXPECT_THAT(namesOf(table), ElementsAre("i", "l", "d"));
  EXPECT_EQ(table.columns()[1].type, ColumnType::Int64);
  EXPECT_EQ(table.columns()[2].unit, "K");
  double cell = 0;
  table.read(2, 0, 1, &cell);
  EXPECT_EQ(cell, 1.5);
  const std::vector<unsigned long> indices = {7, 8};
  frame.write(0, 0, 2, indices.data());
  const std::vector<long> differences = {-1, 1};
  frame.write(1, 0, 2, differences.data());
  std::string csv;
  writeCsv(table, into(csv));
  EXPECT_EQ(csv, "i,l,d\n7,-1,1.5\n8,1,\n");
}

TEST(TableTest, ATableKeepsWhatItIsGivenToShare) {
  auto data = std::make_shared<Dictionary>("data");
  data->add(DoubleArray("a", {{"x", 2}}, {1, 2}));
  const std::weak_ptr<Dictionary> watched = data;
  {
    const Plan planned = plan(*data);
    const Table table(std::shared_ptr<const object_model::Dictionary>(std::move(data)), planned);
    EXPECT_FALSE(watched.expired());
    EXPECT_THAT(cellsOf<double>(table, 1), ElementsAre(1, 2));
  }
  EXPECT_TRUE(watched.expired());
}

TEST(TableTest, WhatIsNotThereIsRefused) {
  Dictionary data("data");
  data.add(DoubleArray("a", {{"x", 2}}, {1, 2}));
  const Table table(data, plan(data));
  double cells[3] = {};
  EXPECT_EQ(::test::thrownBy<std::out_of_range>([&] { table.read(2, 0, 1, cells); }),
            "The table has 2 columns and none of number 2");
  EXPECT_EQ(::test::thrownBy<std::out_of_range>([&] { table.read(1, 0, 3, cells); }),
            "The table has 2 rows, not 3 from row 0 on");
  EXPECT_THROW(table.read(1, 3, 0, cells), std::out_of_range);
  EXPECT_THROW(table.read(1, 1, ~0UL, cells), std::out_of_range);
  float other = 0;
  EXPECT_EQ(::test::thrownBy<std::invalid_argument>([&] { table.read(1, 0, 1, &other); }),
            "The column 'a' is of another type than it was read as");
  EXPECT_EQ(::test::thrownBy<std::invalid_argument>([&] { (void)table.timeForm(1); }),
            "The column 'a' holds no times");
  EXPECT_NO_THROW(table.read(1, 2, 0, cells));
  bool missing[3] = {};
  EXPECT_EQ(::test::thrownBy<std::out_of_range>([&] { table.readMissing(1, 0, 3, missing); }),
            "The table has 2 rows, not 3 from row 0 on");
  EXPECT_EQ(table.runFrom(2), 0U);
  EXPECT_EQ(table.runFrom(~0UL), 0U);
}

TEST(TableTest, WhatIsMissingIsToldOfASingleCell) {
  Dictionary data("data");
  data.add(DoubleArray("a", {{"x", 2}}, {1, std::nan("")}));
  const Table table(data, plan(data));
  bool missing = false;
  table.readMissing(1, 1, 1, &missing);
  EXPECT_TRUE(missing);
  table.readMissing(1, 0, 1, &missing);
  EXPECT_FALSE(missing);
}

TEST(TableTest, APlanThatDoesNotSuitTheArraysIsRefused) {
  Dictionary data("data");
  data.add(DoubleArray("a", {{"x", 3}}, {1, 2, 3}));
  data.add(memory::ComplexArray("z", {{"x", 3}}, std::vector<std::complex<double>>(3)));
  Plan planned = plan(data);
  planned.columns[1].dimensions[0].step = 2;
  EXPECT_THROW(Table(data, planned), Error);
  planned.columns[1].dimensions[0].step = 0;
  EXPECT_THROW(Table(data, planned), Error);
  planned.columns[1].dimensions[0] = {5, 1, 0};
  EXPECT_THROW(Table(data, planned), Error);
  for (const std::size_t axis : {1UL, 7UL}) {
    planned.columns[1].dimensions[0] = {0, 1, axis};
    EXPECT_THROW(Table(data, planned), Error);
  }
  planned.columns[1].dimensions[0] = {1, 1, 0};
  EXPECT_THROW(Table(data, planned), Error);
  planned.columns[1].dimensions[0] = {3, 1, NO_AXIS};
  EXPECT_THROW(Table(data, planned), Error);
  planned.columns[1].dimensions[0] = {2, 1, NO_AXIS};
  EXPECT_THAT(cellsOf<double>(Table(data, planned), 1), ElementsAre(3, 3, 3));
  planned.columns[1].dimensions.clear();
  EXPECT_THROW(Table(data, planned), Error);
  planned = plan(data);
  planned.columns[1].source->variable = "z";
  EXPECT_EQ(::test::thrownBy<Error>([&] { Table(data, planned); }),
            "No column can hold the array 'z': it holds complex numbers");
}

TEST(TableTest, APlanHasToSuitEachDimension) {
  Dictionary data("data");
  data.add(DoubleArray("a", {{"x", 3}, {"y", 2}}, countedUp<double>(6)));
  Plan planned = plan(data, withIndex({"x", "y"}));
  planned.columns[2].dimensions[1].first = 1;
  EXPECT_EQ(::test::thrownBy<Error>([&] { Table(data, planned); }),
            "The array 'a' has another shape than the table was planned with");
}

TEST(TableTest, AnArrayThatIsGoneOrOfAnotherShapeIsRefused) {
  Dictionary data("data");
  data.add(DoubleArray("a", {{"x", 3}}, {1, 2, 3}));
  const Plan planned = plan(data);
  Dictionary other("data");
  EXPECT_THROW(Table(other, planned), Error);
  other.add(DoubleArray("a", {{"x", 2}}, {1, 2}));
  EXPECT_THROW(Table(other, planned), Error);
}

TEST(TableTest, TimesAreInOneFormWhicheverPartIsShown) {
  Dictionary data("data");
  data.add(Hours("t", {{"t", 3}}, {0, 24, 25}));
  Request request;
  request.selections = {{"t", PositionRange{0, 2, 1}}};
  const Table table(data, plan(data, request));
  EXPECT_EQ(table.timeForm(0), memory::TimeForm::DateAndTime);
}

TEST(TableTest, FormOfManyTimesIsSeenInTheFirstThatIsNoMidnight) {
  for (const std::size_t odd : {0UL, 63UL, 64UL, 65'599UL, 65'600UL, 99'999UL}) {
    std::vector<double> hours(100'000, 24);
    hours[odd] = 25;
    Dictionary data("data");
    const auto& times = data.add(Hours("t", {{"t", hours.size()}}, hours));
    const Table table(data, plan(data));
    EXPECT_EQ(table.timeForm(0), memory::TimeForm::DateAndTime) << odd;
    EXPECT_EQ(times.read() == 64, odd < 64) << odd;
  }
}

TEST(TableTest, NoTimeBehindTheLastIsLookedAt) {
  for (const std::size_t count : {1UL, 64UL, 65UL, 100'000UL}) {
    Dictionary data("data");
    const auto& times = data.add(Hours("t", {{"t", count}}, std::vector<double>(count, 24)));
    EXPECT_EQ(Table(data, plan(data)).timeForm(0), memory::TimeForm::Date) << count;
    // The first few are read again with the rest.
    EXPECT_EQ(times.read(), count + (count > 64 ? 64 : 0)) << count;
  }
}

/// Integers or truth values that are read by their accessor alone.
template <class T>
class Plain final : public memory::ArrayBase {
 public:
  Plain(const std::string& name, std::vector<T> values)
      : ArrayBase(name, memory::ElementTraits<T>::TYPE, {memory::Axis("x", values.size())}),
        m_values(std::move(values)) {}
  long getValueAsInt(const object_model::Tuple& index) const override {
    return static_cast<long>(m_values[index[0]]);
  }
  unsigned long getValueAsUInt(const object_model::Tuple& index) const override {
    return static_cast<unsigned long>(m_values[index[0]]);
  }
  bool getValueAsBoolean(const object_model::Tuple& index) const override {
    return m_values[index[0]] != T();
  }

 private:
  std::vector<T> m_values;
};

TEST(TableTest, IntegersWithoutBulkValuesStayIntegers) {
  const long lowest = std::numeric_limits<long>::min() + 1;
  Dictionary data("data");
  data.add(Plain<long>("i", {lowest, 2}));
  data.add(Plain<unsigned long>("u", {~0UL, 2}));
  const Table table(data, plan(data));
  EXPECT_THAT(cellsOf<long>(table, 1), ElementsAre(lowest, 2));
  EXPECT_THAT(cellsOf<unsigned long>(table, 2), ElementsAre(~0UL, 2));
}

TEST(TableTest, TruthValuesWithoutBulkValuesStayTruthValues) {
  Dictionary data("data");
  data.add(Plain<bool>("b", {true, false}));
  const Table table(data, plan(data));
  EXPECT_EQ(table.columns()[1].type, ColumnType::Boolean);
  bool truths[2] = {};
  table.read(1, 0, 2, truths);
  EXPECT_THAT(truths, ElementsAre(true, false));
}

/// Integers the lowest of which stands for none.
class Lags final : public memory::ArrayBase, public memory::HasMissing {
 public:
  Lags(const std::string& name, std::vector<long> values)
      : ArrayBase(name, object_model::ElementType::Int, {memory::Axis("x", values.size())}),
        m_values(std::move(values)) {}
  long getValueAsInt(const object_model::Tuple& index) const override { return m_values[index[0]]; }

 private:
  std::vector<long> m_values;
};

TEST(TableTest, LowestIntegerIsMissingWhereItStandsForNone) {
  Dictionary data("data");
  data.add(Lags("lag", {memory::MISSING_TIME, 2}));
  data.add(Plain<long>("number", {memory::MISSING_TIME, 2}));
  const Table table(data, plan(data));
  std::string text;
  writeCsv(table, into(text));
  EXPECT_EQ(text, "x,lag,number\n0,,-9223372036854775808\n1,2,2\n");
  bool missing[2] = {};
  table.readMissing(1, 0, 2, missing);
  EXPECT_THAT(missing, ElementsAre(true, false));
}

TEST(TableTest, ColumnsAreNotCalledAfterCoordinatesThatStandForNone) {
  Dictionary data("data");
  data.add(Lags("x", {memory::MISSING_TIME, 2}));
  data.add(DoubleArray("v", {{"x", 2}, {"y", 3}}, {1, 2, 3, 4, 5, 6}));
  Request request = withIndex({"y"});
  request.variables = {"v"};
  const Table table(data, plan(data, request));
  EXPECT_EQ(table.columns()[1].name, "v[x=0]");
  EXPECT_EQ(table.columns()[2].name, "v[x=1]");
}

/// An array that becomes shorter.
class Shrinking final : public memory::ArrayBase {
 public:
  Shrinking()
      : ArrayBase("a", object_model::ElementType::Double, {memory::Axis("x", 3)}), m_short(1) {
    m_short[0] = 2;
  }
  const object_model::Tuple& size() const override { return isShort ? m_short : ArrayBase::size(); }

  bool isShort = false;

 private:
  object_model::TupleX m_short;
};

TEST(TableTest, AnArrayThatChangesItsShapeIsNotRead) {
  Dictionary data("data");
  auto& array = data.add(Shrinking());
  const Table table(data, plan(data));
  array.isShort = true;
  double cell = 0;
  const std::string sentence = "The array 'a' has another shape than the table was planned with";
  EXPECT_EQ(::test::thrownBy<Error>([&] { table.read(1, 0, 1, &cell); }), sentence);
  EXPECT_EQ(::test::thrownBy<Error>([&] { (void)table.cellsInPlace(1, 0, 1); }), sentence);
}

TEST(TableTest, CoordinatesThatAreGoneAreRefused) {
  const auto known = std::make_shared<memory::StringArray>(
      "labels", std::vector<memory::Axis>{{"x", 2}}, std::vector<std::string>{"a", "b"});
  Dictionary data("data");
  data.add(Labelled("v", {{"x", 2}}, {1, 2}, {known}));
  const Plan planned = plan(data);
  Dictionary other("data");
  other.add(Labelled("v", {{"x", 2}}, {1, 2}, {nullptr}));
  EXPECT_EQ(::test::thrownBy<Error>([&] { Table(other, planned); }),
            "The table was planned with an array 'v' that is not there any more");
  Dictionary bare("data");
  bare.add(std::make_unique<::test::BareArray>("v", std::vector<memory::Axis>{{"x", 2}},
                                               std::vector<double>{1, 2}));
  EXPECT_EQ(::test::thrownBy<Error>([&] { Table(bare, planned); }),
            "The table was planned with an array 'v' that is not there any more");
}

TEST(TableTest, CoordinatesAreReadFromTheDictionaryAround) {
  Dictionary data("data");
  data.add(DoubleArray("t", {{"t", 2}}, {10, 20}));
  Dictionary inner("inner");
  inner.add(DoubleArray("a", {{"t", 2}}, {1, 2}));
  const auto& placed = data.add(std::move(inner));
  const Plan planned = plan(placed);
  const Table table(placed, planned);
  EXPECT_THAT(namesOf(table), ElementsAre("t", "a"));
  EXPECT_THAT(cellsOf<double>(table, 0), ElementsAre(10, 20));
  EXPECT_THAT(cellsOf<double>(table, 1), ElementsAre(1, 2));
  Dictionary alone("inner");
  alone.add(DoubleArray("a", {{"t", 2}}, {1, 2}));
  EXPECT_EQ(::test::thrownBy<Error>([&] { Table(alone, planned); }),
            "The table was planned with an array 't' that is not there any more");
}

TEST(TableTest, CoordinatesAreReadFromAroundAnArrayOfDictionaries) {
  Dictionary data("data");
  data.add(DoubleArray("t", {{"t", 2}}, {10, 20}));
  std::vector<Dictionary> elements;
  elements.emplace_back("element").add(DoubleArray("a", {{"t", 2}}, {1, 2}));
  const auto& array = data.add(memory::DictionaryArray("d", {{"x", 1}}, std::move(elements)));
  const Dictionary& element = array.value(0);
  const Table table(element, plan(element));
  EXPECT_THAT(namesOf(table), ElementsAre("t", "a"));
  EXPECT_THAT(cellsOf<double>(table, 0), ElementsAre(10, 20));
  EXPECT_THAT(cellsOf<double>(table, 1), ElementsAre(1, 2));
}

TEST(TableTest, PositionsMayBeReadFromAnyRowOn) {
  Dictionary data("data");
  data.add(DoubleArray("a", {{"x", 3}, {"y", 2}}, countedUp<double>(6)));
  const Table table(data, plan(data));
  unsigned long cells[4] = {};
  table.read(1, 1, 4, cells);
  EXPECT_THAT(cells, ElementsAre(0, 0, 1, 1));
}

TEST(TableTest, ADataFrameWithAColumnOfAnotherTypeIsRefused) {
  tabra::MemoryDataFrame frame;
  frame.addColumn("odd", tabra::DataType(static_cast<tabra::DataTypeId>(7)));
  EXPECT_EQ(::test::thrownBy<Error>([&] { const Table table(frame); }),
            "The column 'odd' is of a type that tables cannot read");
}

TEST(TableTest, TheNotesAreThoseOfThePlan) {
  Dictionary data("data");
  data.add(DoubleArray("a", {{"x", 2}}, {1, 2}));
  Plan planned = plan(data);
  planned.notes = {"one", "two"};
  EXPECT_THAT(Table(data, planned).notes(), ElementsAre("one", "two"));
}

/// The value at a position of an array whose values are counted up in storage order.
double cellByHand(const std::vector<unsigned long>& sizes,
                  const std::vector<unsigned long>& position) {
  unsigned long offset = 0;
  for (std::size_t k = sizes.size(); k > 0;) {
    --k;
    offset = offset * sizes[k] + position[k];
  }
  return static_cast<double>(offset);
}

RC_GTEST_PROP(TablePropertyTest, AnyRunOfAnyOrderIsWhatStandsAtItsPositions, ()) {
  const auto sizes = *rc::gen::container<std::vector<unsigned long>>(
      *rc::gen::inRange<std::size_t>(1, 5), rc::gen::inRange(1UL, 41UL));
  std::vector<memory::Axis> axes;
  std::vector<std::string> index;
  unsigned long count = 1;
  for (std::size_t k = 0; k < sizes.size(); ++k) {
    axes.emplace_back(std::string(1, static_cast<char>('a' + k)), sizes[k]);
    index.push_back(axes.back().getAxisName());
    count *= sizes[k];
  }
  RC_PRE(count < 200'000UL);
  // Any order of the axes, one of which may be left to be spread.
  const auto order = *rc::gen::container<std::vector<int>>(sizes.size(), rc::gen::arbitrary<int>());
  std::stable_sort(index.begin(), index.end(), [&](const std::string& a, const std::string& b) {
    return order[static_cast<std::size_t>(a[0] - 'a')] <
           order[static_cast<std::size_t>(b[0] - 'a')];
  });
  Dictionary data("data");
  const auto kind = ::test::pick(3);
  if (kind == 0) {
    data.add(DoubleArray("v", axes, countedUp<double>(count)));
  } else if (kind == 1) {
    data.add(Stored<double>("v", axes, countedUp<double>(count)));
  } else {
    data.add(Labelled("v", axes, countedUp<double>(count),
                      std::vector<std::shared_ptr<const object_model::Array>>(axes.size())));
  }
  const auto step = *rc::gen::inRange(1L, 4L);
  Request request = withIndex(index);
  request.selections = {{index[0], PositionRange{{}, {}, step}}};
  const Plan planned = plan(data, request);
  const Table table(data, planned);
  const unsigned long first = *rc::gen::inRange(0UL, table.rows());
  const unsigned long rows = *rc::gen::inRange(0UL, table.rows() - first + 1);
  std::vector<double> cells(rows);
  table.read(index.size(), first, rows, cells.data());
  for (unsigned long k = 0; k < rows; ++k) {
    std::vector<unsigned long> position(sizes.size());
    unsigned long rest = first + k;
    for (std::size_t axis = 0; axis < index.size(); ++axis) {
      const unsigned long at = rest % planned.axes[axis].size;
      rest /= planned.axes[axis].size;
      position[static_cast<std::size_t>(index[axis][0] - 'a')] =
          at * (axis == 0 ? static_cast<unsigned long>(step) : 1);
    }
    RC_ASSERT(cells[k] == cellByHand(sizes, position));
  }
  const void* const place = table.cellsInPlace(index.size(), first, rows);
  const bool isRight =
      place == nullptr || std::equal(cells.begin(), cells.end(), static_cast<const double*>(place));
  RC_ASSERT(isRight);
}

}  // namespace
}  // namespace quillon::tables
