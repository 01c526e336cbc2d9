#include <quillon/memory/AsciiText.h>
#include <quillon/memory/NameChoice.h>
#include <quillon/memory/Nearest.h>
#include <quillon/memory/Pattern.h>

#include <algorithm>
#include <utility>

namespace quillon::memory {
namespace {

bool isOfPaths(const std::string& pattern) { return pattern.find('/') != std::string::npos; }

}  // namespace

void NameChoice::add(std::string name, std::string path) {
  m_names.push_back(std::move(name));
  m_paths.push_back(std::move(path));
}

std::vector<std::size_t> NameChoice::matching(const std::string& pattern) const {
  if (!isOfPaths(pattern)) {
    return Pattern(pattern).find(m_names);
  }
  return Pattern(pattern[0] == '/' ? pattern : "/" + pattern, Slash::Passes).find(m_paths);
}

std::set<std::size_t> NameChoice::find(const std::vector<std::string>& patterns) const {
  std::set<std::size_t> result;
  for (const std::string& pattern : patterns) {
    const std::vector<std::size_t> found = matching(pattern);
    result.insert(found.begin(), found.end());
  }
  return result;
}

std::optional<std::string> NameChoice::unmatched(const std::vector<std::string>& patterns) const {
  const auto found =
      std::find_if(patterns.begin(), patterns.end(),
                   [this](const std::string& pattern) { return matching(pattern).empty(); });
  return found == patterns.end() ? std::nullopt : std::optional(*found);
}

std::string NameChoice::offerFor(const std::string& pattern) const {
  if (m_names.empty()) {
    return " and no other";
  }
  const std::vector<std::string>& all = isOfPaths(pattern) ? m_paths : m_names;
  std::vector<std::string> names;  // each once
  std::set<std::string> known;
  std::copy_if(all.begin(), all.end(), std::back_inserter(names),
               [&known](const std::string& name) { return known.insert(name).second; });
  return offerOf(pattern, names);
}

std::vector<std::string> splitPatterns(std::string_view list) {
  std::vector<std::string> patterns;
  std::size_t start = 0;
  for (std::size_t k = 0; k < list.size(); ++k) {
    if (list[k] == '\\') {
      ++k;
    } else if (list[k] == ',') {
      patterns.emplace_back(trimmed(list.substr(start, k - start)));
      start = k + 1;
    }
  }
  patterns.emplace_back(trimmed(list.substr(start)));
  return patterns;
}

}  // namespace quillon::memory
