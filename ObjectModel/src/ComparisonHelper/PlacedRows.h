#pragma once

#include <object_model/BulkValues.h>

#include <array>

#include "ComparisonHelper/BulkGrid.h"
#include "ComparisonHelper/StoredValues.h"

namespace object_model::helper {

/// The rows of two arrays whose values lie in memory, from the last one to the first. Neighbouring
/// dimensions that need no step of their own in either array make one row.
class PlacedRows {
 public:
  /// Starts at the last row. The grid must not be empty.
  PlacedRows(const BulkGrid& grid, const ValuesInPlace& first, const ValuesInPlace& second);

  const Run& first() const { return m_first; }
  const Run& second() const { return m_second; }
  unsigned long length() const { return m_axes[0].extent; }

  /// Where the current row's first value stands in storage order.
  unsigned long offset() const { return m_offset; }

  /// Steps to the row before; false when there is none.
  bool previous();

 private:
  /// A dimension of both arrays, or some that run on in both.
  struct Axis {
    unsigned long extent = 1;
    long firstStride = 0;
    long secondStride = 0;
    unsigned long index = 0;
  };
  void add(const Axis& axis);
  void move(const Axis& axis, long indices);

  Run m_first;
  Run m_second;
  unsigned long m_offset;
  std::array<Axis, Positions::LOOPS> m_axes = {};
  std::size_t m_count = 0;
};

}  // namespace object_model::helper
