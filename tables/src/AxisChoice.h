#pragma once

#include <quillon/tables/Request.h>

#include <string>

#include "Coordinates.h"

namespace quillon::tables {

/// The indices of an axis that are chosen: `count` of them from `first` on, `step` apart.
struct ChosenIndices {
  unsigned long first = 0;
  unsigned long count = 0;
  unsigned long step = 1;
  bool isSingle = false;  ///< one position, which removes the axis
};

/// What a choice means for an axis.
/// @param axis as sentences name it.
/// @param coordinates of the axis; null where it has none.
/// @throws Error for a choice that is empty, outside of the axis or does not suit the coordinates.
ChosenIndices choose(const Choice& choice, const std::string& axis, unsigned long size,
                     const CoordinateValues* coordinates);

}  // namespace quillon::tables
