#pragma once

#include <object_model/AxisInfo.h>

#include <string>

#include "Source.h"

namespace quillon::netcdf {

/// What the points along a dimension stand for, by its coordinate variable's attributes and else by
/// its name. The coordinate variable is looked for from `group` up to the root.
object_model::AxisType axisKindOf(const Source& source, int group, int dimension,
                                  const std::string& name);

}  // namespace quillon::netcdf
