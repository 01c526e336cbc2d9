#include <gtest/gtest.h>
#include <quillon/memory/Dictionary.h>
#include <quillon/tables/Writers.h>

#include <cmath>

#include "Python.h"
#include "SomeCells.h"
#include "TestArrays.h"

namespace quillon::tables {
namespace {

using memory::Dictionary;
using memory::DoubleArray;

std::string csv(const Dictionary& data, unsigned long maxRows = 0) {
  std::string text;
  writeCsv(Table(data, plan(data)), into(text), maxRows);
  return text;
}

TEST(CsvTest, HasALineOfNamesAndOneForEachRow) {
  Dictionary data("data");
  DoubleArray array("a", {{"x", 2}}, {0.1, -3});
  array.setUnit("m");
  data.add(std::move(array));
  data.add(memory::BooleanArray("b", {{"x", 2}}, {true, false}));
  EXPECT_EQ(csv(data), "x,a,b\n0,0.1,true\n1,-3,false\n");
}

TEST(CsvTest, NumbersAreTheShortestTextThatReadsBackInTheirType) {
  Dictionary data("data");
  data.add(DoubleArray("d", {{"x", 3}}, {1.0 / 3, 1e300, -0.0}));
  data.add(Stored<float>("f", {{"x", 3}}, {0.1, 16777216, 1e-30}));
  data.add(memory::UIntArray("u", {{"x", 3}}, {18446744073709551615UL, 0, 1}));
  data.add(Stored<signed char>("c", {{"x", 3}}, {-128, 65, 127}));
  EXPECT_EQ(csv(data),
            "x,d,f,u,c\n"
            "0,0.3333333333333333,0.1,18446744073709551615,-128\n"
            "1,1e+300,16777216,0,65\n"
            "2,-0,1e-30,1,127\n");
}

TEST(CsvTest, MissingCellsAreEmptyFields) {
  Dictionary data("data");
  data.add(DoubleArray("d", {{"x", 3}}, {std::nan(""), HUGE_VAL, -HUGE_VAL}));
  data.add(Hours("t", {{"x", 3}}, {std::nan(""), 0, 1}));
  data.add(Stored<float>("f", {{"x", 3}}, {-HUGE_VAL, std::nan(""), HUGE_VAL}));
  EXPECT_EQ(csv(data),
            "x,d,t,f\n0,,,-inf\n1,inf,1970-01-01T00:00:00,\n2,-inf,1970-01-01T01:00:00,inf\n");
}

TEST(CsvTest, TimesAreDatesOfTheirCalendar) {
  Dictionary data("data");
  data.add(Hours("t", {{"x", 1}}, {(2 * 365 + 59) * 24}, memory::Calendar::NoLeap));
  EXPECT_EQ(csv(data), "x,t\n0,1972-03-01\n");
}

TEST(CsvTest, FieldsAreQuotedWhereTheyMust) {
  Dictionary data("data");
  data.add(memory::StringArray("a,b", {{"x", 6}},
                               {"plain", "a,b", "say \"yes\"", "two\nlines", "a\rb", "\ttab"}));
  EXPECT_EQ(csv(data),
            "x,\"a,b\"\n0,plain\n1,\"a,b\"\n2,\"say \"\"yes\"\"\"\n3,\"two\nlines\"\n4,\"a\rb\"\n"
            "5,\ttab\n");
}

TEST(CsvTest, BytesThatAreNoUtf8AreReplaced) {
  Dictionary data("data");
  data.add(memory::StringArray("s", {{"x", 1}}, {"a\xFF\xC3\xA4\"\xE2\x82"}));
  EXPECT_EQ(csv(data), "x,s\n0,\"a\xEF\xBF\xBD\xC3\xA4\"\"\xEF\xBF\xBD\xEF\xBF\xBD\"\n");
}

TEST(CsvTest, AnEmptyFieldAloneIsQuotedSoThatTheRowIsThere) {
  Dictionary data("data");
  data.add(DoubleArray("x", {{"x", 2}}, {std::nan(""), 1}));
  EXPECT_EQ(csv(data), "x\n\"\"\n1\n");
}

TEST(CsvTest, EndsWithTheMostRowsThatAreAskedFor) {
  Dictionary data("data");
  data.add(DoubleArray("a", {{"x", 3}}, {1, 2, 3}));
  EXPECT_EQ(csv(data, 2), "x,a\n0,1\n1,2\n");
}

TEST(TsvTest, SeparatesByTabsAndQuotesThose) {
  Dictionary data("data");
  data.add(memory::StringArray("s", {{"x", 2}}, {"a\tb", "a,b"}));
  std::string text;
  writeTsv(Table(data, plan(data)), into(text));
  EXPECT_EQ(text, "x\ts\n0\t\"a\tb\"\n1\ta,b\n");
}

TEST(CsvTest, ComesInPieces) {
  Dictionary data("data");
  data.add(DoubleArray("a", {{"x", 100'000}}, countedUp<double>(100'000)));
  std::string text;
  std::size_t pieces = 0;
  writeCsv(Table(data, plan(data)), [&](std::string_view piece) {
    EXPECT_LE(piece.size(), 65'700U);
    text.append(piece);
    ++pieces;
  });
  EXPECT_TRUE(text == csv(data));  // what differs would take gigabytes to find
  EXPECT_GT(pieces, 10U);
}

TEST(CsvTest, ATableWithoutColumnsHasAnEmptyLineOfNames) {
  std::string text;
  writeCsv(Table(std::vector<std::unique_ptr<ColumnSource>>(), 0), into(text));
  EXPECT_EQ(text, "\n");
}

TEST(CsvTest, AnotherReaderFindsTheSameCells) {
  Dictionary data("data");
  data.add(DoubleArray("d,\"1\"", {{"x", 3}}, {1.0 / 3, 5e-324, std::nan("")}));
  data.add(memory::StringArray("s", {{"x", 3}}, {"a\"b\n,c\r", "", "ü"}));
  EXPECT_EQ(readByPython(csv(data), R"(
import csv, io
rows = list(csv.reader(io.StringIO(text, newline='')))
assert rows == [['x', 'd,"1"', 's'], ['0', repr(1 / 3), 'a"b\n,c\r'], ['1', '5e-324', ''],
                ['2', '', 'ü']], rows)"),
            0);
}

TEST(CsvTest, AnEmptyNameAloneIsQuotedSoThatTheLineOfNamesIsThere) {
  std::vector<std::unique_ptr<ColumnSource>> columns;
  columns.push_back(std::make_unique<SomeCells<int>>("", ColumnType::Int32, std::vector<int>{7},
                                                     std::vector<bool>()));
  std::string text;
  writeCsv(Table(std::move(columns), 1), into(text));
  EXPECT_EQ(text, "\"\"\n7\n");
}

}  // namespace
}  // namespace quillon::tables
