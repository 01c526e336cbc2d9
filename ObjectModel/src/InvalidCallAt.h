#pragma once

#include <object_model/InvalidCall.h>

#include <string>

namespace object_model {

/// Throws the `InvalidCall` of one throw site: "Invalid call at FILE (LINE)".
///
/// Call it with `__FILE__`, which the build maps to the path below the project's root. The line is
/// a constant of the site, not `__LINE__`: callers match on these messages, so moving code must
/// never change one.
[[noreturn]] inline void throwInvalidCallAt(const char* file, int line) {
  throw InvalidCall("Invalid call at " + std::string(file) + " (" + std::to_string(line) + ")");
}

}  // namespace object_model
