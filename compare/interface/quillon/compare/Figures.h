/// @file
/// How much the values of two arrays differ, in figures that can be had in parts.
#pragma once

#include <object_model/Array.h>
#include <quillon/compare/Options.h>
#include <quillon/compare/Value.h>

#include <limits>
#include <string>
#include <vector>

namespace quillon::compare {

/// Two values that are not the same.
struct Pair {
  unsigned long offset = 0;  ///< in storage order of the whole grid, dimension 0 varying fastest
  double delta = 0;          ///< |a - b|; NaN for values that have none
  Value first;               ///< of the first array
  Value second;              ///< of the second array
};

/// The figures of a part of the values of two arrays. As it is made, that of no values: the neutral
/// element of `merge`.
struct Figures {
  unsigned long values = 0;   ///< how many were compared
  unsigned long count = 0;    ///< of these: how many are not the same
  unsigned long missing = 0;  ///< of these: how many are missing (NaN) on one side alone
  unsigned long deltas = 0;   ///< of the differing ones: how many have a delta
  double sum = 0;             ///< of all deltas, rounded
  double rest = 0;            ///< what the rounding of `sum` left out
  /// The greatest |a - b| / |b| of those with a delta, infinite where b is 0; NaN where there is
  /// none.
  double largestRelative = std::numeric_limits<double>::quiet_NaN();
  /// The pairs with the largest deltas, the largest first, of equals the one that stands first;
  /// behind them pairs without a delta as they stand.
  std::vector<Pair> largest;
  /// How many pairs `largest` keeps.
  unsigned long kept = std::numeric_limits<unsigned long>::max();

  /// The mean of all deltas; NaN where there is none.
  double mean() const;
};

/// The figures of all parts of an array's values that could be compared.
struct FiguresInParts {
  Figures figures;                       ///< merged
  std::vector<std::string> notCompared;  ///< for each part that could not be: which one, and why
};

/// Whether `a` goes before `b` among the largest: a total order.
[[nodiscard]] bool isBefore(const Pair& a, const Pair& b);

/// The figures of both parts, which share no position. Associative and commutative: any split of
/// the values merges to the same figures in any order, but for the last digits of `sum` and `rest`.
/// The fewer of both `kept` holds.
[[nodiscard]] Figures merge(const Figures& a, const Figures& b);

/// The figures of two blocks of values within a larger grid, to be merged with those of its other
/// blocks.
/// @param first, second the blocks: arrays of the same shape, of values that can be compared.
/// @param options of which `tolerance`, `nanEqual`, `largest` and `progress` count.
/// @param start the position in the grid of the blocks' first value, dimension 0 first.
/// @param shape the extents of the grid, dimension 0 first. With both empty the blocks are the
/// grid.
/// @throws std::invalid_argument for blocks of different shape, a block that does not lie in the
///   grid, values that cannot be compared with each other and tolerances that are negative or NaN.
///   What reading the arrays throws passes through.
[[nodiscard]] Figures figures(const object_model::Array& first, const object_model::Array& second,
                              const Options& options, const std::vector<unsigned long>& start = {},
                              const std::vector<unsigned long>& shape = {});

}  // namespace quillon::compare
