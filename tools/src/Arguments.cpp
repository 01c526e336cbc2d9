#include "Arguments.h"

#include <quillon/memory/AsciiText.h>
#include <quillon/memory/NameChoice.h>
#include <quillon/memory/Nearest.h>
#include <quillon/memory/Wording.h>

#include <algorithm>
#include <charconv>
#include <limits>
#include <sstream>

#include "Failure.h"

namespace quillon::tools {

using memory::inQuotes;

namespace {

/// How many places descriptions have beside the names of options.
constexpr std::size_t LONGEST_LINE = 54;

const std::vector<std::string>& requireNoneEmpty(const std::string& option, const std::string& list,
                                                 const std::vector<std::string>& names) {
  if (std::find(names.begin(), names.end(), "") != names.end()) {
    throw Failure(option + " takes names separated by commas, and " + inQuotes(list) +
                  " holds an empty one");
  }
  return names;
}

std::optional<unsigned long> readCount(const std::string& text) {
  unsigned long count = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, count);
  return error == std::errc() && stop == end ? std::optional(count) : std::nullopt;
}

}  // namespace

std::string FileGroup::inWords() const {
  const bool isRoot = group.find_first_not_of('/') == std::string::npos;
  return isRoot ? inQuotes(file) : "Group " + inQuotes(group) + " of " + inQuotes(file);
}

std::string inLines(const std::string& description) {
  std::istringstream words(description);
  std::string text;
  std::size_t length = 0;
  for (std::string word; words >> word;) {
    const bool isNext = length == 0 || length + 1 + word.size() > LONGEST_LINE;
    text += (text.empty() ? "" : isNext ? "\n" : " ") + word;
    length = isNext ? word.size() : length + 1 + word.size();
  }
  return text;
}

void addFileGroup(CLI::App& command, FileGroup& input) {
  command.add_option("FILE", input.file, "The netCDF file to read")->required()->option_text(" ");
  command
      .add_option("--group", input.group,
                  inLines("A group of the file, such as cells/otsu (default: the root)"))
      ->type_name("PATH");
}

void addPatterns(CLI::App& command, std::optional<std::string>& variables,
                 std::optional<std::string>& exclude) {
  command
      .add_option("--variables", variables,
                  inLines("Only these variables (default: all): names or shell patterns of names, "
                          "of paths where they hold a /"))
      ->type_name("A,B*");
  command.add_option("--exclude", exclude, inLines("Leave these variables out"))->type_name("C*");
}

CLI::Option* addList(CLI::App& command, const std::string& name, std::vector<std::string>& values,
                     const std::string& description) {
  return command.add_option(name, values, inLines(description))
      ->expected(1, CLI::detail::expected_max_vector_size)
      ->allow_extra_args(false)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

std::vector<std::string> splitNames(const std::string& option, const std::string& list) {
  std::vector<std::string> names;
  for (std::size_t start = 0; start <= list.size();) {
    const std::size_t comma = std::min(list.find(',', start), list.size());
    names.emplace_back(memory::trimmed(std::string_view(list).substr(start, comma - start)));
    start = comma + 1;
  }
  return requireNoneEmpty(option, list, names);
}

std::vector<std::string> splitPatterns(const std::string& option, const std::string& list) {
  return requireNoneEmpty(option, list, memory::splitPatterns(list));
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
  const std::optional<unsigned long> rows = readCount(text);
  if (!rows) {
    throw Failure("--max-rows takes a whole number from 0 (all rows) to " +
                  std::to_string(std::numeric_limits<unsigned long>::max()) + ", not " +
                  inQuotes(text));
  }
  return *rows;
}

unsigned long parseCount(const std::string& option, const std::string& text, unsigned long first,
                         unsigned long last) {
  const std::optional<unsigned long> count = readCount(text);
  if (!count || *count < first || *count > last) {
    throw Failure(option + " takes a whole number from " + std::to_string(first) + " to " +
                  std::to_string(last) + ", not " + inQuotes(text));
  }
  return *count;
}

void requireKnown(const std::string& option, const std::string& value,
                  const std::vector<std::string>& known) {
  if (std::find(known.begin(), known.end(), value) == known.end()) {
    throw Failure(option + " takes one of " + memory::listed(known) + ", not " + inQuotes(value) +
                  "; did you mean " + inQuotes(memory::nearestNames(value, known, 1).front()) +
                  "?");
  }
}

}  // namespace quillon::tools
