#include "ComparisonHelper/PlacedRows.h"

namespace object_model::helper {
namespace {

bool runsOn(long stride, unsigned long extent, long nextStride) {
  return nextStride == stride * static_cast<long>(extent);
}

}  // namespace

PlacedRows::PlacedRows(const BulkGrid& grid, const ValuesInPlace& first,
                       const ValuesInPlace& second)
    : m_first{static_cast<const char*>(first.first), 0},
      m_second{static_cast<const char*>(second.first), 0},
      m_offset(grid.size()) {
  for (unsigned long k = 0; k < grid.compared(); ++k) {
    if (grid.extent(k) > 1) {
      add({grid.extent(k), first.strides[k], second.strides[k]});
    }
  }
  m_first.stride = m_axes[0].firstStride;
  m_second.stride = m_axes[0].secondStride;
  m_offset -= length();
  for (std::size_t k = 1; k < m_count; ++k) {
    m_axes[k].index = m_axes[k].extent - 1;
    move(m_axes[k], static_cast<long>(m_axes[k].index));
  }
}

void PlacedRows::add(const Axis& axis) {
  if (m_count > 0) {
    Axis& last = m_axes[m_count - 1];
    if (runsOn(last.firstStride, last.extent, axis.firstStride) &&
        runsOn(last.secondStride, last.extent, axis.secondStride)) {
      last.extent *= axis.extent;
      return;
    }
  }
  m_axes[m_count] = axis;
  ++m_count;
}

void PlacedRows::move(const Axis& axis, long indices) {
  m_first.first += indices * axis.firstStride;
  m_second.first += indices * axis.secondStride;
}

bool PlacedRows::previous() {
  for (std::size_t k = 1; k < m_count; ++k) {
    Axis& axis = m_axes[k];
    if (axis.index > 0) {
      --axis.index;
      move(axis, -1);
      m_offset -= length();
      return true;
    }
    axis.index = axis.extent - 1;
    move(axis, static_cast<long>(axis.index));
  }
  return false;
}

}  // namespace object_model::helper
