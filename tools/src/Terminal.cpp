#include "Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace quillon::tools {

namespace {

/// That of a terminal that does not know its own.
constexpr unsigned long USUAL_WIDTH = 80;

std::string environment(const char* name) {
  const char* const value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): nobody sets any
  return value == nullptr ? "" : value;
}

unsigned long widthByEnvironment() {
  const unsigned long columns = std::strtoul(environment("COLUMNS").c_str(), nullptr, 10);
  return columns == 0 ? USUAL_WIDTH : columns;
}

}  // namespace

unsigned long widthOf(int descriptor) {
  if (::isatty(descriptor) != 1) {
    return 0;
  }
  winsize size = {};
  const bool isKnown = ::ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return isKnown ? size.ws_col : widthByEnvironment();
}

bool takesColors(int descriptor) {
  return ::isatty(descriptor) == 1 && environment("NO_COLOR").empty() &&
         environment("TERM") != "dumb";
}

}  // namespace quillon::tools
