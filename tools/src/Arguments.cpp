#include "Arguments.h"

#include <quillon/memory/Wording.h>

#include <algorithm>
#include <charconv>
#include <limits>

#include "Failure.h"

namespace quillon::tools {

using memory::inQuotes;

std::string Source::inWords() const {
  const bool isRoot = group.find_first_not_of('/') == std::string::npos;
  return isRoot ? inQuotes(file) : "Group " + inQuotes(group) + " of " + inQuotes(file);
}

void addSource(CLI::App& command, Source& source) {
  command.add_option("FILE", source.file, "The netCDF file to read")->required()->option_text(" ");
  command
      .add_option("--group", source.group,
                  "A group of the file, such as cells/otsu (default: the root)")
      ->type_name("PATH");
}

std::vector<std::string> splitNames(const std::string& option, const std::string& list) {
  std::vector<std::string> names;
  std::size_t start = 0;
  while (start <= list.size()) {
    const std::size_t comma = std::min(list.find(',', start), list.size());
    names.push_back(list.substr(start, comma - start));
    if (names.back().empty()) {
      throw Failure(option + " takes names separated by commas, and " + inQuotes(list) +
                    " holds an empty one");
    }
    start = comma + 1;
  }
  return names;
}

double parseTolerance(const std::string& option, const std::string& text) {
  double tolerance = 0.0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, tolerance);
  // NaN is not at least 0 either.
  if (error != std::errc() || stop != end || !(tolerance >= 0.0)) {
    throw Failure(option + " takes a number of at least 0, not " + inQuotes(text));
  }
  return tolerance;
}

unsigned long parseRows(const std::string& text) {
  unsigned long rows = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, rows);
  if (error != std::errc() || stop != end) {
    throw Failure("--max-rows takes a whole number from 0 (all rows) to " +
                  std::to_string(std::numeric_limits<unsigned long>::max()) + ", not " +
                  inQuotes(text));
  }
  return rows;
}

}  // namespace quillon::tools
