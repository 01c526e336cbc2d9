#pragma once

#include <string>
#include <vector>

#include "Source.h"

namespace quillon::netcdf {

/// The text of an attribute, the first one of several; empty when there is no such attribute or it
/// holds no text. `variable` is a variable's id in `group` or NC_GLOBAL.
std::string textAttribute(const Source& source, int group, int variable, const char* name);

/// Whether there is such an attribute.
bool hasAttribute(int group, int variable, const char* name);

/// The numbers of an attribute; empty when there is no such attribute, or when it holds no numbers
/// or some that `Number`, which is float or double, cannot hold.
template <class Number>
std::vector<Number> numericAttribute(const Source& source, int group, int variable,
                                     const char* name);

extern template std::vector<float> numericAttribute(const Source&, int, int, const char*);
extern template std::vector<double> numericAttribute(const Source&, int, int, const char*);

}  // namespace quillon::netcdf
