#pragma once

#include <string>
#include <utility>
#include <vector>

#include "Source.h"

namespace quillon::netcdf {

/// How the values of a variable are stored.
struct StoredForm {
  int base = 0;            ///< the library's number for the values' type; for an enumeration, that
                           ///< of its integers; NC_NAT for one that has no place in the model
  std::string unreadable;  ///< what such a type is, such as "compound type 'point'"
  std::string name;        ///< of the type as netCDF calls it, such as "float"
  std::size_t bytes = 0;   ///< of one value
  bool isFixedText = false;  ///< whether it is a text of `bytes` characters
  std::vector<std::pair<std::string, long>> members = {};  ///< of an enumeration
};

/// Whether a type of libnetcdf's is one of its own types of numbers.
bool isNumber(int type);

/// What the type `id` is in `group`. @throws Error that names the `subject` whose type it is.
StoredForm formOf(const Source& source, int group, int id, const std::string& subject);

}  // namespace quillon::netcdf
