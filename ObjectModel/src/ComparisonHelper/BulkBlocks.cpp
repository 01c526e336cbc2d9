#include "ComparisonHelper/BulkBlocks.h"

#include <algorithm>

namespace object_model::helper {
namespace {

// A mebibyte of doubles: what a call costs no longer shows, and the block is still in the cache
// when it is compared.
constexpr unsigned long USUAL_SIZE = 1UL << 17U;

// What has to be unpacked is better fetched once than compared in the cache.
constexpr unsigned long SIZE_WITH_CHUNKS = 1UL << 21U;

}  // namespace

BulkBlocks::BulkBlocks(const BulkGrid& grid, const unsigned long* chunks)
    : m_grid(grid), m_start(grid.dimensions()), m_extent(grid.dimensions()) {
  setCut(chunks == nullptr ? USUAL_SIZE : SIZE_WITH_CHUNKS);
  if (chunks != nullptr) {
    endWithChunk(chunks[m_cut]);
  }
  for (unsigned long k = 0; k < grid.dimensions(); ++k) {
    m_extent[k] = k < m_cut ? grid.extent(k) : 1;
  }
  setExtent();
}

void BulkBlocks::setCut(unsigned long limit) {
  while (m_cut + 1 < m_grid.compared() && m_grid.extent(m_cut) <= limit / m_slab) {
    m_slab *= m_grid.extent(m_cut);
    ++m_cut;
  }
  m_slabs = std::min(limit / m_slab, m_grid.extent(m_cut));
}

void BulkBlocks::endWithChunk(unsigned long chunk) {
  if (chunk > 0 && chunk < m_slabs && m_slabs < m_grid.extent(m_cut)) {
    m_slabs -= m_slabs % chunk;
  }
}

void BulkBlocks::setExtent() {
  m_extent[m_cut] = std::min(m_slabs, m_grid.extent(m_cut) - m_start[m_cut]);
}

bool BulkBlocks::next() {
  m_offset += size();
  m_start[m_cut] += m_extent[m_cut];
  for (unsigned long k = m_cut; k < m_grid.compared(); ++k) {
    if (m_start[k] < m_grid.extent(k)) {
      setExtent();
      return true;
    }
    m_start[k] = 0;
    if (k + 1 < m_grid.compared()) {
      ++m_start[k + 1];
    }
  }
  return false;
}

}  // namespace object_model::helper
