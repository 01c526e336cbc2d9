#include "Failure.h"

#include <quillon/memory/Wording.h>

#include <iostream>

namespace quillon::tools {

int reportTrouble(const std::string& sentence) {
  std::cerr << "quillon: " + memory::escaped(sentence) + "\n";
  return EXIT_TROUBLE;
}

}  // namespace quillon::tools
