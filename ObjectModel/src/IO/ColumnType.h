#pragma once

#include <object_model/ElementType.h>
#include <tabra/DataType.h>

namespace object_model {

/// The type of the column that takes array elements of `type`.
/// @throws std::runtime_error "Non convertible type" for all but `UInt`, `Int` and `Double`.
tabra::DataType toDataType(ElementType type);

}  // namespace object_model
