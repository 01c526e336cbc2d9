#pragma once

#include <object_model/Array.h>

#include <string>

#include "DiffFigures.h"

namespace quillon::tools {

/// How the types or shapes of two arrays differ, such as "the shapes differ: x=3, y=2 and x=2,
/// y=3"; empty when they do not.
std::string outlineInWords(const object_model::Array& first, const object_model::Array& second);

/// How the values of `array` and another one differ; empty when they do not.
std::string differenceInWords(const object_model::Array& array, const DiffFigures& figures,
                              const ComparisonRule& rule);

/// How many values of `array` and another one passed, and why; empty when none did.
std::string passedInWords(const object_model::Array& array, const DiffFigures& figures);

}  // namespace quillon::tools
