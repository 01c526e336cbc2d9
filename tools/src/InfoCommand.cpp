#include <quillon/memory/Outline.h>
#include <quillon/netcdf/File.h>

#include <memory>

#include "Arguments.h"
#include "Opening.h"
#include "Output.h"
#include "Verb.h"

namespace quillon::tools {

namespace {

int run(const Source& source) {
  netcdf::File file = openFile(source.file);
  const auto skipped = [&file](const object_model::Dictionary& group) {
    std::vector<std::string> lines;
    for (const PassedOver& variable : skippedIn(group, file.skipped())) {
      lines.push_back(variable.name + "  left out: " + variable.reason);
    }
    return lines;
  };
  writeOutput(memory::describe(groupOf(file, source), skipped));
  return 0;
}

}  // namespace

Verb addInfo(CLI::App& application) {
  CLI::App* command =
      application.add_subcommand("info", "List groups and arrays with types, axes and units");
  command->footer(
      "For each group its path, for each array its name, element type, axes with their\n"
      "sizes (the fastest first, with the axis's kind where it is known), unit and\n"
      "description. No values are read.");
  const auto source = std::make_shared<Source>();
  addSource(*command, *source);
  return {command, [source] { return run(*source); }};
}

}  // namespace quillon::tools
