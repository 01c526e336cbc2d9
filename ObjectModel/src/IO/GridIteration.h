#pragma once

#include <array>
#include <cstddef>
#include <utility>

namespace object_model {

// Inlined whatever the compiler's own estimate: only then do the variables that a callback shares
// with its caller, such as the number of the row, stay in registers from one position to the next.

/// Steps dimension `K` of `position` and, inside it, the lower dimensions.
template <std::size_t N, std::size_t K, class Callback>
[[gnu::always_inline]] inline void stepDimension(const std::array<unsigned long, N>& shape,
                                                 Callback& callback,
                                                 std::array<unsigned long, N>& position,
                                                 const std::array<unsigned char, N>& mask) {
  const auto visit = [&] {
    if constexpr (K == 0) {
      callback(std::as_const(position));
    } else {
      stepDimension<N, K - 1>(shape, callback, position, mask);
    }
  };
  if (mask[K] != 0) {
    visit();
    return;
  }
  for (unsigned long i = 0; i < shape[K]; ++i) {
    position[K] = i;
    visit();
  }
}

/// Calls `callback` with every position of an `N`-dimensional grid, dimension 0 varying fastest.
///
/// A dimension whose mask is not zero is not walked: it stays at its coordinate in `start`, which
/// matters nowhere else, and its extent is not read. Enter at `K` = `N` - 1; a lower `K` walks the
/// lower dimensions alone.
template <std::size_t N, std::size_t K, class Callback>
[[gnu::always_inline]] inline void iterate(const std::array<unsigned long, N>& shape,
                                           Callback&& callback,
                                           const std::array<unsigned long, N>& start,
                                           const std::array<unsigned char, N>& mask) {
  // Else an empty dimension inside a very long one would be come upon again and again.
  for (std::size_t k = 0; k <= K; ++k) {
    if (mask[k] == 0 && shape[k] == 0) {
      return;
    }
  }
  std::array<unsigned long, N> position = start;
  stepDimension<N, K>(shape, callback, position, mask);
}

}  // namespace object_model
