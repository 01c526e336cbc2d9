#include "EntryName.h"

#include <stdexcept>

namespace quillon::memory {

bool isEntry(const object_model::Data& object) {
  return object.parent() != nullptr && object.parent()->isDictionary();
}

void requireFreeToRename(const object_model::Data& object, const char* kind,
                         const std::string& name) {
  if (isEntry(object) && object.getName() != name) {
    throw std::invalid_argument(kind + (" '" + object.getName()) +
                                "' is an entry and cannot take the name '" + name + "'");
  }
}

}  // namespace quillon::memory
