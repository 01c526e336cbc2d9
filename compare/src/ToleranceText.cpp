#include <quillon/compare/Options.h>
#include <quillon/memory/Wording.h>

#include <charconv>
#include <optional>
#include <stdexcept>
#include <string>

namespace quillon::compare {
namespace {

std::optional<double> readTolerance(std::string_view text) {
  double number = 0.0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool whole = read.ec == std::errc() && read.ptr == text.data() + text.size();
  // NaN is not at least 0 either.
  return whole && number >= 0.0 ? std::optional(number) : std::nullopt;
}

}  // namespace

PathTolerance parsePathTolerance(std::string_view text) {
  const std::size_t equals = text.rfind('=');
  const std::string_view numbers =
      equals == std::string_view::npos ? std::string_view() : text.substr(equals + 1);
  const std::size_t comma = numbers.find(',');
  const std::optional<double> absolute = readTolerance(numbers.substr(0, comma));
  const std::optional<double> relative = comma == std::string_view::npos
                                             ? std::optional(0.0)
                                             : readTolerance(numbers.substr(comma + 1));
  if (equals == 0 || !absolute || !relative) {
    throw std::invalid_argument(memory::inQuotes(text) +
                                " is no tolerance; write PATTERN=A,R or PATTERN=A, with numbers of "
                                "at least 0");
  }
  return {std::string(text.substr(0, equals)), {*absolute, *relative}};
}

}  // namespace quillon::compare
