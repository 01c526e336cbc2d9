#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <type_traits>
#include <utility>
#include <vector>

namespace quillon::tables {

/// One direction of a copy: how many values, how many bytes apart they lie in the source and how
/// many values apart they go in the destination.
struct Stride {
  unsigned long count;
  long from;
  long to;
};

/// Leaves out directions of one value and joins those that go on where another ends.
inline std::vector<Stride> simplified(const std::vector<Stride>& strides) {
  std::vector<Stride> result;
  for (const Stride& stride : strides) {
    if (stride.count == 1) {
      continue;
    }
    Stride* last = result.empty() ? nullptr : &result.back();
    const long length = last == nullptr ? 0 : static_cast<long>(last->count);
    if (last != nullptr && stride.from == last->from * length && stride.to == last->to * length) {
      last->count *= stride.count;
    } else {
      result.push_back(stride);
    }
  }
  return result;
}

template <class T>
void copyRun(const char* from, const Stride& run, T* to) {
  if constexpr (std::is_trivially_copyable_v<T>) {
    if (run.from == static_cast<long>(sizeof(T)) && run.to == 1) {
      std::memcpy(to, from, run.count * sizeof(T));
      return;
    }
  }
  for (unsigned long k = 0; k < run.count; ++k, from += run.from, to += run.to) {
    *to = *reinterpret_cast<const T*>(from);
  }
}

/// Copies the values of two directions in tiles, so that what one step of `inner` fetches into the
/// cache is still there when `outer` needs it.
template <class T>
void copyTiled(const char* from, const Stride& inner, const Stride& outer, T* to) {
  constexpr unsigned long TILE = 32;
  const unsigned long tile = outer.count == 1 ? inner.count : TILE;
  for (unsigned long i = 0; i < inner.count; i += tile) {
    const unsigned long width = std::min(tile, inner.count - i);
    const char* row = from + static_cast<long>(i) * inner.from;
    T* rowTo = to + static_cast<long>(i) * inner.to;
    for (unsigned long k = 0; k < outer.count; ++k, row += outer.from, rowTo += outer.to) {
      copyRun(row, {width, inner.from, inner.to}, rowTo);
    }
  }
}

/// The direction whose values lie nearest to each other in the source, if nearer than the first's.
inline std::size_t nearestOf(const std::vector<Stride>& strides) {
  std::size_t nearest = 0;
  for (std::size_t k = 1; k < strides.size(); ++k) {
    const long step = std::abs(strides[k].from);
    if (step != 0 && step < std::abs(strides[nearest].from)) {
      nearest = k;
    }
  }
  return nearest;
}

/// Copies the values that lie at `from` along `strides` to `to`.
template <class T>
void copyBox(const char* from, const std::vector<Stride>& strides, T* to) {
  std::vector<Stride> outer = simplified(strides);
  if (outer.empty()) {
    outer.push_back({1, static_cast<long>(sizeof(T)), 1});
  }
  const Stride inner = outer[0];
  const std::size_t nearest = nearestOf(outer);
  const Stride tiled = nearest == 0 ? Stride{1, 0, 0} : outer[nearest];
  if (nearest != 0) {
    outer.erase(outer.begin() + static_cast<long>(nearest));
  }
  std::vector<unsigned long> position(outer.size(), 0);
  for (;;) {
    copyTiled(from, inner, tiled, to);
    std::size_t k = 1;
    while (k < outer.size() && ++position[k] == outer[k].count) {
      position[k] = 0;
      from -= static_cast<long>(outer[k].count - 1) * outer[k].from;
      to -= static_cast<long>(outer[k].count - 1) * outer[k].to;
      ++k;
    }
    if (k >= outer.size()) {
      return;
    }
    from += outer[k].from;
    to += outer[k].to;
  }
}

}  // namespace quillon::tables
