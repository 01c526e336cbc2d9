/// @file
/// Where in an array values differ, as a grid to look at.
#pragma once

#include <string>
#include <vector>

namespace quillon::compare {

/// The most cells along each side of a picture.
inline constexpr unsigned long MOST_PICTURE_CELLS = 128;

/// The two longest dimensions of an array, of those as long the fastest, divided into cells; each
/// shows the largest delta of all values in it, along whichever other dimensions there are.
///
/// Ownership: a value. Threads: const operations may run concurrently.
struct Picture {
  /// One side of it.
  struct Side {
    std::string dimension;    ///< its name
    unsigned long size = 0;   ///< how many indices the dimension has
    unsigned long cells = 0;  ///< how many cells these are divided into
  };
  Side across;  ///< the faster dimension, from left to right
  Side down;    ///< the slower one, downwards
  /// The cells, row by row from the top: the largest delta in each, 0 where nothing differs, NaN
  /// where no value that differs has a delta.
  std::vector<double> cells;
};

}  // namespace quillon::compare
