#pragma once

#include <string>

namespace quillon::netcdf {

/// What is wrong with the heaps of a netCDF-4 file; empty for a sound file and for other formats.
///
/// The heaps hold the strings of an HDF5 file and which dimensions a variable has. They are the one
/// part of its structure without a checksum, and libhdf5 follows the sizes in them without a check:
/// a flipped bit makes it read elsewhere in memory or turn for ever. Only the first 256 MiB of a
/// file are searched for heaps, so that a huge file still opens at once; libnetcdf writes those
/// that it needs for opening before the values.
std::string findHeapDamage(const std::string& path, unsigned long fileBytes);

}  // namespace quillon::netcdf
