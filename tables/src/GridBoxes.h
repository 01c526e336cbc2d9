#pragma once

#include <functional>
#include <vector>

namespace quillon::tables {

/// A box of points of a grid whose points, in the grid's order, follow each other.
struct GridBox {
  unsigned long offset = 0;           ///< how many points of the run come before it
  std::vector<unsigned long> start;   ///< its first point
  std::vector<unsigned long> extent;  ///< how many points it spans along each axis
};

/// Divides the run of `count` points from number `first` on, counted with axis 0 varying fastest,
/// into boxes, as few and large as there can be, in their order. Without axes the grid is one
/// point. The run must lie in the grid.
void forEachBox(const std::vector<unsigned long>& shape, unsigned long first, unsigned long count,
                const std::function<void(const GridBox&)>& visit);

/// How many points a box of these extents has.
unsigned long pointsOf(const std::vector<unsigned long>& extent);

}  // namespace quillon::tables
