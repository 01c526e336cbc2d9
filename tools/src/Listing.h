#pragma once

#include <object_model/Dictionary.h>
#include <object_model/ElementType.h>
#include <quillon/netcdf/File.h>

#include <string>
#include <vector>

namespace quillon::tools {

/// What people are told an element type is.
const char* nameOf(object_model::ElementType type);

/// What is in `group` and the groups below it, for people: a line for each group, followed by a
/// line for each of its arrays with name, element type, axes, unit and description, aligned.
/// @param skipped variables that the reader could not make arrays of; they get a line as well.
std::string listingOf(const object_model::Dictionary& group,
                      const std::vector<netcdf::Skipped>& skipped);

}  // namespace quillon::tools
