#include "CommandLine.h"
#include "Output.h"

int main(int count, char** arguments) {
  quillon::tools::prepareOutput();
  return quillon::tools::runCommandLine(count, arguments);
}
