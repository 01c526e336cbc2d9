#pragma once

#include <functional>

namespace quillon::netcdf {

/// Whether `action`, which reads a file of `fileBytes`, comes to its end in a copy of this process.
///
/// libhdf5 follows some damaged structures into a crash or an endless loop, and takes as much
/// memory as a string is claimed to be long. The copy shares nothing that `action` changes, prints
/// nothing and is given up after `mostSeconds` of processor time; it gets memory in proportion to
/// the file. A process that cannot be copied goes without the trial.
/// @throws Error the one that `action` throws: it is not to be tried again where memory is not
///   limited.
bool survives(const std::function<void()>& action, unsigned long fileBytes,
              unsigned int mostSeconds = 30);

}  // namespace quillon::netcdf
