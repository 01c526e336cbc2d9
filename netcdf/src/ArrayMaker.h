#pragma once

#include <quillon/memory/ArrayBase.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "CoordinateVariable.h"
#include "Encoding.h"
#include "Variable.h"

namespace quillon::netcdf {

/// Which indices are to be read of a dimension that has a name and a size.
using RangeOf = std::function<Range(const std::string& name, unsigned long size)>;

/// Makes arrays of the variables of a file, or of the same part of each, and knows their
/// coordinates.
///
/// Ownership: arrays share their maker, which owns the arrays of coordinates; these know no maker,
/// so that nothing owns itself. Threads: to be used under libraryLock().
class ArrayMaker : public std::enable_shared_from_this<ArrayMaker> {
 public:
  /// Without `rangeOf` arrays have all of their variables' values.
  ArrayMaker(std::shared_ptr<const Source> source, RangeOf rangeOf);

  const Source& source() const { return *m_source; }

  /// An array, or why there is none.
  struct Made {
    std::unique_ptr<memory::ArrayBase> array;
    std::string path;
    std::string unreadable;
  };

  /// @param path where the variable's group stands in the file, with a slash at its end.
  Made make(const VariableId& id, const std::string& path) const;

  /// The coordinates along the dimension `k` of a variable; null where there are none.
  std::shared_ptr<const object_model::Array> coordinates(const Variable& variable,
                                                         std::size_t k) const;

 private:
  /// A dimension as it appears from a group.
  struct KnownAxis {
    memory::Axis axis;
    unsigned long stored = 0;  // its size in the file
    Range range;
    std::optional<VariableId> coordinate;
    std::vector<std::string> bounds;  // the names of the variables that bound its cells
  };

  Made make(const VariableId& id, const std::string& path,
            std::shared_ptr<const ArrayMaker> maker) const;
  const KnownAxis& axisOf(int group, int dimension) const;
  /// Sets the variable's shape, as far as it is read, and returns its axes, fastest dimension
  /// first. The length of texts, the `fixed` first dimensions, is always read as a whole.
  std::vector<memory::Axis> outline(Variable& variable, std::size_t fixed) const;
  /// The variable's attributes; where it is the bounds of times, with what it does not say of the
  /// units and the calendar that these have.
  void addTimesOfBounds(const Variable& variable, const std::string& name,
                        std::vector<memory::Attribute>& attributes) const;

  std::shared_ptr<const Source> m_source;
  RangeOf m_rangeOf;
  mutable std::map<std::pair<int, int>, KnownAxis> m_axes;  // by group and dimension
  mutable std::map<VariableId, std::shared_ptr<const object_model::Array>> m_coordinates;
};

}  // namespace quillon::netcdf
