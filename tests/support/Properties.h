#pragma once

#include <rapidcheck.h>

#include <cstdlib>
#include <string>

namespace test {

/// A number from 0 to count - 1, all equally likely from the first case on; smaller ones are
/// simpler. A bare `rc::gen::inRange` reaches its upper end in the last cases alone.
template <class T>
T pick(T count) {
  return *rc::gen::resize(rc::kNominalSize, rc::gen::inRange(T(), count));
}

/// Has each property of the program hold in so many cases, unless the environment asks for another
/// number. Call it before `main`.
inline bool tryCases(unsigned int count) {
  const char* const asked = std::getenv("RC_PARAMS");
  const std::string parameters = asked == nullptr ? "" : asked;
  return parameters.find("max_success=") != std::string::npos ||
         setenv("RC_PARAMS", (parameters + " max_success=" + std::to_string(count)).c_str(), 1) ==
             0;
}

}  // namespace test
