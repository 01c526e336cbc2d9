#include <quillon/memory/ElementTypes.h>

namespace quillon::memory {

using object_model::BulkValues;
using object_model::ElementType;
using object_model::StoredType;

std::string nameOf(ElementType type) {
  std::string name;
  const bool isKnown = visitElementType(
      type, [&name](auto tag) { name = ElementTraits<typename decltype(tag)::Type>::NAME; });
  return isKnown ? name : "element type " + std::to_string(static_cast<int>(type));
}

std::string nameOf(StoredType type) {
  std::string name;
  const bool isKnown = visitStoredType(
      type, [&name](auto tag) { name = StoredTraits<typename decltype(tag)::Type>::NAME; });
  return isKnown ? name : "stored type " + std::to_string(static_cast<int>(type));
}

unsigned long bytesOf(StoredType type) {
  unsigned long bytes = 0;
  visitStoredType(type, [&bytes](auto tag) { bytes = sizeof(typename decltype(tag)::Type); });
  return bytes;
}

const BulkValues* bulkValuesOf(const object_model::Array& array) {
  const auto* bulk = dynamic_cast<const BulkValues*>(&array);
  if (bulk == nullptr) {
    return nullptr;
  }
  bool fits = false;
  visitStoredType(bulk->storedType(), [&](auto tag) {
    fits = ElementTraits<ElementOf<typename decltype(tag)::Type>>::TYPE == array.getElementType();
  });
  return fits ? bulk : nullptr;
}

}  // namespace quillon::memory
