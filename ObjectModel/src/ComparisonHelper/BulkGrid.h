#pragma once

#include <object_model/Tuple.h>

#include "ComparisonHelper/Positions.h"
#include "LocalPosition.h"

namespace object_model::helper {

/// The values at which two arrays of one shape are compared, as blocks of bulk values have them:
/// up to four dimensions in full; of five and more the first three, where the other indices are 0.
/// Each value comes up once, unlike in `Positions`.
class BulkGrid {
 public:
  /// `shape` is not kept.
  explicit BulkGrid(const Tuple& shape);
  BulkGrid(const BulkGrid&) = delete;
  BulkGrid& operator=(const BulkGrid&) = delete;
  ~BulkGrid() = default;

  /// Whether `shape` is the whole shape, down to the dimensions that are not compared.
  bool isOf(const Tuple& shape) const;

  /// How many values are compared; 0 where they cannot be had in bulk: some extent is 0, or they
  /// are too many to be counted.
  unsigned long size() const { return m_size; }

  unsigned long dimensions() const { return m_shape.size(); }
  /// How many of the dimensions are compared in full, at most `Positions::LOOPS`.
  unsigned long compared() const { return m_compared; }
  unsigned long extent(unsigned long dimension) const { return m_shape[dimension]; }

  /// The indices of the value that stands at `offset` in storage order.
  Positions::Indices indicesAt(unsigned long offset) const;

 private:
  LocalPosition m_shape;
  unsigned long m_compared;
  unsigned long m_size = 1;
};

}  // namespace object_model::helper
