#include <quillon/compare/Choice.h>
#include <quillon/memory/Entries.h>
#include <quillon/memory/NameChoice.h>
#include <quillon/memory/Paths.h>
#include <quillon/memory/Wording.h>

#include <stdexcept>
#include <utility>

namespace quillon::compare {
namespace {

using object_model::Dictionary;

/// Paths below a dictionary.
struct Entries {
  std::vector<std::string> arrays;
  std::set<std::string> known;  ///< the arrays once more
  std::set<std::string> groups;
};

/// All entries, with a stack of its own as dictionaries may nest to any depth.
Entries entriesOf(const Dictionary& dictionary) {
  Entries result;
  std::vector<std::pair<std::string, const Dictionary*>> open = {{"", &dictionary}};
  while (!open.empty()) {
    const auto [start, group] = open.back();
    open.pop_back();
    for (const auto& [name, entry] : memory::entriesOf(*group)) {
      const std::string path = start + name;
      if (entry != nullptr && entry->asDictionary() != nullptr) {
        result.groups.insert(path);
        open.emplace_back(path + "/", entry->asDictionary());
      } else if (result.known.insert(path).second) {
        result.arrays.push_back(path);
      }
    }
  }
  return result;
}

/// What may be chosen: the arrays of both sides and what is unreadable. What is on both is there
/// twice.
std::vector<std::string> candidatesOf(const Entries& first, const Entries& second,
                                      const Choice& choice) {
  std::vector<std::string> result = first.arrays;
  for (const auto* more : {&second.arrays, &choice.unreadable}) {
    result.insert(result.end(), more->begin(), more->end());
  }
  return result;
}

memory::NameChoice namesOf(const std::vector<std::string>& paths, const std::string& root) {
  const std::string start = root == "/" ? root : root + "/";
  memory::NameChoice names;
  for (const std::string& path : paths) {
    names.add(std::string(memory::lastNameOf(path)), start + path);
  }
  return names;
}

std::set<std::size_t> find(const memory::NameChoice& names,
                           const std::vector<std::string>& patterns, bool areThere,
                           const Choice& choice) {
  if (const std::optional<std::string> unmatched = names.unmatched(patterns)) {
    throw std::invalid_argument(choice.sides + " has a variable " + memory::inQuotes(*unmatched) +
                                (areThere ? names.offerFor(*unmatched) : "; there are none"));
  }
  return names.find(patterns);
}

/// The path on one side: of the array, or of the dictionary nearest to where it would be.
std::string partOf(const std::string& path, const Entries& side) {
  if (side.known.count(path) != 0) {
    return path;
  }
  for (std::size_t slash = path.rfind('/'); slash != std::string::npos;
       slash = slash == 0 ? std::string::npos : path.rfind('/', slash - 1)) {
    if (side.groups.count(path.substr(0, slash)) != 0) {
      return path.substr(0, slash + 1);
    }
  }
  return {};
}

std::vector<std::string> partsOf(const std::set<std::string>& paths, const Entries& side,
                                 bool withAllGroups) {
  std::vector<std::string> parts;
  for (const std::string& path : paths) {
    if (std::string part = partOf(path, side); !part.empty()) {
      parts.push_back(std::move(part));
    }
  }
  if (withAllGroups) {
    for (const std::string& group : side.groups) {
      parts.push_back(group + "/");
    }
  }
  return parts;
}

}  // namespace

Chosen choose(const Dictionary& first, const Dictionary& second, const Choice& choice) {
  const Entries left = entriesOf(first);
  const Entries right = entriesOf(second);
  const std::vector<std::string> paths = candidatesOf(left, right, choice);
  const memory::NameChoice names = namesOf(paths, choice.root);
  const std::set<std::size_t> excluded = find(names, choice.exclude, !paths.empty(), choice);
  const std::set<std::size_t> named =
      find(names, choice.variables.value_or(std::vector<std::string>()), !paths.empty(), choice);
  Chosen chosen;
  for (std::size_t k = 0; k < paths.size(); ++k) {
    if ((!choice.variables || named.count(k) != 0) && excluded.count(k) == 0) {
      chosen.paths.insert(paths[k]);
    }
  }
  chosen.first = partsOf(chosen.paths, left, !choice.variables);
  chosen.second = partsOf(chosen.paths, right, !choice.variables);
  return chosen;
}

}  // namespace quillon::compare
