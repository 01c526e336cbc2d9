#pragma once

#include <string>

#include "Variable.h"

namespace quillon::netcdf {

/// Which of the filters that a variable's values went through is not there to read them; empty when
/// all are, and for a variable that holds no values yet.
///
/// Threads: to be used under libraryLock().
std::string missingFilter(const Variable& variable);

}  // namespace quillon::netcdf
