#pragma once

#include <object_model/Tuple.h>

#include <string>

namespace quillon::memory {

/// A shape or position as error messages show it: "(3;0;12)".
std::string toText(const object_model::Tuple& tuple);

}  // namespace quillon::memory
