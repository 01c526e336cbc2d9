/// @file
/// Choosing which arrays of two dictionaries are compared.
#pragma once

#include <object_model/Dictionary.h>

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace quillon::compare {

/// Which arrays below two dictionaries to compare, by patterns as in `memory::NameChoice`: of
/// names, wherever these stand, or of paths.
struct Choice {
  /// All arrays unless given.
  std::optional<std::vector<std::string>> variables;
  /// What is left out of these.
  std::vector<std::string> exclude;
  /// What else could be asked for: paths below the dictionaries, such as "li/outline", of what is
  /// in their files but not in them.
  std::vector<std::string> unreadable;
  /// The path of both dictionaries.
  std::string root = "/";
  /// Both dictionaries, as a sentence on a name that is not there starts with them.
  std::string sides = "Neither side";
};

/// What a choice means for two dictionaries.
struct Chosen {
  std::vector<std::string> first;  ///< paths below the first one, as `memory::Selection` takes them
  std::vector<std::string> second;  ///< the same for the second one
  std::set<std::string> paths;      ///< of all chosen arrays, and of what is unreadable
};

/// Finds the arrays that are chosen, however deep they stand. A dictionary that both have is in
/// both parts if anything of it is in one of them; without Choice::variables all are.
/// @param first, second borrowed for the call.
/// @param choice what is asked for.
/// @throws std::invalid_argument for a pattern that stands for nothing; it offers the nearest
/// names.
///   What the dictionaries throw passes through.
[[nodiscard]] Chosen choose(const object_model::Dictionary& first,
                            const object_model::Dictionary& second, const Choice& choice);

}  // namespace quillon::compare
