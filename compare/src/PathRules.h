#pragma once

#include <object_model/Data.h>
#include <quillon/compare/Options.h>
#include <quillon/memory/Pattern.h>

#include <string>
#include <string_view>
#include <vector>

namespace quillon::compare {

/// @throws std::invalid_argument for one that is negative or NaN.
void requireSound(const Tolerance& tolerance);

/// A pattern of paths. Where it is the very path of an entry it stands for that one alone.
class PathPattern {
 public:
  /// @param root the path of both objects.
  PathPattern(const std::string& text, const std::string& root, const object_model::Data& first,
              const object_model::Data& second);

  bool matches(std::string_view path) const;

 private:
  memory::Pattern m_pattern;
  bool m_isExact = false;
};

/// What the options say about single paths.
class PathRules {
 public:
  /// Borrows the options.
  /// @throws std::invalid_argument for tolerances that are negative or NaN.
  PathRules(const Options& options, const object_model::Data& first,
            const object_model::Data& second);

  const Tolerance& toleranceFor(const std::string& path) const;

  /// Whether the entry is left out.
  bool isIgnored(const std::string& path) const;

  /// Whether the attribute `name` of the entry at `path` is left out.
  bool isIgnored(const std::string& path, const std::string& name) const;

 private:
  const Options& m_options;
  std::vector<PathPattern> m_tolerances;  // as those of the options
  std::vector<PathPattern> m_ignored;
  std::vector<memory::Pattern> m_ignoredAttributes;
};

}  // namespace quillon::compare
