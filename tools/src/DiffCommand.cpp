#include <object_model/Array.h>
#include <object_model/ComparisonHelper.h>
#include <object_model/Dictionary.h>
#include <object_model/Tuple.h>
#include <quillon/memory/Wording.h>
#include <unistd.h>

#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Arguments.h"
#include "DiffInput.h"
#include "DiffReport.h"
#include "LastDifferences.h"
#include "Output.h"
#include "Progress.h"
#include "Verb.h"
#include "WorkNotes.h"

namespace quillon::tools {

using memory::counted;
using memory::escaped;
using memory::listed;

namespace {

using object_model::helper::ComparisonType;

constexpr int DIFFERENT = 1;

struct Options {
  std::string first;
  std::string second;
  std::string group;
  std::optional<std::string> variables;
  std::optional<std::string> absolute;
  std::optional<std::string> relative;
  bool quiet = false;
  bool brief = false;
};

ComparisonRule ruleOf(const Options& options) {
  if (options.absolute) {
    return {ComparisonType::Absolute, parseTolerance("--absolute", *options.absolute)};
  }
  if (options.relative) {
    return {ComparisonType::Relative, parseTolerance("--relative", *options.relative)};
  }
  return {};
}

/// Calls `visit` with the shape of each array in the group and the groups below.
template <class Visit>
void forEachShape(const object_model::Dictionary& group, const Visit& visit) {
  for (int i = 0; static_cast<unsigned long>(i) < group.getNumOfData(); ++i) {
    const object_model::Data* entry = group.data(i);
    if (const object_model::Dictionary* inner = entry->asDictionary()) {
      forEachShape(*inner, visit);
    } else {
      visit(entry->asArray()->size());
    }
  }
}

/// In how many steps the arrays of the group are gone through.
unsigned long valuesIn(const object_model::Dictionary& group) {
  unsigned long values = 0;
  forEachShape(group, [&values](const object_model::Tuple& shape) {
    unsigned long product = 1;
    for (unsigned long k = 0; k < shape.size(); ++k) {
      product *= shape[k];
    }
    values += product;
  });
  return values;
}

/// Whether the group has an array that the library's comparison cannot be given: it reads the
/// element at index 0 of five or more dimensions even where there is none.
bool hasUnreadable(const object_model::Dictionary& group) {
  bool found = false;
  forEachShape(group, [&found](const object_model::Tuple& shape) {
    for (unsigned long k = 0; shape.size() >= PARTLY_COMPARED && k < shape.size(); ++k) {
      found = found || shape[k] == 0;
    }
  });
  return found;
}

/// The library's verdict; "the same" where it has none, so that the count alone decides.
bool areSameByLibrary(const DiffSide& first, const DiffSide& second, CountedPairs& counted,
                      std::string& sentence) {
  if (hasUnreadable(first.group)) {
    return true;
  }
  const LastDifferences last = lastDifferencesOf(first.group, second.group, counted);
  return object_model::helper::areSameDictionaries(last.first, last.second, counted.rule().type,
                                                   counted.rule().tolerance, &sentence);
}

/// What the library says, and the tool.
struct Verdicts {
  bool same;
  std::string sentence;
  DiffReport report;
};

/// @param isShort whether nothing but the verdict is asked for.
Verdicts compare(const DiffSide& first, const DiffSide& second, const ComparisonRule& rule,
                 bool isShort) {
  Progress progress(std::cerr, ::isatty(STDERR_FILENO) == 1, valuesIn(first.group));
  CountedPairs counted(rule, [&progress](unsigned long values) { progress.advance(values); });
  Verdicts verdicts;
  verdicts.same = areSameByLibrary(first, second, counted, verdicts.sentence);
  verdicts.report = reportOn(
      first, second,
      isShort && !hasUnreadable(first.group) ? DiffScope::PartlyCompared : DiffScope::All, counted);
  return verdicts;
}

int run(const Options& options) {
  const ComparisonRule rule = ruleOf(options);
  DiffInput first(options.first, options.group);
  DiffInput second(options.second, options.group);
  noteReading({options.first, options.second});
  if (options.variables) {
    const std::vector<std::string> names = splitNames("--variables", *options.variables);
    requireVariables(first, second, names);
    first.select(names);
    second.select(names);
  }
  const bool isShort = options.quiet || options.brief;
  const auto& [same, sentence, report] = compare(first.side(), second.side(), rule, isShort);
  std::string text = same ? std::string() : escaped(sentence) + "\n";
  if (!isShort) {
    text += textOf(report.differences) + textOf(report.passed);
  } else if (same && !report.differences.empty()) {
    text += report.differences.front() + "\n";
  }
  if (!options.quiet && !report.leftOut.empty()) {
    std::cerr << "quillon: Not compared: " + listed(report.leftOut) + "\n";
  }
  if (!options.quiet) {
    writeOutput(text);
  }
  return same && report.differences.empty() ? 0 : DIFFERENT;
}

void addOptions(CLI::App& command, Options& options) {
  command.add_option("FIRST", options.first, "A netCDF file")->required()->option_text(" ");
  command.add_option("SECOND", options.second, "The netCDF file to compare it with")
      ->required()
      ->option_text(" ");
  CLI::Option* absolute = command
                              .add_option("--absolute", options.absolute,
                                          "Numbers may differ by T (default: by nothing)")
                              ->type_name("T");
  command
      .add_option("--relative", options.relative,
                  "Numbers may differ by T times the number in SECOND")
      ->type_name("T")
      ->excludes(absolute);
  command
      .add_option("--group", options.group,
                  "A group of both files, such as cells/otsu (default: the root)")
      ->type_name("PATH");
  command
      .add_option("--variables", options.variables,
                  "Only these variables of the group (default: everything in it)")
      ->type_name("A,B");
  CLI::Option* quiet = command.add_flag("--quiet", options.quiet, "Print nothing");
  command.add_flag("--brief", options.brief, "Print one sentence about the first difference")
      ->excludes(quiet);
}

}  // namespace

Verb addDiff(CLI::App& application) {
  CLI::App* command =
      application.add_subcommand("diff", "Compare the arrays of two files, value by value");
  command->footer(
      "The exit status is 0 for the same, 1 for a difference and 2 for trouble. Nothing is "
      "printed\n"
      "for the same; else one sentence about the first array that differs and a line for each "
      "array\n"
      "that does, with its largest delta.\n"
      "Compared are the names and kinds of all entries, element types, shapes and values as they "
      "are\n"
      "stored: two missing values are the same, and so are NaN and NaN.\n"
      "Attributes are not compared. Texts are always compared exactly.\n"
      "The relative delta of a in FIRST and b in SECOND is |a-b| / r, where r is b or, where |b| "
      "is\n"
      "at most 1e-9, a or, where |a| is that as well, 1. The sign of r counts: against a negative\n"
      "number every delta passes. Values that pass although |a-b| is greater than T times |b| "
      "(|a|\n"
      "where b is 0) are counted and reported, but are no difference.");
  const auto options = std::make_shared<Options>();
  addOptions(*command, *options);
  return {command, [options] { return run(*options); }};
}

}  // namespace quillon::tools
