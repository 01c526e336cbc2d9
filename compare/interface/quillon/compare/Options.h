/// @file
/// What a comparison is asked for.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace object_model {
class Array;
}  // namespace object_model

namespace quillon::compare {

struct FiguresInParts;

/// How far two numbers a (of the first object) and b (of the second) may be apart: they are the
/// same where a == b or, if both are finite, |a - b| <= absolute + relative * |b|. Neither may be
/// negative or NaN.
struct Tolerance {
  double absolute = 0;  ///< in the values' unit
  double relative = 0;  ///< a fraction of |b|
};

/// A tolerance for the arrays whose paths match a pattern.
struct PathTolerance {
  std::string pattern;  ///< see `memory::Pattern`; its wildcards match `/`, too
  Tolerance tolerance;  ///< for the values of these arrays
};

/// Reads "PATTERN=A,R", the absolute and the relative tolerance, or "PATTERN=A". Of several `=` the
/// last one counts.
/// @throws std::invalid_argument for any other text, and for numbers that are negative or NaN; both
///   are named.
[[nodiscard]] PathTolerance parsePathTolerance(std::string_view text);

/// The attributes that say how a file came about rather than what is in it.
extern const std::vector<std::string> RECORD_ATTRIBUTES;

/// What to compare, and by which rule.
///
/// Patterns of paths are shell patterns, whose `*` matches `/`, too. A path begins with `/`, which
/// a pattern may leave out: `cells/*` matches `/cells/area`. A pattern that is the very path of an
/// entry stands for that one alone.
struct Options {
  /// Where the two objects stand in what they are part of, such as "/cells/otsu"; paths of patterns
  /// and of the report begin with it.
  std::string root = "/";
  /// For all arrays that none of `tolerances` matches.
  Tolerance tolerance;
  /// The last one whose pattern matches holds.
  std::vector<PathTolerance> tolerances;
  /// Whether two missing values (NaN) are the same.
  bool nanEqual = true;
  /// Whether attributes are compared, where objects offer them (`memory::HasAttributes`), and
  /// descriptions, the sizes of stored types and calendars (`memory::HasTimes`) with them: one that
  /// is not the standard one as the attribute `calendar`.
  bool attributes = false;
  /// Names of attributes that are left out.
  std::vector<std::string> ignoredAttributes;
  /// Patterns of the paths of entries that are left out, with all that is in them, or with an `@`
  /// of attributes: `/cells/*`, `/t2m@long_name`, `*@comment`.
  std::vector<std::string> ignore;
  /// How many of an array's largest deltas are listed.
  unsigned long largest = 1;
  /// Whether the differences of values come with a picture of where they are.
  bool pictures = false;
  /// Called now and then with how many more values were compared. What it throws ends the
  /// comparison and passes through.
  std::function<void(unsigned long values)> progress;
  /// Whether an array's values are decoded from stored ones of another type. Such an array is
  /// compared as numbers, whatever type of number the other one has. None is where this is empty.
  std::function<bool(const object_model::Array& array)> isDecoded;
  /// Gives the figures of two arrays' values that were compared elsewhere, such as in blocks on
  /// other machines. Called in the report's order, with the path and the tolerance, for all arrays
  /// whose values can be compared; where it is empty or gives nothing, the values are read. What it
  /// throws ends the comparison and passes through.
  std::function<std::optional<FiguresInParts>(const std::string& path, const Tolerance& tolerance)>
      figures;
};

}  // namespace quillon::compare
