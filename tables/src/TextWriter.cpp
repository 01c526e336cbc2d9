#include <quillon/memory/Wording.h>
#include <quillon/tables/Writers.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "Cells.h"

namespace quillon::tables {
namespace {

constexpr std::size_t GAP = 2;  // blanks between two columns
constexpr std::string_view DOTS = "...";

/// Which columns a line shows: the first `left` and the last `right`, with dots for those between.
struct ShownColumns {
  std::size_t left;
  std::size_t right;
};

/// As many columns as fit, from both ends in turns, but the first in any case.
ShownColumns fitting(const std::vector<std::size_t>& widths, unsigned long width) {
  std::size_t all = 0;
  for (std::size_t k = 0; k < widths.size(); ++k) {
    all += widths[k] + (k == 0 ? 0 : GAP);
  }
  if (width == 0 || all <= width) {
    return {widths.size(), 0};
  }
  ShownColumns shown = {1, 0};
  std::size_t taken = widths.front() + GAP + DOTS.size();
  for (;;) {  // ends before the last column at the latest, as not all of them fit
    const bool fromRight = shown.right < shown.left;
    const std::size_t next = fromRight ? widths.size() - 1 - shown.right : shown.left;
    taken += GAP + widths[next];
    if (taken > width) {
      break;
    }
    ++(fromRight ? shown.right : shown.left);
  }
  return shown;
}

class AlignedText {
 public:
  AlignedText(const Table& table, const Output& output, const Shown& shown)
      : m_table(table),
        m_output(output),
        m_shown(shown),
        m_writers(cellWriters(table, {shown.digits, "", false, appendAsItIs})) {
    for (const Column& column : table.columns()) {
      m_widths.push_back(std::max(memory::displayWidth(memory::escaped(column.name)),
                                  memory::displayWidth(memory::escaped(column.unit))));
      m_hasUnits = m_hasUnits || !column.unit.empty();
    }
  }

  void write() {
    forEachRow(m_table, m_shown.maxRows, m_writers, [this](unsigned long row) {
      for (std::size_t k = 0; k < m_widths.size(); ++k) {
        m_widths[k] = std::max(m_widths[k], memory::displayWidth(cell(k, row)));
      }
    });
    m_columns = fitting(m_widths, m_shown.width);
    writeLine([this](std::size_t k) { return memory::escaped(m_table.columns()[k].name); });
    if (m_hasUnits) {
      writeLine([this](std::size_t k) { return memory::escaped(m_table.columns()[k].unit); });
    }
    forEachRow(m_table, m_shown.maxRows, m_writers, [this](unsigned long row) {
      writeLine([this, row](std::size_t k) { return cell(k, row); });
    });
    m_line.append("[" + memory::counted(m_table.rows(), "row") + " x " +
                  memory::counted(m_widths.size(), "column") + "]\n");
    m_line.finish(m_output);
  }

 private:
  /// What a cell is shown as, until the next one is asked for. Only texts need to be escaped.
  std::string_view cell(std::size_t column, unsigned long row) {
    m_cell.clear();
    m_writers[column]->write(row, m_cell);
    if (m_table.columns()[column].type != ColumnType::Text) {
      return m_cell.view();
    }
    m_text = memory::escaped(m_cell.view());
    return m_text;
  }

  template <class TextOf>
  void writeLine(const TextOf& textOf) {
    m_pending = 0;
    for (std::size_t k = 0; k < m_columns.left; ++k) {
      writeColumn(k, textOf(k));
    }
    if (m_columns.left + m_columns.right < m_widths.size()) {
      m_line.append(m_pending + GAP, ' ');
      m_line.append(DOTS);
      m_pending = 0;
      for (std::size_t k = m_widths.size() - m_columns.right; k < m_widths.size(); ++k) {
        writeColumn(k, textOf(k));
      }
    }
    m_line.append('\n');
    m_line.passOn(m_output);
  }

  /// Blanks wait for the text behind them, so that no line ends with any.
  void writeColumn(std::size_t k, std::string_view text) {
    const std::size_t width = memory::displayWidth(text);
    const std::size_t rest = m_widths[k] - std::min(width, m_widths[k]);
    const bool atTheRight = isNumber(m_table.columns()[k].type);
    m_pending += (k == 0 ? 0 : GAP) + (atTheRight ? rest : 0);
    if (!text.empty()) {
      m_line.append(m_pending, ' ');
      m_line.append(text);
      m_pending = 0;
    }
    m_pending += atTheRight ? 0 : rest;
  }

  const Table& m_table;
  const Output& m_output;
  Shown m_shown;
  std::vector<std::unique_ptr<CellWriter>> m_writers;
  std::vector<std::size_t> m_widths;
  bool m_hasUnits = false;
  ShownColumns m_columns = {0, 0};
  std::size_t m_pending = 0;
  Buffer m_cell;
  std::string m_text;
  Buffer m_line;
};

}  // namespace

void writeText(const Table& table, const Output& output, const Shown& shown) {
  AlignedText(table, output, shown).write();
}

}  // namespace quillon::tables
