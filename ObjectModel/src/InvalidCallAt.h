#pragma once

#include <object_model/InvalidCall.h>

#include <string>

namespace object_model {

/// Throws the `InvalidCall` of one throw site: "Invalid call at FILE (LINE)".
///
/// File, as a path below the project's root, and line are constants of the site, not `__FILE__` and
/// `__LINE__`: callers match on these messages, so neither moving code nor the way that the library
/// is built may change one.
[[noreturn]] inline void throwInvalidCallAt(const char* file, int line) {
  throw InvalidCall("Invalid call at " + std::string(file) + " (" + std::to_string(line) + ")");
}

}  // namespace object_model
