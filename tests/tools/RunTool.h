#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "support/ScratchDirectory.h"

namespace quillon::tools::test {

// The project's data, as the tool is given them.
inline const char* const CLIMATE = "data/north_atlantic_climate.nc";
inline const char* const NUCLEI = "data/nuclei_measurements.nc";
inline const char* const OBSERVATIONS = "data/observations.nc";

/// How a process ended and what it wrote.
struct Outcome {
  int status;  ///< the exit status; 128 and the signal's number when a signal ended it
  std::string out;
  std::string err;
};

bool operator==(const Outcome& first, const Outcome& second);
void PrintTo(const Outcome& outcome, std::ostream* stream);

/// A directory of its own for one test, removed with all that is in it.
class Scratch : public ::test::ScratchDirectory {
 public:
  /// Makes the netCDF-4 file `name` from its text form (what stands inside `netcdf x { }`).
  std::string file(const std::string& name, const std::string& cdl) const;
};

/// Runs a program in the project's root. Its standard output goes to `output` where that is given.
Outcome runProgram(const std::vector<std::string>& command, const std::string& output = {});

/// Runs quillon.
Outcome runTool(std::vector<std::string> arguments, const std::string& output = {});

/// Runs a shell command in which $QUILLON is the tool.
Outcome runShell(const std::string& command);

/// What a command that failed must have done: status 2, nothing printed, one sentence.
Outcome failed(const std::string& sentence);

std::string contentOf(const std::string& path);
void writeContent(const std::string& path, const std::string& content);

}  // namespace quillon::tools::test
