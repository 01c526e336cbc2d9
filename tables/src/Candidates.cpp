#include "Candidates.h"

#include <object_model/Tuple.h>
#include <quillon/memory/Wording.h>
#include <quillon/tables/Error.h>

#include <algorithm>

namespace quillon::tables {

using memory::inQuotes;

using object_model::ElementType;

std::string misfit(const object_model::Array& array) {
  switch (array.getElementType()) {
    case ElementType::UInt:
    case ElementType::Int:
    case ElementType::Double:
      break;
    case ElementType::String:
      return "it holds text";
    default:
      return "it holds no numbers";
  }
  const unsigned long dimensions = array.size().size();
  if (dimensions == 0) {
    return "it has no dimensions";
  }
  return dimensions > MOST_AXES
             ? "it has " + std::to_string(dimensions) + " dimensions, more than 3"
             : "";
}

std::string misfit(const Candidate& candidate, const Names& index) {
  std::size_t axes = index.size();
  for (const AxisFacts& axis : candidate.axes) {
    const bool isIndex = contains(index, axis.name);
    if (isIndex && countOf(axis.name, candidate.axes) > 1) {
      return "its axis " + inQuotes(axis.name) + " occurs twice and is in the index";
    }
    if (!isIndex && axis.size == 0) {
      return "it has no values along its axis " + inQuotes(axis.name);
    }
    axes += isIndex ? 0 : 1;
  }
  return axes > MOST_AXES
             ? "its further axes and the index are " + std::to_string(axes) + " axes, more than 3"
             : "";
}

unsigned long commonSize(const std::string& axisName, const Candidates& candidates) {
  const Candidate* first = nullptr;
  unsigned long size = 0;
  for (const Candidate& candidate : candidates) {
    for (const AxisFacts& axis : candidate.axes) {
      if (axis.name != axisName) {
        continue;
      }
      if (first != nullptr && axis.size != size) {
        throw Error("The axis " + inQuotes(axisName) + " has different sizes: " +
                    std::to_string(size) + " in " + inQuotes(first->name) + ", " +
                    std::to_string(axis.size) + " in " + inQuotes(candidate.name));
      }
      first = &candidate;
      size = axis.size;
    }
  }
  return size;
}

}  // namespace quillon::tables
