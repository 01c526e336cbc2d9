#include "Failure.h"

#include <quillon/memory/Wording.h>

#include <iostream>

namespace quillon::tools {

int reportTrouble(const std::string& sentence) {
  reportNote(sentence);
  return EXIT_TROUBLE;
}

void reportNote(const std::string& sentence) {
  std::cerr << "quillon: " + memory::disarmed(sentence) + "\n";
}

}  // namespace quillon::tools
