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
  Source source;
  std::string format = "text";
  bool attributes = false;
};

std::string outlineOf(const std::vector<netcdf::GroupFacts>& groups, const InfoOptions& options) {
  if (options.format == "json") {
    return outlineJson(groups, options.source.file) + "\n";
  }
  return options.format == "html" ? outlineHtml(groups, options.source.file)
                                  : outlineText(groups, options.attributes);
}

int runInfo(const InfoOptions& options) {
  requireKnown("--format", options.format, INFO_FORMATS);
  netcdf::File file = openFile(options.source.file, {});
  groupOf(file, options.source);  // for its sentence where there is none
  writeOutput(outlineOf(factsBelow(file, options.source.group), options));
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
  addSource(*command, options->source);
  command->add_flag("--attributes", options->attributes, "List all attributes, too");
  command
      ->add_option("--format", options->format, "text (default), json or html, a page to look at")
      ->type_name("F");
  return {command, [options] { return runInfo(*options); }, {{"--format", INFO_FORMATS}}};
}

}  // namespace quillon::tools
