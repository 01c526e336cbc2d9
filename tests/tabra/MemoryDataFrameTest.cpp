#include <gtest/gtest.h>
#include <tabra/MemoryDataFrame.h>

#include <array>
#include <cstring>
#include <limits>
#include <ostream>
#include <stdexcept>
#include <string>
#include <type_traits>

#include "support/TableText.h"
#include "support/Thrown.h"

namespace tabra {
namespace {

using test::tableText;
using test::thrownBy;

const DataType UINT(DataTypeId::UInt64);
const DataType INT(DataTypeId::Int64);
const DataType DOUBLE(DataTypeId::Float64);
constexpr unsigned long MAX = std::numeric_limits<unsigned long>::max();

/// Three rows of three columns, one of each type.
class MemoryDataFrameTest : public ::testing::Test {
 protected:
  MemoryDataFrameTest() {
    m_frame.addRows(0, 3);
    m_frame.addColumn("count", UINT);
    m_frame.addColumn("offset", INT);
    m_frame.addColumn("length", DOUBLE);
    const std::array<unsigned long, 3> counts = {1, 2, MAX};
    const std::array<long, 3> offsets = {-1, 0, 7};
    const std::array<double, 3> lengths = {0.5, -2, 1e9};
    m_frame.write(0, 0, 3, counts.data());
    m_frame.write(1, 0, 3, offsets.data());
    m_frame.write(2, 0, 3, lengths.data());
    m_frame.setUnit(2, "mm");
  }

