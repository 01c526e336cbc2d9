#include "AxisKind.h"

#include <quillon/memory/AsciiText.h>
#include <quillon/memory/Axis.h>

#include <algorithm>
#include <array>
#include <utility>

#include "Attributes.h"

namespace quillon::netcdf {
namespace {

using object_model::AxisType;

std::optional<AxisType> kindByAttributes(const Source& source, const VariableId& coordinate) {
  const auto text = [&](const char* attribute) {
    return textAttribute(source, coordinate.group, coordinate.variable, attribute);
  };
  const std::string axis = text("axis");
  if (memory::lowerCase(text("units")).find(" since ") != std::string::npos ||
      text("standard_name") == "time" || axis == "T") {
    return AxisType::Time;
  }
  if (axis == "Z" || hasAttribute(coordinate.group, coordinate.variable, "positive")) {
    return AxisType::Slice;
  }
  return std::nullopt;
}

AxisType kindByName(const std::string& name) {
  static constexpr std::array<std::pair<const char*, AxisType>, 5> KINDS = {{
      {"slice", AxisType::Slice},
      {"time", AxisType::Time},
      {"channel", AxisType::Channel},
      {"band", AxisType::Channel},
      {"label", AxisType::Label},
  }};
  const std::string lower = memory::lowerCase(name);
  for (const auto& [word, kind] : KINDS) {
    if (lower == word || lower == std::string(word) + "s") {
      return kind;
    }
  }
  return memory::OTHER_AXIS;
}

}  // namespace

AxisType axisKindOf(const Source& source, const std::optional<VariableId>& coordinate,
                    const std::string& name) {
  if (coordinate) {
    if (const std::optional<AxisType> kind = kindByAttributes(source, *coordinate)) {
      return *kind;
    }
  }
  return kindByName(name);
}

}  // namespace quillon::netcdf
