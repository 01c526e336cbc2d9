#include "ComparisonHelper/Positions.h"

#include <algorithm>

namespace object_model::helper {
namespace {

bool shows(const Tuple& position, std::size_t loop) {
  // Equal to 4 and not "at least": see Positions.
  return loop == 3 ? position.size() == 4 : loop < position.size();
}

}  // namespace

Positions::Positions(const Tuple& shape) : m_position(shape.size()) {
  for (std::size_t loop = 0; loop < LOOPS; ++loop) {
    if (loop < shape.size()) {
      m_bound[loop] = shape[loop];
    }
    m_index[loop] = shows(m_position, loop) ? &m_position[loop] : &m_unseen[loop];
  }
}

bool Positions::none() const {
  return std::find(m_bound.begin(), m_bound.end(), 0UL) != m_bound.end();
}

bool Positions::areAtLeast(std::uint32_t least) const {
  // Both factors stay below 2^32, so that the product never starts again from 0.
  unsigned long counted = 1;
  for (const unsigned long bound : m_bound) {
    counted *= std::min<unsigned long>(bound, least);
    if (counted >= least) {
      return true;
    }
  }
  return false;
}

TupleX Positions::at(const Indices& indices) const {
  TupleX position(m_position.size());
  for (std::size_t loop = 0; loop < LOOPS; ++loop) {
    if (shows(position, loop)) {
      position[loop] = indices[loop];
    }
  }
  return position;
}

bool Positions::nextRow() {
  *m_index[0] = 0;
  for (std::size_t loop = 1; loop < LOOPS; ++loop) {
    if (++*m_index[loop] < m_bound[loop]) {
      return true;
    }
    *m_index[loop] = 0;
  }
  return false;
}

}  // namespace object_model::helper
