#pragma once

#include <CLI/App.hpp>
#include <string>
#include <vector>

namespace quillon::tools {

/// The group of a file that a verb works on, as the command line names it.
struct Source {
  std::string file;
  std::string group;  ///< the root unless given

  /// How sentences start with it: "'a.nc'", or "Group 'cells/otsu' of 'a.nc'".
  std::string inWords() const;
};

/// Gives a verb the argument FILE and the option --group.
void addSource(CLI::App& command, Source& source);

/// The names of a list such as "A,B". @throws Failure for an empty name; `option` is named in it.
std::vector<std::string> splitNames(const std::string& option, const std::string& list);

/// The tolerance that an option gives. @throws Failure for anything but a number of at least 0;
/// `option` is named in it.
double parseTolerance(const std::string& option, const std::string& text);

/// The number of rows that --max-rows gives. @throws Failure for anything but a whole number of
/// at most 64 bits.
unsigned long parseRows(const std::string& text);

}  // namespace quillon::tools
