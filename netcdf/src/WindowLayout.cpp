#include "WindowLayout.h"

#include <algorithm>
#include <utility>

namespace quillon::netcdf {

WindowLayout::WindowLayout(std::vector<std::size_t> shape, std::size_t maxValues,
                           const std::vector<std::size_t>& chunks)
    : m_shape(std::move(shape)) {
  if (m_shape.empty() || std::find(m_shape.begin(), m_shape.end(), 0) != m_shape.end()) {
    return;
  }
  m_split = m_shape.size() - 1;
  while (m_split > 0 && m_shape[m_split] <= maxValues / m_slabValues) {
    m_slabValues *= m_shape[m_split];
    --m_split;
  }
  m_slabs = std::clamp<std::size_t>(maxValues / m_slabValues, 1, m_shape[m_split]);
  const std::size_t chunk = chunks.size() == m_shape.size() ? chunks[m_split] : 0;
  if (chunk > 0 && m_slabs > chunk && m_slabs < m_shape[m_split]) {
    m_slabs -= m_slabs % chunk;
  }
}

Block WindowLayout::blockAround(unsigned long offset) const {
  Block block{0, 1, std::vector<std::size_t>(m_shape.size(), 0), m_shape};
  if (m_shape.empty()) {
    return block;
  }
  const unsigned long slab = offset / m_slabValues;
  const unsigned long row = slab % m_shape[m_split];
  const unsigned long firstRow = row - row % m_slabs;
  const unsigned long rows = std::min(m_slabs, m_shape[m_split] - firstRow);
  block.first = (slab - row + firstRow) * m_slabValues;
  block.count = rows * m_slabValues;
  block.start[m_split] = firstRow;
  block.extent[m_split] = rows;
  unsigned long outer = slab / m_shape[m_split];
  for (std::size_t k = m_split; k > 0;) {
    --k;
    block.start[k] = outer % m_shape[k];
    block.extent[k] = 1;
    outer /= m_shape[k];
  }
  return block;
}

}  // namespace quillon::netcdf
