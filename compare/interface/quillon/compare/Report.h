/// @file
/// What a comparison found, as data.
#pragma once

#include <quillon/compare/Figures.h>
#include <quillon/compare/Picture.h>

#include <optional>
#include <string>
#include <vector>

namespace quillon::compare {

/// Why two entries are not the same, in the order in which several reasons of one entry are listed;
/// but of arrays of as many dimensions the names of these go before the shape.
enum class Reason {
  Kind,          ///< one is an array, the other a dictionary
  Shape,         ///< they have other numbers of dimensions, or other extents
  Dimensions,    ///< their dimensions have other names
  ElementType,   ///< they hold another type of values
  Unit,          ///< they are measured in another unit
  Attribute,     ///< an attribute has another value, or is on one side only
  Values,        ///< some of their values are not the same
  OnlyInFirst,   ///< the second dictionary has no such entry
  OnlyInSecond,  ///< the first dictionary has no such entry
};

/// The reason in words, such as "element type" or "only in the first".
[[nodiscard]] const char* textOf(Reason reason);

/// A position along one dimension.
struct Place {
  std::string dimension;    ///< its name, unique within a position
  unsigned long index = 0;  ///< from 0
  Value coordinate;         ///< what the index stands for, times as text; nothing where unknown
};

/// Two values that are not the same, and where.
struct PlacedPair {
  std::vector<Place> at;  ///< the slowest dimension first; empty without dimensions
  double delta = 0;       ///< |a - b|; NaN for values that have none
  Value first;            ///< of the first array
  Value second;           ///< of the second array
};

/// One reason why an entry is not the same.
struct Difference {
  std::string path;                 ///< such as "/cells/area", "/t2m@long_name" or "/"
  Reason reason = Reason::Values;   ///< why
  unsigned long count = 0;          ///< how many values differ; 0 for other reasons
  unsigned long size = 0;           ///< of how many
  unsigned long missing = 0;        ///< how many of them are missing on one side alone
  std::vector<PlacedPair> largest;  ///< the largest deltas; without any the first differences
  double largestRelative = 0;       ///< the greatest |a - b| / |b|; NaN where there is none
  double mean = 0;                  ///< of all deltas; NaN where there is none
  /// The value of the first side in `largest`'s first pair; for other reasons its shape, names,
  /// unit, ... as text; nothing where it has none.
  Value first;
  Value second;  ///< the same of the second side
  /// Where the values that differ are; for arrays of two dimensions or more, if it was asked for.
  std::optional<Picture> picture = {};
};

/// An entry, or an attribute, that could not be compared.
struct NotCompared {
  std::string path;    ///< as in `Difference`
  std::string reason;  ///< why, in words
};

/// What there is to say about two objects.
///
/// Ownership: a value. Threads: const operations may run concurrently.
struct Report {
  bool same = true;              ///< neither differences nor anything not compared
  unsigned long values = 0;      ///< how many pairs of values were compared
  std::vector<Difference> rows;  ///< in the first object's order, then what only the second has
  std::vector<NotCompared> notCompared;  ///< in the order of the walk
  Tolerance tolerance;                   ///< the rule for what no pattern matched
  bool nanEqual = true;                  ///< the rule for missing values
};

/// The row that says how the values of the entry at `path` differ.
/// @param path as in `Difference`.
/// @param figures what the comparison of the values found.
/// @param outline an array of the shape, dimension names and coordinates of the entry; its values
///   are not read.
[[nodiscard]] Difference differenceOf(const std::string& path, const Figures& figures,
                                      const object_model::Array& outline);

}  // namespace quillon::compare
