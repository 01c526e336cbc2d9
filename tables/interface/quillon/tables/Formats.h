/// @file
/// All writers of tables behind one function, for whoever is given the name of a format.
#pragma once

#include <quillon/tables/Writers.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::tables {

/// How a table is written.
enum class Format {
  Text,       ///< `text`: writeText()
  Markdown,   ///< `markdown`: writeMarkdown()
  Html,       ///< `html`: writeHtml() or writeHtmlPage()
  Csv,        ///< `csv`: writeCsv()
  Tsv,        ///< `tsv`: writeTsv()
  Json,       ///< `json`: writeJson()
  JsonLines,  ///< `jsonl`: writeJsonLines()
};

/// The names of all formats, in the order of the enumeration.
[[nodiscard]] const std::vector<std::string>& formatNames();

/// The format of that name; none for any other text.
[[nodiscard]] std::optional<Format> formatOf(std::string_view name);

/// How to write a table. What a format has no use for is passed over.
struct Writing {
  /// The first of the rows, 0 for all; unless given, ten for people and all for programs.
  std::optional<unsigned long> maxRows = {};
  int digits = 6;                 ///< significant ones of fractions, for people
  unsigned long width = 0;        ///< places of a line of text; 0 for as many as it takes
  std::optional<Page> page = {};  ///< what stands around an HTML table; a fragment unless given
};

/// Writes the table. Memory, threads and errors as those of the writers.
void write(const Table& table, Format format, const Output& output, const Writing& writing = {});

/// How many rows are read for that: those that are written, twice where their widths are measured
/// first. As many as `Table::reporting()` tells in the end.
[[nodiscard]] unsigned long rowsRead(const Table& table, Format format,
                                     const Writing& writing = {});

}  // namespace quillon::tables
