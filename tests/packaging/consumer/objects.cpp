#include <object_model/ElementTypeHelper.h>
#include <object_model/InvalidCall.h>
#include <object_model/TupleX.h>
#include <tabra/DataType.h>
#include <tabra/VectorX.h>

#include <iostream>

int main() {
  const object_model::TupleX shape(3);
  std::cout << "dimensions " << shape.size() << '\n';
  std::cout << "complex "
            << object_model::helper::sizeOfElementType(object_model::ElementType::Complex) << '\n';
  const tabra::VectorX<unsigned long> position{4, 5};
  std::cout << "position " << position[0] << ' ' << position[1] << '\n';
  std::cout << "type " << static_cast<unsigned>(tabra::DataType(tabra::DataTypeId::Int64).id())
            << '\n';
  try {
    object_model::helper::sizeOfElementType(object_model::ElementType::Dictionary);
  } catch (const object_model::Exception&) {
    std::cout << "caught across the library\n";
  }
}
