#pragma once

#include <map>
#include <string>
#include <vector>

#include "AxisChoice.h"
#include "Coordinates.h"
#include "Variables.h"

namespace quillon::tables {

/// What is known of an axis that some of the variables have.
struct PlannedAxis {
  std::string name;
  unsigned long size = 0;                  ///< of the arrays
  ChosenIndices chosen;                    ///< which part of it is in the table
  std::optional<ArraySource> coordinates;  ///< where they are, if there are any
};

/// The axes of all variables.
class PlannedAxes {
 public:
  /// Looks for coordinates and applies the request's selections.
  /// @throws Error as plan() does.
  PlannedAxes(const object_model::Dictionary& dictionary, const std::vector<Variable>& variables,
              const std::vector<AxisSelection>& selections);

  const PlannedAxis& of(const std::string& name) const { return m_axes.at(name); }

  /// In the order of the selections.
  const std::vector<std::string>& singles() const { return m_singles; }

  /// How many values of the variable are selected.
  unsigned long valuesOf(const Variable& variable) const;

  /// The axes of a variable that no single position removes, dimension 0 first.
  std::vector<std::string> leftOf(const Variable& variable) const;

  /// The index that is asked for. @throws Error for names that are not there, twice or removed.
  std::vector<std::string> checked(const std::vector<std::string>& index) const;

  /// The index where none is asked for.
  std::vector<std::string> defaultIndex(const std::vector<Variable>& variables) const;

  /// What the chosen indices of an axis are called: coordinates, or positions where there are none
  /// or they do not tell them apart.
  std::vector<std::string> labelsOf(const std::string& name, bool positions) const;

 private:
  const PlannedAxis& require(const std::string& name) const;

  const object_model::Dictionary& m_dictionary;
  std::vector<std::string> m_names;
  std::vector<std::string> m_singles;
  std::map<std::string, PlannedAxis> m_axes;
};

}  // namespace quillon::tables
