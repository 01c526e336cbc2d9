/// @file
/// Reports for people and for other programs.
#pragma once

#include <quillon/compare/Report.h>

#include <limits>
#include <string>
#include <vector>

namespace quillon::compare {

/// No limit of lines.
inline constexpr unsigned long ALL_LINES = std::numeric_limits<unsigned long>::max();

/// How much of a report to show.
struct LineOptions {
  /// How many differences; the rest is counted in a line "... and N more". The same limit holds for
  /// what was not compared.
  unsigned long most = 20;
  /// How many of the largest deltas to list below each line of values, as far as the report has
  /// them, in lines that begin with two blanks.
  unsigned long largest = 0;
  /// Whether paths and values stand in colours, by the escape sequences of terminals.
  bool isColored = false;
};

/// A line for each difference, then one for each entry that was not compared; none for the same.
[[nodiscard]] std::vector<std::string> lines(const Report& report, const LineOptions& options = {});

/// The lines, each but the last with a line break behind it; "the same: N values" for the same.
[[nodiscard]] std::string text(const Report& report, const LineOptions& options = {});

/// One sentence about the first difference, or about the first entry that was not compared where
/// nothing differs; empty for the same.
[[nodiscard]] std::string message(const Report& report);

/// The report as one JSON object in one line.
/// @param report what the comparison found.
/// @param first, second what the two objects are called, such as the names of their files.
[[nodiscard]] std::string toJson(const Report& report, const std::string& first,
                                 const std::string& second);

/// The report as an HTML document to look at, for bright and dark screens, without a script: a row
/// for each entry that differs, which unfolds to its figures, its largest deltas and, where the
/// report has it, the picture of where they are.
/// @param report what the comparison found.
/// @param first, second what the two objects are called, such as the names of their files.
[[nodiscard]] std::string toHtml(const Report& report, const std::string& first,
                                 const std::string& second);

}  // namespace quillon::compare
