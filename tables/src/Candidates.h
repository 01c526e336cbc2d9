#pragma once

#include <object_model/Array.h>
#include <quillon/memory/Axes.h>

#include <cstddef>
#include <string>
#include <vector>

#include "Names.h"

namespace quillon::tables {

using memory::AxisFacts;

/// The export fills grids of at most three axes.
inline constexpr std::size_t MOST_AXES = 3;

/// An array that may become columns of a table.
struct Candidate {
  const object_model::Array* array;
  std::string name;
  std::vector<AxisFacts> axes;
};

using Candidates = std::vector<Candidate>;

/// Why no table can hold the array, whatever its index; empty when one can.
std::string misfit(const object_model::Array& array);

/// Why no table with this index can hold the array; empty when one can.
std::string misfit(const Candidate& candidate, const Names& index);

/// How many points the axis has, 0 where no array has it.
/// @throws Error that names two arrays and their sizes when they do not agree.
unsigned long commonSize(const std::string& axisName, const Candidates& candidates);

}  // namespace quillon::tables
