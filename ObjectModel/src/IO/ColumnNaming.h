#pragma once

#include <tabra/DataFrameView.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "GridIteration.h"

namespace object_model {

/// The name of the column that shows one position of an array's spread axes (those whose mask is
/// zero): "Intensity[channel=1, time=4]", or the base name alone where no axis is spread.
/// Coordinates are written without grouping under every locale, since callers look columns up by
/// name.
template <std::size_t N>
std::string formatedColName(const std::string& baseName, const std::vector<std::string>& axisNames,
                            const std::array<unsigned long, N>& position,
                            const std::array<unsigned char, N>& mask) {
  std::string name = baseName;
  bool hasPart = false;
  for (std::size_t k = 0; k < N; ++k) {
    if (mask[k] == 0) {
      name.append(hasPart ? ", " : "[").append(axisNames[k]).append("=");
      name.append(std::to_string(position[k]));
      hasPart = true;
    }
  }
  return hasPart ? name + "]" : name;
}

/// Writes the coordinates along index axis `axis` into `column`, one row for each position of the
/// grid that the first `N` sizes of `gridShape` span.
template <std::size_t N>
void createColNamesForArray(tabra::DataFrameView* frame,
                            const std::vector<unsigned long>& gridShape, unsigned long column,
                            unsigned long axis) {
  std::array<unsigned long, N> shape;
  std::copy_n(gridShape.begin(), N, shape.begin());
  unsigned long row = 0;
  const auto writeCoordinate = [&](const std::array<unsigned long, N>& position) {
    frame->write(column, row, 1, &position[axis]);
    ++row;
  };
  iterate<N, N - 1>(shape, writeCoordinate, {}, {});
}

}  // namespace object_model
