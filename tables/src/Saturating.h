#pragma once

#include <limits>

namespace quillon::tables {

/// The greatest number, at which sums and products stop instead of starting again from 0.
inline constexpr unsigned long MOST = std::numeric_limits<unsigned long>::max();

inline unsigned long times(unsigned long first, unsigned long second) {
  unsigned long product = 0;
  return __builtin_mul_overflow(first, second, &product) ? MOST : product;
}

inline unsigned long plus(unsigned long first, unsigned long second) {
  unsigned long sum = 0;
  return __builtin_add_overflow(first, second, &sum) ? MOST : sum;
}

}  // namespace quillon::tables
