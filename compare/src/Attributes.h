#pragma once

#include <object_model/Data.h>
#include <quillon/compare/Value.h>

#include <string>
#include <vector>

namespace quillon::compare {

/// An attribute that is not the same on both sides; nothing stands for one that is absent.
struct AttributeDifference {
  std::string name;
  Value first;
  Value second;
};

/// The attributes of two arrays or two dictionaries that differ: in the first one's order, then
/// those only in the second. The description counts as the attribute `long_name` of an array and
/// `title` of a dictionary, which goes before the others. Two missing numbers are the same.
std::vector<AttributeDifference> attributeDifferences(const object_model::Data& first,
                                                      const object_model::Data& second);

}  // namespace quillon::compare
