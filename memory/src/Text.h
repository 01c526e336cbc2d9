#pragma once

#include <object_model/Tuple.h>

#include <string>
#include <string_view>

namespace quillon::memory {

/// A shape or position as error messages show it: "(3;0;12)".
std::string toText(const object_model::Tuple& tuple);

/// A character as a number from 0 to 255.
inline unsigned char byteAt(std::string_view text, std::size_t position) {
  return static_cast<unsigned char>(text[position]);
}

}  // namespace quillon::memory
