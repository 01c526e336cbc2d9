/// @file
/// Choosing among named things by patterns.
#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::memory {

/// Things with names that stand at paths, such as the arrays of a file, for whoever is given shell
/// patterns of them: a pattern that holds a `/` is one of paths, whose first `/` it may leave out
/// and whose wildcards match `/`, any other is one of names. A pattern that is the very name or
/// path of things stands for these alone.
///
/// Ownership: a value. Threads: const operations may run concurrently.
class NameChoice {
 public:
  /// Adds a thing at `path`, such as "/cells/area", and gives it the next number.
  void add(std::string name, std::string path);

  /// The numbers, from 0 on, of all things that one of the patterns stands for.
  std::set<std::size_t> find(const std::vector<std::string>& patterns) const;

  /// The first of the patterns that stands for nothing.
  std::optional<std::string> unmatched(const std::vector<std::string>& patterns) const;

  /// What may have been meant by a pattern that stands for nothing, as a sentence ends with it; see
  /// offerOf(). " and no other" where there are no things.
  std::string offerFor(const std::string& pattern) const;

 private:
  std::vector<std::size_t> matching(const std::string& pattern) const;

  std::vector<std::string> m_names;
  std::vector<std::string> m_paths;
};

/// The names or patterns of a list such as "A,B*": without the blanks around each, and cut at
/// commas that no backslash takes as they are, which is left in its place. An empty list is one
/// empty name.
[[nodiscard]] std::vector<std::string> splitPatterns(std::string_view list);

}  // namespace quillon::memory
