#pragma once

#include <cstdlib>
#include <iostream>
#include <string>

namespace quillon::fuzz {

/// Ends the process, which tells the fuzzer that its input breaks a law. Aborts in every build.
[[noreturn]] inline void reportBreach(const std::string& what) {
  std::cerr << "The law is broken: " << what << std::endl;
  std::abort();
}

/// The law that the two are the same. Both are shown in the breach of it.
template <class T>
void requireEqual(const T& actual, const T& expected) {
  if (!(actual == expected)) {
    std::cerr << "Expected:\n" << expected << "\nActual:\n" << actual << '\n';
    reportBreach("the two differ");
  }
}

}  // namespace quillon::fuzz
