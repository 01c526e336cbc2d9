#pragma once

#include <vector>

namespace quillon::netcdf {

/// One dimension of a box of values that stand in two places: how many indices it has, and how many
/// bytes further the next value stands in each.
struct RunDimension {
  unsigned long extent;
  unsigned long fromStep;
  unsigned long toStep;
};

/// Calls `visit(from, to, bytes)` for the runs in which the values of a box follow each other in
/// both places, from the first position on; `from` and `to` are distances in bytes from where the
/// box begins in each. It ends at a false. Dimension 0 comes first; no extent is 0.
///
/// @return whether all visits returned true.
template <class Visit>
bool forEachRun(unsigned long valueBytes, const std::vector<RunDimension>& dimensions,
                const Visit& visit) {
  unsigned long bytes = valueBytes;
  std::vector<RunDimension> outer;
  for (const RunDimension& next : dimensions) {
    if (outer.empty() && next.fromStep == bytes && next.toStep == bytes) {
      bytes *= next.extent;
    } else if (next.extent > 1) {
      outer.push_back(next);
    }
  }
  std::vector<unsigned long> position(outer.size(), 0);
  unsigned long from = 0;
  unsigned long to = 0;
  for (;;) {
    if (!visit(from, to, bytes)) {
      return false;
    }
    std::size_t k = 0;
    for (; k < outer.size(); ++k) {
      from += outer[k].fromStep;
      to += outer[k].toStep;
      if (++position[k] < outer[k].extent) {
        break;
      }
      from -= position[k] * outer[k].fromStep;
      to -= position[k] * outer[k].toStep;
      position[k] = 0;
    }
    if (k == outer.size()) {
      return true;
    }
  }
}

}  // namespace quillon::netcdf
