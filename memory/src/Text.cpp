#include "Text.h"

#include <array>

namespace quillon::memory {

std::string toText(const object_model::Tuple& tuple) {
  std::string text = "(";
  for (unsigned long k = 0; k < tuple.size(); ++k) {
    if (k > 0) {
      text += ';';
    }
    text += std::to_string(tuple[k]);
  }
  return text + ")";
}

std::string toText(object_model::ElementType type) {
  static constexpr std::array<const char*, 7> NAMES = {"UInt",   "Int",     "Double",    "Complex",
                                                       "String", "Boolean", "Dictionary"};
  const auto index = static_cast<std::size_t>(type);
  // An array class of the caller's may claim any value.
  return index < NAMES.size() ? NAMES[index]
                              : "element type " + std::to_string(static_cast<int>(type));
}

}  // namespace quillon::memory
