#pragma once

#include <object_model/Data.h>
#include <object_model/DataInfo.h>

#include <string>

namespace object_model::helper {

/// What `Data::getName()` copies. Borrowed: to be copied before the object is asked anything else,
/// since it may then change its name.
inline const std::string& nameOf(const Data& data) { return data.getInformation()->getName(); }

}  // namespace object_model::helper
