#pragma once

#include <object_model/BulkValues.h>
#include <object_model/TupleX.h>

#include <cstring>
#include <type_traits>

namespace quillon::memory {

/// How many values a block of these extents has.
inline unsigned long countOf(const unsigned long* extent, unsigned long dimensions) {
  unsigned long count = 1;
  for (unsigned long k = 0; k < dimensions; ++k) {
    count *= extent[k];
  }
  return count;
}

/// Calls `visit(position)` at the first position of each row (run along dimension 0) of a block.
template <class Visit>
void forEachRow(const unsigned long* start, const unsigned long* extent, unsigned long dimensions,
                const Visit& visit) {
  if (countOf(extent, dimensions) == 0) {
    return;
  }
  object_model::TupleX position(start, dimensions);
  for (;;) {
    visit(position);
    unsigned long k = 1;
    while (k < dimensions && ++position[k] == start[k] + extent[k]) {
      position[k] = start[k];
      ++k;
    }
    if (k >= dimensions) {
      return;
    }
  }
}

/// Copies `count` values that lie `stride` bytes apart to `to`, as `T`.
template <class Stored, class T>
void copyRow(const char* from, long stride, unsigned long count, T* to) {
  if constexpr (std::is_same_v<Stored, T>) {
    if (stride == static_cast<long>(sizeof(T))) {
      std::memcpy(to, from, count * sizeof(T));
      return;
    }
  }
  for (unsigned long k = 0; k < count; ++k) {
    // NOLINTNEXTLINE(bugprone-signed-char-misuse): numbers, whose sign is to be kept
    to[k] = static_cast<T>(*reinterpret_cast<const Stored*>(from + static_cast<long>(k) * stride));
  }
}

/// Copies a block of values of the type `Stored` that lie in memory to `destination`, as `T`.
template <class Stored, class T>
void copyInPlace(const object_model::ValuesInPlace& values, const unsigned long* start,
                 const unsigned long* extent, unsigned long dimensions, T* destination) {
  const auto* const origin = static_cast<const char*>(values.first);
  const unsigned long length = dimensions == 0 ? 1 : extent[0];
  forEachRow(start, extent, dimensions, [&](const object_model::TupleX& position) {
    const char* from = origin;
    for (unsigned long k = 0; k < dimensions; ++k) {
      from += static_cast<long>(position[k]) * values.strides[k];
    }
    copyRow<Stored>(from, dimensions == 0 ? 0 : values.strides[0], length, destination);
    destination += length;
  });
}

}  // namespace quillon::memory
