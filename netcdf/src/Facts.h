#pragma once

#include <quillon/netcdf/VariableFacts.h>

#include <string>
#include <vector>

#include "Source.h"

namespace quillon::netcdf {

/// What the file says about a group and its variables. To be used under libraryLock().
/// @param path where the group stands, with a slash at its end.
/// @param skipped the variables of the file of which there are no arrays.
GroupFacts factsOf(const Source& source, int group, const std::string& path,
                   const std::vector<Skipped>& skipped);

}  // namespace quillon::netcdf
