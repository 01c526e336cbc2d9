#include "CommandLine.h"

#include <object_model/Exception.h>
#include <quillon/memory/Wording.h>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <exception>
#include <new>
#include <sstream>
#include <string>
#include <vector>

#include "Failure.h"
#include "Output.h"
#include "Verb.h"

namespace quillon::tools {

using memory::inQuotes;
using memory::listed;

namespace {

/// Why the command line cannot be used, with a hint where to look.
std::string inWords(const CLI::App& application, const CLI::ParseError& error) {
  const std::vector<CLI::App*> given = application.get_subcommands();
  if (!given.empty()) {
    return std::string(error.what()) + " (see quillon " + given.front()->get_name() + " --help)";
  }
  std::vector<std::string> verbs;
  for (const CLI::App* verb : application.get_subcommands({})) {
    verbs.push_back(verb->get_name());
  }
  const std::vector<std::string> unknown = application.remaining();
  const std::string problem =
      unknown.empty() ? "A verb is missing" : "There is no verb " + inQuotes(unknown.front());
  return problem + "; the verbs are " + listed(verbs) + " (see quillon --help)";
}

int run(CLI::App& application, const std::vector<Verb>& verbs, int count,
        const char* const* arguments) {
  try {
    application.parse(count, arguments);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() != static_cast<int>(CLI::ExitCodes::Success)) {
      throw Failure(inWords(application, error));
    }
    std::ostringstream text;  // --help or --version
    application.exit(error, text);
    writeOutput(text.str());
    return 0;
  }
  return std::find_if(verbs.begin(), verbs.end(),
                      [](const Verb& verb) { return verb.command->parsed(); })
      ->run();
}

int run(int count, const char* const* arguments) {
  CLI::App application("Shows what is in files of measurement results (netCDF).", "quillon");
  application.set_version_flag("--version", "quillon " QUILLON_VERSION,
                               "Print the version and exit");
  application.require_subcommand(1);
  application.get_formatter()->column_width(24);
  const std::vector<Verb> verbs = {addTable(application), addInfo(application),
                                   addDiff(application)};
  return run(application, verbs, count, arguments);
}

}  // namespace

int runCommandLine(int count, const char* const* arguments) {
  try {
    return run(count, arguments);
  } catch (const std::bad_alloc&) {
    return reportTrouble("Not enough memory");
  } catch (const std::exception& error) {
    return reportTrouble(error.what());
  } catch (const object_model::Exception& error) {
    return reportTrouble(error.what());
  }
}

}  // namespace quillon::tools
