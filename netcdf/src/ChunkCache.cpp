#include "ChunkCache.h"

#include <netcdf.h>
#include <quillon/memory/Bounded.h>

#include <algorithm>
#include <array>
#include <vector>

#include "Variable.h"

namespace quillon::netcdf {
namespace {

struct Settings {
  std::size_t bytes = 0;
  std::size_t slots = 0;
  float preemption = 0;
};

/// Whether the variable is called as a dimension without being its coordinates. The library keeps
/// it under another name in the file, but opens it by its own when it is to keep other chunks, and
/// so has the dimension in its place from then on.
bool isCalledAsADimension(const Variable& variable) {
  std::array<char, NC_MAX_NAME + 1> name{};
  int dimension = -1;
  nc_inq_varname(variable.group, variable.id, name.data());
  if (nc_inq_dimid(variable.group, name.data(), &dimension) != NC_NOERR) {
    return false;
  }
  std::vector<int> dimensions(variable.chunks.size());  // what has chunks has dimensions
  nc_inq_vardimid(variable.group, variable.id, dimensions.data());
  return dimensions.front() != dimension;
}

// Should the library refuse, it keeps more or less than is best, which does no other harm.
void apply(const Variable& variable, const Settings& wanted) {
  if (isCalledAsADimension(variable)) {
    return;
  }
  nc_set_var_chunk_cache(variable.group, variable.id, wanted.bytes, wanted.slots,
                         wanted.preemption);
}

std::size_t bytesKept(const Variable& variable) {
  Settings now;
  nc_get_var_chunk_cache(variable.group, variable.id, &now.bytes, &now.slots, &now.preemption);
  return now.bytes;
}

bool endsAtTheEnd(const Variable& variable, const unsigned long* start,
                  const unsigned long* extent) {
  for (std::size_t k = 0; k < variable.shape.size(); ++k) {
    if (start[k] + extent[k] < variable.shape[k]) {
      return false;
    }
  }
  return true;
}

/// Where in the file the block ends whose indices end before `end`.
unsigned long endOf(const Variable& variable, std::size_t k, unsigned long end) {
  return variable.storedIndex(k, end - 1) + 1;
}

/// Whether no chunk of the block is met by another block of the same walk through the array.
bool meetsWholeChunks(const Variable& variable, const unsigned long* start,
                      const unsigned long* extent) {
  for (std::size_t k = 0; k < variable.shape.size(); ++k) {
    const unsigned long end = endOf(variable, k, start[k] + extent[k]);
    if ((start[k] != 0 && variable.storedIndex(k, start[k]) % variable.chunks[k] != 0) ||
        (end % variable.chunks[k] != 0 && start[k] + extent[k] != variable.shape[k])) {
      return false;
    }
  }
  return true;
}

/// The bytes of all chunks that the block touches.
unsigned long bytesTouched(const Variable& variable, const unsigned long* start,
                           const unsigned long* extent) {
  unsigned long bytes = variable.valueBytes;
  for (std::size_t k = 0; k < variable.shape.size(); ++k) {
    const unsigned long chunk = variable.chunks[k];
    const unsigned long last = endOf(variable, k, start[k] + extent[k]) - 1;
    const unsigned long chunks = last / chunk - variable.storedIndex(k, start[k]) / chunk + 1;
    bytes = memory::boundedProduct(bytes, memory::boundedProduct(chunks, chunk));
  }
  return bytes;
}

}  // namespace

void ChunkCache::prepare(const Variable& variable, const unsigned long* start,
                         const unsigned long* extent) {
  const bool isEmpty = std::count(extent, extent + variable.shape.size(), 0UL) != 0;
  if (variable.chunks.empty() || isEmpty) {
    return;
  }
  const std::size_t kept = bytesKept(variable);
  m_isReadInPart = m_isReadInPart || !meetsWholeChunks(variable, start, extent);
  if (!m_isReadInPart) {
    if (kept > 0) {
      apply(variable, {});
    }
    return;
  }
  Settings wanted;  // the library's own, but room for a window's chunks
  nc_get_chunk_cache(&wanted.bytes, &wanted.slots, &wanted.preemption);
  wanted.bytes = std::max(wanted.bytes, std::min(bytesTouched(variable, start, extent),
                                                 variable.source->options().windowBytes));
  if (kept < wanted.bytes) {
    apply(variable, wanted);
  }
}

void ChunkCache::release(const Variable& variable, const unsigned long* start,
                         const unsigned long* extent) {
  if (m_isReadInPart && endsAtTheEnd(variable, start, extent)) {
    apply(variable, {});
    m_isReadInPart = false;
  }
}

}  // namespace quillon::netcdf
