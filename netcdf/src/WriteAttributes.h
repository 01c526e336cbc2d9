#pragma once

#include <object_model/Array.h>
#include <object_model/BulkValues.h>
#include <object_model/Dictionary.h>
#include <quillon/memory/Facets.h>

#include <optional>
#include <string>
#include <vector>

namespace quillon::netcdf {

/// The attributes of a variable: what stands for missing values, description, unit, what says that
/// values are times or truth values, and those that the array has.
/// @throws Refusal where they contradict each other.
std::vector<memory::Attribute> writtenAttributesOf(const object_model::Array& array,
                                                   std::optional<object_model::StoredType> type,
                                                   const std::string& path);

/// The attributes of a group: its description and those that the dictionary has.
std::vector<memory::Attribute> writtenAttributesOf(const object_model::Dictionary& dictionary,
                                                   const std::string& path);

/// Adds `name` to the variables that the attribute `coordinates` lists.
void listCoordinates(const std::string& name, std::vector<memory::Attribute>& attributes);

/// Stores an attribute of the object at `path`, `variable` of `group` or the group itself
/// (NC_GLOBAL). To be called under libraryLock(). @throws Refusal
void putAttribute(int group, int variable, const memory::Attribute& attribute,
                  const std::string& path);

}  // namespace quillon::netcdf
