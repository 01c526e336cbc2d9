/// @file
/// The axes of any array: as its shape and its descriptor give them together.
///
/// Errors: what the array's own operations throw passes through. Threads: as the array's.
#pragma once

#include <object_model/Array.h>
#include <object_model/AxisInfo.h>

#include <string>
#include <vector>

namespace quillon::memory {

/// One axis of an array as its shape and its descriptor give it.
struct AxisFacts {
  std::string name;             ///< empty for an axis without a name
  unsigned long size;           ///< the extent
  object_model::AxisType type;  ///< what its points stand for
};

/// The array's axes, dimension 0 first.
[[nodiscard]] std::vector<AxisFacts> axesOf(const object_model::Array& array);

/// How many of `axes` are called `name`.
[[nodiscard]] long countOf(const std::string& name, const std::vector<AxisFacts>& axes);

/// The first name that two of `axes` share; empty when they all differ.
[[nodiscard]] std::string repeatedAxis(const std::vector<AxisFacts>& axes);

/// Whether the array holds the coordinates of its only axis: it is called as that axis.
[[nodiscard]] bool isCoordinate(const object_model::Array& array);

/// The array's extents, dimension 0 first.
[[nodiscard]] std::vector<unsigned long> shapeOf(const object_model::Array& array);

/// Whether two arrays have the same number of dimensions and the same extent in each.
[[nodiscard]] bool haveSameShape(const object_model::Array& first,
                                 const object_model::Array& second);

}  // namespace quillon::memory
