#include "Variables.h"

#include <object_model/Array.h>
#include <quillon/memory/Nearest.h>
#include <quillon/memory/Paths.h>
#include <quillon/memory/Pattern.h>
#include <quillon/memory/Wording.h>
#include <quillon/tables/Error.h>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "Coordinates.h"

namespace quillon::tables {
namespace {

using memory::inQuotes;
using Names = std::vector<std::string>;

/// The names that stand in a dictionary and the paths of what they name.
class Existing {
 public:
  Existing(const object_model::Dictionary& dictionary, const Request& request)
      : m_request(request) {
    for (int i = 0; static_cast<unsigned long>(i) < dictionary.getNumOfData(); ++i) {
      if (dictionary.data(i)->isArray()) {
        add(dictionary, dictionary.getDataName(i));
      }
    }
    for (const Unreadable& entry : request.unreadable) {
      add(dictionary, entry.name);
    }
  }

  /// What the patterns stand for. @throws Error for one that stands for nothing.
  std::set<std::string> find(const Names& patterns) const {
    std::set<std::string> result;
    for (const std::string& pattern : patterns) {
      const bool isPath = pattern.find('/') != std::string::npos;
      const std::vector<std::size_t> found =
          isPath ? findPath(pattern) : memory::Pattern(pattern).find(m_names);
      if (found.empty()) {
        throw Error(
            m_request.source + " has no variable " + inQuotes(pattern) +
            (m_names.empty() ? " and no other" : offer(pattern, isPath ? m_paths : m_names)));
      }
      for (const std::size_t position : found) {
        result.insert(m_names[position]);
      }
    }
    return result;
  }

 private:
  void add(const object_model::Dictionary& dictionary, const std::string& name) {
    m_names.push_back(name);
    m_paths.push_back(memory::pathOf(dictionary, name));
  }

  std::vector<std::size_t> findPath(const std::string& pattern) const {
    const std::string whole = pattern[0] == '/' ? pattern : "/" + pattern;
    return memory::Pattern(whole, memory::Slash::Passes).find(m_paths);
  }

  const Request& m_request;
  Names m_names;
  Names m_paths;
};

}  // namespace

std::string offer(const std::string& name, const Names& names) {
  const Names nearest = memory::nearestNames(name, names);
  std::string text;
  for (std::size_t k = 0; k < nearest.size(); ++k) {
    const char* joint = k + 1 == nearest.size() ? " or " : ", ";
    text += (k == 0 ? "; did you mean " : joint) + inQuotes(nearest[k]);
  }
  return text.empty() ? text : text + "?";
}

Variables chosenVariables(const object_model::Dictionary& dictionary, const Request& request) {
  const Existing existing(dictionary, request);
  const std::set<std::string> named = existing.find(request.variables.value_or(Names()));
  const std::set<std::string> excluded = existing.find(request.exclude);
  const auto isChosen = [&](const std::string& name) {
    return (!request.variables || named.count(name) != 0) && excluded.count(name) == 0;
  };
  Variables variables;
  for (int i = 0; static_cast<unsigned long>(i) < dictionary.getNumOfData(); ++i) {
    const std::string name = dictionary.getDataName(i);
    const object_model::Array* array = dictionary.data(i)->asArray();
    if (array == nullptr || !isChosen(name)) {
      continue;
    }
    const std::string misfit = misfitOf(*array);
    if (misfit.empty()) {
      variables.fit.push_back({array, name, memory::axesOf(*array), named.count(name) != 0});
    } else {
      variables.left.push_back({name, misfit});
    }
  }
  std::copy_if(request.unreadable.begin(), request.unreadable.end(),
               std::back_inserter(variables.left),
               [&](const Unreadable& entry) { return isChosen(entry.name); });
  requireSome(variables, dictionary, request.source);
  requireOneSize(variables.fit);
  return variables;
}

void requireOneSize(const std::vector<Variable>& variables) {
  std::map<std::string, std::pair<const Variable*, unsigned long>> sizes;
  for (const Variable& variable : variables) {
    for (const memory::AxisFacts& axis : variable.axes) {
      const auto [known, isNew] = sizes.emplace(axis.name, std::pair(&variable, axis.size));
      if (known->second.second != axis.size) {
        throw Error("The axis " + inQuotes(axis.name) +
                    " has different sizes: " + std::to_string(known->second.second) + " in " +
                    inQuotes(known->second.first->name) + ", " + std::to_string(axis.size) +
                    " in " + inQuotes(variable.name));
      }
    }
  }
}

void requireSome(const Variables& variables, const object_model::Dictionary& dictionary,
                 const std::string& source) {
  if (!variables.fit.empty()) {
    return;
  }
  if (variables.left.empty()) {
    const Names groups = memory::groupsBelow(dictionary);
    throw Error(source + " has no variables of its own" +
                (groups.empty() ? "" : "; below it are the groups " + memory::listed(groups)));
  }
  std::string reasons;
  for (const Unreadable& entry : variables.left) {
    reasons += (reasons.empty() ? "" : ", ") + inQuotes(entry.name) + " (" + entry.reason + ")";
  }
  throw Error(source + " has no variables that the table could hold: " + reasons);
}

}  // namespace quillon::tables
