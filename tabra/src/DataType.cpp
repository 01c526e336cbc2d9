#include <tabra/DataType.h>

namespace tabra {

DataType::DataType(DataTypeId id) : m_id(id) {}

DataTypeId DataType::id() const { return m_id; }

}  // namespace tabra
