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
#include "Terminal.h"
#include "Verb.h"
#include "WorkNotes.h"

namespace quillon::tools {

using memory::listed;

namespace {

using compare::NotCompared;
using compare::Report;
using object_model::helper::ComparisonType;

constexpr int DIFFERENT = 1;
constexpr unsigned long MOST_LARGEST = 1000000;
/// So many of the largest deltas a page lists unless it is told otherwise.
constexpr unsigned long FEW_LARGEST = 10;

const std::vector<std::string> DIFF_FORMATS = {"text", "json", "html"};

struct DiffOptions {
  std::string first;
  std::string second;
  std::string group;
  std::optional<std::string> variables;
  std::optional<std::string> exclude;
  std::optional<std::string> absolute;
  std::optional<std::string> relative;
  std::vector<std::string> tolerances;
  std::optional<std::string> ignoredAttributes;
  std::optional<std::string> largest;
  std::optional<std::string> output;
  std::string format = "text";
  bool nanDiffers = false;
  bool attributes = false;
  bool contract = false;
  bool raw = false;
  bool all = false;
  bool quiet = false;
  bool brief = false;
};

double toleranceOf(const std::string& option, const std::optional<std::string>& text) {
  return text ? parseTolerance(option, *text) : 0.0;
}

compare::Tolerance toleranceOf(const DiffOptions& options) {
  return {toleranceOf("--absolute", options.absolute), toleranceOf("--relative", options.relative)};
}

unsigned long largestOf(const DiffOptions& options) {
  return options.largest ? parseCount("--largest", *options.largest, 0, MOST_LARGEST) : 0;
}

/// How the report is made.
compare::Options howToCompare(const DiffOptions& options) {
  compare::Options how;
  how.tolerance = toleranceOf(options);
  for (const std::string& tolerance : options.tolerances) {
    how.tolerances.push_back(compare::parsePathTolerance(tolerance));
  }
  how.nanEqual = !options.nanDiffers;
  how.attributes = options.attributes;
  how.ignoredAttributes = compare::RECORD_ATTRIBUTES;
  if (options.ignoredAttributes) {
    const auto names = splitNames("--ignore-attributes", *options.ignoredAttributes);
    how.ignoredAttributes.insert(how.ignoredAttributes.end(), names.begin(), names.end());
  }
  how.pictures = options.format == "html";
  how.isDecoded = isDecoded;
  how.largest = options.largest ? std::max(largestOf(options), 1UL)
                : how.pictures  ? FEW_LARGEST
                                : 1;
  return how;
}

/// What a comparison found, for whoever called the tool.
struct Findings {
  bool isDifferent = false;
  std::string text;                      ///< what is printed
  std::vector<NotCompared> notCompared;  ///< in the order of the walk
};

std::string linesOf(const Report& report, const DiffOptions& options, int descriptor) {
  compare::LineOptions shown;
  shown.most = options.all ? compare::ALL_LINES : shown.most;
  shown.largest = largestOf(options);
  shown.isColored = takesColors(descriptor);
  return report.same ? std::string() : text(report, shown) + "\n";
}

std::string textOf(const Report& report, const DiffOptions& options, int descriptor) {
  if (options.brief) {
    return report.same ? std::string() : message(report) + "\n";
  }
  if (options.format == "json") {
    return toJson(report, options.first, options.second) + "\n";
  }
  return options.format == "html" ? toHtml(report, options.first, options.second)
                                  : linesOf(report, options, descriptor);
}

Findings compareAll(const DiffInput& first, const DiffInput& second, const DiffOptions& options,
                    int descriptor) {
  compare::Options how = howToCompare(options);
  how.root = first.pathOfGroup();
  Progress progress(std::cerr, ::isatty(STDERR_FILENO) == 1, first.values());
  how.progress = [&progress](unsigned long values) { progress.advance(values); };
  const Report report = compare::compare(first.part(), second.part(), how);
  return {!report.rows.empty(), textOf(report, options, descriptor), report.notCompared};
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

/// The library's own comparison, which knows one tolerance and ends at the first difference. Its
/// sentence is printed to the byte, but for what a terminal would obey.
Findings compareByContract(const DiffInput& first, const DiffInput& second,
                           const DiffOptions& options, int descriptor) {
  const ComparisonType type = options.absolute   ? ComparisonType::Absolute
                              : options.relative ? ComparisonType::Relative
                                                 : ComparisonType::Exact;
  const compare::Tolerance tolerance = toleranceOf(options);
  std::string sentence;
  const bool same = object_model::helper::areSameDictionaries(
      first.part(), second.part(), type, tolerance.absolute + tolerance.relative, &sentence);
  if (::isatty(descriptor) == 1) {
    sentence = memory::escaped(sentence);
  }
  return {!same, same ? std::string() : sentence + "\n", skippedOf(first, second)};
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

/// Finds what is wrong with the options before any file is opened.
void check(const DiffOptions& options) {
  howToCompare(options);
  requireKnown("--format", options.format, DIFF_FORMATS);
  if (options.contract && options.absolute && options.relative) {
    throw Failure("--contract takes one of --absolute and --relative, not both");
  }
  const bool isOwnRule = !options.tolerances.empty() || options.nanDiffers || options.attributes ||
                         options.largest || options.format != "text";
  if (options.contract && isOwnRule) {
    throw Failure(
        "--contract has the library's own rule and sentence; --tolerance, --nan-differs, "
        "--attributes, --largest and --format do not go with it");
  }
  for (const std::string& input : {options.first, options.second}) {
    if (options.output) {
      requireOtherFile(*options.output, input);
    }
  }
}

/// Leaves of both sides what the options ask for.
void choose(DiffInput& first, DiffInput& second, const DiffOptions& options) {
  for (DiffInput* input : {&first, &second}) {
    if (!options.contract) {
      input->addSkipped();
    }
  }
  if (!options.variables && !options.exclude) {
    return;
  }
  compare::Choice choice;
  if (options.variables) {
    choice.variables = splitPatterns("--variables", *options.variables);
  }
  if (options.exclude) {
    choice.exclude = splitPatterns("--exclude", *options.exclude);
  }
  chooseIn(first, second, choice);
}

int runDiff(const DiffOptions& options) {
  check(options);
  DiffInput first({options.first, options.group}, readingOptions(options.raw));
  DiffInput second({options.second, options.group}, readingOptions(options.raw));
  noteReading({options.first, options.second});
  choose(first, second, options);
  Output output(options.output);
  const Findings findings = options.contract
                                ? compareByContract(first, second, options, output.descriptor())
                                : compareAll(first, second, options, output.descriptor());
  if (!options.quiet || options.output) {
    output.write(findings.text);
    output.commit();
  }
  return statusOf(findings);
}

void addFiles(CLI::App& command, DiffOptions& options) {
  command.add_option("FIRST", options.first, "A netCDF file")->required()->option_text(" ");
  command.add_option("SECOND", options.second, "The netCDF file to compare it with")
      ->required()
      ->option_text(" ");
  command
      .add_option("--group", options.group,
                  inLines("A group of both files, such as cells/otsu (default: the root)"))
      ->type_name("PATH");
  addPatterns(command, options.variables, options.exclude);
}

void addRule(CLI::App& command, DiffOptions& options) {
  command
      .add_option("--absolute", options.absolute, "Numbers may differ by A (default: by nothing)")
      ->type_name("A");
  command
      .add_option("--relative", options.relative,
                  inLines("Numbers may differ by R times the number in SECOND; with --absolute by "
                          "A more"))
      ->type_name("R");
  addList(command, "--tolerance", options.tolerances,
          "For variables whose path matches the shell pattern, A and R instead; the last one that "
          "matches holds")
      ->type_name("P=A,R");
  command.add_flag("--nan-differs", options.nanDiffers,
                   inLines("Missing values differ from each other, too"));
  command.add_flag("--attributes", options.attributes,
                   inLines("Compare attributes, too, but those that say how a file came about, and "
                           "the sizes of numbers"));
  command
      .add_option("--ignore-attributes", options.ignoredAttributes,
                  "Leave these attributes out, too")
      ->type_name("A,B");
  command.add_flag("--raw", options.raw, "Values as they are stored, not decoded");
  command.add_flag("--contract", options.contract,
                   inLines("Print the sentence of areSameDictionaries and take its verdict"));
}

void addPrinting(CLI::App& command, DiffOptions& options) {
  command.add_flag("--all", options.all, "Print all lines (default: at most 20)");
  command
      .add_option("--largest", options.largest,
                  inLines("List the N largest deltas of each variable, with coordinates"))
      ->type_name("N");
  CLI::Option* quiet = command.add_flag("-q,--quiet", options.quiet, "Print nothing");
  command.add_flag("--brief", options.brief, "Print one sentence about the first difference")
      ->excludes(quiet);
  command.add_option("--format", options.format, "text (default), json or html, a page to look at")
      ->type_name("F");
  command.add_option("-o,--output", options.output, "Write to this file, whole or not at all")
      ->type_name("FILE");
}

}  // namespace

Verb addDiff(CLI::App& application) {
  CLI::App* command =
      application.add_subcommand("diff", "Compare the arrays of two files, value by value");
  command->footer(
      "The exit status is 0 for the same, 1 for a difference and 2 for trouble, such as\n"
      "a variable that could not be compared where nothing else differs. Nothing is\n"
      "printed for the same; else a line for each reason for which an entry differs,\n"
      "with the largest delta of its values.\n"
      "Compared are the names and kinds of all entries, names and sizes of dimensions,\n"
      "element types, units and values. a in FIRST and b in SECOND are the same where\n"
      "a = b or |a-b| <= A + R |b|, or where both are missing. Integers are not\n"
      "rounded, texts have to be equal. Attributes that say how a file came about are\n"
      "history, date_created, creation_date, uuid, tracking_id, NCO and CDO.\n"
      "With --contract the rules are those of the library's areSameDictionaries, which\n"
      "knows one tolerance, divides the delta by b with its sign, and holds NaN\n"
      "different from everything.");
  const auto options = std::make_shared<DiffOptions>();
  addFiles(*command, *options);
  addRule(*command, *options);
  addPrinting(*command, *options);
  return {command, [options] { return runDiff(*options); }, {{"--format", DIFF_FORMATS}}};
}

}  // namespace quillon::tools
