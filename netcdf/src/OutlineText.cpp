#include <quillon/memory/Entries.h>
#include <quillon/memory/Paths.h>
#include <quillon/memory/Wording.h>
#include <quillon/netcdf/File.h>
#include <quillon/netcdf/Outline.h>

#include <algorithm>
#include <array>
#include <tuple>

#include "FactTexts.h"

namespace quillon::netcdf {
namespace {

using memory::escaped;

using Line = std::array<std::string, 5>;  // name, type, dimensions, unit, description
using Widths = std::array<std::size_t, std::tuple_size_v<Line>>;

constexpr std::string_view INDENTATION = "      ";

Line lineOf(const VariableFacts& variable) {
  return {escaped(nameOf(variable)), escaped(variable.type), escaped(dimensionsInWords(variable)),
          escaped(variable.unit), escaped(variable.description)};
}

Widths widthsOf(const GroupFacts& group) {
  Widths widths = {};
  for (const VariableFacts& variable : group.variables) {
    const Line line = lineOf(variable);
    for (std::size_t k = 0; k < line.size(); ++k) {
      widths.at(k) = std::max(widths.at(k), memory::displayWidth(line.at(k)));
    }
  }
  return widths;
}

/// The line with its columns below those of others; a column that is empty everywhere takes no
/// place.
std::string aligned(const Line& line, const Widths& widths) {
  std::string text;
  for (std::size_t k = 0; k < line.size(); ++k) {
    if (widths.at(k) != 0) {
      text += "  " + line.at(k) + std::string(widths.at(k) - memory::displayWidth(line.at(k)), ' ');
    }
  }
  while (!text.empty() && text.back() == ' ') {
    text.pop_back();
  }
  return text + "\n";
}

std::string detailsInLine(const VariableFacts& variable) {
  std::string text;
  for (const auto& [name, detail] : detailsOf(variable)) {
    text += (text.empty() ? "" : "; ") + name + ": " + escaped(detail);
  }
  return text.empty() ? text : std::string(INDENTATION) + text + "\n";
}

std::string attributesInLines(const std::vector<memory::Attribute>& attributes) {
  std::string text;
  for (const memory::Attribute& attribute : attributes) {
    text += std::string(INDENTATION) + escaped(attribute.name) + " = " +
            escaped(inWords(attribute.value)) + "\n";
  }
  return text;
}

std::string inLines(const GroupFacts& group, bool withAttributes) {
  std::string text =
      escaped(group.path) + (group.title.empty() ? "" : "  " + escaped(group.title)) + "\n";
  text += withAttributes ? attributesInLines(group.attributes) : "";
  const Widths widths = widthsOf(group);
  for (const VariableFacts& variable : group.variables) {
    text += aligned(lineOf(variable), widths) + detailsInLine(variable);
    text += withAttributes ? attributesInLines(variable.attributes) : "";
  }
  return text;
}

}  // namespace

std::vector<GroupFacts> factsBelow(const File& file, const std::string& path) {
  const memory::Dictionary& group = file.group(path);
  const std::string start = memory::pathOf(group);
  std::vector<GroupFacts> facts = {file.facts(start)};
  for (const std::string& below : memory::groupsBelow(group)) {
    facts.push_back(file.facts((start == "/" ? "" : start) + "/" + below));
  }
  return facts;
}

std::string outlineText(const std::vector<GroupFacts>& groups, bool withAttributes) {
  std::string text;
  for (const GroupFacts& group : groups) {
    text += (text.empty() ? "" : "\n") + inLines(group, withAttributes);
  }
  return text;
}

}  // namespace quillon::netcdf
