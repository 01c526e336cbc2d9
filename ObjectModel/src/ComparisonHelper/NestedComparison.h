#pragma once

#include <string>

#include "ComparisonHelper/ArrayPair.h"
#include "ComparisonHelper/Criterion.h"

namespace object_model {
class Data;
class Dictionary;
}  // namespace object_model

namespace object_model::helper {

/// The entry at position `index`, as it is found under its name. @throws std::bad_cast for null.
const Data& entryAt(const Dictionary& dictionary, int index);

/// Compares two dictionaries and all that is nested in them, without using stack for the depth.
bool areSameNested(const Dictionary& first, const Dictionary& second, const Criterion& criterion,
                   std::string* message);

/// The same for two arrays of dictionaries. Reports the last difference, also when an exception
/// passes through.
bool areSameNested(const ArrayPair& pair, const Criterion& criterion, std::string* message);

}  // namespace object_model::helper
