#include "PathRules.h"

#include <object_model/Dictionary.h>
#include <object_model/Exception.h>

#include <algorithm>
#include <exception>
#include <optional>
#include <stdexcept>
#include <utility>

namespace quillon::compare {
namespace {

using object_model::Data;
using object_model::Dictionary;

/// A path as patterns may spell it as well, without the `/` that it begins with.
std::string_view withoutSlash(std::string_view path) {
  return path.empty() || path[0] != '/' ? path : path.substr(1);
}

/// What of `path` is behind `root`, neither of which begins with a `/`; none where it is elsewhere.
std::optional<std::string_view> below(std::string_view root, std::string_view path) {
  if (root.empty()) {
    return path;
  }
  const bool isBelow =
      path.size() > root.size() && path.substr(0, root.size()) == root && path[root.size()] == '/';
  return isBelow ? std::optional(path.substr(root.size() + 1)) : std::nullopt;
}

bool matchesPath(const memory::Pattern& pattern, std::string_view path) {
  return pattern.matches(path) || pattern.matches(withoutSlash(path));
}

/// Whether an entry of `data`, or of a dictionary in it, has exactly the path `path`, which does
/// not begin with a `/`.
bool holds(const Data& data, std::string_view path) {
  std::vector<std::pair<const Dictionary*, std::string_view>> open = {{data.asDictionary(), path}};
  while (!open.empty()) {
    const auto [dictionary, rest] = open.back();
    open.pop_back();
    const unsigned long count = dictionary == nullptr ? 0 : dictionary->getNumOfData();
    for (unsigned long k = 0; k < count; ++k) {
      const std::string name = dictionary->getDataName(static_cast<int>(k));
      if (rest == name) {
        return true;
      }
      if (rest.size() > name.size() && rest[name.size()] == '/' &&
          rest.compare(0, name.size(), name) == 0) {
        const Data* const entry = dictionary->data(name);
        open.emplace_back(entry == nullptr ? nullptr : entry->asDictionary(),
                          rest.substr(name.size() + 1));
      }
    }
  }
  return false;
}

/// The same; an object that fails is no trouble before it is its turn.
bool seemsToHold(const Data& data, std::string_view path) {
  try {
    return holds(data, path);
  } catch (const object_model::Exception&) {
    return false;
  } catch (const std::exception&) {
    return false;
  }
}

bool isSound(double tolerance) { return tolerance >= 0; }

}  // namespace

void requireSound(const Tolerance& tolerance) {
  if (!isSound(tolerance.absolute) || !isSound(tolerance.relative)) {
    throw std::invalid_argument("A tolerance must be 0 or greater");
  }
}

PathPattern::PathPattern(const std::string& text, const std::string& root, const Data& first,
                         const Data& second)
    : m_pattern(text, memory::Slash::Passes) {
  const std::optional<std::string_view> path = below(withoutSlash(root), withoutSlash(text));
  m_isExact =
      m_pattern.hasWildcards() && path && (seemsToHold(first, *path) || seemsToHold(second, *path));
}

bool PathPattern::matches(std::string_view path) const {
  return m_isExact ? withoutSlash(path) == withoutSlash(m_pattern.text())
                   : matchesPath(m_pattern, path);
}

PathRules::PathRules(const Options& options, const Data& first, const Data& second)
    : m_options(options) {
  requireSound(options.tolerance);
  for (const PathTolerance& some : options.tolerances) {
    requireSound(some.tolerance);
    m_tolerances.emplace_back(some.pattern, options.root, first, second);
  }
  for (const std::string& pattern : options.ignore) {
    m_ignored.emplace_back(pattern, options.root, first, second);
    if (pattern.find('@') != std::string::npos) {
      m_ignoredAttributes.emplace_back(pattern, memory::Slash::Passes);
    }
  }
}

const Tolerance& PathRules::toleranceFor(const std::string& path) const {
  for (std::size_t k = m_tolerances.size(); k > 0; --k) {
    if (m_tolerances[k - 1].matches(path)) {
      return m_options.tolerances[k - 1].tolerance;
    }
  }
  return m_options.tolerance;
}

bool PathRules::isIgnored(const std::string& path) const {
  return std::any_of(m_ignored.begin(), m_ignored.end(),
                     [&](const PathPattern& pattern) { return pattern.matches(path); });
}

bool PathRules::isIgnored(const std::string& path, const std::string& name) const {
  const std::vector<std::string>& names = m_options.ignoredAttributes;
  const std::string whole = path + "@" + name;
  return std::find(names.begin(), names.end(), name) != names.end() ||
         std::any_of(m_ignoredAttributes.begin(), m_ignoredAttributes.end(),
                     [&](const memory::Pattern& pattern) { return matchesPath(pattern, whole); });
}

}  // namespace quillon::compare
