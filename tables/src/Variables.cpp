#include "Variables.h"

#include <object_model/Array.h>
#include <quillon/memory/NameChoice.h>
#include <quillon/memory/Paths.h>
#include <quillon/memory/Wording.h>
#include <quillon/tables/Error.h>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "Coordinates.h"
#include "Names.h"

namespace quillon::tables {
namespace {

using memory::inQuotes;

/// The variables of a dictionary that can be asked for.
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
    if (const std::optional<std::string> unmatched = m_choice.unmatched(patterns)) {
      throw Error(m_request.source + " has no variable " + inQuotes(*unmatched) +
                  m_choice.offerFor(*unmatched));
    }
    std::set<std::string> result;
    for (const std::size_t position : m_choice.find(patterns)) {
      result.insert(m_names[position]);
    }
    return result;
  }

 private:
  void add(const object_model::Dictionary& dictionary, const std::string& name) {
    m_names.push_back(name);
    m_choice.add(name, memory::pathOf(dictionary, name));
  }

  const Request& m_request;
  Names m_names;
  memory::NameChoice m_choice;
};

}  // namespace

ChosenNames::ChosenNames(const object_model::Dictionary& dictionary, const Request& request)
    : m_areAll(!request.variables) {
  const Existing existing(dictionary, request);
  m_named = existing.find(request.variables.value_or(Names()));
  m_excluded = existing.find(request.exclude);
}

bool ChosenNames::contains(const std::string& name) const {
  return (m_areAll || isNamed(name)) && m_excluded.count(name) == 0;
}

Variables chosenVariables(const object_model::Dictionary& dictionary, const Request& request) {
  const ChosenNames chosen(dictionary, request);
  Variables variables;
  for (int i = 0; static_cast<unsigned long>(i) < dictionary.getNumOfData(); ++i) {
    const std::string name = dictionary.getDataName(i);
    const object_model::Array* array = dictionary.data(i)->asArray();
    if (array == nullptr || !chosen.contains(name)) {
      continue;
    }
    const std::string misfit = misfitOf(*array);
    if (misfit.empty()) {
      variables.fit.push_back({array, name, memory::axesOf(*array), chosen.isNamed(name)});
    } else {
      variables.left.push_back({name, misfit});
    }
  }
  std::copy_if(request.unreadable.begin(), request.unreadable.end(),
               std::back_inserter(variables.left),
               [&](const Unreadable& entry) { return chosen.contains(entry.name); });
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
