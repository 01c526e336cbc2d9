#pragma once

#include <quillon/compare/Choice.h>
#include <quillon/memory/Selection.h>
#include <quillon/netcdf/File.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "Arguments.h"
#include "Opening.h"

namespace quillon::tools {

/// One of two open files with the part of it that is compared.
class DiffInput {
 public:
  /// @throws Failure for a group that is not in the file; what opening the file throws.
  DiffInput(const FileGroup& input, netcdf::OpenOptions reading);

  const FileGroup& fileGroup() const { return m_fileGroup; }

  /// Where the group stands in the file, such as "/cells/otsu".
  std::string pathOfGroup() const;

  /// Where its variables stand that the reader could not make arrays of, below the group.
  std::vector<std::string> unreadable() const;

  /// Leaves only what stands at these paths below the group.
  /// @param variables the same paths of all variables that are left, unreadable ones among them.
  void select(const std::vector<std::string>& parts, const std::set<std::string>& variables);

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
  FileGroup m_fileGroup;
  netcdf::File m_file;
  memory::Dictionary& m_group;
  std::unique_ptr<memory::Selection> m_selection;
  std::set<std::string> m_chosen;  // the paths of the selection's variables
};

/// Whether the array is one of an input and its numbers are made of stored ones of another type.
bool isDecoded(const object_model::Array& array);

/// Leaves of both sides what `choice` asks for; its other fields are filled here.
/// @throws std::invalid_argument as compare::choose() does.
void chooseIn(DiffInput& first, DiffInput& second, compare::Choice choice);

}  // namespace quillon::tools
