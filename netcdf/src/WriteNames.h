#pragma once

#include <string>

namespace quillon::netcdf {

/// Refuses a name that no netCDF file takes, or takes for another one. `subject` is who has it,
/// such as "'/cells/a/b'" or "axis 'x ' of '/area'". @throws Refusal
void requireName(const std::string& name, const std::string& subject);

/// Refuses a name that the file has in another form: libnetcdf composes accents with their letters.
/// @throws Refusal
void requireKeptName(const std::string& name, const std::string& kept, const std::string& subject);

}  // namespace quillon::netcdf
