#pragma once

#include <CLI/App.hpp>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace quillon::tools {

/// One verb of the command line, such as `table`.
struct Verb {
  CLI::App* command;         ///< its subcommand with all options; belongs to the application
  std::function<int()> run;  ///< does the work once the subcommand was parsed; the exit status
  /// What options take, as far as that can be listed: for completions.
  std::map<std::string, std::vector<std::string>> values = {};
};

Verb addTable(CLI::App& application);
Verb addInfo(CLI::App& application);
Verb addDiff(CLI::App& application);
/// @param verbs what there is to complete; kept, and complete when the verb runs.
Verb addCompletion(CLI::App& application, const std::vector<Verb>& verbs);

}  // namespace quillon::tools
