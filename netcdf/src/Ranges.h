#pragma once

#include <quillon/netcdf/File.h>

#include <string>

namespace quillon::netcdf {

/// @throws std::invalid_argument that names the axis unless the range lies in its `size` indices.
void requireWithin(const Range& range, const std::string& axis, unsigned long size);

}  // namespace quillon::netcdf
