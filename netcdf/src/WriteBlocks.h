#pragma once

#include <quillon/memory/Values.h>

namespace quillon::netcdf {

/// How much memory a block of values takes while an array is written.
inline constexpr unsigned long BLOCK_BYTES = 4UL << 20U;

/// Calls `visit` with blocks of at most so many values that make up the array, in storage order.
template <class Visit>
void forEachBlock(const object_model::Array& array, unsigned long maxValues, const Visit& visit) {
  const memory::BlockLayout layout(array, maxValues);
  for (unsigned long offset = 0; offset < layout.size();) {
    const memory::Block block = layout.blockAt(offset);
    visit(block);
    offset = block.first + block.count;
  }
}

}  // namespace quillon::netcdf
