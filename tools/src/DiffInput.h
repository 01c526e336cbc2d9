#pragma once

#include <quillon/memory/Selection.h>
#include <quillon/netcdf/File.h>

#include <memory>
#include <string>
#include <vector>

#include "Arguments.h"
#include "DiffReport.h"

namespace quillon::tools {

/// One of two open files with the part of it that is compared.
class DiffInput {
 public:
  /// @throws Failure for a group that is not in the file; what opening the file throws.
  DiffInput(const std::string& path, const std::string& group);

  const Source& source() const;

  /// The names of the group's variables that are arrays.
  std::vector<std::string> variables() const;

  /// Why the variable has no array; empty when it has one or is not there.
  std::string reasonWithout(const std::string& name) const;

  /// Leaves only the entries with these names, as far as there are any.
  void select(const std::vector<std::string>& names);

  /// Borrows the group.
  DiffSide side() const;

 private:
  Source m_source;
  netcdf::File m_file;
  memory::Dictionary& m_group;
  std::unique_ptr<memory::Selection> m_selection;
  std::vector<netcdf::Skipped> m_skipped;
};

/// @throws Failure that names those of `names` that are a variable on neither side, or one that
/// cannot be compared.
void requireVariables(const DiffInput& first, const DiffInput& second,
                      const std::vector<std::string>& names);

}  // namespace quillon::tools
