#include "ContractTable.h"

#include <object_model/IO.h>
#include <quillon/memory/Selection.h>
#include <quillon/memory/Wording.h>
#include <unistd.h>

#include <iostream>
#include <map>
#include <memory>
#include <utility>

#include "Failure.h"
#include "Memory.h"
#include "Opening.h"
#include "Output.h"
#include "Progress.h"
#include "TableFrame.h"
#include "WorkNotes.h"

namespace quillon::tools {

using memory::counted;
using tables::ContractPlan;

namespace {

/// Fails before the table is built where it cannot fit: running out of memory ends the process
/// without a word on systems that promise more than they have.
void requireMemory(const ContractPlan& plan, unsigned long maxRows) {
  if (bytesNeeded(plan, maxRows) > static_cast<double>(physicalMemory())) {
    throw Failure("The table would have " + counted(plan.rows, "row") + " and " +
                  counted(plan.columns, "column") + ", which is more than fits in memory; choose " +
                  "fewer --variables or another --index");
  }
}

std::string asItIs(std::string_view text) { return std::string(text); }

/// @param work how many cells there are to fill.
std::string render(memory::Dictionary& group, const ContractPlan& plan, unsigned long work,
                   const ContractTable& table, bool isAtTerminal) {
  memory::Selection selection(group, plan.variables);
  Progress progress(std::cerr, ::isatty(STDERR_FILENO) == 1 && !isAtTerminal, work);
  const auto frame =
      std::make_shared<TableFrame>(isAtTerminal ? memory::escaped : asItIs,
                                   [&progress](unsigned long cells) { progress.advance(cells); });
  object_model::exportToDataFrame(selection, frame.get(), plan.index);
  noteReading({});  // what follows takes its time, but cannot fail to end
  return table.isHtml ? object_model::exportDataFrameToHtml(frame, table.maxRows)
                      : object_model::exportDataFrameToString(frame, table.maxRows);
}

}  // namespace

int show(const ContractTable& table) {
  // The rows follow the index, not the order in the file.
  auto file = openFile(table.input.file, readingWhole(table.isRaw));
  const memory::Dictionary& group = groupOf(file, table.input);
  const ContractPlan plan = contractPlan(group, skippedIn(group, file.skipped()), table.request);
  requireMemory(plan, table.maxRows);
  const std::map<std::string, unsigned long> extents = extentsOf(plan, table.maxRows);
  memory::Dictionary shown = file.corner(table.input.group, extents);
  Output output(table.output);
  const std::string text =
      render(shown, plan, cellsOf(plan, extents), table, ::isatty(output.descriptor()) == 1);
  for (const std::string& note : plan.notes) {
    reportNote(note);
  }
  output.write(text);
  output.commit();
  return 0;
}

}  // namespace quillon::tools
