/// @file
/// Shell patterns of names and paths.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillon::memory {

/// What `*`, `?` and brackets of a pattern make of a `/`.
enum class Slash {
  Stops,   ///< they match any character but `/`: for names
  Passes,  ///< they match it like any other: for paths
};

/// A shell pattern: `*` stands for any run of characters, `?` for one, `[a-z]` for one of these and
/// `[!a-z]` or `[^a-z]` for one that is none of these; a backslash takes the next character as it
/// is. A `[` that nothing closes is an ordinary character, as is a backslash at the end. A
/// character is one of UTF-8; a byte that is no UTF-8 is one by itself.
///
/// Ownership: a value. Threads: const operations may run concurrently. Matching takes at most the
/// product of both lengths.
class Pattern {
 public:
  /// The pattern `text`; every text is one. `slash` tells what its wildcards make of a `/`.
  explicit Pattern(std::string text, Slash slash = Slash::Stops);

  /// The pattern as it was given.
  const std::string& text() const { return m_text; }

  /// Whether any character of it has a meaning of its own, so that it can match other texts than
  /// one.
  bool hasWildcards() const;

  /// Whether `name` is the pattern's very text, or matches the pattern.
  bool matches(std::string_view name) const;

  /// The positions of the names that the pattern stands for: those that are its very text where
  /// there are any, else all that match.
  std::vector<std::size_t> find(const std::vector<std::string>& names) const;

 private:
  std::string m_text;
  Slash m_slash;
};

}  // namespace quillon::memory
