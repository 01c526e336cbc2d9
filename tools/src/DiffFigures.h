#pragma once

#include <object_model/Array.h>

#include <functional>
#include <string>
#include <vector>

#include "ComparisonRule.h"
#include "ValueText.h"

namespace quillon::tools {

/// From this number of dimensions on, the library's comparison visits only a part of an array.
inline constexpr unsigned long PARTLY_COMPARED = 5;

/// A position with both its values.
struct Example {
  std::vector<unsigned long> position;
  TextPair values;
};

/// How much two arrays of one type and shape differ.
struct DiffFigures {
  unsigned long values = 0;
  unsigned long differing = 0;
  unsigned long visited = 0;  ///< of the differing ones: those that the library's comparison visits
  std::vector<unsigned long> lastVisited;  ///< the position of the last of these, if any
  unsigned long nanInOne = 0;              ///< of the differing ones; NaN in both is no difference
  std::string delta;  ///< the largest; empty when none of the differing values has a delta
  Example example;    ///< where the delta is largest, or else the first difference

  unsigned long negativeReferences = 0;  ///< passed for their negative reference alone
  unsigned long smallReferences = 0;     ///< passed for their small reference alone
  unsigned long roundedIntegers = 0;     ///< passed for the rounding of large integers alone
  Example passed;                        ///< the first of those
};

/// Told how many more positions were looked at.
using Tick = std::function<void(unsigned long positions)>;

/// Compares two arrays of the same type and shape at all their positions, of any number of
/// dimensions, in the order in which they are stored, reading each value once: in bulk where both
/// offer them in one type.
/// @throws Failure for elements that are dictionaries. What reading throws passes through.
DiffFigures figuresOf(const object_model::Array& first, const object_model::Array& second,
                      const ComparisonRule& rule, const Tick& tick);

}  // namespace quillon::tools
