#pragma once

#include "WritePlan.h"
#include "WriteRoom.h"

namespace quillon::netcdf {

/// A variable of a file in the making.
struct DefinedVariable {
  const PlannedVariable& plan;
  int file;   ///< the file's id
  int group;  ///< the group's
  int id;     ///< the variable's
};

/// Writes the values of an array to its variable, in blocks for which there is `room`. Takes
/// libraryLock() while it writes one and leaves it free while it asks the array.
/// @throws Refusal; what the array throws passes through.
void putValues(const DefinedVariable& variable, WriteRoom& room);

}  // namespace quillon::netcdf
