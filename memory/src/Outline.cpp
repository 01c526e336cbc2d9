#include <quillon/memory/Axes.h>
#include <quillon/memory/ElementTypes.h>
#include <quillon/memory/Entries.h>
#include <quillon/memory/Outline.h>
#include <quillon/memory/Paths.h>
#include <quillon/memory/Wording.h>

#include <algorithm>
#include <array>

namespace quillon::memory {
namespace {

using object_model::AxisType;

constexpr std::size_t INDENTATION = 2;

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
    // never false: each row has a type, whose name is not empty
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

/// Appends what describe() gives; texts of groups that nest deeply are not copied level by level.
void append(const object_model::Dictionary& group, const Remarks& remarks, std::string& text) {
  std::vector<Line> lines;
  std::vector<const object_model::Dictionary*> groups;
  for (const auto& entry : entriesOf(group)) {
    if (const object_model::Array* array = entry.data->asArray()) {
      lines.push_back(lineOf(*array));
    } else if (const object_model::Dictionary* inner = entry.data->asDictionary()) {
      groups.push_back(inner);
    }
  }
  text += headOf(group, lines.size(), groups.size()) + aligned(lines);
  for (const std::string& remark : remarks ? remarks(group) : std::vector<std::string>()) {
    text += "  " + escaped(remark) + "\n";
  }
  for (const object_model::Dictionary* inner : groups) {
    text += "\n";
    append(*inner, remarks, text);
  }
}

}  // namespace

std::string describe(const object_model::Dictionary& group, const Remarks& remarks) {
  std::string text;
  append(group, remarks, text);
  return text;
}

std::string describe(const object_model::Array& array) {
  return aligned({lineOf(array)}).substr(INDENTATION);
}

std::string describe(const object_model::Data& object) {
  const object_model::Array* array = object.asArray();
  return array == nullptr ? describe(*object.asDictionary()) : describe(*array);
}

}  // namespace quillon::memory
