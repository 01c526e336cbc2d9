#pragma once

#include <string>

#include "ComparisonHelper/ArrayPair.h"
#include "ComparisonHelper/Criterion.h"

namespace object_model::helper {

/// Compares the values of two arrays of any element type but `Dictionary`, at every position, and
/// reports the last difference; also when an exception passes through.
bool areSameElements(const ArrayPair& pair, const Criterion& criterion, std::string* message);

}  // namespace object_model::helper
