#include "TablePlan.h"

#include <object_model/Array.h>
#include <object_model/Tuple.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <limits>

#include "Axes.h"
#include "Failure.h"
#include "Wording.h"

namespace quillon::tools {

namespace {

using object_model::ElementType;
using Names = std::vector<std::string>;

constexpr unsigned long MOST = std::numeric_limits<unsigned long>::max();
// The export fills grids of at most three axes.
constexpr std::size_t MOST_AXES = 3;

/// An array that may become columns.
struct Candidate {
  const object_model::Array* array;
  std::string name;
  std::vector<AxisFacts> axes;
};

using Candidates = std::vector<Candidate>;

bool contains(const Names& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

void addOnce(Names& names, const std::string& name) {
  if (!contains(names, name)) {
    names.push_back(name);
  }
}

/// Whole numbers that stop at the largest instead of starting again from 0.
unsigned long times(unsigned long first, unsigned long second) {
  unsigned long product = 0;
  return __builtin_mul_overflow(first, second, &product) ? MOST : product;
}

unsigned long plus(unsigned long first, unsigned long second) {
  unsigned long sum = 0;
  return __builtin_add_overflow(first, second, &sum) ? MOST : sum;
}

/// Why no table can hold the array, whatever its index; empty when one can.
std::string misfit(const object_model::Array& array) {
  switch (array.getElementType()) {
    case ElementType::UInt:
    case ElementType::Int:
    case ElementType::Double:
      break;
    case ElementType::String:
      return "it holds text";
    default:
      return "it holds no numbers";
  }
  const unsigned long dimensions = array.size().size();
  if (dimensions == 0) {
    return "it has no dimensions";
  }
  return dimensions > MOST_AXES
             ? "it has " + std::to_string(dimensions) + " dimensions, more than 3"
             : "";
}

/// Why no table with this index can hold the array; empty when one can.
std::string misfit(const Candidate& candidate, const Names& index) {
  std::size_t axes = index.size();
  for (const AxisFacts& axis : candidate.axes) {
    const bool isIndex = contains(index, axis.name);
    if (isIndex && countOf(axis.name, candidate.axes) > 1) {
      return "its axis " + inQuotes(axis.name) + " occurs twice and is in the index";
    }
    if (!isIndex && axis.size == 0) {
      return "it has no values along its axis " + inQuotes(axis.name);
    }
    axes += isIndex ? 0 : 1;
  }
  return axes > MOST_AXES
             ? "its further axes and the index are " + std::to_string(axes) + " axes, more than 3"
             : "";
}

/// Leaves out what is not `good`, unless nothing is.
template <class Predicate>
void prefer(Candidates& candidates, Predicate good) {
  if (std::any_of(candidates.begin(), candidates.end(), good)) {
    candidates.erase(std::remove_if(candidates.begin(), candidates.end(), std::not_fn(good)),
                     candidates.end());
  }
}

class Planner {
 public:
  Planner(const object_model::Dictionary& group, const std::vector<PassedOver>& skipped,
          const TableRequest& request)
      : m_group(group), m_request(request) {
    collect(skipped);
    requireVariables();
  }

  TablePlan plan() {
    m_plan.index = m_request.index ? givenIndex() : commonAxes();
    leaveOut([this](const Candidate& candidate) { return misfit(candidate, m_plan.index); });
    requireIndexIsLeft();
    for (const std::string& axis : m_plan.index) {
      m_plan.rows = times(m_plan.rows, commonSize(axis));
    }
    m_plan.columns = m_plan.index.size();
    for (const Candidate& candidate : m_candidates) {
      addColumns(candidate);
    }
    for (const PassedOver& entry : m_passedOver) {
      m_plan.notes.push_back(inQuotes(entry.name) + " is not in the table: " + entry.reason);
    }
    return std::move(m_plan);
  }

 private:
  bool isChosen(const std::string& name) const {
    return !m_request.variables || contains(*m_request.variables, name);
  }

  void collect(const std::vector<PassedOver>& skipped) {
    for (int i = 0; static_cast<unsigned long>(i) < m_group.getNumOfData(); ++i) {
      const std::string name = m_group.getDataName(i);
      const object_model::Array* array = m_group.data(name)->asArray();
      if (array != nullptr) {
        m_existing.push_back(name);
      }
      if (array != nullptr && isChosen(name)) {
        m_candidates.push_back({array, name, axesOf(*array)});
      }
    }
    for (const PassedOver& entry : skipped) {
      m_existing.push_back(entry.name);
      if (isChosen(entry.name)) {
        m_passedOver.push_back(entry);
      }
    }
    requireExisting();
    leaveOut([](const Candidate& candidate) { return misfit(*candidate.array); });
  }

  void requireExisting() const {
    if (!m_request.variables) {
      return;
    }
    for (const std::string& name : *m_request.variables) {
      if (!contains(m_existing, name)) {
        throw Failure(m_request.source + " has no variable " + inQuotes(name) +
                      (m_existing.empty() ? " and no other" : "; it has " + listed(m_existing)));
      }
    }
  }

  template <class Misfit>
  void leaveOut(Misfit misfitOf) {
    Candidates left;
    for (Candidate& candidate : m_candidates) {
      const std::string reason = misfitOf(candidate);
      if (reason.empty()) {
        left.push_back(std::move(candidate));
      } else {
        m_passedOver.push_back({candidate.name, reason});
      }
    }
    m_candidates = std::move(left);
  }

  void requireVariables() const {
    if (!m_candidates.empty()) {
      return;
    }
    if (m_passedOver.empty()) {
      const Names groups = groupsBelow(m_group);
      throw Failure(m_request.source + " has no variables of its own" +
                    (groups.empty() ? "" : "; below it are the groups " + listed(groups)));
    }
    std::string reasons;
    for (const PassedOver& entry : m_passedOver) {
      reasons += (reasons.empty() ? "" : ", ") + inQuotes(entry.name) + " (" + entry.reason + ")";
    }
    throw Failure(m_request.source + " has no variables that the table could hold: " + reasons);
  }

  Names givenIndex() const {
    Names existing;
    for (const Candidate& candidate : m_candidates) {
      for (const AxisFacts& axis : candidate.axes) {
        addOnce(existing, axis.name);
      }
    }
    Names index;
    for (const std::string& name : *m_request.index) {
      if (!contains(existing, name)) {
        throw Failure("No variable for the table has an axis " + inQuotes(name) +
                      "; the axes are " + listed(existing));
      }
      if (contains(index, name)) {
        throw Failure("--index names the axis " + inQuotes(name) + " twice");
      }
      index.push_back(name);
    }
    if (index.size() > MOST_AXES) {
      throw Failure("--index takes at most 3 axes, not " + std::to_string(index.size()));
    }
    return index;
  }

  /// The axes that all arrays share. Empty arrays and coordinates have no say unless there is
  /// nothing else; arrays that have an axis twice have none, as an index could not serve them.
  Names commonAxes() const {
    Candidates deciding;
    std::copy_if(m_candidates.begin(), m_candidates.end(), std::back_inserter(deciding),
                 [](const Candidate& candidate) { return repeatedAxis(candidate.axes).empty(); });
    prefer(deciding, [](const Candidate& candidate) {
      return std::all_of(candidate.axes.begin(), candidate.axes.end(),
                         [](const AxisFacts& axis) { return axis.size != 0; });
    });
    prefer(deciding, [](const Candidate& candidate) { return !isCoordinate(*candidate.array); });
    Names common;
    if (!deciding.empty()) {
      for (const AxisFacts& axis : deciding.front().axes) {
        if (std::all_of(deciding.begin(), deciding.end(), [&axis](const Candidate& candidate) {
              return countOf(axis.name, candidate.axes) > 0;
            })) {
          common.push_back(axis.name);
        }
      }
    }
    return common;
  }

  /// An axis that only left-out arrays have would make a table without rows.
  void requireIndexIsLeft() const {
    requireVariables();
    for (const std::string& name : m_plan.index) {
      const bool isLeft = std::any_of(
          m_candidates.begin(), m_candidates.end(),
          [&name](const Candidate& candidate) { return countOf(name, candidate.axes) > 0; });
      if (!isLeft) {
        throw Failure("With this index no variable that has the axis " + inQuotes(name) +
                      " fits into the table");
      }
    }
  }

  unsigned long commonSize(const std::string& axisName) const {
    const Candidate* first = nullptr;
    unsigned long size = 0;
    for (const Candidate& candidate : m_candidates) {
      for (const AxisFacts& axis : candidate.axes) {
        if (axis.name != axisName) {
          continue;
        }
        if (first != nullptr && axis.size != size) {
          throw Failure("The axis " + inQuotes(axisName) + " has different sizes: " +
                        std::to_string(size) + " in " + inQuotes(first->name) + ", " +
                        std::to_string(axis.size) + " in " + inQuotes(candidate.name));
        }
        first = &candidate;
        size = axis.size;
      }
    }
    return size;
  }

  void addColumns(const Candidate& candidate) {
    unsigned long values = 1;
    unsigned long columns = 1;
    for (const AxisFacts& axis : candidate.axes) {
      values = times(values, axis.size);
      columns = contains(m_plan.index, axis.name) ? columns : times(columns, axis.size);
    }
    if (candidate.axes.size() == 1 && columns > 1) {
      // The export never spreads a one-dimensional array.
      m_plan.notes.push_back(inQuotes(candidate.name) + " shows only its first of " +
                             std::to_string(columns) + " values, as its axis " +
                             inQuotes(candidate.axes[0].name) + " is not in the index");
      columns = 1;
    }
    m_plan.variables.push_back(candidate.name);
    m_plan.values = plus(m_plan.values, values);
    m_plan.columns = plus(m_plan.columns, columns);
  }

  const object_model::Dictionary& m_group;
  const TableRequest& m_request;
  Names m_existing;
  Candidates m_candidates;
  std::vector<PassedOver> m_passedOver;
  TablePlan m_plan;
};

}  // namespace

TablePlan planTable(const object_model::Dictionary& group, const std::vector<PassedOver>& skipped,
                    const TableRequest& request) {
  return Planner(group, skipped, request).plan();
}

}  // namespace quillon::tools
