#include <object_model/Array.h>
#include <quillon/memory/Bounded.h>
#include <quillon/memory/Paths.h>
#include <quillon/memory/Wording.h>
#include <quillon/tables/ContractPlan.h>
#include <quillon/tables/Error.h>

#include <algorithm>
#include <iterator>

#include "Candidates.h"
#include "FewColumns.h"
#include "PlannedAxes.h"
#include "Variables.h"

namespace quillon::tables {

using memory::axesOf;
using memory::groupsBelow;
using memory::inQuotes;
using memory::listed;

namespace {

void addOnce(Names& names, const std::string& name) {
  if (!contains(names, name)) {
    names.push_back(name);
  }
}

class ContractPlanner {
 public:
  ContractPlanner(const object_model::Dictionary& group, const std::vector<Unreadable>& skipped,
                  const ContractRequest& request)
      : m_group(group), m_request(request) {
    collect(skipped);
    requireVariables();
  }

  ContractPlan plan() {
    m_plan.index = m_request.index ? givenIndex() : defaultIndex();
    leaveOut([this](const Candidate& candidate) { return misfit(candidate, m_plan.index); });
    requireIndexIsLeft();
    for (const std::string& axis : m_plan.index) {
      m_plan.sizes.push_back(commonSize(axis, m_candidates));
      m_plan.rows = memory::boundedProduct(m_plan.rows, m_plan.sizes.back());
    }
    m_plan.columns = m_plan.index.size();
    for (const Candidate& candidate : m_candidates) {
      addColumns(candidate);
    }
    if (!m_request.allColumns) {
      requireFew(m_plan.columns, m_widest, m_ofWidest);
    }
    for (const Unreadable& entry : m_passedOver) {
      m_plan.notes.push_back(inQuotes(entry.name) + " is not in the table: " + entry.reason);
    }
    return std::move(m_plan);
  }

 private:
  void collect(const std::vector<Unreadable>& skipped) {
    Request request;
    request.source = m_request.source;
    request.variables = m_request.variables;
    request.exclude = m_request.exclude;
    request.unreadable = skipped;
    const ChosenNames chosen(m_group, request);
    for (int i = 0; static_cast<unsigned long>(i) < m_group.getNumOfData(); ++i) {
      const std::string name = m_group.getDataName(i);
      const object_model::Array* array = m_group.data(name)->asArray();
      if (array != nullptr && chosen.contains(name)) {
        m_candidates.push_back({array, name, axesOf(*array)});
      }
    }
    std::copy_if(skipped.begin(), skipped.end(), std::back_inserter(m_passedOver),
                 [&chosen](const Unreadable& entry) { return chosen.contains(entry.name); });
    leaveOut([](const Candidate& candidate) { return misfit(*candidate.array); });
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
      throw Error(m_request.source + " has no variables of its own" +
                  (groups.empty() ? "" : "; below it are the groups " + listed(groups)));
    }
    std::string reasons;
    for (const Unreadable& entry : m_passedOver) {
      reasons += (reasons.empty() ? "" : ", ") + inQuotes(entry.name) + " (" + entry.reason + ")";
    }
    throw Error(m_request.source + " has no variables that the table could hold: " + reasons);
  }

