#include "PlannedAxes.h"

#include <quillon/memory/Bounded.h>
#include <quillon/memory/Nearest.h>
#include <quillon/memory/Wording.h>
#include <quillon/tables/Error.h>

#include <algorithm>
#include <set>
#include <utility>

#include "Names.h"

namespace quillon::tables {
namespace {

using memory::inQuotes;

/// Axes without coordinates and of at most so many points make columns unless they are asked for.
constexpr unsigned long FEW_POINTS = 16;

bool tellApart(const Names& labels) {
  std::set<std::string> seen;
  return std::all_of(labels.begin(), labels.end(), [&seen](const std::string& label) {
    return !label.empty() && seen.insert(label).second;
  });
}

}  // namespace

PlannedAxes::PlannedAxes(const object_model::Dictionary& dictionary,
                         const std::vector<Variable>& variables,
                         const std::vector<AxisSelection>& selections)
    : m_dictionary(dictionary) {
  for (const Variable& variable : variables) {
    for (const memory::AxisFacts& axis : variable.axes) {
      if (m_axes.count(axis.name) == 0) {
        m_names.push_back(axis.name);
        m_axes[axis.name] = {axis.name,
                             axis.size,
                             {0, axis.size, 1, false},
                             findCoordinates(dictionary, axis.name, axis.size)};
      }
    }
  }
  std::set<std::string> selected;
  for (const AxisSelection& selection : selections) {
    PlannedAxis axis = require(selection.axis);
    if (!selected.insert(axis.name).second) {
      throw Error("Two selections name the axis " + inQuotes(axis.name));
    }
    std::optional<CoordinateValues> values;
    if (axis.coordinates) {
      values = tables::valuesOf(*findArray(dictionary, *axis.coordinates));
    }
    axis.chosen = choose(selection.choice, axis.name, axis.size, values ? &*values : nullptr);
    if (axis.chosen.isSingle) {
      m_singles.push_back(axis.name);
    }
    m_axes[axis.name] = axis;
  }
}

const PlannedAxis& PlannedAxes::require(const std::string& name) const {
  const auto found = m_axes.find(name);
  if (found == m_axes.end()) {
    throw Error("No variable for the table has an axis " + inQuotes(name) +
                (m_names.empty() ? " or any other" : memory::offerOf(name, m_names)));
  }
  return found->second;
}

unsigned long PlannedAxes::valuesOf(const Variable& variable) const {
  unsigned long values = 1;
  for (const memory::AxisFacts& axis : variable.axes) {
    values = memory::boundedProduct(values, of(axis.name).chosen.count);
  }
  return values;
}

Names PlannedAxes::leftOf(const Variable& variable) const {
  Names left;
  for (const memory::AxisFacts& axis : variable.axes) {
    if (!of(axis.name).chosen.isSingle) {
      left.push_back(axis.name);
    }
  }
  return left;
}

Names PlannedAxes::checked(const Names& index) const {
  Names seen;
  for (const std::string& name : index) {
    if (require(name).chosen.isSingle) {
      throw Error("The axis " + inQuotes(name) +
                  " cannot be in the index: a single position of it is selected");
    }
    if (contains(seen, name)) {
      throw Error("The index names the axis " + inQuotes(name) + " twice");
    }
    seen.push_back(name);
  }
  return index;
}

Names PlannedAxes::defaultIndex(const std::vector<Variable>& variables) const {
  Names most;
  unsigned long values = 0;
  for (const Variable& variable : variables) {
    const Names left = leftOf(variable);
    const bool isTwice = !memory::repeatedAxis(variable.axes).empty();
    if (!left.empty() && !isTwice && (most.empty() || valuesOf(variable) > values)) {
      most = left;
      values = valuesOf(variable);
    }
  }
  Names index;
  std::copy_if(most.begin(), most.end(), std::back_inserter(index), [this](const auto& name) {
    return of(name).coordinates || of(name).chosen.count > FEW_POINTS;
  });
  return index.empty() ? most : index;
}

Names PlannedAxes::labelsOf(const std::string& name, bool positions) const {
  const PlannedAxis& axis = of(name);
  Names labels;
  if (axis.coordinates && !positions) {
    const Names all = tables::valuesOf(*findArray(m_dictionary, *axis.coordinates)).asTexts();
    for (unsigned long k = 0; k < axis.chosen.count; ++k) {
      labels.push_back(all.at(axis.chosen.first + k * axis.chosen.step));
    }
    if (tellApart(labels)) {
      return labels;
    }
    labels.clear();
  }
  for (unsigned long k = 0; k < axis.chosen.count; ++k) {
    labels.push_back(std::to_string(axis.chosen.first + k * axis.chosen.step));
  }
  return labels;
}

}  // namespace quillon::tables
