#pragma once

#include <object_model/Array.h>
#include <quillon/compare/Options.h>
#include <quillon/compare/Report.h>

#include <vector>

namespace quillon::compare {

/// Another reason than its values why an array is not the same as another one.
struct OutlineDifference {
  Reason reason;
  Value first;
  Value second;
};

/// How two arrays differ apart from values and attributes, in the order of reasons.
std::vector<OutlineDifference> outlineDifferences(const object_model::Array& first,
                                                  const object_model::Array& second,
                                                  const Options& options);

/// Whether both are times in different units, so that their numbers have nothing in common.
bool areTimesOfDifferentUnits(const object_model::Array& first, const object_model::Array& second);

}  // namespace quillon::compare
