#include <quillon/memory/Nearest.h>
#include <quillon/memory/Wording.h>

#include <algorithm>
#include <numeric>
#include <utility>

namespace quillon::memory {
namespace {

/// Longer names are compared as far as this, so that hostile ones take no time.
constexpr std::size_t MOST_LETTERS = 200;

char lower(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

/// How many letters have to be inserted, removed or replaced to make the one of the other.
std::size_t distance(std::string_view a, std::string_view b) {
  a = a.substr(0, MOST_LETTERS);
  b = b.substr(0, MOST_LETTERS);
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), 0UL);
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i + 1);
    for (std::size_t k = 0; k < b.size(); ++k) {
      const std::size_t replaced = diagonal + (lower(a[i]) == lower(b[k]) ? 0 : 1);
      diagonal = row[k + 1];
      row[k + 1] = std::min({replaced, row[k] + 1, row[k + 1] + 1});
    }
  }
  return row.back();
}

}  // namespace

std::vector<std::string> nearestNames(std::string_view name, const std::vector<std::string>& names,
                                      std::size_t most) {
  std::vector<std::pair<std::size_t, std::size_t>> found;  // distance, position
  for (std::size_t k = 0; k < names.size(); ++k) {
    found.emplace_back(distance(name, names[k]), k);
  }
  std::sort(found.begin(), found.end());
  std::vector<std::string> result;
  for (std::size_t k = 0; k < std::min(most, found.size()); ++k) {
    result.push_back(names[found[k].second]);
  }
  return result;
}

std::string offerOf(std::string_view name, const std::vector<std::string>& names) {
  const std::vector<std::string> nearest = nearestNames(name, names);
  std::string text;
  for (std::size_t k = 0; k < nearest.size(); ++k) {
    const char* joint = k + 1 == nearest.size() ? " or " : ", ";
    text += (k == 0 ? "; did you mean " : joint) + inQuotes(nearest[k]);
  }
  return text.empty() ? text : text + "?";
}

}  // namespace quillon::memory
