/// @file
/// Whether an array's values are those in the file.
#pragma once

#include <object_model/Array.h>

namespace quillon::netcdf {

/// Whether the array is one of a `File` and its numbers are made of stored ones of another type, as
/// those of packed variables are. For whoever compares files that are packed in different ways.
/// Threads: may be called concurrently.
[[nodiscard]] bool isDecoded(const object_model::Array& array);

}  // namespace quillon::netcdf
