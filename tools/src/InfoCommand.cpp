#include <quillon/netcdf/File.h>
#include <quillon/netcdf/Outline.h>

#include <memory>
#include <string>
#include <vector>

#include "Arguments.h"
#include "Opening.h"
#include "Output.h"
#include "Verb.h"

namespace quillon::tools {

namespace {

const std::vector<std::string> INFO_FORMATS = {"text", "json", "html"};

struct InfoOptions {
  FileGroup input;
  std::string format = "text";
  bool attributes = false;
};

std::string outlineOf(const std::vector<netcdf::GroupFacts>& groups, const InfoOptions& options) {
  if (options.format == "json") {
    return outlineJson(groups, options.input.file) + "\n";
  }
  return options.format == "html" ? outlineHtml(groups, options.input.file)
                                  : outlineText(groups, options.attributes);
}

int runInfo(const InfoOptions& options) {
  requireKnown("--format", options.format, INFO_FORMATS);
  netcdf::File file = openFile(options.input.file, {});
  groupOf(file, options.input);  // for its sentence where there is none
  writeOutput(outlineOf(factsBelow(file, options.input.group), options));
  return 0;
}

}  // namespace

Verb addInfo(CLI::App& application) {
  CLI::App* command =
      application.add_subcommand("info", "List groups and variables and what is known of them");
  command->footer(
      "For each group its path and title, for each variable its name, the type in which\n"
      "it is stored, dimensions with sizes (the slowest first), unit and description;\n"
      "where there are any, packing, fill value, chunks and compression. What cannot be\n"
      "read is listed with the reason. No values are read. json and html have all\n"
      "attributes.");
  const auto options = std::make_shared<InfoOptions>();
  addFileGroup(*command, options->input);
  command->add_flag("--attributes", options->attributes, "List all attributes, too");
  command
      ->add_option("--format", options->format, "text (default), json or html, a page to look at")
      ->type_name("F");
  return {command, [options] { return runInfo(*options); }, {{"--format", INFO_FORMATS}}};
}

}  // namespace quillon::tools
