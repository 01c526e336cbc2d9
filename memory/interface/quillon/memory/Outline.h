/// @file
/// What is in an array or dictionary, as text for people.
#pragma once

#include <object_model/Array.h>
#include <object_model/Dictionary.h>

#include <functional>
#include <string>
#include <vector>

namespace quillon::memory {

/// Gives the lines that follow the arrays of a dictionary in its outline, such as those on entries
/// that could not be read.
using Remarks = std::function<std::vector<std::string>(const object_model::Dictionary& group)>;

/// What is in `group` and the dictionaries below it: a line for each of these, followed by a line
/// for each of its arrays with name, element type, axes, unit and description, aligned. Control
/// characters are escaped. No values are read.
/// What the objects' own operations throw passes through.
/// @param group the outermost dictionary.
/// @param remarks further lines for each dictionary; none when empty.
[[nodiscard]] std::string describe(const object_model::Dictionary& group,
                                   const Remarks& remarks = {});

/// The line on an array: name, element type, axes, unit and description.
[[nodiscard]] std::string describe(const object_model::Array& array);

/// The one or the other.
[[nodiscard]] std::string describe(const object_model::Data& object);

}  // namespace quillon::memory
