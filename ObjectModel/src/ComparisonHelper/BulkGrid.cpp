#include "ComparisonHelper/BulkGrid.h"

#include <limits>

namespace object_model::helper {
namespace {

/// The product; 0 where it is too large.
unsigned long product(unsigned long a, unsigned long b) {
  return b != 0 && a > std::numeric_limits<unsigned long>::max() / b ? 0 : a * b;
}

}  // namespace

BulkGrid::BulkGrid(const Tuple& shape)
    : m_shape(shape.size()),
      // Deliberate, see Positions.
      m_compared(shape.size() > Positions::LOOPS ? Positions::LOOPS - 1 : shape.size()) {
  for (unsigned long k = 0; k < shape.size(); ++k) {
    m_shape[k] = shape[k];
    m_size = product(m_size, k < m_compared || shape[k] == 0 ? shape[k] : 1);
  }
}

bool BulkGrid::isOf(const Tuple& shape) const {
  bool is = shape.size() == dimensions();
  for (unsigned long k = 0; is && k < dimensions(); ++k) {
    is = shape[k] == extent(k);
  }
  return is;
}

Positions::Indices BulkGrid::indicesAt(unsigned long offset) const {
  Positions::Indices indices = {};
  for (unsigned long k = 0; k < m_compared; ++k) {
    indices[k] = offset % extent(k);
    offset /= extent(k);
  }
  return indices;
}

}  // namespace object_model::helper
