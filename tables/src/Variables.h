#pragma once

#include <object_model/Dictionary.h>
#include <quillon/memory/Axes.h>
#include <quillon/tables/Request.h>

#include <set>
#include <string>
#include <vector>

namespace quillon::tables {

/// An array that may become columns.
struct Variable {
  const object_model::Array* array;
  std::string name;
  std::vector<memory::AxisFacts> axes;
  bool isNamed;  ///< whether the request's variables name it
};

/// What of a dictionary a request is about.
struct Variables {
  std::vector<Variable> fit;
  std::vector<Unreadable> left;  ///< with the reason
};

/// The names that a request's patterns stand for.
class ChosenNames {
 public:
  /// @throws Error for a pattern that stands for nothing; it offers the nearest names.
  ChosenNames(const object_model::Dictionary& dictionary, const Request& request);

  bool contains(const std::string& name) const;
  /// Whether the request's variables name it.
  bool isNamed(const std::string& name) const { return m_named.count(name) != 0; }

 private:
  bool m_areAll;
  std::set<std::string> m_named;
  std::set<std::string> m_excluded;
};

/// The request's variables of the dictionary, in its order.
/// @throws Error for a pattern that matches nothing and where none is left.
Variables chosenVariables(const object_model::Dictionary& dictionary, const Request& request);

/// @throws Error that names two arrays in which an axis has different sizes.
void requireOneSize(const std::vector<Variable>& variables);

/// @throws Error that says why, unless there are variables.
void requireSome(const Variables& variables, const object_model::Dictionary& dictionary,
                 const std::string& source);

}  // namespace quillon::tables
