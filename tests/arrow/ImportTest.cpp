#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <quillon/arrow/Import.h>
#include <quillon/memory/TimeArray.h>
#include <quillon/tables/Error.h>
#include <quillon/tables/Writers.h>

#include <cerrno>
#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "HandMade.h"
#include "Streams.h"
#include "support/Thrown.h"
#include "tables/SomeCells.h"
#include "tables/TestArrays.h"

namespace quillon::arrow {
namespace {

using tables::ColumnType;
using tables::Table;
using ::testing::ElementsAre;

/// The cells of the column 'v'.
std::string jsonOf(const Table& table) {
  std::string text;
  tables::writeJsonLines(table, [&text](std::string_view lines) {
    for (std::size_t end = lines.find('\n'); end != std::string_view::npos;
         end = lines.find('\n')) {
      text += (text.empty() ? "" : " ") + std::string(lines.substr(6, end - 7));
      lines.remove_prefix(end + 1);
    }
  });
  return text;
}

/// A column of some format, and what its cells are.
struct FormatCase {
  const char* rule;
  HandMadeColumn column;
  ColumnType type;
  std::string cells;  // as JSON has them
};
void PrintTo(const FormatCase& some, std::ostream* out) { *out << some.rule; }

class FormatTest : public ::testing::TestWithParam<FormatCase> {};

TEST_P(FormatTest, IsRead) {
  HandMadeStream stream({GetParam().column}, GetParam().column.length);
  const Table table = importTable(stream.get());
  EXPECT_EQ(table.columns().at(0).type, GetParam().type);
  EXPECT_EQ(jsonOf(table), GetParam().cells);
}

std::string refusal(HandMadeStream& stream) {
  const std::string sentence =
      ::test::thrownBy<tables::Error>([&] { return importTable(stream.get()); });
  EXPECT_EQ(stream.streamsReleased(), 1);
  return sentence;
}

std::string refusal(const HandMadeColumn& column) {
  HandMadeStream stream({column}, column.length);
  return refusal(stream);
}

TEST_P(FormatTest, NeedsItsBuffers) {
  HandMadeStream stream({GetParam().column}, GetParam().column.length);
  const std::string format = GetParam().column.format;
  stream.batch().children[0]->n_buffers = format == "u" || format == "U" ? 2 : 1;
  EXPECT_EQ(refusal(stream), "The stream has a batch that does not fit its schema");
}

TEST_P(FormatTest, LiesInPlaceWhereItsBytesAreThoseOfATable) {
  const HandMadeColumn& column = GetParam().column;
  HandMadeStream stream({column}, column.length);
  const Table table = importTable(stream.get());
  const bool isAlike = std::string("csilCSILfg").find(column.format) != std::string::npos ||
                       column.format.substr(0, 3) == "tsu";
  const bool isThere = isAlike && column.nulls == 0 && column.length > 0;
  EXPECT_EQ(table.cellsInPlace(0, 0, table.rows()) != nullptr, isThere);
}

constexpr long SECOND = 1000000;
const std::string LONG_TEXT = "more than twelve bytes";

/// One view of sixteen bytes: in itself, or to a place in a further buffer.
std::string viewOf(const std::string& text, int32_t buffer = 0) {
  const auto length = static_cast<int32_t>(text.size());
  if (length <= 12) {
    return bytesOf<int32_t>({length}) + text + std::string(12 - text.size(), '\0');
  }
  return bytesOf<int32_t>({length}) + text.substr(0, 4) + bytesOf<int32_t>({buffer, 2});
}

INSTANTIATE_TEST_SUITE_P(
    Formats, FormatTest,
    ::testing::Values(
        FormatCase{"Int8", {"v", "c", 2, {"", bytesOf<int8_t>({-1, 2})}}, ColumnType::Int8, "-1 2"},
        FormatCase{
            "Int16", {"v", "s", 2, {"", bytesOf<int16_t>({-1, 2})}}, ColumnType::Int16, "-1 2"},
        FormatCase{
            "Int32", {"v", "i", 2, {"", bytesOf<int32_t>({-1, 2})}}, ColumnType::Int32, "-1 2"},
        FormatCase{
            "Int64", {"v", "l", 2, {"", bytesOf<int64_t>({-1, 2})}}, ColumnType::Int64, "-1 2"},
        FormatCase{
            "UInt8", {"v", "C", 2, {"", bytesOf<uint8_t>({255, 2})}}, ColumnType::UInt8, "255 2"},
        FormatCase{"UInt16",
                   {"v", "S", 2, {"", bytesOf<uint16_t>({65535, 2})}},
                   ColumnType::UInt16,
                   "65535 2"},
        FormatCase{"UInt32",
                   {"v", "I", 2, {"", bytesOf<uint32_t>({4294967295U, 2})}},
                   ColumnType::UInt32,
                   "4294967295 2"},
        FormatCase{"UInt64",
                   {"v", "L", 2, {"", bytesOf<uint64_t>({18446744073709551615UL, 2})}},
                   ColumnType::UInt64,
                   "18446744073709551615 2"},
        FormatCase{"Float32",
                   {"v", "f", 2, {"", bytesOf<float>({0.5F, -2})}},
                   ColumnType::Float32,
                   "0.5 -2"},
        FormatCase{"Float64",
                   {"v", "g", 2, {"", bytesOf<double>({0.1, -2})}},
                   ColumnType::Float64,
                   "0.1 -2"},
        FormatCase{"Boolean",
                   {"v", "b", 3, {"", bytesOf<uint8_t>({0b101})}},
                   ColumnType::Boolean,
                   "true false true"},
        FormatCase{"Text",
                   {"v", "u", 3, {"", bytesOf<int32_t>({0, 2, 2, 3}), "abc"}},
                   ColumnType::Text,
                   "\"ab\" \"\" \"c\""},
        FormatCase{"EmptyTextsWithoutCharacters",
                   {"v", "u", 2, {"", bytesOf<int32_t>({0, 0, 0}), ""}},
                   ColumnType::Text,
                   "\"\" \"\""},
        FormatCase{"LargeText",
                   {"v", "U", 2, {"", bytesOf<int64_t>({0, 2, 3}), "abc"}},
                   ColumnType::Text,
                   "\"ab\" \"c\""},
        FormatCase{"TextViews",
                   {"v",
                    "vu",
                    3,
                    {"", viewOf("twelve bytes") + viewOf(LONG_TEXT) + viewOf(""), "__" + LONG_TEXT,
                     bytesOf<int64_t>({24})}},
                   ColumnType::Text,
                   "\"twelve bytes\" \"more than twelve bytes\" \"\""},
        FormatCase{"TheShortestTextOutsideOfItsView",
                   {"v",
                    "vu",
                    1,
                    {"", viewOf("thirteen byte"), "__thirteen byte", bytesOf<int64_t>({15})}},
                   ColumnType::Text,
                   "\"thirteen byte\""},
        FormatCase{"TextViewsOfSeveralBuffers",
                   {"v",
                    "vu",
                    2,
                    {"", viewOf(LONG_TEXT, 1) + viewOf(LONG_TEXT), "__" + LONG_TEXT,
                     "##MORE THAN TWELVE BYTES", bytesOf<int64_t>({24, 24})}},
                   ColumnType::Text,
                   "\"MORE THAN TWELVE BYTES\" \"more than twelve bytes\""},
        FormatCase{"Seconds",
                   {"v", "tss:", 2, {"", bytesOf<int64_t>({-1, 2})}},
                   ColumnType::Time,
                   "\"1969-12-31T23:59:59\" \"1970-01-01T00:00:02\""},
        FormatCase{"SecondsOfWhichTheFirstIsAMidnight",
                   {"v", "tss:", 2, {"", bytesOf<int64_t>({0, 2})}},
                   ColumnType::Time,
                   "\"1970-01-01T00:00:00\" \"1970-01-01T00:00:02\""},
        FormatCase{"Milliseconds",
                   {"v", "tsm:", 2, {"", bytesOf<int64_t>({-1, 2})}},
                   ColumnType::Time,
                   "\"1969-12-31T23:59:59.999\" \"1970-01-01T00:00:00.002\""},
        FormatCase{"Microseconds",
                   {"v", "tsu:", 2, {"", bytesOf<int64_t>({-1, 2})}},
                   ColumnType::Time,
                   "\"1969-12-31T23:59:59.999999\" \"1970-01-01T00:00:00.000002\""},
        FormatCase{"NanosecondsAreRoundedDown",
                   {"v", "tsn:", 4, {"", bytesOf<int64_t>({-1, 1999, -1000, 2000000})}},
                   ColumnType::Time,
                   "\"1969-12-31T23:59:59.999999\" \"1970-01-01T00:00:00.000001\" "
                   "\"1969-12-31T23:59:59.999999\" \"1970-01-01T00:00:00.002\""},
        FormatCase{"AZoneIsThatOfThePrintedTimeAlone",
                   {"v", "tsu:Europe/Berlin", 1, {"", bytesOf<int64_t>({0})}},
                   ColumnType::Time,
                   "\"1970-01-01\""},
        FormatCase{"Days",
                   {"v", "tdD", 2, {"", bytesOf<int32_t>({-1, 2})}},
                   ColumnType::Time,
                   "\"1969-12-31\" \"1970-01-03\""},
        FormatCase{"DaysInMilliseconds",
                   {"v", "tdm", 1, {"", bytesOf<int64_t>({86400000})}},
                   ColumnType::Time,
                   "\"1970-01-02\""},
        FormatCase{"IntegersWithNulls",
                   {"v", "i", 3, {bytesOf<uint8_t>({0b101}), bytesOf<int32_t>({1, 9, 3})}, 1},
                   ColumnType::Int32,
                   "1 null 3"},
        FormatCase{"AnUncountedNumberOfNulls",
                   {"v", "i", 2, {bytesOf<uint8_t>({0b10}), bytesOf<int32_t>({1, 9})}, -1},
                   ColumnType::Int32,
                   "null 9"},
        FormatCase{"TimesOfWhichNoneIsMarkedAsNull",
                   {"v", "tss:", 2, {"", bytesOf<int64_t>({0, 86400})}, -1},
                   ColumnType::Time,
                   "\"1970-01-01\" \"1970-01-02\""},
        FormatCase{"FloatsWithNulls",
                   {"v", "g", 2, {bytesOf<uint8_t>({0b10}), bytesOf<double>({1, 9})}, 1},
                   ColumnType::Float64,
                   "null 9"},
        FormatCase{"TimesWithNulls",
                   {"v",
                    "tss:",
                    2,
                    {bytesOf<uint8_t>({0b10}),
                     bytesOf<int64_t>({std::numeric_limits<int64_t>::max(), 86400})},
                    1},
                   ColumnType::Time,
                   "null \"1970-01-02\""},
        FormatCase{"TruthValuesWithNulls",
                   {"v", "b", 2, {bytesOf<uint8_t>({0b10}), bytesOf<uint8_t>({0b11})}, 1},
                   ColumnType::Boolean,
                   "null true"},
        FormatCase{
            "ViewsWithNulls",
            {"v", "vu", 2, {bytesOf<uint8_t>({0b10}), std::string(16, '\x7F') + viewOf("b")}, 1},
            ColumnType::Text,
            "null \"b\""},
        FormatCase{"CellsBehindAnOffset",
                   {"v", "i", 1, {bytesOf<uint8_t>({0b10}), bytesOf<int32_t>({1, 9})}, 1, 1},
                   ColumnType::Int32,
                   "9"},
        FormatCase{"BitsBehindAnOffset",
                   {"v", "b", 2, {"", bytesOf<uint8_t>({0, 0b10})}, 0, 8},
                   ColumnType::Boolean,
                   "false true"},
        FormatCase{"TimesBehindAnOffset",
                   {"v", "tss:", 1, {"", bytesOf<int64_t>({1, 2})}, 0, 1},
                   ColumnType::Time,
                   "\"1970-01-01T00:00:02\""},
        FormatCase{"TextsBehindAnOffset",
                   {"v", "u", 1, {"", bytesOf<int32_t>({0, 2, 3}), "abc"}, 0, 1},
                   ColumnType::Text,
                   "\"c\""},
        FormatCase{"ViewsBehindAnOffset",
                   {"v", "vu", 1, {"", viewOf("a") + viewOf("b")}, 0, 1},
                   ColumnType::Text,
                   "\"b\""},
        FormatCase{"NoRows", {"v", "i", 0, {"", ""}}, ColumnType::Int32, ""}),
    [](const auto& some) { return some.param.rule; });

TEST(ImportTest, ColumnsHaveNamesUnitsAndTheirOrder) {
  const Table table = importTable(streamOf(tables::nullables()).get());
  EXPECT_THAT(tables::namesOf(table), ElementsAre("i", "b", "t", "d"));
  EXPECT_EQ(table.columns()[0].unit, "m");
  EXPECT_TRUE(table.columns()[0].isNullable);
  EXPECT_FALSE(table.columns()[3].isNullable);
  EXPECT_FALSE(table.columns()[0].isIndex);
  EXPECT_EQ(csvOf(table), csvOf(tables::nullables()));
}

TEST(ImportTest, RowsOfABatchMayBeginBehindAnOffset) {
  HandMadeStream stream({{"v", "i", 3, {"", bytesOf<int32_t>({1, 2, 3, 4})}, 0, 1}}, 2);
  stream.batch().offset = 1;
  EXPECT_EQ(csvOf(importTable(stream.get())), "v\n3\n4\n");
}

TEST(ImportTest, BatchesFollowEachOther) {
  HandMadeStream stream({{"v", "i", 2, {"", bytesOf<int32_t>({1, 2})}}}, 2, 3);
  const Table table = importTable(stream.get());
  EXPECT_THAT(tables::cellsOf<int>(table, 0), ElementsAre(1, 2, 1, 2, 1, 2));
  int some[3] = {};
  table.read(0, 1, 3, some);
  EXPECT_THAT(some, ElementsAre(2, 1, 2));
}

TEST(ImportTest, OneTimeOfDayInAnyBatchGivesAllTimesOne) {
  memory::Dictionary data("data");
  data.add(memory::TimeArray("t", {{"x", 2}}, {SECOND, 0}));
  StreamOptions options;
  options.maxRows = 1;
  EXPECT_EQ(csvOf(importTable(streamOf(Table(data, tables::plan(data)), options).get())),
            "x,t\n0,1970-01-01T00:00:01\n1,1970-01-01T00:00:00\n");
}

TEST(ImportTest, TextsThatAreNullAreEmpty) {
  HandMadeStream stream(
      {{"v", "u", 2, {bytesOf<uint8_t>({0b10}), bytesOf<int32_t>({0, 2, 3}), "abc"}, 1}}, 2);
  EXPECT_THAT(tables::cellsOf<std::string>(importTable(stream.get()), 0), ElementsAre("", "c"));
}

TEST(ImportTest, NothingIsWrittenBehindTheLastCell) {
  HandMadeStream stream({{"b", "b", 3, {"", bytesOf<uint8_t>({0b110})}}}, 3);
  bool cells[3] = {};
  importTable(stream.get()).read(0, 0, 2, cells);
  EXPECT_THAT(cells, ElementsAre(false, true, false));
}

TEST(ImportTest, NothingIsSaidOfCellsBehindTheLast) {
  HandMadeStream stream({{"v", "i", 2, {bytesOf<uint8_t>({0b01}), bytesOf<int32_t>({1, 2})}, 1}},
                        2);
  bool missing[3] = {};
  importTable(stream.get()).readMissing(0, 0, 2, missing);
  EXPECT_THAT(missing, ElementsAre(false, true, false));
}

TEST(ImportTest, CellsOfOneBatchLieInPlace) {
  HandMadeStream stream({{"v", "i", 2, {"", bytesOf<int32_t>({1, 2})}},
                         {"n", "i", 2, {bytesOf<uint8_t>({1}), bytesOf<int32_t>({1, 2})}, 1},
                         {"b", "b", 2, {"", bytesOf<uint8_t>({1})}},
                         {"c", "c", 2, {"", bytesOf<int8_t>({1, 2})}}},
                        2, 2);
  const Table table = importTable(stream.get());
  const auto* const cells = static_cast<const int*>(stream.batch().children[0]->buffers[1]);
  EXPECT_EQ(table.cellsInPlace(0, 0, 2), cells);
  EXPECT_EQ(table.cellsInPlace(0, 3, 1), cells + 1);
  EXPECT_EQ(table.cellsInPlace(0, 1, 2), nullptr);  // of two batches
  EXPECT_EQ(table.cellsInPlace(1, 0, 2), nullptr);  // with nulls
  EXPECT_EQ(table.cellsInPlace(2, 0, 2), nullptr);  // bits
  EXPECT_EQ(table.cellsInPlace(3, 0, 2), stream.batch().children[3]->buffers[1]);
}

TEST(ImportTest, CellsWithoutMarksOfNullsHaveNoneHoweverManyAreTold) {
  HandMadeStream stream({{"v", "i", 2, {"", bytesOf<int32_t>({1, 2})}, -1}}, 2);
  const Table table = importTable(stream.get());
  EXPECT_FALSE(table.columns()[0].isNullable);
  EXPECT_EQ(table.cellsInPlace(0, 0, 2), stream.batch().children[0]->buffers[1]);
  EXPECT_THAT(tables::cellsOf<int>(table, 0), ElementsAre(1, 2));
}

TEST(ImportTest, CellsThatAreNotAlignedAreCopied) {
  HandMadeStream stream({{"v", "g", 2, {"", std::string(1, ' ') + bytesOf<double>({1, 2})}}}, 2);
  const auto* const bytes = static_cast<const char*>(stream.batch().children[0]->buffers[1]);
  const bool isOdd = (reinterpret_cast<uintptr_t>(bytes) + 1) % sizeof(double) != 0;
  const void* const shifted = isOdd ? bytes + 1 : bytes;
  stream.batch().children[0]->buffers[1] = shifted;
  const Table table = importTable(stream.get());
  EXPECT_EQ(table.cellsInPlace(0, 0, 2), nullptr);
  EXPECT_THAT(tables::cellsOf<double>(table, 0), ElementsAre(1, 2));
}

TEST(ImportTest, BatchesAreReleasedWithTheLastCopyOfTheTable) {
  HandMadeStream stream({{"v", "i", 2, {"", bytesOf<int32_t>({1, 2})}}}, 2, 3);
  {
    const Table table = importTable(stream.get());
    EXPECT_EQ(stream.streamsReleased(), 1);
    const Table copy = table;
    EXPECT_EQ(stream.batchesReleased(), 0);
  }
  EXPECT_EQ(stream.batchesReleased(), 3);
}

TEST(ImportTest, AStreamWithoutColumnsHasItsRows) {
  HandMadeStream stream({}, 4);
  EXPECT_EQ(importTable(stream.get()).rows(), 4U);
}

/// What importTable() throws, after which nothing of the stream is left.
TEST(ImportTest, ColumnsThatNoTableHasAreNamedWithTheirFormat) {
  for (const char* const format :
       {"+l", "+s", "+w:3", "z", "e", "n", "d:19,10", "ttm", "tDs", "tiM", "", "ts"}) {
    EXPECT_EQ(refusal({"a\nb", format}), "The column 'a\\nb' is of the format '" +
                                             std::string(format) + "', which tables do not read");
  }
  HandMadeStream nameless({{"v", "z"}}, 0);
  nameless.schema().children[0]->name = nullptr;
  nameless.schema().children[0]->format = nullptr;
  EXPECT_EQ(refusal(nameless), "The column '' is of the format '', which tables do not read");
  HandMadeStream readable({{"v", "i", 1, {"", bytesOf<int32_t>({7})}}}, 1);
  readable.schema().children[0]->name = nullptr;
  EXPECT_THAT(tables::namesOf(importTable(readable.get())), ElementsAre(""));
  HandMadeColumn encoded = {"v", "i", 1, {"", bytesOf<int32_t>({0})}};
  encoded.hasDictionary = true;
  EXPECT_EQ(
      refusal(encoded),
      "The column 'v' is encoded by a dictionary of the format 'u', which tables do not read");
}

TEST(ImportTest, TimesThatMicrosecondsDoNotHoldAreRefused) {
  const auto most = std::numeric_limits<int64_t>::max();
  const std::string sentence =
      "The column 'v' has times that 64 bits of microseconds since 1970 do not hold";
  EXPECT_EQ(refusal({"v", "tss:", 2, {"", bytesOf<int64_t>({0, most / SECOND + 1})}}), sentence);
  EXPECT_EQ(refusal({"v", "tsm:", 1, {"", bytesOf<int64_t>({most})}}), sentence);
  EXPECT_EQ(refusal({"v", "tdD", 1, {"", bytesOf<int32_t>({2147483647})}}), sentence);
  EXPECT_EQ(refusal({"v", "tss:", 1, {"", bytesOf<int64_t>({most / SECOND})}}), "(nothing thrown)");
}

TEST(ImportTest, StreamsThatFailAreQuoted) {
  HandMadeStream beginning({}, 0);
  beginning.schemaStatus = EIO;
  beginning.words = "the disk is gone\x1b";
  EXPECT_EQ(refusal(beginning), "The stream failed: the disk is gone\\x1b");
  HandMadeStream end({{"v", "i", 2, {"", bytesOf<int32_t>({1, 2})}}}, 2);
  end.endStatus = ENOMEM;
  EXPECT_EQ(refusal(end), "The stream failed: Cannot allocate memory");
  EXPECT_EQ(end.batchesReleased(), 1);
  HandMadeStream silent({}, 0);
  silent.endStatus = EIO;
  silent.words = "";
  EXPECT_EQ(refusal(silent), "The stream failed: Input/output error");
}

TEST(ImportTest, WhatIsNoStreamOfColumnsIsRefused) {
  HandMadeStream numbers({}, 0);
  numbers.schema().format = "i";
  EXPECT_EQ(refusal(numbers), "The stream has values of the format 'i', not rows of columns");
  HandMadeStream rows({}, 3);
  const unsigned char bits = 0b101;
  rows.validity() = &bits;
  rows.batch().null_count = 1;
  EXPECT_EQ(refusal(rows),
            "The stream has rows that are null as a whole, which tables do not have");
  ArrowArrayStream released = {};
  EXPECT_EQ(::test::thrownBy<tables::Error>([&] { return importTable(&released); }),
            "The stream has been released");
}

TEST(ImportTest, TheFirstRowMayNotBeNullAsAWhole) {
  HandMadeStream rows({}, 2);
  const unsigned char bits = 0b10;
  rows.validity() = &bits;
  rows.batch().null_count = 1;
  EXPECT_EQ(refusal(rows),
            "The stream has rows that are null as a whole, which tables do not have");
}

TEST(ImportTest, BatchesWithoutRowsAreReleasedAtOnce) {
  HandMadeStream stream({{"v", "i", 0, {"", ""}}}, 0, 2);
  const Table table = importTable(stream.get());
  EXPECT_EQ(table.rows(), 0U);
  EXPECT_EQ(stream.batchesReleased(), 2);
}

TEST(ImportTest, RowsBeforeTheOffsetOfABatchMayBeNull) {
  HandMadeStream stream({{"v", "i", 3, {"", bytesOf<int32_t>({1, 2, 3})}}}, 2);
  stream.batch().offset = 1;
  stream.batch().null_count = -1;
  const unsigned char bits = 0b110;
  stream.validity() = &bits;
  EXPECT_EQ(csvOf(importTable(stream.get())), "v\n2\n3\n");
  HandMadeStream last({{"v", "i", 3, {"", bytesOf<int32_t>({1, 2, 3})}}}, 2);
  last.batch().offset = 1;
  last.batch().null_count = -1;
  const unsigned char others = 0b011;
  last.validity() = &others;
  EXPECT_EQ(refusal(last),
            "The stream has rows that are null as a whole, which tables do not have");
}

TEST(ImportTest, BatchesNeedNoMarksOfRowsThatAreNull) {
  const HandMadeColumn column = {"v", "i", 2, {"", bytesOf<int32_t>({1, 2})}};
  HandMadeStream uncounted({column}, 2);
  uncounted.batch().null_count = -1;
  EXPECT_EQ(csvOf(importTable(uncounted.get())), "v\n1\n2\n");
  HandMadeStream without({column}, 2);
  without.batch().null_count = -1;
  without.batch().n_buffers = 0;
  without.batch().buffers = nullptr;
  EXPECT_EQ(csvOf(importTable(without.get())), "v\n1\n2\n");
}

TEST(ImportTest, ColumnsOfOneNameAreRefused) {
  const HandMadeColumn column = {"v", "i", 1, {"", bytesOf<int32_t>({0})}};
  HandMadeStream stream({column, column}, 1);
  EXPECT_EQ(refusal(stream), "Two columns are called 'v'");
}

TEST(ImportTest, BatchesThatDoNotFitTheirSchemaAreRefused) {
  const std::string sentence = "The stream has a batch that does not fit its schema";
  const std::string two = bytesOf<int32_t>({1, 2});
  HandMadeStream shorter({{"v", "i", 1, {"", two}}}, 2);
  EXPECT_EQ(refusal(shorter), sentence);
  HandMadeStream second({{"v", "i", 2, {"", two}}, {"w", "i", 1, {"", two}}}, 2);
  EXPECT_EQ(refusal(second), sentence);
  HandMadeStream fewer({{"v", "i", 2, {"", two}}}, 2);
  fewer.batch().n_children = 0;
  EXPECT_EQ(refusal(fewer), sentence);
  HandMadeStream negative({}, -1);
  EXPECT_EQ(refusal(negative), sentence);
  HandMadeStream shifted({{"v", "i", 2, {"", two}}}, 2);
  shifted.batch().offset = 1;
  EXPECT_EQ(refusal(shifted), sentence);
  HandMadeStream before({{"v", "i", 3, {"", two + two}, 0, 1}}, 2);
  before.batch().offset = -1;
  EXPECT_EQ(refusal(before), sentence);
  HandMadeStream columnBefore({{"v", "i", 2, {"", two}, 0, -1}}, 2);
  EXPECT_EQ(refusal(columnBefore), sentence);
  HandMadeStream encoded({{"v", "i", 2, {"", two}}}, 2);
  ArrowArray dictionary = {};
  encoded.batch().children[0]->dictionary = &dictionary;
  EXPECT_EQ(refusal(encoded), sentence);
  HandMadeStream buffers({{"v", "i", 2, {""}}}, 2);
  EXPECT_EQ(refusal(buffers), sentence);
  HandMadeStream nothing({{"v", "i", 2, {"", ""}}}, 2);
  EXPECT_EQ(refusal(nothing), sentence);
}

}  // namespace
}  // namespace quillon::arrow
