#include "ColumnType.h"

#include <stdexcept>

namespace object_model {

tabra::DataType toDataType(ElementType type) {
  switch (type) {
    case ElementType::UInt:
      return tabra::DataType(tabra::DataTypeId::UInt64);
    case ElementType::Int:
      return tabra::DataType(tabra::DataTypeId::Int64);
    case ElementType::Double:
      return tabra::DataType(tabra::DataTypeId::Float64);
    default:
      throw std::runtime_error("Non convertible type");
  }
}

}  // namespace object_model
