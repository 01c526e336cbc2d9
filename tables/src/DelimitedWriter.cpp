#include <quillon/tables/Writers.h>

#include "Cells.h"

namespace quillon::tables {
namespace {

/// Quoted where it would else be taken for more than one field. The separator is a comma or a tab.
template <char SEPARATOR>
void appendField(std::string_view text, Buffer& buffer) {
  constexpr char SPECIAL[] = {SEPARATOR, '"', '\r', '\n'};
  if (text.find_first_of({SPECIAL, sizeof(SPECIAL)}) == std::string_view::npos) {
    appendUtf8(text, buffer);
    return;
  }
  buffer.append('"');
  for (std::size_t quote = text.find('"'); quote != std::string_view::npos;
       quote = text.find('"')) {
    appendUtf8(text.substr(0, quote + 1), buffer);
    buffer.append('"');
    text.remove_prefix(quote + 1);
  }
  appendUtf8(text, buffer);
  buffer.append('"');
}

template <char SEPARATOR>
void writeDelimited(const Table& table, const Output& output, unsigned long maxRows) {
  const auto writers = cellWriters(table, {0, "", false, appendField<SEPARATOR>});
  Buffer buffer;
  // A row of one empty field would be an empty line, which readers pass over.
  const auto endRow = [&](std::size_t start) {
    if (writers.size() == 1 && buffer.size() == start) {
      buffer.append("\"\"");
    }
    buffer.append('\n');
  };
  for (std::size_t k = 0; k < writers.size(); ++k) {
    buffer.append(k == 0 ? 0UL : 1UL, SEPARATOR);
    appendField<SEPARATOR>(table.columns()[k].name, buffer);
  }
  endRow(0);
  forEachRow(table, maxRows, writers, [&](unsigned long row) {
    const std::size_t start = buffer.size();
    for (std::size_t k = 0; k < writers.size(); ++k) {
      if (k > 0) {
        buffer.append(SEPARATOR);
      }
      writers[k]->write(row, buffer);
    }
    endRow(start);
    buffer.passOn(output);
  });
  buffer.finish(output);
}

}  // namespace

void writeCsv(const Table& table, const Output& output, unsigned long maxRows) {
  writeDelimited<','>(table, output, maxRows);
}

void writeTsv(const Table& table, const Output& output, unsigned long maxRows) {
  writeDelimited<'\t'>(table, output, maxRows);
}

}  // namespace quillon::tables
