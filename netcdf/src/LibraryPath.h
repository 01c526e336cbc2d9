#pragma once

#include <string>

namespace quillon::netcdf {

/// Why libnetcdf would take the path for another one in any case; empty for the others.
std::string faultOfPath(const std::string& path);

/// The path to hand to libnetcdf, so that it opens the file at `path` and no other.
///
/// libnetcdf takes what it is handed for more than a path: it cuts blanks at the beginning, reads
/// "//" behind a colon, brackets and fragments as parts of a URL, and takes a backslash for a
/// slash.
/// @throws Error for a path with a fault.
std::string libraryPath(const std::string& path);

}  // namespace quillon::netcdf
