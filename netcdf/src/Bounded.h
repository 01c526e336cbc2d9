#pragma once

#include <limits>

namespace quillon::netcdf {

/// Products and sums of sizes that a file claims. They stop at the largest number instead of
/// wrapping, so that an absurd claim stays absurd.
inline unsigned long boundedProduct(unsigned long a, unsigned long b) {
  constexpr unsigned long LARGEST = std::numeric_limits<unsigned long>::max();
  return a != 0 && b > LARGEST / a ? LARGEST : a * b;
}

/// @copydoc boundedProduct
inline unsigned long boundedSum(unsigned long a, unsigned long b) {
  constexpr unsigned long LARGEST = std::numeric_limits<unsigned long>::max();
  return b > LARGEST - a ? LARGEST : a + b;
}

}  // namespace quillon::netcdf
