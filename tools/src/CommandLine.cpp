#include "CommandLine.h"

#include <object_model/Exception.h>
#include <quillon/memory/Nearest.h>
#include <quillon/memory/Wording.h>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <exception>
#include <new>
#include <optional>
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

/// What somebody may have meant by `name`, as a sentence ends with it.
std::string nearestOf(const std::string& name, const std::vector<std::string>& names) {
  return "; did you mean " + inQuotes(memory::nearestNames(name, names, 1).front()) + "?";
}

/// The names of all options of a verb, such as "--group" and "-n".
std::vector<std::string> optionsOf(const CLI::App& verb) {
  std::vector<std::string> names;
  for (const CLI::Option* option : verb.get_options()) {
    for (const std::string& name : option->get_lnames()) {
      names.push_back("--" + name);
    }
    for (const std::string& name : option->get_snames()) {
      names.push_back("-" + name);
    }
  }
  return names;
}

/// The first of the arguments that nothing takes and that looks like an option.
std::optional<std::string> unknownOption(const CLI::App& verb) {
  for (const std::string& argument : verb.remaining()) {
    if (argument.size() > 1 && argument[0] == '-') {
      return argument.substr(0, argument.find('='));
    }
  }
  return std::nullopt;
}

/// Why the command line cannot be used, with a hint where to look. A mistyped option is the reason
/// of whatever else seems to be wrong.
std::string inWords(const CLI::App& application, const CLI::ParseError& error) {
  const std::vector<CLI::App*> given = application.get_subcommands();
  if (!given.empty()) {
    const CLI::App& verb = *given.front();
    const std::optional<std::string> option = unknownOption(verb);
    const std::string problem =
        option ? "There is no option " + inQuotes(*option) + nearestOf(*option, optionsOf(verb))
               : error.what();
    return problem + " (see quillon " + verb.get_name() + " --help)";
  }
  std::vector<std::string> verbs;
  for (const CLI::App* verb : application.get_subcommands({})) {
    verbs.push_back(verb->get_name());
  }
  const std::vector<std::string> unknown = application.remaining();
  return (unknown.empty()             ? "A verb is missing; the verbs are " + listed(verbs)
          : unknown.front()[0] == '-' ? "There is no option " + inQuotes(unknown.front()) +
                                            nearestOf(unknown.front(), optionsOf(application))
                                      : "There is no verb " + inQuotes(unknown.front()) +
                                            nearestOf(unknown.front(), verbs)) +
         " (see quillon --help)";
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
  application.get_formatter()->column_width(26);
  std::vector<Verb> verbs = {addTable(application), addInfo(application), addDiff(application)};
  verbs.push_back(addCompletion(application, verbs));
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