  MemoryDataFrame m_frame;
};

const char* const TABLE =
    "count () uint: 1 2 18446744073709551615\n"
    "offset () int: -1 0 7\n"
    "length (mm) double: 0.5 -2 1e+09\n"
    "3 rows\n";

TEST(EmptyMemoryDataFrameTest, HasNoColumnsAndNoRows) {
  const MemoryDataFrame frame;
  EXPECT_EQ(frame.shape(), (std::array<unsigned long, 2>{0, 0}));
}

TEST(EmptyMemoryDataFrameTest, RowsMayComeBeforeColumns) {
  MemoryDataFrame frame;
  frame.addRows(0, 2);
  EXPECT_EQ(frame.shape(), (std::array<unsigned long, 2>{0, 2}));
  frame.addColumn("late", INT);
  EXPECT_EQ(tableText(frame), "late () int: 0 0\n2 rows\n");
}

TEST(EmptyMemoryDataFrameTest, IsNotCopied) {
  EXPECT_FALSE(std::is_copy_constructible_v<MemoryDataFrame>);
  EXPECT_FALSE(std::is_copy_assignable_v<MemoryDataFrame>);
}

TEST_F(MemoryDataFrameTest, HoldsWhatWasWritten) { EXPECT_EQ(tableText(m_frame), TABLE); }

TEST_F(MemoryDataFrameTest, TheShapeIsColumnsAndThenRows) {
  m_frame.addRows(3, 1);
  EXPECT_EQ(m_frame.shape(), (std::array<unsigned long, 2>{3, 4}));
}

TEST_F(MemoryDataFrameTest, ReadsARunInTheMiddleAndNothingAroundIt) {
  std::array<long, 4> destination = {99, 99, 99, 99};
  m_frame.read(1, 1, 2, destination.data() + 1);
  EXPECT_EQ(destination, (std::array<long, 4>{99, 0, 7, 99}));
}

TEST_F(MemoryDataFrameTest, WritesARunInTheMiddleAndNothingAroundIt) {
  const std::array<double, 1> source = {42};
  m_frame.write(2, 1, 1, source.data());
  EXPECT_EQ(tableText(m_frame),
            "count () uint: 1 2 18446744073709551615\n"
            "offset () int: -1 0 7\n"
            "length (mm) double: 0.5 42 1e+09\n"
            "3 rows\n");
}

TEST_F(MemoryDataFrameTest, EveryBitOfACellIsKept) {
  const std::array<double, 3> source = {std::numeric_limits<double>::quiet_NaN(), -0.0, 5e-324};
  std::array<double, 3> destination = {};
  m_frame.write(2, 0, 3, source.data());
  m_frame.read(2, 0, 3, destination.data());
  EXPECT_EQ(std::memcmp(source.data(), destination.data(), sizeof(source)), 0);
}

TEST_F(MemoryDataFrameTest, NoRowsAtTheEndAreARun) {
  m_frame.read(0, 3, 0, nullptr);
  m_frame.write(0, 3, 0, nullptr);
  m_frame.addRows(3, 0);
  m_frame.removeRows(3, 0);
  EXPECT_EQ(tableText(m_frame), TABLE);
}

TEST_F(MemoryDataFrameTest, ARunOfNoRowsCopiesNothing) {
  unsigned long cell = 99;
  m_frame.read(0, 1, 0, &cell);
  EXPECT_EQ(cell, 99U);
  m_frame.write(0, 1, 0, &cell);
  EXPECT_EQ(tableText(m_frame), TABLE);
}

TEST_F(MemoryDataFrameTest, NothingIsCopiedThroughNullPointers) {
  m_frame.read(0, 0, 3, nullptr);
  m_frame.write(0, 0, 3, nullptr);
  EXPECT_EQ(tableText(m_frame), TABLE);
}

TEST_F(MemoryDataFrameTest, RowsAreInsertedAsZerosInEveryColumn) {
  m_frame.addRows(1, 2);
  EXPECT_EQ(tableText(m_frame),
            "count () uint: 1 0 0 2 18446744073709551615\n"
            "offset () int: -1 0 0 0 7\n"
            "length (mm) double: 0.5 0 0 -2 1e+09\n"
            "5 rows\n");
}

TEST_F(MemoryDataFrameTest, RowsAreInsertedAtBothEnds) {
  m_frame.addRows(0, 1);
  m_frame.addRows(4, 1);
  EXPECT_EQ(tableText(m_frame),
            "count () uint: 0 1 2 18446744073709551615 0\n"
            "offset () int: 0 -1 0 7 0\n"
            "length (mm) double: 0 0.5 -2 1e+09 0\n"
            "5 rows\n");
}

TEST_F(MemoryDataFrameTest, RowsAreRemovedFromEveryColumn) {
  m_frame.removeRows(1, 1);
  EXPECT_EQ(tableText(m_frame),
            "count () uint: 1 18446744073709551615\n"
            "offset () int: -1 7\n"
            "length (mm) double: 0.5 1e+09\n"
            "2 rows\n");
  m_frame.removeRows(0, 2);
  EXPECT_EQ(tableText(m_frame), "count () uint:\noffset () int:\nlength (mm) double:\n0 rows\n");
}

TEST_F(MemoryDataFrameTest, RowsThatWereRemovedComeBackAsZeros) {
  m_frame.removeRows(1, 2);
  m_frame.addRows(1, 2);
  EXPECT_EQ(tableText(m_frame),
            "count () uint: 1 0 0\noffset () int: -1 0 0\nlength (mm) double: 0.5 0 0\n3 rows\n");
}

TEST_F(MemoryDataFrameTest, ColumnsAreAppendedWithZeros) {
  m_frame.addColumn("count", DOUBLE);
  EXPECT_EQ(tableText(m_frame),
            "count () uint: 1 2 18446744073709551615\n"
            "offset () int: -1 0 7\n"
            "length (mm) double: 0.5 -2 1e+09\n"
            "count () double: 0 0 0\n"
            "3 rows\n");
}

TEST_F(MemoryDataFrameTest, UnitsAreReplaced) {
  m_frame.setColumnUnit(2, "m");
  m_frame.setUnit(0, "cells");
  EXPECT_EQ(m_frame.columnUnit(2), "m");
  EXPECT_EQ(m_frame.columnUnit(0), "cells");
  EXPECT_EQ(m_frame.columnUnit(1), "");
}

TEST_F(MemoryDataFrameTest, AColumnOfAnyOtherTypeHasCellsOf8BytesToo) {
  const auto id = static_cast<DataTypeId>(0x40120);
  m_frame.addColumn("other", DataType(id));
  EXPECT_EQ(m_frame.columnDataType(3).id(), id);
  const std::array<unsigned long, 3> source = {3, 2, 1};
  std::array<unsigned long, 3> destination = {};
  m_frame.write(3, 0, 3, source.data());
  m_frame.read(3, 0, 3, destination.data());
  EXPECT_EQ(destination, source);
}

// Removing columns

TEST_F(MemoryDataFrameTest, RemovingEachColumnInOrderEmptiesTheTable) {
  m_frame.removeColumn(0);
  m_frame.removeColumn(1);
  m_frame.removeColumn(2);
  EXPECT_EQ(tableText(m_frame), "3 rows\n");
}

TEST_F(MemoryDataFrameTest, ARunOfRemovalsCountsColumnsAsBeforeTheRunInAnyOrder) {
  m_frame.removeColumn(2);
  m_frame.removeColumn(0);
  EXPECT_EQ(tableText(m_frame), "offset () int: -1 0 7\n3 rows\n");
}

TEST_F(MemoryDataFrameTest, TheColumnsThatAreLeftAreCountedFromZero) {
  m_frame.removeColumn(0);
  EXPECT_EQ(tableText(m_frame),
            "offset () int: -1 0 7\nlength (mm) double: 0.5 -2 1e+09\n3 rows\n");
}

struct EndingCase {
  const char* operation;
  void (*call)(MemoryDataFrame&);
};
void PrintTo(const EndingCase& row, std::ostream* out) { *out << row.operation; }

class EndOfRemovalRunTest : public MemoryDataFrameTest,
                            public ::testing::WithParamInterface<EndingCase> {};

// Column 0 is "offset" once the run has ended; within it, 1 still means "offset".
TEST_P(EndOfRemovalRunTest, RenumbersTheColumns) {
  m_frame.removeColumn(0);
  GetParam().call(m_frame);
  m_frame.removeColumn(0);
  EXPECT_EQ(m_frame.columnName(0), "length");
}

INSTANTIATE_TEST_SUITE_P(
    Operations, EndOfRemovalRunTest,
    ::testing::Values(
        EndingCase{"shape", [](MemoryDataFrame& frame) { frame.shape(); }},
        EndingCase{"columnName", [](MemoryDataFrame& frame) { frame.columnName(0); }},
        EndingCase{"columnUnit", [](MemoryDataFrame& frame) { frame.columnUnit(0); }},
        EndingCase{"setColumnUnit", [](MemoryDataFrame& frame) { frame.setColumnUnit(0, "x"); }},
        EndingCase{"columnDataType", [](MemoryDataFrame& frame) { frame.columnDataType(0); }},
        EndingCase{"read", [](MemoryDataFrame& frame) { frame.read(0, 0, 1, nullptr); }},
        EndingCase{"write", [](MemoryDataFrame& frame) { frame.write(0, 0, 1, nullptr); }},
        EndingCase{"addColumn", [](MemoryDataFrame& frame) { frame.addColumn("new", UINT); }},
        EndingCase{"addRows", [](MemoryDataFrame& frame) { frame.addRows(0, 0); }},
        EndingCase{"removeRows", [](MemoryDataFrame& frame) { frame.removeRows(0, 0); }},
        EndingCase{
            "aCallThatFails",
            [](MemoryDataFrame& frame) { EXPECT_THROW(frame.columnName(2), std::out_of_range); }}),
    [](const auto& row) { return row.param.operation; });

TEST_F(MemoryDataFrameTest, ARemovedColumnCannotBeRemovedAgainInItsRun) {
  m_frame.removeColumn(1);
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { m_frame.removeColumn(1); }),
            "removeColumn: column 1 was already removed in this run of removals");
  EXPECT_EQ(m_frame.shape()[0], 2U);
}

