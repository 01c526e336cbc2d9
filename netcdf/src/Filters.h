#pragma once

#include <string>

#include "Variable.h"

namespace quillon::netcdf {

/// Which of the filters that a variable's values go through is not there to read them; empty when
/// all are. libnetcdf asks for it even where no values were written.
///
/// Threads: to be used under libraryLock().
std::string missingFilter(const Variable& variable);

}  // namespace quillon::netcdf
