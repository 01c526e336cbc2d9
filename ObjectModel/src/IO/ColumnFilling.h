#pragma once

#include <object_model/Array.h>
#include <tabra/DataFrameView.h>
#include <tabra/DataType.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <type_traits>
#include <vector>

#include "ArrayProxy.h"
#include "GridIteration.h"

namespace object_model {

/// One data column of an export.
struct Col {
  std::string name;
  tabra::DataType type;
  long index;  ///< the dictionary entry that it comes from
  /// A coordinate for each axis of the entry, which has at most three; those of index axes are 0
  /// and not used.
  std::array<unsigned long, 3> position;
};

/// The accessor of arrays that reads elements as `T`.
template <class T>
constexpr auto accessorFor() {
  if constexpr (std::is_same_v<T, unsigned long>) {
    return &Array::getValueAsUInt;
  } else if constexpr (std::is_same_v<T, long>) {
    return &Array::getValueAsInt;
  } else {
    static_assert(std::is_same_v<T, double>, "columns hold integers and floating-point numbers");
    return &Array::getValueAsDouble;
  }
}

/// Copies the values of `array` along its index axes into `column`, a row each, the first index
/// axis varying fastest.
///
/// `shape`, `indexAxes` and `start` have an entry for each of the `M` dimensions of `array`: its
/// extent, whether it is an index axis, and the coordinate at which it stays when it is none.
/// What the accessor or `write` throws passes through; rows already written stay written.
template <class T, std::size_t M>
void fillDataFrame(tabra::DataFrameView* frame, const ArrayProxy& array,
                   const std::vector<unsigned long>& shape,
                   const std::vector<unsigned char>& indexAxes, unsigned long column,
                   const std::vector<unsigned long>& start) {
  std::array<unsigned long, M> gridShape;
  std::array<unsigned long, M> gridStart;
  std::array<unsigned char, M> mask;
  for (std::size_t k = 0; k < M; ++k) {
    gridShape[k] = shape[k];
    gridStart[k] = start[k];
    mask[k] = indexAxes[k] != 0 ? 0 : 1;
  }
  ArrayProxy::Reader<M> reader(array);
  unsigned long row = 0;
  const auto copyValue = [&](const std::array<unsigned long, M>& position) {
    const T value = reader.read(accessorFor<T>(), position);
    frame->write(column, row, 1, &value);
    ++row;
  };
  iterate<M, M - 1>(gridShape, copyValue, gridStart, mask);
}

}  // namespace object_model
