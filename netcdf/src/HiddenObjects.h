#pragma once

#include <quillon/netcdf/File.h>

#include <vector>

#include "Source.h"

namespace quillon::netcdf {

/// Appends what stands in a netCDF-4 file and is not shown by libnetcdf, which passes over types
/// that it does not know in silence: references, bit fields, and compound types and enumerations
/// that have no name. Within a group they come in the order of their names.
///
/// Threads: to be used under libraryLock().
void listHidden(const Source& source, std::vector<Skipped>& datasets,
                std::vector<Skipped>& attributes);

}  // namespace quillon::netcdf
