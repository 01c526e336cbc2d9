#include "Text.h"

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

}  // namespace quillon::memory
