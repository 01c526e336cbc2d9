#include <quillon/memory/Wording.h>
#include <quillon/tables/Writers.h>

#include <string>

#include "Cells.h"

namespace quillon::tables {
namespace {

bool isWord(char character) {
  return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
         (character >= 'a' && character <= 'z');
}

/// Whether the character has a meaning in Markdown. An underline within a word has none, nor has a
/// bracket that makes no link.
bool isSpecial(std::string_view text, std::size_t at) {
  if (text[at] == '_') {
    return at == 0 || at + 1 == text.size() || !isWord(text[at - 1]) || !isWord(text[at + 1]);
  }
  if (text[at] == ']') {
    return at + 1 < text.size() && text[at + 1] == '(';
  }
  return std::string_view("\\`*~|<&").find(text[at]) != std::string_view::npos;
}

/// As Markdown shows it literally, in one cell.
void appendInMarkdown(std::string_view text, Buffer& buffer) {
  const std::string visible = memory::escaped(text);
  for (std::size_t k = 0; k < visible.size(); ++k) {
    if (isSpecial(visible, k)) {
      buffer.append('\\');
    }
    buffer.append(visible[k]);
  }
}

}  // namespace

void writeMarkdown(const Table& table, const Output& output, const Shown& shown) {
  const auto writers = cellWriters(table, {shown.digits, "", false, appendInMarkdown});
  Buffer buffer;
  for (const Column& column : table.columns()) {
    buffer.append("| ");
    appendInMarkdown(column.name, buffer);
    buffer.append(' ');
  }
  buffer.append("|\n");
  for (const Column& column : table.columns()) {
    buffer.append(isNumber(column.type) ? "| ---: " : "| :--- ");
  }
  buffer.append("|\n");
  forEachRow(table, shown.maxRows, writers, [&](unsigned long row) {
    for (const auto& writer : writers) {
      buffer.append("| ");
      writer->write(row, buffer);
      buffer.append(' ');
    }
    buffer.append("|\n");
    buffer.passOn(output);
  });
  buffer.finish(output);
}

}  // namespace quillon::tables
