#pragma once

#include <quillon/memory/ArrayBase.h>

#include <memory>
#include <vector>

#include "Variable.h"

namespace quillon::netcdf {

/// An array over a variable of numbers whose type in the file is `netcdfType` (for an enumeration,
/// that of its integers). Null when there is no such array, since the type is no number.
std::unique_ptr<memory::ArrayBase> makeNumericArray(int netcdfType, Variable variable,
                                                    const std::string& name,
                                                    std::vector<memory::Axis> axes,
                                                    const std::string& description);

}  // namespace quillon::netcdf
