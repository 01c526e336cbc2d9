#pragma once

#include <algorithm>
#include <optional>
#include <string_view>

namespace quillon::memory {

/// Takes digits from the front of `text`, at least `min` and at most `max` of them; none where
/// there are fewer. `max` is at most 9.
inline std::optional<int> takeNumber(std::string_view& text, std::size_t min, std::size_t max) {
  std::size_t count = 0;
  int value = 0;
  while (count < std::min(max, text.size()) && text[count] >= '0' && text[count] <= '9') {
    value = 10 * value + (text[count] - '0');
    ++count;
  }
  if (count < min) {
    return std::nullopt;
  }
  text.remove_prefix(count);
  return value;
}

}  // namespace quillon::memory
