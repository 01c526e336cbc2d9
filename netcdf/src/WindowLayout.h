#pragma once

#include <cstddef>
#include <vector>

namespace quillon::netcdf {

/// A run of values that follow each other in storage order, as a hyperslab.
struct Block {
  unsigned long first = 0;          ///< where the first value stands in storage order
  unsigned long count = 0;          ///< the number of values
  std::vector<std::size_t> start;   ///< the first value's position, slowest dimension first
  std::vector<std::size_t> extent;  ///< the number of values along each dimension
};

/// Divides a grid of values into blocks of at most a given size: the whole grid when it fits,
/// otherwise as many neighbouring slabs of the slowest dimension as fit or, where one slab alone
/// does not, of the next dimension that does.
class WindowLayout {
 public:
  /// Divides a grid of `shape` (slowest dimension first) into blocks of at most `maxValues` values,
  /// at least one. With `chunks`, the extents in which the values are stored, a block ends at the
  /// end of a chunk where it has room for one, so that no chunk is unpacked twice.
  WindowLayout(std::vector<std::size_t> shape, std::size_t maxValues,
               const std::vector<std::size_t>& chunks = {});

  /// The block that holds the value at `offset` in storage order, which must be in the grid.
  Block blockAround(unsigned long offset) const;

 private:
  std::vector<std::size_t> m_shape;
  std::size_t m_split = 0;         // the dimension across which blocks are cut
  unsigned long m_slabValues = 1;  // values per index of that dimension
  std::size_t m_slabs = 1;         // slabs per block
};

}  // namespace quillon::netcdf
