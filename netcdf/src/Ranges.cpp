#include "Ranges.h"

#include <quillon/memory/Wording.h>

#include <stdexcept>

namespace quillon::netcdf {
namespace {

std::string textOf(const Range& range) {
  return "first " + std::to_string(range.first) + ", count " + std::to_string(range.count) +
         ", step " + std::to_string(range.step);
}

/// Whether the last index is below `size`.
bool endsWithin(const Range& range, unsigned long size) {
  const auto first = static_cast<unsigned long>(range.first);
  const auto count = static_cast<unsigned long>(range.count);
  if (count == 0 || first >= size) {
    return count == 0 && first <= size;
  }
  return count - 1 <= (size - 1 - first) / static_cast<unsigned long>(range.step);
}

}  // namespace

void requireWithin(const Range& range, const std::string& axis, unsigned long size) {
  const std::string start = "Axis " + memory::inQuotes(axis) + " ";
  if (range.first < 0 || range.count < 0) {
    throw std::invalid_argument(start + "has no negative indices or counts (" + textOf(range) +
                                ")");
  }
  if (range.step < 1) {
    throw std::invalid_argument(start + "is read forwards, in steps of at least 1 (" +
                                textOf(range) + ")");
  }
  if (!endsWithin(range, size)) {
    throw std::invalid_argument(start + "has " + memory::counted(size, "point") +
                                ", fewer than asked for (" + textOf(range) + ")");
  }
}

}  // namespace quillon::netcdf
