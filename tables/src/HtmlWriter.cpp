#include <quillon/memory/HtmlText.h>
#include <quillon/memory/Wording.h>
#include <quillon/tables/Writers.h>

#include <algorithm>
#include <string>

#include "Cells.h"

namespace quillon::tables {
namespace {

void appendInHtml(std::string_view text, Buffer& buffer) { buffer.append(memory::inHtml(text)); }

void openCell(const Column& column, std::string_view element, Buffer& buffer) {
  buffer.append('<');
  buffer.append(element);
  buffer.append(isNumber(column.type) ? " style=\"text-align: right\">"
                                      : " style=\"text-align: left\">");
}

void appendHeadRow(const Table& table, std::string Column::*text, Buffer& buffer) {
  buffer.append("    <tr>");
  for (const Column& column : table.columns()) {
    openCell(column, "th", buffer);
    appendInHtml(column.*text, buffer);
    buffer.append("</th>");
  }
  buffer.append("</tr>\n");
}

void appendHead(const Table& table, Buffer& buffer) {
  const auto& columns = table.columns();
  buffer.append("  <thead>\n");
  appendHeadRow(table, &Column::name, buffer);
  if (std::any_of(columns.begin(), columns.end(),
                  [](const Column& column) { return !column.unit.empty(); })) {
    appendHeadRow(table, &Column::unit, buffer);
  }
  buffer.append("  </thead>\n");
}

void appendTable(const Table& table, const Output& output, const Shown& shown, Buffer& buffer) {
  const auto writers = cellWriters(table, {shown.digits, "", false, appendInHtml});
  buffer.append("<table>\n");
  appendHead(table, buffer);
  buffer.append("  <tbody>\n");
  forEachRow(table, shown.maxRows, writers, [&](unsigned long row) {
    buffer.append("    <tr>");
    for (std::size_t k = 0; k < writers.size(); ++k) {
      openCell(table.columns()[k], "td", buffer);
      writers[k]->write(row, buffer);
      buffer.append("</td>");
    }
    buffer.append("</tr>\n");
    buffer.passOn(output);
  });
  buffer.append("  </tbody>\n</table>\n");
}

constexpr std::string_view STYLE = R"(
  :root { --head: #dfe6ee; --rule: #7d8b99; --line: #e3e7ec; --stripe: #f4f6f9; }
  @media (prefers-color-scheme: dark) {
    :root { --head: #2a323c; --rule: #5c6875; --line: #262d35; --stripe: #1b2026; }
  }
  figure { margin: 0; width: max-content; }
  figcaption { position: sticky; left: 1.5rem; width: calc(100vw - 4rem);
               margin-bottom: 1rem; overflow-wrap: anywhere; }
  figcaption strong { display: block; font-size: 1.25rem; }
  figcaption span { color: var(--faint); }
  table { border-spacing: 0; font-variant-numeric: tabular-nums; }
  th, td { padding: 0.3rem 0.9rem; white-space: pre; }
  thead { position: sticky; top: 0; background: var(--head); }
  thead tr + tr th { font-weight: normal; color: var(--faint); }
  thead tr:last-child th { border-bottom: 2px solid var(--rule); }
  td { border-bottom: 1px solid var(--line); }
  tbody tr:nth-child(odd) { background: var(--stripe); }
)";

/// "10 of 16800 rows", "85 rows".
std::string rowsInWords(const Table& table, unsigned long maxRows) {
  const std::string all = memory::counted(table.rows(), "row");
  return maxRows == 0 || maxRows >= table.rows() ? all : std::to_string(maxRows) + " of " + all;
}

}  // namespace

void writeHtml(const Table& table, const Output& output, const Shown& shown) {
  Buffer buffer;
  appendTable(table, output, shown, buffer);
  buffer.finish(output);
}

void writeHtmlPage(const Table& table, const Page& page, const Output& output, const Shown& shown) {
  Buffer buffer;
  buffer.append(memory::pageStart(page.title, STYLE));
  buffer.append("<figure>\n<figcaption><strong>");
  appendInHtml(page.title, buffer);
  buffer.append("</strong> <span>");
  appendInHtml(page.subtitle, buffer);
  buffer.append(page.subtitle.empty() ? "" : " · ");
  buffer.append(rowsInWords(table, shown.maxRows) + "</span></figcaption>\n");
  appendTable(table, output, shown, buffer);
  buffer.append("</figure>\n</body>\n</html>\n");
  buffer.finish(output);
}

}  // namespace quillon::tables