TEST_F(MemoryDataFrameTest, ARemovalThatFailsDoesNotEndTheRun) {
  m_frame.removeColumn(0);
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { m_frame.removeColumn(3); }),
            "removeColumn: column 3 is outside the table, which has 3 columns");
  m_frame.removeColumn(1);
  EXPECT_EQ(tableText(m_frame), "length (mm) double: 0.5 -2 1e+09\n3 rows\n");
}

// Indices and ranges outside the table

struct RangeCase {
  const char* rule;
  void (*call)(MemoryDataFrame&);
  const char* message;
};
void PrintTo(const RangeCase& row, std::ostream* out) { *out << row.rule; }

class RangeTest : public MemoryDataFrameTest, public ::testing::WithParamInterface<RangeCase> {};

TEST_P(RangeTest, IsRefusedAndNothingIsChanged) {
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { GetParam().call(m_frame); }), GetParam().message);
  EXPECT_EQ(tableText(m_frame), TABLE);
}

std::array<unsigned long, 8> cells = {99, 99, 99, 99, 99, 99, 99, 99};

INSTANTIATE_TEST_SUITE_P(
    Columns, RangeTest,
    ::testing::Values(
        RangeCase{"NameOfTheColumnAfterTheLast", [](MemoryDataFrame& f) { f.columnName(3); },
                  "columnName: column 3 is outside the table, which has 3 columns"},
        RangeCase{"NameOfTheLargestColumn", [](MemoryDataFrame& f) { f.columnName(MAX); },
                  "columnName: column 18446744073709551615 is outside the table, which has 3 "
                  "columns"},
        RangeCase{"Unit", [](MemoryDataFrame& f) { f.columnUnit(3); },
                  "columnUnit: column 3 is outside the table, which has 3 columns"},
        RangeCase{"SettingAUnit", [](MemoryDataFrame& f) { f.setColumnUnit(3, "x"); },
                  "setColumnUnit: column 3 is outside the table, which has 3 columns"},
        RangeCase{"SettingAUnitThroughTheInterface", [](MemoryDataFrame& f) { f.setUnit(4, "x"); },
                  "setColumnUnit: column 4 is outside the table, which has 3 columns"},
        RangeCase{"Type", [](MemoryDataFrame& f) { f.columnDataType(3); },
                  "columnDataType: column 3 is outside the table, which has 3 columns"},
        RangeCase{"Reading", [](MemoryDataFrame& f) { f.read(3, 0, 0, cells.data()); },
                  "read: column 3 is outside the table, which has 3 columns"},
        RangeCase{"Writing", [](MemoryDataFrame& f) { f.write(3, 0, 0, cells.data()); },
                  "write: column 3 is outside the table, which has 3 columns"},
        RangeCase{"Removing", [](MemoryDataFrame& f) { f.removeColumn(3); },
                  "removeColumn: column 3 is outside the table, which has 3 columns"},
        RangeCase{"RemovingFarOutside", [](MemoryDataFrame& f) { f.removeColumn(4); },
                  "removeColumn: column 4 is outside the table, which has 3 columns"}),
    [](const auto& row) { return row.param.rule; });

