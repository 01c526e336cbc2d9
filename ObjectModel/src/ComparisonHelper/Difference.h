#pragma once

#include "ComparisonHelper/Positions.h"

namespace object_model::helper {

/// The last difference between two arrays, kept until its sentence is built.
template <class Value>
struct Difference {
  bool found = false;
  Positions::Indices indices = {};
  Value first = {};
  Value second = {};
};

}  // namespace object_model::helper
