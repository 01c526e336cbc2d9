#include <quillon/memory/Paths.h>
#include <quillon/memory/Wording.h>
#include <quillon/netcdf/File.h>
#include <quillon/tables/Error.h>
#include <quillon/tables/Formats.h>
#include <unistd.h>

#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Arguments.h"
#include "ContractTable.h"
#include "Failure.h"
#include "Opening.h"
#include "Output.h"
#include "Progress.h"
#include "Terminal.h"
#include "Verb.h"

namespace quillon::tools {

namespace {

const char* const CONTRACT = "contract";
const char* const CONTRACT_HTML = "contract-html";

struct TableOptions {
  FileGroup input;
  std::optional<std::string> variables;
  std::optional<std::string> exclude;
  std::optional<std::string> index;
  std::vector<std::string> selections;
  std::string format = "text";
  std::optional<std::string> maxRows;
  std::optional<std::string> output;
  std::string precision = "6";
  bool html = false;
  bool positions = false;
  bool allColumns = false;
  bool raw = false;

  bool isContract() const { return format == CONTRACT || format == CONTRACT_HTML; }
};

std::vector<std::string> formats() {
  std::vector<std::string> names = tables::formatNames();
  names.insert(names.end(), {CONTRACT, CONTRACT_HTML});
  return names;
}

std::optional<std::vector<std::string>> patternsOf(const std::string& option,
                                                   const std::optional<std::string>& list) {
  return list ? std::optional(splitPatterns(option, *list)) : std::nullopt;
}

tables::Request requestOf(const TableOptions& options) {
  tables::Request request;
  request.source = options.input.inWords();
  request.variables = patternsOf("--variables", options.variables);
  request.exclude = patternsOf("--exclude", options.exclude).value_or(std::vector<std::string>());
  if (options.index) {
    request.index = splitNames("--index", *options.index);
  }
  for (const std::string& selection : options.selections) {
    request.selections.push_back(tables::parseSelection(selection));
  }
  request.positions = options.positions;
  request.allColumns = options.allColumns;
  return request;
}

std::string titleOf(const netcdf::File& file, const std::string& path) {
  const std::string title = file.title();
  const bool isBlank = title.find_first_not_of(" \t\r\n") == std::string::npos;
  return isBlank ? std::filesystem::path(path).filename().string() : title;
}

/// Ends the writing: nobody reads what comes.
struct Unwanted {};

void write(const tables::Table& table, const TableOptions& options, tables::Writing writing) {
  const tables::Format format = *tables::formatOf(options.format);
  Output output(options.output);
  writing.width = widthOf(output.descriptor());
  Progress progress(std::cerr, ::isatty(STDERR_FILENO) == 1 && ::isatty(output.descriptor()) != 1,
                    rowsRead(table, format, writing));
  const auto tell = [&progress](unsigned long rows) { progress.advance(rows); };
  const auto take = [&output](std::string_view piece) {
    output.write(piece);
    if (!output.isWanted()) {
      throw Unwanted();
    }
  };
  try {
    tables::write(table.reporting(tell), format, take, writing);
  } catch (const Unwanted&) {
    return;
  }
  output.commit();
}

int showTable(const TableOptions& options, tables::Request request, tables::Writing writing) {
  netcdf::File file = openFile(options.input.file, readingOptions(options.raw));
  const memory::Dictionary& group = groupOf(file, options.input);
  request.unreadable = skippedIn(group, file.skipped());
  const tables::Table table(group, tables::plan(group, request));
  if (options.format == "html" && options.output) {
    writing.page =
        tables::Page{titleOf(file, options.input.file), "Group " + memory::pathOf(group)};
  }
  for (const std::string& note : table.notes()) {
    reportNote(note);
  }
  write(table, options, writing);
  return 0;
}

int showContractTable(const TableOptions& options, const tables::Request& request,
                      const tables::Writing& writing) {
  if (!request.selections.empty()) {
    throw Failure("--select does not go with --format " + options.format +
                  ", the library's own export of whole arrays");
  }
  ContractTable wanted;
  wanted.input = options.input;
  wanted.request = {request.source, request.variables, request.exclude, request.index,
                    request.allColumns};
  wanted.maxRows = writing.maxRows.value_or(tables::Shown().maxRows);
  wanted.isHtml = options.format == CONTRACT_HTML;
  wanted.isRaw = options.raw;
  wanted.output = options.output;
  return show(wanted);
}

int runTable(TableOptions options) {
  if (options.html) {
    options.format = "html";
  }
  requireKnown("--format", options.format, formats());
  tables::Writing writing;
  if (options.maxRows) {
    writing.maxRows = parseRows(*options.maxRows);
  }
  writing.digits = static_cast<int>(parseCount("--precision", options.precision, 1, 17));
  const tables::Request request = requestOf(options);
  if (options.output) {
    requireOtherFile(*options.output, options.input.file);
  }
  try {
    return options.isContract() ? showContractTable(options, request, writing)
                                : showTable(options, request, writing);
  } catch (const tables::TooManyColumns& error) {
    throw Failure(std::string(error.what()) + " (--variables, --index, --select, --all-columns)");
  }
}

void addOptions(CLI::App& command, TableOptions& options) {
  addFileGroup(command, options.input);
  addPatterns(command, options.variables, options.exclude);
  command
      .add_option("-i,--index", options.index,
                  inLines("Dimensions that become rows, the first varying fastest; the others are "
                          "spread over columns (default: see below)"))
      ->type_name("X,Y");
  addList(command, "--select", options.selections,
          "A part of a dimension: A=3, A=0:3 (positions, end excluded), A=@500 (the nearest "
          "coordinate), A=@2011-08-01:2011-08-31 (coordinates, end included); may be given for "
          "several dimensions")
      ->type_name("A=R");
  command
      .add_option("--format", options.format,
                  inLines("text (default), markdown, html, csv, tsv, json, jsonl, contract or "
                          "contract-html"))
      ->type_name("F");
  command.add_flag("--html", options.html, "The same as --format html");
  command
      .add_option("-n,--max-rows", options.maxRows,
                  inLines("Rows to print, 0 for all (default: all in csv, tsv, json and jsonl, "
                          "else 10)"))
      ->type_name("N");
  command
      .add_option("-o,--output", options.output,
                  inLines("Write the table to this file, whole or not at all; html is a whole page "
                          "then"))
      ->type_name("FILE");
  command.add_flag("--positions", options.positions,
                   inLines("Positions where coordinates would stand; coordinate variables are "
                           "columns"));
  command
      .add_option("--precision", options.precision,
                  inLines("Significant digits in text, markdown and html (default: 6)"))
      ->type_name("N");
  command.add_flag("--all-columns", options.allColumns, "Print more than 100 columns, too");
  command.add_flag("--raw", options.raw, "Values as they are stored, not decoded");
}

}  // namespace

Verb addTable(CLI::App& application) {
  CLI::App* command =
      application.add_subcommand("table", "Print the variables of a group as a table");
  command->footer(
      "Without --index the rows are the dimensions of the variable with the most\n"
      "values, the last one varying fastest; dimensions of at most 16 positions\n"
      "without a coordinate variable are spread over columns instead. Variables that\n"
      "have none of these dimensions are left out, with a line on standard error.\n"
      "Index columns hold coordinates, or positions where there are none. Groups\n"
      "within the group are not part of its table.\n"
      "Missing values are blank, an empty field or null. csv, tsv, json and jsonl have\n"
      "the shortest numbers that read back. contract and contract-html are what\n"
      "exportToDataFrame with exportDataFrameToString and exportDataFrameToHtml give,\n"
      "to the byte: with positions, and with nothing escaped unless at a terminal.");
  const auto options = std::make_shared<TableOptions>();
  addOptions(*command, *options);
  return {command, [options] { return runTable(*options); }, {{"--format", formats()}}};
}

}  // namespace quillon::tools
