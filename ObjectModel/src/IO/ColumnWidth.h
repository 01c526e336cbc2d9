#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>
#include <stdexcept>
#include <string>

namespace object_model {

/// How wide the cells of a column are whose name has `nameLength` characters.
/// @throws std::length_error for a width that a stream's field, an `int`, cannot have.
inline int columnWidth(std::size_t nameLength) {
  constexpr std::size_t LEAST_WIDTH = 15;
  constexpr std::size_t GAP = 2;
  const std::size_t width = std::max(nameLength + GAP, LEAST_WIDTH);
  if (width > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
    throw std::length_error("A column name of " + std::to_string(nameLength) +
                            " characters is too long to be aligned");
  }
  return static_cast<int>(width);
}

}  // namespace object_model
