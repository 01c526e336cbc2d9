#include <quillon/memory/Bounded.h>
#include <quillon/memory/Wording.h>
#include <quillon/tables/Error.h>
#include <quillon/tables/Plan.h>

#include <algorithm>
#include <set>
#include <utility>

#include "FewColumns.h"
#include "Names.h"
#include "PlannedAxes.h"
#include "Variables.h"

namespace quillon::tables {
namespace {

using memory::inQuotes;

class Planner {
 public:
  Planner(const object_model::Dictionary& dictionary, const Request& request)
      : m_dictionary(dictionary),
        m_request(request),
        m_variables(chosenVariables(dictionary, request)),
        m_axes(dictionary, m_variables.fit, request.selections) {}

  Plan result() {
    m_index =
        m_request.index ? m_axes.checked(*m_request.index) : m_axes.defaultIndex(m_variables.fit);
    for (const std::string& name : m_index) {
      m_plan.axes.push_back({name, m_axes.of(name).chosen.count});
      m_plan.rows = memory::boundedProduct(m_plan.rows, m_plan.axes.back().size);
    }
    requireRows();
    choose();
    requireFewColumns();
    for (const std::string& name : m_axes.singles()) {
      addAxis(name, NO_AXIS);
    }
    for (std::size_t k = 0; k < m_index.size(); ++k) {
      addAxis(m_index[k], k);
    }
    for (const Variable* variable : m_columns) {
      addColumns(*variable);
    }
    for (const Unreadable& entry : m_variables.left) {
      m_plan.notes.push_back(inQuotes(entry.name) + " is not in the table: " + entry.reason);
    }
    return std::move(m_plan);
  }

 private:
  std::size_t indexOf(const std::string& name) const {
    const auto found = std::find(m_index.begin(), m_index.end(), name);
    return found == m_index.end() ? NO_AXIS : static_cast<std::size_t>(found - m_index.begin());
  }

  bool isSpread(const std::string& name) const {
    return indexOf(name) == NO_AXIS && !m_axes.of(name).chosen.isSingle;
  }

  void requireRows() const {
    if (m_plan.rows == memory::LARGEST_SIZE) {
      throw Error("The table would have more rows than can be counted; choose another index");
    }
  }

  /// Whether the variable's values are those of the column of its axis.
  bool isAxisColumn(const Variable& variable) const {
    return isCoordinate(variable) && !isSpread(variable.name);
  }

  bool isCoordinate(const Variable& variable) const {
    return !m_request.positions && memory::isCoordinate(*variable.array);
  }

  /// Whether the variable's values are in the names of other variables' columns.
  bool isInNames(const Variable& variable) const {
    return isCoordinate(variable) && !variable.isNamed &&
           std::any_of(m_columns.begin(), m_columns.end(), [&](const Variable* column) {
             return memory::countOf(variable.name, column->axes) > 0;
           });
  }

  void choose() {
    std::vector<const Variable*> misfits;
    for (const Variable& variable : m_variables.fit) {
      if (!isAxisColumn(variable)) {
        (misfitOf(variable).empty() ? m_columns : misfits).push_back(&variable);
      }
    }
    for (const Variable* variable : misfits) {
      if (!isInNames(*variable)) {
        m_variables.left.push_back({variable->name, misfitOf(*variable)});
      }
    }
    if (m_columns.empty() && m_index.empty() && m_axes.singles().empty()) {
      requireSome({{}, m_variables.left}, m_dictionary, m_request.source);
    }
  }

  std::string misfitOf(const Variable& variable) const {
    const Names left = m_axes.leftOf(variable);
    bool hasIndex = false;
    for (const std::string& name : left) {
      const bool isIndex = indexOf(name) != NO_AXIS;
      if (isIndex && std::count(left.begin(), left.end(), name) > 1) {
        return "its axis " + inQuotes(name) + " occurs twice and is in the index";
      }
      if (!isIndex && m_axes.of(name).chosen.count == 0) {
        return "it has no values along its axis " + inQuotes(name);
      }
      hasIndex = hasIndex || isIndex;
    }
    const bool isSingle = left.empty() || m_index.empty();
    return isSingle || hasIndex || variable.isNamed
               ? ""
               : "it has none of the index's dimensions " + memory::listed(m_index);
  }

