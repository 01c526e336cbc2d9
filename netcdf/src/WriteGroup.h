#pragma once

#include <object_model/Dictionary.h>

#include <cstddef>
#include <string>
#include <vector>

#include "WritePlan.h"

namespace quillon::netcdf {

/// A dictionary in another one.
struct NamedDictionary {
  std::string name;
  const object_model::Dictionary* dictionary = nullptr;
};

/// Plans what stands in one group, which is in the plan as are all around it.
/// @return the dictionaries in it.
/// @throws Refusal for what a netCDF file cannot hold.
std::vector<NamedDictionary> planGroup(const object_model::Dictionary& dictionary,
                                       std::size_t group, Plan& plan);

}  // namespace quillon::netcdf
