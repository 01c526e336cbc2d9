#include <gtest/gtest.h>
#include <quillon/memory/Dictionary.h>
#include <quillon/tables/ColumnSource.h>
#include <quillon/tables/Writers.h>

#include <cmath>

#include "Python.h"
#include "TestArrays.h"

namespace quillon::tables {
namespace {

using memory::Dictionary;
using memory::DoubleArray;

using Writer = void (*)(const Table&, const Output&, unsigned long);

std::string written(const Dictionary& data, Writer write, unsigned long maxRows = 0) {
  std::string text;
  write(Table(data, plan(data)), into(text), maxRows);
  return text;
}

Dictionary everyKind() {
  Dictionary data("data");
  data.add(DoubleArray("d", {{"x", 3}}, {std::nan(""), HUGE_VAL, -HUGE_VAL}));
  data.add(Stored<float>("f", {{"x", 3}}, {0.1, 1e5, -2.25}));
  data.add(memory::BooleanArray("b", {{"x", 3}}, {true, false, true}));
  data.add(memory::StringArray("s \"q\"", {{"x", 3}}, {"a\\b\"c", "\n\t\r\x01", ""}));
  data.add(Hours("t", {{"x", 3}}, {std::nan(""), 0, 24}));
  return data;
}

TEST(JsonTest, IsAnArrayOfObjects) {
  EXPECT_EQ(written(everyKind(), writeJson),
            R"([
{"x": 0, "d": null, "f": 0.1, "b": true, "s \"q\"": "a\\b\"c", "t": null},
{"x": 1, "d": "Infinity", "f": 1e+05, "b": false, "s \"q\"": "\n\t\r\u0001", "t": "1970-01-01"},
{"x": 2, "d": "-Infinity", "f": -2.25, "b": true, "s \"q\"": "", "t": "1970-01-02"}
]
)");
}

TEST(JsonTest, LinesAreTheSameObjects) {
  EXPECT_EQ(written(everyKind(), writeJsonLines, 1),
            R"({"x": 0, "d": null, "f": 0.1, "b": true, "s \"q\"": "a\\b\"c", "t": null}
)");
}

TEST(JsonTest, ATableWithoutRowsIsAnEmptyArrayAndNoLine) {
  Dictionary data("data");
  data.add(DoubleArray("a", {{"x", 0}}, {}));
  EXPECT_EQ(written(data, writeJson), "[]\n");
  writeJsonLines(Table(data, plan(data)), [](std::string_view piece) {
    ADD_FAILURE() << "a piece of " << piece.size() << " characters";
  });
}

TEST(JsonTest, BytesThatAreNoUtf8AreReplaced) {
  Dictionary data("data");
  data.add(memory::StringArray("s", {{"x", 1}}, {"a\xFF"}));
  EXPECT_EQ(written(data, writeJsonLines), "{\"x\": 0, \"s\": \"a\\ufffd\"}\n");
}

TEST(JsonTest, EndsWithTheMostRowsThatAreAskedFor) {
  Dictionary data("data");
  data.add(DoubleArray("a", {{"x", 3}}, {1, 2, 3}));
  EXPECT_EQ(written(data, writeJson, 1), "[\n{\"x\": 0, \"a\": 1}\n]\n");
}

TEST(JsonTest, AnotherReaderFindsTheSameCells) {
  EXPECT_EQ(readByPython(written(everyKind(), writeJson), R"(
import json
rows = json.loads(text)
assert rows == [
  {'x': 0, 'd': None, 'f': 0.1, 'b': True, 's "q"': 'a\\b"c', 't': None},
  {'x': 1, 'd': 'Infinity', 'f': 1e5, 'b': False, 's "q"': '\n\t\r\x01', 't': '1970-01-01'},
  {'x': 2, 'd': '-Infinity', 'f': -2.25, 'b': True, 's "q"': '', 't': '1970-01-02'}], rows)"),
            0);
}

TEST(JsonTest, RowsWithoutColumnsAreEmptyObjects) {
  const Table table(std::vector<std::unique_ptr<ColumnSource>>(), 2);
  std::string text;
  writeJson(table, into(text));
  EXPECT_EQ(text, "[\n{},\n{}\n]\n");
  text.clear();
  writeJsonLines(table, into(text));
  EXPECT_EQ(text, "{}\n{}\n");
}

}  // namespace
}  // namespace quillon::tables
