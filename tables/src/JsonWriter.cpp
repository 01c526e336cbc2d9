#include <quillon/memory/JsonText.h>
#include <quillon/tables/Writers.h>

#include <string>
#include <vector>

#include "Cells.h"

namespace quillon::tables {
namespace {

void appendString(std::string_view text, Buffer& buffer) { buffer.append(memory::jsonText(text)); }

/// What stands before each cell of a row.
std::vector<std::string> keysOf(const Table& table) {
  std::vector<std::string> keys;
  for (const Column& column : table.columns()) {
    keys.push_back((keys.empty() ? "{" : ", ") + memory::jsonText(column.name) + ": ");
  }
  return keys;
}

/// @param between what stands between two objects.
void appendObjects(const Table& table, std::string_view between, Buffer& buffer,
                   const Output& output, unsigned long maxRows) {
  const auto writers = cellWriters(table, {0, "null", true, appendString});
  const std::vector<std::string> keys = keysOf(table);
  bool isFirst = true;
  forEachRow(table, maxRows, writers, [&](unsigned long row) {
    buffer.append(isFirst ? std::string_view() : between);
    isFirst = false;
    for (std::size_t k = 0; k < writers.size(); ++k) {
      buffer.append(keys[k]);
      writers[k]->write(row, buffer);
    }
    buffer.append(keys.empty() ? "{}" : "}");
    buffer.passOn(output);
  });
}

bool isEmpty(const Table& table) { return table.rows() == 0; }

}  // namespace

void writeJson(const Table& table, const Output& output, unsigned long maxRows) {
  Buffer buffer;
  buffer.append(isEmpty(table) ? "[" : "[\n");
  appendObjects(table, ",\n", buffer, output, maxRows);
  buffer.append(isEmpty(table) ? "]\n" : "\n]\n");
  buffer.finish(output);
}

void writeJsonLines(const Table& table, const Output& output, unsigned long maxRows) {
  Buffer buffer;
  appendObjects(table, "\n", buffer, output, maxRows);
  buffer.append(isEmpty(table) ? "" : "\n");
  buffer.finish(output);
}

}  // namespace quillon::tables