  unsigned long columnsOf(const Variable& variable) const {
    unsigned long columns = 1;
    for (const memory::AxisFacts& axis : variable.axes) {
      columns = isSpread(axis.name)
                    ? memory::boundedProduct(columns, m_axes.of(axis.name).chosen.count)
                    : columns;
    }
    return columns;
  }

  void requireFewColumns() const {
    unsigned long columns = m_index.size() + m_axes.singles().size();
    const Variable* widest = nullptr;
    for (const Variable* variable : m_columns) {
      columns = memory::boundedSum(columns, columnsOf(*variable));
      widest = widest == nullptr || columnsOf(*variable) > columnsOf(*widest) ? variable : widest;
    }
    if (!m_request.allColumns) {
      requireFew(columns, widest == nullptr ? "" : widest->name,
                 widest == nullptr ? 0 : columnsOf(*widest));
    }
  }

  bool isTaken(const std::string& name) const {
    return std::any_of(m_columns.begin(), m_columns.end(),
                       [&name](const Variable* variable) { return variable->name == name; });
  }

  /// The column of the coordinates or positions along an axis.
  void addAxis(const std::string& name, std::size_t index) {
    const PlannedAxis& axis = m_axes.of(name);
    PlannedColumn column;
    column.isIndex = index != NO_AXIS;
    column.dimensions = {{axis.chosen.first, axis.chosen.step, index}};
    const bool hasCoordinates = axis.coordinates && !m_request.positions;
    if (hasCoordinates) {
      column.source = axis.coordinates;
    }
    const char* addition = hasCoordinates ? " (coordinate)" : " (position)";
    column.name = isTaken(name) ? name + addition : name;
    add(std::move(column));
  }

  void addColumns(const Variable& variable) {
    std::vector<std::size_t> spread;  // dimensions, the first of which varies fastest
    PlannedColumn column;
    column.source = ArraySource{variable.name, 0, {}};
    for (std::size_t k = 0; k < variable.axes.size(); ++k) {
      const ChosenIndices& chosen = m_axes.of(variable.axes[k].name).chosen;
      column.dimensions.push_back({chosen.first, chosen.step, indexOf(variable.axes[k].name)});
      if (isSpread(variable.axes[k].name)) {
        spread.push_back(k);
      }
    }
    std::vector<Names> labels;
    labels.reserve(spread.size());
    for (const std::size_t k : spread) {
      labels.push_back(m_axes.labelsOf(variable.axes[k].name, m_request.positions));
    }
    std::vector<unsigned long> at(spread.size(), 0);
    for (unsigned long rest = columnsOf(variable); rest > 0; --rest) {
      addColumn(variable, column, spread, labels, at);
      for (std::size_t i = 0; i < at.size() && ++at[i] == labels[i].size(); ++i) {
        at[i] = 0;
      }
    }
  }

  void addColumn(const Variable& variable, PlannedColumn column,
                 const std::vector<std::size_t>& spread, const std::vector<Names>& labels,
                 const std::vector<unsigned long>& at) {
    std::string places;
    for (std::size_t i = spread.size(); i > 0;) {
      --i;
      const std::string& axis = variable.axes[spread[i]].name;
      const ChosenIndices& chosen = m_axes.of(axis).chosen;
      places += (places.empty() ? "" : ", ") + axis + "=" + labels[i][at[i]];
      column.dimensions[spread[i]] = {chosen.first + at[i] * chosen.step, 1, NO_AXIS};
    }
    column.name = places.empty() ? variable.name : variable.name + "[" + places + "]";
    add(std::move(column));
  }

  void add(PlannedColumn column) {
    const std::string name = column.name;
    for (int k = 2; !m_taken.insert(column.name).second; ++k) {
      column.name = name + " (" + std::to_string(k) + ")";
    }
    m_plan.columns.push_back(std::move(column));
  }

  const object_model::Dictionary& m_dictionary;
  const Request& m_request;
  Variables m_variables;
  PlannedAxes m_axes;
  Names m_index;
  std::vector<const Variable*> m_columns;
  std::set<std::string> m_taken;
  Plan m_plan;
};

}  // namespace

Plan plan(const object_model::Dictionary& dictionary, const Request& request) {
  return Planner(dictionary, request).result();
}

}  // namespace quillon::tables