  Names defaultIndex() const {
    std::vector<Variable> variables;
    for (const Candidate& candidate : m_candidates) {
      variables.push_back({candidate.array, candidate.name, candidate.axes, false});
    }
    return PlannedAxes(m_group, variables, {}).defaultIndex(variables);
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
        throw Error("No variable for the table has an axis " + inQuotes(name) + "; the axes are " +
                    listed(existing));
      }
      if (contains(index, name)) {
        throw Error("--index names the axis " + inQuotes(name) + " twice");
      }
      index.push_back(name);
    }
    if (index.size() > MOST_AXES) {
      throw Error("--index takes at most 3 axes, not " + std::to_string(index.size()));
    }
    return index;
  }

  /// An axis that only left-out arrays have would make a table without rows.
  void requireIndexIsLeft() const {
    requireVariables();
    for (const std::string& name : m_plan.index) {
      const bool isLeft = std::any_of(
          m_candidates.begin(), m_candidates.end(),
          [&name](const Candidate& candidate) { return countOf(name, candidate.axes) > 0; });
      if (!isLeft) {
        throw Error("With this index no variable that has the axis " + inQuotes(name) +
                    " fits into the table");
      }
    }
  }

  void addColumns(const Candidate& candidate) {
    unsigned long values = 1;
    unsigned long columns = 1;
    for (const AxisFacts& axis : candidate.axes) {
      values = memory::boundedProduct(values, axis.size);
      columns =
          contains(m_plan.index, axis.name) ? columns : memory::boundedProduct(columns, axis.size);
    }
    if (candidate.axes.size() == 1 && columns > 1) {
      // The export never spreads a one-dimensional array.
      m_plan.notes.push_back(inQuotes(candidate.name) + " shows only its first of " +
                             std::to_string(columns) + " values, as its axis " +
                             inQuotes(candidate.axes[0].name) + " is not in the index");
      columns = 1;
      noteUnseen(candidate.axes[0].name);
    }
    m_plan.variables.push_back(candidate.name);
    m_plan.values = memory::boundedSum(m_plan.values, values);
    m_plan.columns = memory::boundedSum(m_plan.columns, columns);
    if (columns > m_ofWidest) {
      m_widest = candidate.name;
      m_ofWidest = columns;
    }
  }

  /// Other arrays may have the axis as well, and all of its coordinates in their columns.
  void noteUnseen(const std::string& axisName) {
    const bool isSpread = std::any_of(
        m_candidates.begin(), m_candidates.end(), [&axisName](const Candidate& candidate) {
          return candidate.axes.size() > 1 && countOf(axisName, candidate.axes) > 0;
        });
    if (!isSpread) {
      addOnce(m_plan.unseen, axisName);
    }
  }

  const object_model::Dictionary& m_group;
  const ContractRequest& m_request;
  Candidates m_candidates;
  std::vector<Unreadable> m_passedOver;
  std::string m_widest;
  unsigned long m_ofWidest = 0;
  ContractPlan m_plan;
};

}  // namespace

ContractPlan contractPlan(const object_model::Dictionary& group,
                          const std::vector<Unreadable>& skipped, const ContractRequest& request) {
  return ContractPlanner(group, skipped, request).plan();
}

std::map<std::string, unsigned long> extentsOf(const ContractPlan& plan, unsigned long maxRows) {
  std::map<std::string, unsigned long> extents;
  for (const std::string& axis : plan.unseen) {
    extents[axis] = 1;
  }
  if (maxRows == 0 || plan.rows <= maxRows) {
    return extents;
  }
  // The first axis varies fastest: once the axes before it reach far enough, the first coordinate
  // does. None is of size 0, as there are rows.
  unsigned long slices = maxRows + 1;
  for (std::size_t k = 0; k < plan.index.size(); ++k) {
    extents[plan.index[k]] = std::min(slices, plan.sizes[k]);
    slices = (slices - 1) / plan.sizes[k] + 1;
  }
  return extents;
}

unsigned long cellsOf(const ContractPlan& plan,
                      const std::map<std::string, unsigned long>& extents) {
  unsigned long cells = plan.columns;
  for (std::size_t k = 0; k < plan.index.size(); ++k) {
    const auto extent = extents.find(plan.index[k]);
    cells *= extent == extents.end() ? plan.sizes[k] : extent->second;
  }
  return cells;
}

double bytesNeeded(const ContractPlan& plan, unsigned long maxRows) {
  const auto rows = static_cast<double>(plan.rows);
  const auto columns = static_cast<double>(plan.columns);
  const double shown = maxRows == 0 ? rows : std::min(rows, static_cast<double>(maxRows));
  // Cells and values of 8 bytes, names and positions of columns, and the printed text.
  return 8.0 * (rows * columns + static_cast<double>(plan.values)) + 300.0 * columns +
         50.0 * shown * columns;
}

}  // namespace quillon::tables
