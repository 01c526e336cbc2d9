#include <quillon/memory/AsciiText.h>

#include <algorithm>

namespace quillon::memory {

std::string lowerCase(std::string_view text) {
  std::string lower(text);
  // Not std::tolower, which follows the caller's locale.
  std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  return lower;
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view AROUND = " \t\r\n";
  const std::size_t first = text.find_first_not_of(AROUND);
  return first == std::string_view::npos
             ? std::string_view()
             : text.substr(first, text.find_last_not_of(AROUND) + 1 - first);
}

}  // namespace quillon::memory
