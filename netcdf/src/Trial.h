#pragma once

#include <functional>

namespace quillon::netcdf {

/// Whether `action` comes to its end, by return or exception, in a copy of this process: libhdf5
/// follows some damaged structures into a crash or an endless loop. The copy shares nothing that
/// `action` changes, prints nothing and is given up after `mostSeconds` of processor time. A
/// process that cannot be copied goes without the trial.
bool survives(const std::function<void()>& action, unsigned int mostSeconds = 30);

}  // namespace quillon::netcdf
