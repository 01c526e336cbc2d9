#pragma once

#include <object_model/Dictionary.h>
#include <quillon/memory/Dictionary.h>

#include "CountedPairs.h"

namespace quillon::tools {

/// Views of two groups, and of the groups in them, for the library's comparison: of each pair of
/// arrays they show the last difference that it would find, and nothing else.
struct LastDifferences {
  memory::Dictionary first;
  memory::Dictionary second;
};

/// The library's sentence is about an array's last difference, for which it would read all values
/// once more, and one by one. These views give it the same verdict and sentence: an array ends at
/// its last difference, has 0 before it, and has no values where there is no difference. A pair is
/// counted when the library asks for its first array's shape, so that nothing is read which it does
/// not get to.
///
/// In files a NaN stands for a missing value, and missing on both sides is no difference; the
/// library would take no two NaN for the same, but sees no such pair.
///
/// Borrows all three. An array without a peer of its type and shape is shown as it is.
LastDifferences lastDifferencesOf(const object_model::Dictionary& first,
                                  const object_model::Dictionary& second, CountedPairs& counted);

}  // namespace quillon::tools
