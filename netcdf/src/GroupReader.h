#pragma once

#include <quillon/memory/Dictionary.h>

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Source.h"
#include "Variable.h"

namespace quillon::netcdf {

/// How many of the first coordinates along dimensions of these names there are to be at most.
using Extents = std::map<std::string, unsigned long>;

/// Reads what a group contains, with all groups below it, but no values.
///
/// Threads: to be used under libraryLock().
class GroupReader {
 public:
  /// Variables that have no place in the object model are appended to `skipped`.
  GroupReader(std::shared_ptr<const Source> source, std::vector<Skipped>& skipped,
              Extents extents = {});

  const Source& source() const { return *m_source; }

  /// The group whose id is `group` as a dictionary called `name`. `path` is where it stands in the
  /// file, with a slash at its end.
  memory::Dictionary read(int group, const std::string& name, const std::string& path);

 private:
  void addVariables(int group, const std::string& path, memory::Dictionary& to);
  void addGroups(int group, const std::string& path, memory::Dictionary& to);
  std::unique_ptr<object_model::Data> makeArray(int group, int id, const std::string& path);
  /// Sets the variable's shape and returns its axes, fastest dimension first.
  std::vector<memory::Axis> readAxes(Variable& variable, int rank);
  /// The axis of a dimension as it appears from the variable's group.
  const memory::Axis& axisOf(const Variable& variable, int dimension);
  /// Cuts the axes from `firstAxis` on, and the variable's shape with them.
  void cut(Variable& variable, std::vector<memory::Axis>& axes, std::size_t firstAxis) const;
  void requireFree(const memory::Dictionary& dictionary, const std::string& path,
                   const std::string& name) const;

  std::shared_ptr<const Source> m_source;
  std::vector<Skipped>& m_skipped;
  Extents m_extents;
  std::map<std::pair<int, int>, memory::Axis> m_axes;  // by group and dimension
};

}  // namespace quillon::netcdf
