#pragma once

#include <object_model/Array.h>
#include <object_model/Tuple.h>
#include <quillon/compare/Figures.h>
#include <quillon/memory/Axes.h>
#include <quillon/memory/ElementTypes.h>

#include <functional>
#include <vector>

#include "DeltaMap.h"
#include "Numbers.h"

namespace quillon::compare {

/// How values are to be compared.
struct ValueOptions {
  Rule rule;
  unsigned long largest = 1;
  const std::function<void(unsigned long)>& progress;
  DeltaMap* map = nullptr;  ///< takes where values differ
};

/// Where a block of values stands in a larger grid: the offset of its first value in storage order,
/// and how far apart the values along each dimension are.
struct GridPlace {
  unsigned long first = 0;
  std::vector<unsigned long> steps;
};

/// The place of a block at `start` in a grid of the extents `shape`, dimension 0 first.
GridPlace placeInGrid(const std::vector<unsigned long>& start,
                      const std::vector<unsigned long>& shape);

/// The place of a block that is the grid.
GridPlace wholeGrid(const object_model::Tuple& shape);

/// Whether the elements are numbers.
bool areNumbers(object_model::ElementType type);

/// Whether values of these types have figures: numbers of any types, two texts, two truth values.
bool areComparable(object_model::ElementType first, object_model::ElementType second);

/// The figures of two arrays of the same shape whose values can be compared. Reads each value once.
/// What the arrays and the progress throw passes through.
Figures figuresOf(const object_model::Array& first, const object_model::Array& second,
                  const ValueOptions& options, const GridPlace& place);

}  // namespace quillon::compare
