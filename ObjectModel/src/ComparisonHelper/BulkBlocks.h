#pragma once

#include "ComparisonHelper/BulkGrid.h"
#include "LocalPosition.h"

namespace object_model::helper {

/// Cuts a grid into blocks of limited size that follow each other in storage order.
class BulkBlocks {
 public:
  /// Starts at the first block. With `chunks`, the extents in which the values are kept, blocks are
  /// larger and end where a chunk does if they have room for one. The grid must not be empty, and
  /// must stay as long as the blocks.
  BulkBlocks(const BulkGrid& grid, const unsigned long* chunks);

  /// The first position and the extents of the current block, for `BulkValues::readValues()`.
  const unsigned long* start() const { return &m_start[0]; }
  const unsigned long* extent() const { return &m_extent[0]; }

  /// How many values the current block has.
  unsigned long size() const { return m_extent[m_cut] * m_slab; }
  /// Where its first value stands in storage order.
  unsigned long offset() const { return m_offset; }

  /// How many values the largest block has.
  unsigned long largest() const { return m_slabs * m_slab; }

  /// Steps to the next block; false after the last.
  bool next();

 private:
  void setCut(unsigned long limit);
  void endWithChunk(unsigned long chunk);
  void setExtent();

  const BulkGrid& m_grid;
  LocalPosition m_start;
  LocalPosition m_extent;
  unsigned long m_cut = 0;    // the dimension across which blocks are cut
  unsigned long m_slab = 1;   // values for each index of that dimension
  unsigned long m_slabs = 1;  // indices of that dimension in a block
  unsigned long m_offset = 0;
};

}  // namespace object_model::helper
