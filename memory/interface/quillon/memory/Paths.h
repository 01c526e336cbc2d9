/// @file
/// Where data objects stand among the dictionaries around them.
///
/// Errors: what the objects' own operations throw passes through. Threads: as the objects'.
#pragma once

#include <object_model/Dictionary.h>

#include <string>
#include <string_view>
#include <vector>

namespace quillon::memory {

/// Where an object stands below its outermost container, such as "/cells/otsu"; "/" for one that
/// stands in none, whatever its name is.
[[nodiscard]] std::string pathOf(const object_model::Data& object);

/// Where the entry `name` of `group` stands, such as "/cells/otsu/area".
[[nodiscard]] std::string pathOf(const object_model::Data& group, const std::string& name);

/// What stands behind the last slash of a path, such as "otsu" of "/cells/otsu"; the whole path
/// where it has none.
[[nodiscard]] std::string_view lastNameOf(std::string_view path);

/// The paths of all dictionaries below `group`, such as "cells/otsu", each before those below it.
[[nodiscard]] std::vector<std::string> groupsBelow(const object_model::Dictionary& group);

}  // namespace quillon::memory