INSTANTIATE_TEST_SUITE_P(
    Rows, RangeTest,
    ::testing::Values(
        RangeCase{"ReadingOneRowTooMany", [](MemoryDataFrame& f) { f.read(0, 0, 4, cells.data()); },
                  "read: the run of 4 rows from row 0 is outside the table, which has 3 rows"},
        RangeCase{"ReadingFromTheEnd", [](MemoryDataFrame& f) { f.read(0, 3, 1, cells.data()); },
                  "read: the run of 1 row from row 3 is outside the table, which has 3 rows"},
        RangeCase{"ReadingNothingPastTheEnd", [](MemoryDataFrame& f) { f.read(0, 4, 0, nullptr); },
                  "read: the run of 0 rows from row 4 is outside the table, which has 3 rows"},
        RangeCase{"ReadingARunWhoseEndOverflows",
                  [](MemoryDataFrame& f) { f.read(0, 1, MAX, cells.data()); },
                  "read: the run of 18446744073709551615 rows from row 1 is outside the table, "
                  "which has 3 rows"},
        RangeCase{"WritingOneRowTooMany",
                  [](MemoryDataFrame& f) { f.write(0, 1, 3, cells.data()); },
                  "write: the run of 3 rows from row 1 is outside the table, which has 3 rows"},
        RangeCase{"WritingARunWhoseEndOverflows",
                  [](MemoryDataFrame& f) { f.write(0, MAX, 2, cells.data()); },
                  "write: the run of 2 rows from row 18446744073709551615 is outside the table, "
                  "which has 3 rows"},
        RangeCase{"WritingNullOutside", [](MemoryDataFrame& f) { f.write(0, 0, 4, nullptr); },
                  "write: the run of 4 rows from row 0 is outside the table, which has 3 rows"},
        RangeCase{"AddingPastTheEnd", [](MemoryDataFrame& f) { f.addRows(4, 1); },
                  "addRows: row 4 is outside the table, which has 3 rows"},
        RangeCase{"AddingNothingPastTheEnd", [](MemoryDataFrame& f) { f.addRows(MAX, 0); },
                  "addRows: row 18446744073709551615 is outside the table, which has 3 rows"},
        RangeCase{"RemovingOneRowTooMany", [](MemoryDataFrame& f) { f.removeRows(2, 2); },
                  "removeRows: the run of 2 rows from row 2 is outside the table, which has 3 "
                  "rows"},
        RangeCase{"RemovingARunWhoseEndOverflows", [](MemoryDataFrame& f) { f.removeRows(3, MAX); },
                  "removeRows: the run of 18446744073709551615 rows from row 3 is outside the "
                  "table, which has 3 rows"}),
    [](const auto& row) { return row.param.rule; });

