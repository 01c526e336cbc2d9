#include "WriteCoordinates.h"

#include <object_model/Tuple.h>
#include <quillon/memory/Axes.h>
#include <quillon/memory/ElementTypes.h>
#include <quillon/memory/Facets.h>
#include <quillon/memory/Values.h>
#include <quillon/memory/Wording.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <type_traits>

#include "WriteBlocks.h"
#include "WriteRefusal.h"

namespace quillon::netcdf {
namespace {

using memory::inQuotes;
using object_model::Array;

/// A variable of another name than its axis is found by a list of names with blanks between them.
std::string variableName(const Array& coordinates, const std::string& axis) {
  std::string name = coordinates.getName();
  return name.empty() || name.find(' ') != std::string::npos ? axis : name;
}

template <class T>
bool isSameValue(const T& a, const T& b) {
  if constexpr (std::is_floating_point_v<T>) {
    return a == b || (std::isnan(a) && std::isnan(b));
  } else {
    return a == b;
  }
}

template <class T>
bool haveSameValues(const Array& first, const Array& second) {
  bool areSame = true;
  forEachBlock(first, BLOCK_BYTES / sizeof(T), [&](const memory::Block& block) {
    const auto a = std::make_unique<T[]>(block.count);
    const auto b = std::make_unique<T[]>(block.count);
    memory::copyValues(first, block, a.get());
    memory::copyValues(second, block, b.get());
    areSame = areSame && std::equal(a.get(), a.get() + block.count, b.get(), isSameValue<T>);
  });
  return areSame;
}

}  // namespace

AxisCoordinates coordinatesOf(const Array& array, unsigned long dimension, const std::string& axis,
                              unsigned long size, const std::string& path) {
  const auto* const owner = dynamic_cast<const memory::HasCoordinates*>(&array);
  AxisCoordinates result{axis, axis, owner == nullptr ? nullptr : owner->coordinates(dimension),
                         path};
  if (result.values == nullptr) {
    return result;
  }
  const object_model::Tuple& shape = result.values->size();
  if (shape.size() != 1 || shape[0] != size) {
    throw Refusal("the coordinates of axis " + inQuotes(axis) + " of " + inQuotes(path) +
                  " are not one for each of its " + std::to_string(size) + " points");
  }
  result.name = variableName(*result.values, axis);
  return result;
}

bool areSameCoordinates(const Array& first, const Array& second) {
  if (&first == &second) {
    return true;
  }
  if (!memory::haveSameShape(first, second) || first.getElementType() != second.getElementType() ||
      first.getUnit() != second.getUnit()) {
    return false;
  }
  bool areSame = false;
  memory::visitElementType(first.getElementType(), [&](auto tag) {
    using T = typename decltype(tag)::Type;
    if constexpr (!std::is_same_v<T, memory::Dictionary>) {
      areSame = haveSameValues<T>(first, second);
    }
  });
  return areSame;
}

void requireSame(const AxisCoordinates& coordinates, bool isAlongAxis, const Array& there,
                 const std::string& path) {
  if (!isAlongAxis || !areSameCoordinates(*coordinates.values, there)) {
    throw Refusal("the coordinates of axis " + inQuotes(coordinates.axis) + " of " +
                  inQuotes(coordinates.owner) + " are not those of " + inQuotes(path));
  }
}

}  // namespace quillon::netcdf
