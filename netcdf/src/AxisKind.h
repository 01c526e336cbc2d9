#pragma once

#include <object_model/AxisInfo.h>

#include <optional>
#include <string>

#include "CoordinateVariable.h"

namespace quillon::netcdf {

/// What the points along a dimension called `name` stand for, by its coordinate variable's
/// attributes and else by its name.
object_model::AxisType axisKindOf(const Source& source, const std::optional<VariableId>& coordinate,
                                  const std::string& name);

}  // namespace quillon::netcdf
