#pragma once

#include <CLI/App.hpp>
#include <optional>
#include <string>
#include <vector>

namespace quillon::tools {

/// The group of a file that a verb works on, as the command line names it.
struct FileGroup {
  std::string file;
  std::string group;  ///< the root unless given

  /// How sentences start with it: "'a.nc'", or "Group 'cells/otsu' of 'a.nc'".
  std::string inWords() const;
};

/// The description of an option in lines that leave room for its name within 80 places.
std::string inLines(const std::string& description);

/// Gives a verb the argument FILE and the option --group.
void addFileGroup(CLI::App& command, FileGroup& input);

/// Gives a verb the options --variables and --exclude.
void addPatterns(CLI::App& command, std::optional<std::string>& variables,
                 std::optional<std::string>& exclude);

/// Gives a verb an option that may be given several times, each with one value.
CLI::Option* addList(CLI::App& command, const std::string& name, std::vector<std::string>& values,
                     const std::string& description);

/// The names of a list such as "A, B", without the blanks around them. @throws Failure for an empty
/// name; `option` is named in it.
std::vector<std::string> splitNames(const std::string& option, const std::string& list);

/// The same of patterns, see `memory::splitPatterns`.
std::vector<std::string> splitPatterns(const std::string& option, const std::string& list);

/// The tolerance that an option gives. @throws Failure for anything but a number of at least 0;
/// `option` is named in it.
double parseTolerance(const std::string& option, const std::string& text);

/// The number of rows that --max-rows gives. @throws Failure for anything but a whole number of
/// at most 64 bits.
unsigned long parseRows(const std::string& text);

/// The whole number that an option gives. @throws Failure for anything but one from `first` to
/// `last`; `option` is named in it.
unsigned long parseCount(const std::string& option, const std::string& text, unsigned long first,
                         unsigned long last);

/// @throws Failure that offers the nearest of `known`, unless `value` is one of them.
void requireKnown(const std::string& option, const std::string& value,
                  const std::vector<std::string>& known);

}  // namespace quillon::tools
