#include "DeltaMap.h"

#include <algorithm>
#include <cmath>

namespace quillon::compare {

DeltaMap::DeltaMap(const object_model::Tuple& shape) {
  std::vector<Side> sides;
  unsigned long step = 1;
  for (std::size_t k = 0; k < shape.size(); ++k) {
    sides.push_back({k, step, shape[k], std::min(shape[k], MOST_PICTURE_CELLS)});
    step *= shape[k];
  }
  if (sides.size() < 2 || step == 0) {
    return;
  }
  std::stable_sort(sides.begin(), sides.end(),
                   [](const Side& a, const Side& b) { return a.size > b.size; });
  const bool isFaster = sides[0].dimension < sides[1].dimension;
  m_across = sides[isFaster ? 0 : 1];
  m_down = sides[isFaster ? 1 : 0];
  m_cells.resize(m_across.cells * m_down.cells, 0.0);
}

unsigned long DeltaMap::Side::cellOf(unsigned long offset) const {
  const unsigned long index = offset / step % size;
  // As many indices for each cell, but that the first cells have one more where it does not divide.
  const unsigned long each = size / cells;
  const unsigned long longer = size % cells;
  const unsigned long inLonger = longer * (each + 1);
  return index < inLonger ? index / (each + 1) : longer + (index - inLonger) / each;
}

void DeltaMap::add(unsigned long offset, double delta) {
  double& cell = m_cells[m_down.cellOf(offset) * m_across.cells + m_across.cellOf(offset)];
  const bool isFirst = cell == 0.0 || std::isnan(cell);
  if (isFirst ? cell == 0.0 || !std::isnan(delta) : delta > cell) {
    cell = delta;
  }
}

Picture::Side DeltaMap::named(const Side& side, const std::vector<std::string>& names) {
  return {names[side.dimension], side.size, side.cells};
}

Picture DeltaMap::picture(const std::vector<std::string>& names) const {
  return {named(m_across, names), named(m_down, names), m_cells};
}

}  // namespace quillon::compare
