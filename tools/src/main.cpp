#include "CommandLine.h"
#include "Memory.h"
#include "Output.h"
#include "Wall.h"

int main(int count, char** arguments) {
  using namespace quillon::tools;
  prepareOutput();
  return doBehindWall([=] { return runCommandLine(count, arguments); }, {physicalMemory()});
}
