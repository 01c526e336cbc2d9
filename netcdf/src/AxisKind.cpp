#include "AxisKind.h"

#include <netcdf.h>
#include <quillon/memory/Axis.h>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "Attributes.h"

namespace quillon::netcdf {
namespace {

using object_model::AxisType;

struct Coordinate {
  int group;
  int variable;
};

std::string lowerCase(std::string text) {
  // Not std::tolower, which follows the caller's locale.
  std::transform(text.begin(), text.end(), text.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  return text;
}

bool spansOnly(int group, int variable, int dimension) {
  int rank = 0;
  int spanned = -1;
  return nc_inq_varndims(group, variable, &rank) == NC_NOERR && rank == 1 &&
         nc_inq_vardimid(group, variable, &spanned) == NC_NOERR && spanned == dimension;
}

std::optional<Coordinate> findCoordinate(int group, int dimension, const std::string& name) {
  int variable = -1;
  do {
    if (nc_inq_varid(group, name.c_str(), &variable) == NC_NOERR &&
        spansOnly(group, variable, dimension)) {
      return Coordinate{group, variable};
    }
  } while (nc_inq_grp_parent(group, &group) == NC_NOERR);
  return std::nullopt;
}

std::optional<AxisType> kindByAttributes(const Source& source, const Coordinate& coordinate) {
  const auto text = [&](const char* attribute) {
    return textAttribute(source, coordinate.group, coordinate.variable, attribute);
  };
  const std::string axis = text("axis");
  if (lowerCase(text("units")).find(" since ") != std::string::npos ||
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
  const std::string lower = lowerCase(name);
  for (const auto& [word, kind] : KINDS) {
    if (lower == word || lower == std::string(word) + "s") {
      return kind;
    }
  }
  return memory::OTHER_AXIS;
}

}  // namespace

AxisType axisKindOf(const Source& source, int group, int dimension, const std::string& name) {
  if (const std::optional<Coordinate> coordinate = findCoordinate(group, dimension, name)) {
    if (const std::optional<AxisType> kind = kindByAttributes(source, *coordinate)) {
      return *kind;
    }
  }
  return kindByName(name);
}

}  // namespace quillon::netcdf
