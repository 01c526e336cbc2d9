#include <object_model/ElementTypeHelper.h>

#include <array>
#include <string>

#include "InvalidCallAt.h"

namespace object_model::helper {
namespace {

// Ends before Dictionary on purpose: a nested dictionary has no size, and is rejected like any
// value outside the enumeration.
constexpr std::array<unsigned long, 6> ELEMENT_SIZES = {8, 8, 8, 16, 32, 1};

static_assert(sizeof(std::string) == 32, "string elements are stored as 32 bytes");

}  // namespace

unsigned long sizeOfElementType(ElementType type) {
  const auto index = static_cast<unsigned int>(type);
  if (index >= ELEMENT_SIZES.size()) {
    throwInvalidCallAt("ObjectModel/src/ElementTypeHelper.cpp", 34);
  }
  return ELEMENT_SIZES[index];
}

}  // namespace object_model::helper
