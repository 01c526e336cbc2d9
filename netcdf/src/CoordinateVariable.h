#pragma once

#include <optional>
#include <string>

#include "Source.h"

namespace quillon::netcdf {

/// A variable as the library finds it.
struct VariableId {
  int group = -1;
  int variable = -1;

  bool operator<(const VariableId& other) const {
    return group < other.group || (group == other.group && variable < other.variable);
  }
};

/// The variable called `name` that spans the dimension alone, from `group` up to the root: numbers,
/// strings, or texts of characters, which have their length as a second dimension.
std::optional<VariableId> findAlong(int group, int dimension, const std::string& name);

/// The first one of the `names`, separated by blanks, that is such a variable.
std::optional<VariableId> findListedAlong(int group, int dimension, const std::string& names);

}  // namespace quillon::netcdf
