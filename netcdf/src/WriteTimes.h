#pragma once

#include <object_model/Array.h>
#include <object_model/BulkValues.h>
#include <quillon/memory/Facets.h>

#include <optional>
#include <string>

namespace quillon::netcdf {

/// The array as an array of times; null where it is none or holds no numbers.
const memory::HasTimes* timesOf(const object_model::Array& array);

/// The number that stands for missing times in the file, as an attribute of the values' type; none
/// where no time of `array`, which is of whole numbers of that type, is missing. All times are
/// read.
/// @throws Refusal where no number is free for missing ones.
std::optional<memory::AttributeValue> fillOfTimes(const object_model::Array& array,
                                                  const memory::HasTimes& times,
                                                  object_model::StoredType type,
                                                  const std::string& path);

}  // namespace quillon::netcdf
