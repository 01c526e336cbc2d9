/// Runs one operation once, small, with only the library's work counted by
/// `valgrind --tool=callgrind --instr-atstart=no`. Timings vary from run to run, these counts do
/// not.
///
/// Usage: quillon_count_instructions            lists the operations
///        quillon_count_instructions OPERATION  runs one of them
///        quillon_count_instructions --built-by says what the counts depend on
#include <gnu/libc-version.h>
#include <valgrind/callgrind.h>

#include <algorithm>
#include <exception>
#include <iostream>
#include <stdexcept>
#include <string>

#include "Case.h"

namespace benchmarks {
namespace {

std::string nameOf(const Case& some) { return some.operation + "/" + some.shape; }

void list(const Cases& cases) {
  for (const Case& some : cases) {
    std::cout << nameOf(some) << '\n';
  }
}

void run(const Cases& cases, const std::string& name) {
  constexpr unsigned long LARGEST = 2000;
  const auto isNamed = [&](const Case& some) { return nameOf(some) == name; };
  const auto found = std::find_if(cases.begin(), cases.end(), isNamed);
  if (found == cases.end()) {
    throw std::runtime_error("There is no operation '" + name + "'");
  }
  const auto operation = found->make(std::min(found->size, LARGEST));
  // Also binds the library's functions and lets it take its memory.
  operation->check();
  CALLGRIND_START_INSTRUMENTATION;
  operation->runLibrary();
  CALLGRIND_STOP_INSTRUMENTATION;
}

}  // namespace
}  // namespace benchmarks

int main(int argc, char** argv) {
  const std::string argument = argc > 1 ? argv[1] : "";
  try {
    const benchmarks::Cases cases = benchmarks::allCases();
    if (argument.empty()) {
      benchmarks::list(cases);
    } else if (argument == "--built-by") {
      std::cout << "compiler " << __VERSION__ << ", glibc " << gnu_get_libc_version() << '\n';
    } else {
      benchmarks::run(cases, argument);
    }
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
