#pragma once

#include <CLI/App.hpp>
#include <functional>

namespace quillon::tools {

/// One verb of the command line, such as `table`.
struct Verb {
  CLI::App* command;         ///< its subcommand with all options; belongs to the application
  std::function<int()> run;  ///< does the work once the subcommand was parsed; the exit status
};

Verb addTable(CLI::App& application);
Verb addInfo(CLI::App& application);
Verb addDiff(CLI::App& application);

}  // namespace quillon::tools
