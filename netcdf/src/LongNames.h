#pragma once

#include <netcdf.h>

#include <cstddef>
#include <string>

namespace quillon::netcdf {

/// libnetcdf writes a name of NC_MAX_NAME bytes to a netCDF-4 file and reads it with others behind
/// it, more than there is room for where it copies it to.
inline constexpr std::size_t LONGEST_NAME = NC_MAX_NAME - 1;

/// What speaks against an open netCDF-4 file whose groups, types, dimensions or variables have
/// longer names; empty where nothing does. To be called under libraryLock().
std::string findLongName(int file);

}  // namespace quillon::netcdf
