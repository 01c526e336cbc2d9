#pragma once

#include <vector>

namespace quillon::netcdf {

/// Whether a block of an array of the extents `shape` begins and ends where chunks do, or at the
/// array's end. Dimension 0 comes first.
inline bool isOfWholeChunks(const std::vector<unsigned long>& shape,
                            const std::vector<unsigned long>& chunks, const unsigned long* start,
                            const unsigned long* extent) {
  for (std::size_t k = 0; k < shape.size(); ++k) {
    const unsigned long end = start[k] + extent[k];
    if (start[k] % chunks[k] != 0 || (end % chunks[k] != 0 && end != shape[k])) {
      return false;
    }
  }
  return true;
}

}  // namespace quillon::netcdf
