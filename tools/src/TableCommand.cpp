#include <object_model/IO.h>
#include <quillon/memory/Paths.h>
#include <quillon/memory/Selection.h>
#include <quillon/memory/Wording.h>
#include <quillon/netcdf/File.h>
#include <quillon/tables/ContractPage.h>
#include <quillon/tables/ContractPlan.h>
#include <quillon/tables/Html.h>
#include <unistd.h>

#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Arguments.h"
#include "Failure.h"
#include "Memory.h"
#include "Opening.h"
#include "Output.h"
#include "Progress.h"
#include "TableFrame.h"
#include "Verb.h"
#include "WorkNotes.h"

namespace quillon::tools {

using memory::counted;
using memory::escaped;
using memory::pathOf;
using memory::Selection;
using tables::contractPlan;
using tables::ContractPlan;
using tables::ContractRequest;

namespace {

struct Options {
  Source source;
  std::optional<std::string> variables;
  std::optional<std::string> index;
  std::optional<std::string> output;
  std::string maxRows = "10";
  bool html = false;
};

std::optional<std::vector<std::string>> namesOf(const std::string& option,
                                                const std::optional<std::string>& list) {
  return list ? std::optional(splitNames(option, *list)) : std::nullopt;
}

/// Fails before the table is built where it cannot fit: running out of memory ends the process
/// without a word on systems that promise more than they have.
void requireMemory(const ContractPlan& plan, unsigned long maxRows) {
  if (bytesNeeded(plan, maxRows) > static_cast<double>(physicalMemory())) {
    throw Failure("The table would have " + counted(plan.rows, "row") + " and " +
                  counted(plan.columns, "column") + ", which is more than fits in memory; choose " +
                  "fewer --variables or another --index");
  }
}

/// @param work how many cells there are to fill.
std::string render(memory::Dictionary& group, const ContractPlan& plan, unsigned long work,
                   unsigned long maxRows, bool html) {
  Selection selection(group, plan.variables);
  Progress progress(std::cerr, ::isatty(STDERR_FILENO) == 1, work);
  const auto frame =
      std::make_shared<TableFrame>(html ? tables::inHtml : escaped,
                                   [&progress](unsigned long cells) { progress.advance(cells); });
  object_model::exportToDataFrame(selection, frame.get(), plan.index);
  noteReading({});  // what follows takes its time, but cannot fail to end
  return html ? object_model::exportDataFrameToHtml(frame, maxRows)
              : object_model::exportDataFrameToString(frame, maxRows);
}

std::string titleOf(const netcdf::File& file, const std::string& path) {
  const std::string title = file.title();
  const bool isBlank = title.find_first_not_of(" \t\r\n") == std::string::npos;
  return isBlank ? std::filesystem::path(path).filename().string() : title;
}

std::string rowsShown(unsigned long rows, unsigned long maxRows) {
  const std::string all = counted(rows, "row");
  return maxRows == 0 || rows <= maxRows ? all : "first " + std::to_string(maxRows) + " of " + all;
}

int run(const Options& options) {
  const unsigned long maxRows = parseRows(options.maxRows);
  const ContractRequest request = {options.source.inWords(),
                                   namesOf("--variables", options.variables),
                                   namesOf("--index", options.index)};
  if (options.output) {
    requireOtherFile(*options.output, options.source.file);
  }
  netcdf::OpenOptions reading;
  reading.decode = false;
  reading.missingAsNaN = true;
  // The rows follow the index, not the order in the file, and hopping between windows would read
  // the file once for each cell. What is exported is in memory as a whole anyway.
  reading.windowBytes = physicalMemory();
  netcdf::File file = openFile(options.source.file, reading);
  const memory::Dictionary& group = groupOf(file, options.source);
  const ContractPlan plan = contractPlan(group, skippedIn(group, file.skipped()), request);
  requireMemory(plan, maxRows);
  const std::map<std::string, unsigned long> extents = extentsOf(plan, maxRows);
  memory::Dictionary shown = file.corner(options.source.group, extents);
  std::string text = render(shown, plan, cellsOf(plan, extents), maxRows, options.html);
  if (options.html && options.output) {
    text = tables::documentOf(
        {titleOf(file, options.source.file), pathOf(group), rowsShown(plan.rows, maxRows), text});
  }
  for (const std::string& note : plan.notes) {
    std::cerr << "quillon: " + escaped(note) + "\n";
  }
  writeOutput(text, options.output);
  return 0;
}

}  // namespace

Verb addTable(CLI::App& application) {
  CLI::App* command =
      application.add_subcommand("table", "Print the variables of a group as a table");
  command->footer(
      "The table has an index column for each index axis and a row for each of their coordinates,\n"
      "the first axis varying fastest. Variables without an index axis are repeated along it; "
      "their\n"
      "other axes are spread over columns.\n"
      "Unless --index is given, the index is the axes that the variables have in common, the\n"
      "file's last dimension first; coordinate variables (one-dimensional, called as their axis) "
      "do\n"
      "not count. Without a common axis there is no index.\n"
      "Left out, with a line on standard error: text, other types that are no numbers, variables "
      "of\n"
      "0 or more than 3 dimensions, and those whose other axes and the index are more than 3 "
      "axes.\n"
      "Groups within the group are not part of its table.\n"
      "Missing floating-point values print as nan. Names are case-sensitive.\n"
      "With --html, names have their markup characters escaped: a browser shows them as they are.");
  const auto options = std::make_shared<Options>();
  addSource(*command, options->source);
  command->add_option("--variables", options->variables, "Only these variables (default: all)")
      ->type_name("A,B");
  command->add_option("--index", options->index, "At most 3 axes for the rows (default: see below)")
      ->type_name("X,Y");
  command->add_option("--max-rows", options->maxRows, "Rows to print; 0 prints all (default: 10)")
      ->type_name("N");
  command->add_flag("--html", options->html,
                    "Print an HTML <table>; with --output, write a whole page around it");
  command
      ->add_option("--output", options->output, "Write the table to this file, whole or not at all")
      ->type_name("FILE");
  return {command, [options] { return run(*options); }};
}

}  // namespace quillon::tools
