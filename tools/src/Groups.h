#pragma once

#include <object_model/Dictionary.h>
#include <quillon/memory/Paths.h>
#include <quillon/netcdf/File.h>
#include <quillon/tables/Request.h>

#include <string>
#include <vector>

namespace quillon::tools {

/// A variable that is left out of what is shown.
using PassedOver = tables::Unreadable;

/// The variables of `group` itself that the reader could not make arrays of.
std::vector<PassedOver> skippedIn(const object_model::Data& group,
                                  const std::vector<netcdf::Skipped>& skipped);

}  // namespace quillon::tools
