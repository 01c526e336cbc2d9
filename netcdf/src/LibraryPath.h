#pragma once

#include <string>

namespace quillon::netcdf {

/// The path to hand to libnetcdf, so that it opens the file at `path` and no other.
///
/// libnetcdf takes what it is handed for more than a path: it cuts blanks at the beginning, reads
/// "//" behind a colon, brackets and fragments as parts of a URL, and takes a backslash for a
/// slash.
/// @throws Error for a path that it would read otherwise in any case.
std::string libraryPath(const std::string& path);

}  // namespace quillon::netcdf
