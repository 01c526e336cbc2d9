#pragma once

#include <quillon/netcdf/Write.h>

#include <string>
#include <vector>

#include "WritePlan.h"
#include "WriteRoom.h"

namespace quillon::netcdf {

/// A file that libnetcdf makes, closed when it goes. Takes libraryLock() where it needs it.
class NewFile {
 public:
  /// Begins the file of a plan in place of the empty one at `path`, which libnetcdf takes as it is
  /// and which is open as `descriptor`. Both arguments are to outlive it. @throws Refusal
  NewFile(const std::string& path, int descriptor, const Plan& plan);
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;
  ~NewFile();

  /// Makes groups, dimensions, variables and attributes, once. @throws Refusal
  void define(const WriteOptions& options);

  /// Writes the values of all variables. @throws Refusal; what arrays throw passes through.
  void putValues();

  /// Brings everything to the file and closes it. @throws Refusal
  void close();

 private:
  void defineGroup(std::size_t number, const WriteOptions& options);
  int defineVariable(const PlannedVariable& variable, std::size_t group,
                     const WriteOptions& options);

  const Plan& m_plan;
  WriteRoom m_room;
  int m_id = -1;  // -1 when it is closed
  std::vector<int> m_groups;
  std::vector<std::vector<int>> m_dimensions;  // of each group
  std::vector<std::vector<int>> m_variables;   // of each group
};

}  // namespace quillon::netcdf
