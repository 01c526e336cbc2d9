#pragma once

#include <stdexcept>
#include <string>

namespace quillon::netcdf {

/// Why a dictionary cannot be written; write() makes an `Error` of it that names the file.
class Refusal : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Where the entry `name` of the group at `path` stands, such as "/cells/area".
std::string entryPath(const std::string& path, const std::string& name);

/// @throws Refusal unless libnetcdf, whose last call must have begun with `errno = 0`, reports
///   success. `subject` says what was to be done, such as "variable '/a' cannot be written".
void requireWritten(int status, const std::string& subject);

}  // namespace quillon::netcdf
