#include "GridBoxes.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <numeric>

namespace quillon::tables {
namespace {

std::vector<unsigned long> pointAt(const std::vector<unsigned long>& shape, unsigned long number) {
  std::vector<unsigned long> point;
  for (const unsigned long size : shape) {
    point.push_back(number % size);
    number /= size;
  }
  return point;
}

/// The largest box of at most `most` points that begins at `start`.
std::vector<unsigned long> largestBox(const std::vector<unsigned long>& shape,
                                      const std::vector<unsigned long>& start, unsigned long most) {
  std::vector<unsigned long> extent(shape.size(), 1);
  unsigned long below = 1;
  std::size_t k = 0;
  while (k < shape.size() && start[k] == 0 && below * shape[k] <= most) {
    extent[k] = shape[k];
    below *= shape[k];
    ++k;
  }
  if (k < shape.size()) {
    extent[k] = std::min(most / below, shape[k] - start[k]);
  }
  return extent;
}

}  // namespace

unsigned long pointsOf(const std::vector<unsigned long>& extent) {
  return std::accumulate(extent.begin(), extent.end(), 1UL, std::multiplies<>());
}

void forEachBox(const std::vector<unsigned long>& shape, unsigned long first, unsigned long count,
                const std::function<void(const GridBox&)>& visit) {
  GridBox box;
  while (box.offset < count) {
    box.start = pointAt(shape, first + box.offset);
    box.extent = largestBox(shape, box.start, count - box.offset);
    visit(box);
    box.offset += pointsOf(box.extent);
  }
}

}  // namespace quillon::tables