TEST_F(MemoryDataFrameTest, AReadThatIsRefusedCopiesNothing) {
  std::array<unsigned long, 4> destination = {9, 9, 9, 9};
  EXPECT_THROW(m_frame.read(0, 0, 4, destination.data()), std::out_of_range);
  EXPECT_EQ(destination, (std::array<unsigned long, 4>{9, 9, 9, 9}));
}

TEST(EmptyMemoryDataFrameTest, HasNoColumnToNameOrRemove) {
  MemoryDataFrame frame;
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { frame.columnName(0); }),
            "columnName: column 0 is outside the table, which has 0 columns");
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { frame.removeColumn(0); }),
            "removeColumn: column 0 is outside the table, which has 0 columns");
  frame.addColumn("only", UINT);
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { frame.columnName(1); }),
            "columnName: column 1 is outside the table, which has 1 column");
}

// More rows than memory can hold

TEST_F(MemoryDataFrameTest, RowsThatNoVectorCanHoldAreRefused) {
  EXPECT_EQ(thrownBy<std::length_error>([&] { m_frame.addRows(0, 1UL << 61U); }),
            "addRows: a table of 3 rows cannot grow by 2305843009213693952");
  EXPECT_EQ(thrownBy<std::length_error>([&] { m_frame.addRows(3, 1UL << 63U); }),
            "addRows: a table of 3 rows cannot grow by 9223372036854775808");
  EXPECT_EQ(thrownBy<std::length_error>([&] { m_frame.addRows(1, MAX); }),
            "addRows: a table of 3 rows cannot grow by 18446744073709551615");
  EXPECT_EQ(tableText(m_frame), TABLE);
}

TEST(EmptyMemoryDataFrameTest, RefusesRowsThatNoColumnCouldHold) {
  MemoryDataFrame frame;
  EXPECT_EQ(thrownBy<std::length_error>([&] { frame.addRows(0, 1UL << 61U); }),
            "addRows: a table of 0 rows cannot grow by 2305843009213693952");
  frame.addRows(0, 1);
  EXPECT_EQ(thrownBy<std::length_error>([&] { frame.addRows(0, MAX); }),
            "addRows: a table of 1 row cannot grow by 18446744073709551615");
  EXPECT_EQ(frame.shape(), (std::array<unsigned long, 2>{0, 1}));
  const unsigned long most = std::vector<unsigned long>().max_size();
  frame.addRows(1, most - 1);
  EXPECT_EQ(thrownBy<std::length_error>([&] { frame.addRows(0, 1); }),
            "addRows: a table of 1152921504606846975 rows cannot grow by 1");
  EXPECT_EQ(frame.shape(), (std::array<unsigned long, 2>{0, most}));
}

}  // namespace
}  // namespace tabra
