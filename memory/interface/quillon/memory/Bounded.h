/// @file
/// Products and sums of sizes that somebody claims.
#pragma once

#include <limits>

namespace quillon::memory {

/// The greatest number, at which products and sums stop instead of starting again from 0, so that
/// an absurd claim stays absurd.
inline constexpr unsigned long LARGEST_SIZE = std::numeric_limits<unsigned long>::max();

/// The product of both, LARGEST_SIZE where it is more.
[[nodiscard]] inline unsigned long boundedProduct(unsigned long a, unsigned long b) {
  return a != 0 && b > LARGEST_SIZE / a ? LARGEST_SIZE : a * b;
}

/// The sum of both, LARGEST_SIZE where it is more.
[[nodiscard]] inline unsigned long boundedSum(unsigned long a, unsigned long b) {
  return b > LARGEST_SIZE - a ? LARGEST_SIZE : a + b;
}

}  // namespace quillon::memory
