#pragma once

#include <object_model/Array.h>
#include <tabra/DataFrameView.h>
#include <tabra/DataType.h>
#include <tabra/VectorX.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <type_traits>
#include <vector>

#include "GridIteration.h"
#include "TupleView.h"

namespace object_model {

/// One data column of an export.
struct Col {
  std::string name;
  tabra::DataType type;
  long index;                              ///< the dictionary entry that it comes from
  tabra::VectorX<unsigned long> position;  ///< one coordinate for each axis of the entry; those of
                                           ///< index axes are 0 and not used
};

/// The element of `array` at `position`, read with the accessor for `T`.
template <class T>
T readValue(const Array& array, const Tuple& position) {
  if constexpr (std::is_same_v<T, unsigned long>) {
    return array.getValueAsUInt(position);
  } else if constexpr (std::is_same_v<T, long>) {
    return array.getValueAsInt(position);
  } else {
    static_assert(std::is_same_v<T, double>, "columns hold integers and floating-point numbers");
    return array.getValueAsDouble(position);
  }
}

/// Copies the values of `array` along its index axes into `column`, a row each, the first index
/// axis varying fastest.
///
/// `shape`, `indexAxes` and `start` have an entry for each of the `M` dimensions of `array`: its
/// extent, whether it is an index axis, and the coordinate at which it stays when it is none.
/// What the accessor or `write` throws passes through; rows already written stay written.
template <class T, std::size_t M>
void fillDataFrame(tabra::DataFrameView* frame, const Array* array,
                   const std::vector<unsigned long>& shape,
                   const std::vector<unsigned char>& indexAxes, unsigned long column,
                   const tabra::VectorX<unsigned long>& start) {
  std::array<unsigned long, M> gridShape;
  std::array<unsigned long, M> gridStart;
  std::array<unsigned char, M> mask;
  for (std::size_t k = 0; k < M; ++k) {
    gridShape[k] = shape[k];
    gridStart[k] = start[k];
    mask[k] = indexAxes[k] != 0 ? 0 : 1;
  }
  std::array<unsigned long, M> coordinates;
  const TupleView readPosition(coordinates.data(), M);
  unsigned long row = 0;
  const auto copyValue = [&](const std::array<unsigned long, M>& position) {
    coordinates = position;
    const T value = readValue<T>(*array, readPosition);
    frame->write(column, row, 1, &value);
    ++row;
  };
  iterate<M, M - 1>(gridShape, copyValue, gridStart, mask);
}

}  // namespace object_model
