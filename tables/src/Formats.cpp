#include <quillon/tables/Formats.h>

#include <algorithm>

namespace quillon::tables {
namespace {

/// Whether people read it, so that it begins with ten rows.
bool isForPeople(Format format) {
  return format == Format::Text || format == Format::Markdown || format == Format::Html;
}

unsigned long maxRowsOf(Format format, const Writing& writing) {
  return writing.maxRows.value_or(isForPeople(format) ? Shown().maxRows : 0);
}

}  // namespace

const std::vector<std::string>& formatNames() {
  static const std::vector<std::string> names = {"text", "markdown", "html", "csv",
                                                 "tsv",  "json",     "jsonl"};
  return names;
}

std::optional<Format> formatOf(std::string_view name) {
  const std::vector<std::string>& names = formatNames();
  const auto found = std::find(names.begin(), names.end(), name);
  return found == names.end() ? std::nullopt
                              : std::optional(static_cast<Format>(found - names.begin()));
}

void write(const Table& table, Format format, const Output& output, const Writing& writing) {
  const unsigned long maxRows = maxRowsOf(format, writing);
  const Shown shown = {maxRows, writing.digits, writing.width};
  switch (format) {
    case Format::Text:
      return writeText(table, output, shown);
    case Format::Markdown:
      return writeMarkdown(table, output, shown);
    case Format::Html:
      return writing.page ? writeHtmlPage(table, *writing.page, output, shown)
                          : writeHtml(table, output, shown);
    case Format::Csv:
      return writeCsv(table, output, maxRows);
    case Format::Tsv:
      return writeTsv(table, output, maxRows);
    case Format::Json:
      return writeJson(table, output, maxRows);
    case Format::JsonLines:
      return writeJsonLines(table, output, maxRows);
  }
}

unsigned long rowsRead(const Table& table, Format format, const Writing& writing) {
  const unsigned long maxRows = maxRowsOf(format, writing);
  const unsigned long rows = maxRows == 0 ? table.rows() : std::min(maxRows, table.rows());
  return format == Format::Text ? 2 * rows : rows;
}

}  // namespace quillon::tables
