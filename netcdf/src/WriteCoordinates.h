#pragma once

#include <object_model/Array.h>

#include <memory>
#include <string>

#include "WritePlan.h"

namespace quillon::netcdf {

/// The coordinates that an array has for one of its axes.
struct AxisCoordinates {
  std::string name;                                   ///< what their variable is to be called
  std::string axis;                                   ///< along which they lie
  std::shared_ptr<const object_model::Array> values;  ///< one for each point of the axis
  std::string owner;                                  ///< the path of the array that has them

  /// Whether they are the axis's own; others are listed by the attribute `coordinates`.
  bool areOfAxis() const { return name == axis; }
};

/// The array's coordinates along `dimension`, whose axis is called `axis`; without values where it
/// has none. @throws Refusal for coordinates that are not one for each of `size` points.
AxisCoordinates coordinatesOf(const object_model::Array& array, unsigned long dimension,
                              const std::string& axis, unsigned long size, const std::string& path);

/// Whether two arrays of one dimension say the same of its points.
bool areSameCoordinates(const object_model::Array& first, const object_model::Array& second);

/// @throws Refusal unless the array at `path`, which stands where the variable of the coordinates
///   would, lies along the axis and holds the same.
void requireSame(const AxisCoordinates& coordinates, bool isAlongAxis,
                 const object_model::Array& there, const std::string& path);

}  // namespace quillon::netcdf
