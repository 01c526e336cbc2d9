#pragma once

#include <quillon/memory/Facets.h>

#include <string>
#include <vector>

#include "Source.h"

namespace quillon::netcdf {

/// The text of an attribute, the first one of several; empty when there is no such attribute or it
/// holds no text. `variable` is a variable's id in `group` or NC_GLOBAL.
std::string textAttribute(const Source& source, int group, int variable, const char* name);

/// Whether there is such an attribute.
bool hasAttribute(int group, int variable, const char* name);

/// All attributes of a variable or, with NC_GLOBAL, a group, in the file's order. Those of an
/// enumeration are its integers; those of types that are neither numbers nor text are left out.
std::vector<memory::Attribute> attributesOf(const Source& source, int group, int variable);

/// The attribute called `name`; null when there is none.
const memory::Attribute* findAttribute(const std::vector<memory::Attribute>& attributes,
                                       const std::string& name);

/// The text of the attribute `name`, the first one of several; empty when there is none or it holds
/// no text.
std::string textOf(const std::vector<memory::Attribute>& attributes, const std::string& name);

}  // namespace quillon::netcdf
