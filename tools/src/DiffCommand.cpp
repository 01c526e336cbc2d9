#include <object_model/ComparisonHelper.h>
#include <quillon/compare/Compare.h>
#include <quillon/compare/Text.h>
#include <quillon/memory/Wording.h>
#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Arguments.h"
#include "DiffInput.h"
#include "Failure.h"
#include "Output.h"
#include "Progress.h"
#include "Verb.h"
#include "WorkNotes.h"

namespace quillon::tools {

using memory::escaped;
using memory::listed;

namespace {

using compare::NotCompared;
using compare::Report;
using object_model::helper::ComparisonType;

constexpr int DIFFERENT = 1;

struct Options {
  std::string first;
  std::string second;
  std::string group;
  std::optional<std::string> variables;
  std::optional<std::string> absolute;
  std::optional<std::string> relative;
  bool contract = false;
  bool all = false;
  bool quiet = false;
  bool brief = false;
};

double toleranceOf(const std::string& option, const std::optional<std::string>& text) {
  return text ? parseTolerance(option, *text) : 0.0;
}

compare::Tolerance toleranceOf(const Options& options) {
  return {toleranceOf("--absolute", options.absolute), toleranceOf("--relative", options.relative)};
}

/// What a comparison found, for whoever called the tool.
struct Findings {
  bool isDifferent = false;
  std::string text;                      ///< in lines
  std::vector<NotCompared> notCompared;  ///< in the order of the walk
};

/// The report names places below the group that was compared; this names them in the file.
void placeBelow(const std::string& group, Report& report) {
  if (group == "/") {
    return;
  }
  const auto place = [&group](auto& row) { row.path = row.path == "/" ? group : group + row.path; };
  std::for_each(report.rows.begin(), report.rows.end(), place);
  std::for_each(report.notCompared.begin(), report.notCompared.end(), place);
}

std::string textOf(const Report& report, const Options& options) {
  if (report.same) {
    return {};
  }
  compare::LineOptions shown;
  shown.most = options.all ? compare::ALL_LINES : shown.most;
  return (options.brief ? message(report) : text(report, shown)) + "\n";
}

Findings compareAll(const DiffInput& first, const DiffInput& second, const Options& options) {
  Progress progress(std::cerr, ::isatty(STDERR_FILENO) == 1, first.values());
  compare::Options how;
  how.tolerance = toleranceOf(options);
  how.progress = [&progress](unsigned long values) { progress.advance(values); };
  Report report = compare::compare(first.part(), second.part(), how);
  placeBelow(first.pathOfGroup(), report);
  return {!report.rows.empty(), textOf(report, options), report.notCompared};
}

/// What the reader made no array of on either side, each path once.
std::vector<NotCompared> skippedOf(const DiffInput& first, const DiffInput& second) {
  std::vector<NotCompared> skipped;
  for (const DiffInput* input : {&first, &second}) {
    for (const auto& variable : input->skipped()) {
      if (std::none_of(skipped.begin(), skipped.end(), [&variable](const NotCompared& known) {
            return known.path == variable.path;
          })) {
        skipped.push_back({variable.path, variable.reason});
      }
    }
  }
  return skipped;
}

/// The library's own comparison, which knows one tolerance and ends at the first difference.
Findings compareByContract(const DiffInput& first, const DiffInput& second,
                           const Options& options) {
  const ComparisonType type = options.absolute   ? ComparisonType::Absolute
                              : options.relative ? ComparisonType::Relative
                                                 : ComparisonType::Exact;
  const compare::Tolerance tolerance = toleranceOf(options);
  std::string sentence;
  const bool same = object_model::helper::areSameDictionaries(
      first.part(), second.part(), type, tolerance.absolute + tolerance.relative, &sentence);
  return {!same, same ? std::string() : escaped(sentence) + "\n", skippedOf(first, second)};
}

int statusOf(const Findings& findings) {
  if (findings.isDifferent) {
    return DIFFERENT;
  }
  if (findings.notCompared.empty()) {
    return 0;
  }
  std::vector<std::string> entries;
  for (const NotCompared& entry : findings.notCompared) {
    entries.push_back(entry.path + " (" + entry.reason + ")");
  }
  return reportTrouble("Not compared: " + listed(entries));
}

int run(const Options& options) {
  toleranceOf(options);  // before the files are opened
  if (options.contract && options.absolute && options.relative) {
    throw Failure("--contract takes one of --absolute and --relative, not both");
  }
  DiffInput first({options.first, options.group});
  DiffInput second({options.second, options.group});
  noteReading({options.first, options.second});
  std::vector<std::string> names;
  if (options.variables) {
    names = splitNames("--variables", *options.variables);
    requireVariables(first, second, names);
  }
  for (DiffInput* input : {&first, &second}) {
    if (!options.contract) {
      input->addSkipped();
    }
    if (options.variables) {
      input->select(names);
    }
  }
  const Findings findings = options.contract ? compareByContract(first, second, options)
                                             : compareAll(first, second, options);
  if (!options.quiet) {
    writeOutput(findings.text);
  }
  return statusOf(findings);
}

void addOptions(CLI::App& command, Options& options) {
  command.add_option("FIRST", options.first, "A netCDF file")->required()->option_text(" ");
  command.add_option("SECOND", options.second, "The netCDF file to compare it with")
      ->required()
      ->option_text(" ");
  command
      .add_option("--absolute", options.absolute, "Numbers may differ by A (default: by nothing)")
      ->type_name("A");
  command
      .add_option("--relative", options.relative,
                  "Numbers may differ by R times the number in SECOND; with --absolute by A more")
      ->type_name("R");
  command
      .add_option("--group", options.group,
                  "A group of both files, such as cells/otsu (default: the root)")
      ->type_name("PATH");
  command
      .add_option("--variables", options.variables,
                  "Only these variables of the group (default: everything in it)")
      ->type_name("A,B");
  command.add_flag("--all", options.all, "Print all lines (default: at most 20)");
  command.add_flag("--contract", options.contract,
                   "Print the sentence of areSameDictionaries and take its verdict");
  CLI::Option* quiet = command.add_flag("--quiet", options.quiet, "Print nothing");
  command.add_flag("--brief", options.brief, "Print one sentence about the first difference")
      ->excludes(quiet);
}

}  // namespace

Verb addDiff(CLI::App& application) {
  CLI::App* command =
      application.add_subcommand("diff", "Compare the arrays of two files, value by value");
  command->footer(
      "The exit status is 0 for the same, 1 for a difference and 2 for trouble, such as a "
      "variable\n"
      "that could not be compared where nothing else differs. Nothing is printed for the same; "
      "else\n"
      "a line for each reason for which an entry differs, with the largest delta of its values.\n"
      "Compared are the names and kinds of all entries, names and sizes of dimensions, element\n"
      "types, units and values as they are stored. a in FIRST and b in SECOND are the same where\n"
      "a = b or |a-b| <= A + R |b|, or where both are NaN. Integers are not rounded, texts have to "
      "be\n"
      "equal, attributes are not compared.\n"
      "With --contract the rules are those of the library's areSameDictionaries, which knows one\n"
      "tolerance, divides the delta by b with its sign, and holds NaN different from everything.");
  const auto options = std::make_shared<Options>();
  addOptions(*command, *options);
  return {command, [options] { return run(*options); }};
}

}  // namespace quillon::tools
