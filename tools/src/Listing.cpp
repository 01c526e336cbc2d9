#include "Listing.h"

#include <object_model/Array.h>
#include <quillon/memory/Axes.h>
#include <quillon/memory/Wording.h>

#include <algorithm>
#include <array>

#include "Groups.h"

namespace quillon::tools {

using memory::axesOf;
using memory::AxisFacts;
using memory::counted;
using memory::displayWidth;
using memory::escaped;
using memory::pathOf;

namespace {

using object_model::AxisType;
using object_model::ElementType;

using Line = std::array<std::string, 5>;  // name, type, axes, unit, description

const char* kindInWords(AxisType type) {
  switch (type) {
    case AxisType::Slice:
      return " (slice)";
    case AxisType::Time:
      return " (time)";
    case AxisType::Channel:
      return " (channel)";
    case AxisType::Label:
      return " (label)";
    default:
      return "";
  }
}

std::string axesInWords(const object_model::Array& array) {
  std::string words;
  for (const AxisFacts& axis : axesOf(array)) {
    words += (words.empty() ? "" : " ") + escaped(axis.name) + "=" + std::to_string(axis.size) +
             kindInWords(axis.type);
  }
  return words.empty() ? "single value" : words;
}

Line lineOf(const object_model::Array& array) {
  return {escaped(array.getName()), nameOf(array.getElementType()), axesInWords(array),
          escaped(array.getUnit()), escaped(array.getDescription())};
}

/// The lines below each other, each column as wide as its widest text. A column that is empty
/// everywhere takes no place.
std::string aligned(const std::vector<Line>& lines) {
  std::array<std::size_t, std::tuple_size_v<Line>> widths = {};
  for (const Line& line : lines) {
    for (std::size_t i = 0; i < line.size(); ++i) {
      widths.at(i) = std::max(widths.at(i), displayWidth(line.at(i)));
    }
  }
  std::string text;
  for (const Line& line : lines) {
    std::string row;
    for (std::size_t i = 0; i < line.size(); ++i) {
      if (widths.at(i) != 0) {
        row += "  " + line.at(i) + std::string(widths.at(i) - displayWidth(line.at(i)), ' ');
      }
    }
    while (!row.empty() && row.back() == ' ') {
      row.pop_back();
    }
    text += row + "\n";
  }
  return text;
}

std::string headOf(const object_model::Dictionary& group, std::size_t arrays, std::size_t groups) {
  std::string head = escaped(pathOf(group)) + "  ";
  if (arrays != 0 || groups == 0) {
    head += counted(arrays, "array") + (groups == 0 ? "" : ", ");
  }
  head += groups == 0 ? "" : counted(groups, "group");
  const std::string title = escaped(group.getDescription());
  return head + (title.empty() ? "" : "  " + title) + "\n";
}

}  // namespace

const char* nameOf(ElementType type) {
  constexpr std::array<const char*, 7> NAMES = {"UInt",   "Int",     "Double",    "Complex",
                                                "String", "Boolean", "Dictionary"};
  const auto index = static_cast<std::size_t>(type);
  return index < NAMES.size() ? NAMES.at(index) : "unknown";
}

std::string listingOf(const object_model::Dictionary& group,
                      const std::vector<netcdf::Skipped>& skipped) {
  std::vector<Line> lines;
  std::string below;
  std::size_t groups = 0;
  for (int i = 0; static_cast<unsigned long>(i) < group.getNumOfData(); ++i) {
    const object_model::Data* entry = group.data(i);
    if (const object_model::Array* array = entry->asArray()) {
      lines.push_back(lineOf(*array));
    } else if (const object_model::Dictionary* inner = entry->asDictionary()) {
      ++groups;
      below += "\n" + listingOf(*inner, skipped);
    }
  }
  std::string text = headOf(group, lines.size(), groups) + aligned(lines);
  for (const PassedOver& variable : skippedIn(group, skipped)) {
    text += "  " + escaped(variable.name) + "  left out: " + escaped(variable.reason) + "\n";
  }
  return text + below;
}

}  // namespace quillon::tools
