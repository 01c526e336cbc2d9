#include "CoordinateVariable.h"

#include <netcdf.h>

#include <array>
#include <sstream>

namespace quillon::netcdf {
namespace {

/// A variable that the library cannot tell of spans nothing.
bool spansOnly(int group, int variable, int dimension) {
  int rank = 0;
  nc_type type = NC_NAT;
  std::array<int, 2> spanned{-1, -1};
  nc_inq_var(group, variable, nullptr, &type, &rank, nullptr, nullptr);
  const bool isVector = rank == 1 && type != NC_CHAR;
  const bool isText = rank == 2 && type == NC_CHAR;
  // never false: nc_inq_var has found the variable
  return (isVector || isText) && nc_inq_vardimid(group, variable, spanned.data()) == NC_NOERR &&
         spanned.front() == dimension;
}

}  // namespace

std::optional<VariableId> findAlong(int group, int dimension, const std::string& name) {
  int variable = -1;
  do {
    if (nc_inq_varid(group, name.c_str(), &variable) == NC_NOERR &&
        spansOnly(group, variable, dimension)) {
      return VariableId{group, variable};
    }
  } while (nc_inq_grp_parent(group, &group) == NC_NOERR);
  return std::nullopt;
}

std::optional<VariableId> findListedAlong(int group, int dimension, const std::string& names) {
  std::istringstream words(names);
  for (std::string name; words >> name;) {
    if (const std::optional<VariableId> found = findAlong(group, dimension, name)) {
      return found;
    }
  }
  return std::nullopt;
}

}  // namespace quillon::netcdf
