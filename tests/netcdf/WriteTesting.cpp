#include "WriteTesting.h"

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <stdexcept>

namespace quillon::netcdf {

Printed printedBy(const std::string& command) {
  std::FILE* const pipe = popen(("exec 2>&1; " + command).c_str(), "r");
  if (pipe == nullptr) {
    throw std::runtime_error("cannot run " + command);
  }
  Printed printed;
  std::array<char, 4096> piece{};
  for (std::size_t count = std::fread(piece.data(), 1, piece.size(), pipe); count > 0;
       count = std::fread(piece.data(), 1, piece.size(), pipe)) {
    printed.text.append(piece.data(), count);
  }
  const int status = pclose(pipe);
  printed.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return printed;
}

std::string dumpOf(const std::string& path, const std::string& options) {
  return printedBy("'" NCDUMP "' " + options + " -n a '" + path + "'").text;
}

}  // namespace quillon::netcdf
