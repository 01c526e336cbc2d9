#pragma once

#include <object_model/Data.h>

#include <string>

namespace quillon::memory {

/// Whether `object` is an entry of a dictionary, which finds it under its name.
bool isEntry(const object_model::Data& object);

/// @throws std::invalid_argument when `object`, a `kind`, is an entry and `name` is not its own.
void requireFreeToRename(const object_model::Data& object, const char* kind,
                         const std::string& name);

}  // namespace quillon::memory
