/// @file
/// Tables as text, for people and for programs.
///
/// Numbers that people look at have six significant digits unless other are asked for, integers all
/// of theirs; the other writers give the shortest text that reads back as the cell in its own type.
/// What is missing is blank, an empty field or `null`. Times are ISO 8601, truth values `true` and
/// `false`, infinities `inf` and `-inf`. All output is UTF-8; bytes that are none become U+FFFD,
/// or, where people look, escapes such as `\xff`, as control characters do.
///
/// Memory does not grow with the rows. Threads: each call by itself, where the table may be read.
/// Errors: what the output throws ends the writing and passes through, as does what reading throws.
#pragma once

#include <quillon/tables/Table.h>

#include <functional>
#include <string>
#include <string_view>

namespace quillon::tables {

/// Takes the text piece by piece, some 64 KiB each. It throws to end the writing.
using Output = std::function<void(std::string_view piece)>;

/// An output that appends to `text`, which is borrowed.
[[nodiscard]] Output into(std::string& text);

/// What the writers for people are asked for.
struct Shown {
  unsigned long maxRows = 10;  ///< the first of the rows; 0 for all
  int digits = 6;              ///< significant ones of fractions, from 1 to 17
  unsigned long width = 0;     ///< places of a line of writeText(); 0 for as many as it takes
};

/// Aligned columns: names, units where any column has one, rows, and a last line such as
/// `[16800 rows x 10 columns]` that counts all of them. Numbers stand at the right. Where the lines
/// would be too wide, three dots stand for the columns in the middle. Reads the rows that it shows
/// twice, first for their widths.
void writeText(const Table& table, const Output& output, const Shown& shown = {});

/// A table of GitHub's Markdown.
void writeMarkdown(const Table& table, const Output& output, const Shown& shown = {});

/// An HTML `<table>`: names and, where any column has one, units in its head.
void writeHtml(const Table& table, const Output& output, const Shown& shown = {});

/// What stands on a page around its table, as plain texts.
struct Page {
  std::string title;     ///< the heading, and what the browser shows
  std::string subtitle;  ///< such as the group that the table shows
};

/// A whole HTML document with the table of writeHtml(), for bright and dark screens, without a
/// script. It says how many rows there are.
void writeHtmlPage(const Table& table, const Page& page, const Output& output,
                   const Shown& shown = {});

/// Comma-separated values after RFC 4180 but for LF at the end of lines, with one line of names.
/// @param table what is written, all columns of it.
/// @param output takes the text.
/// @param maxRows the first of the rows; 0 for all.
void writeCsv(const Table& table, const Output& output, unsigned long maxRows = 0);

/// The same with tabs.
void writeTsv(const Table& table, const Output& output, unsigned long maxRows = 0);

/// A JSON array with an object for each row; infinities are the strings `"Infinity"` and
/// `"-Infinity"`.
/// @param table what is written, all columns of it.
/// @param output takes the text.
/// @param maxRows the first of the rows; 0 for all.
void writeJson(const Table& table, const Output& output, unsigned long maxRows = 0);

/// The same objects, one a line and nothing around them.
void writeJsonLines(const Table& table, const Output& output, unsigned long maxRows = 0);

}  // namespace quillon::tables
