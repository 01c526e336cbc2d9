#pragma once

#include <object_model/Dictionary.h>
#include <quillon/netcdf/File.h>

#include <string>
#include <vector>

namespace quillon::tools {

/// A variable that is left out of what is shown.
struct PassedOver {
  std::string name;
  std::string reason;  ///< such as "it holds text"
};

/// Where a group stands in its file, such as "/cells/otsu"; "/" for the root.
std::string pathOf(const object_model::Data& group);

/// Where the entry `name` of `group` stands in its file, such as "/cells/otsu/area".
std::string pathOf(const object_model::Data& group, const std::string& name);

/// The paths of all groups below `group`, such as "cells/otsu".
std::vector<std::string> groupsBelow(const object_model::Dictionary& group);

/// The variables of `group` itself that the reader could not make arrays of.
std::vector<PassedOver> skippedIn(const object_model::Data& group,
                                  const std::vector<netcdf::Skipped>& skipped);

}  // namespace quillon::tools
