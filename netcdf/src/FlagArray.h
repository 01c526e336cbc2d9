#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "NumericArray.h"

namespace quillon::netcdf {

/// An array over a variable of flags, stored as integers of 8 bits: all but 0 are true.
std::unique_ptr<memory::ArrayBase> makeFlagArray(Variable variable, const std::string& name,
                                                 std::vector<memory::Axis> axes,
                                                 const std::string& description);

/// An array over a variable of an enumeration: its values' names, and the number of one that has
/// none. `encoding` is the one that leaves the integers as they are stored.
std::unique_ptr<memory::ArrayBase> makeNameArray(
    const std::vector<std::pair<std::string, long>>& members, const Encoding& encoding,
    Variable variable, const std::string& name, std::vector<memory::Axis> axes,
    const std::string& description);

}  // namespace quillon::netcdf
