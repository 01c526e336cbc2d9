#pragma once

#include <quillon/memory/Selection.h>
#include <quillon/netcdf/File.h>

#include <memory>
#include <string>
#include <vector>

#include "Arguments.h"

namespace quillon::tools {

/// One of two open files with the part of it that is compared.
class DiffInput {
 public:
  /// @throws Failure for a group that is not in the file; what opening the file throws.
  explicit DiffInput(const Source& source);

  const Source& source() const { return m_source; }

  /// Where the group stands in the file, such as "/cells/otsu".
  std::string pathOfGroup() const;

  /// The names of the group's variables, those that cannot be read among them.
  std::vector<std::string> variables() const;

  /// Leaves only the variables with these names, as far as there are any.
  void select(const std::vector<std::string>& names);

  /// What is compared.
  const object_model::Dictionary& part() const;

  /// How many values its arrays have.
  unsigned long values() const;

  /// Those of its variables that the reader could not make arrays of.
  std::vector<netcdf::Skipped> skipped() const;

  /// Gives these variables, of the whole file, arrays that fail with the reason when they are
  /// asked for anything, so that a comparison meets them. To be called once, before select().
  void addSkipped();

 private:
  Source m_source;
  netcdf::File m_file;
  memory::Dictionary& m_group;
  std::unique_ptr<memory::Selection> m_selection;
  std::vector<std::string> m_names;  // of the selection
};

/// @throws Failure that names those of `names` that are a variable on neither side.
void requireVariables(const DiffInput& first, const DiffInput& second,
                      const std::vector<std::string>& names);

}  // namespace quillon::tools
