/// @file
/// What is asked of a table.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace quillon::tables {

/// One position along an axis, counted from 0; -1 is the last. It removes the axis from the table,
/// which keeps the coordinate there as a column.
struct Position {
  long at = 0;  ///< negative ones count from the end
};

/// Positions from `first` on, `last` excluded, each `step` after the one before. Negative positions
/// count from the end; a `last` behind the end is the end.
struct PositionRange {
  std::optional<long> first;  ///< the first one unless given
  std::optional<long> last;   ///< the end unless given
  long step = 1;              ///< at least 1
};

/// A point of time: microseconds since 1970-01-01T00:00:00 of the coordinates' calendar.
struct TimePoint {
  long microseconds = 0;  ///< negative before 1970
};

/// A coordinate as a program has it. A text stands for a time where the coordinates are times.
using CoordinateValue = std::variant<double, std::string, TimePoint>;

/// The position whose coordinate is nearest, the first of two as near. Texts are found exactly. It
/// removes the axis as `Position` does.
struct Nearest {
  CoordinateValue value;  ///< what is looked for
};

/// The positions whose coordinates are from `first` to `last`, both included; an end of a given
/// precision, such as "2011-08", goes to its end.
struct CoordinateRange {
  CoordinateValue first;  ///< the one end
  CoordinateValue last;   ///< the other end
};

/// A coordinate or a range of these as people write it: "500", "DAPI", "2011-08-01:2011-08-31". Of
/// a range of times the `:` is the one at which both sides read as times.
struct CoordinateText {
  std::string text;  ///< as written
};

/// Which part of an axis.
using Choice = std::variant<Position, PositionRange, Nearest, CoordinateRange, CoordinateText>;

/// The part of an axis that goes into a table.
struct AxisSelection {
  std::string axis;  ///< the axis's name
  Choice choice;     ///< which of its positions
};

/// Reads "time=3", "time=0:3" (positions, end excluded), "level=@500" (the nearest coordinate) or
/// "time=@2011-08-01:2011-08-31" (coordinates, end included).
/// @throws Error for any other text; it is named.
[[nodiscard]] AxisSelection parseSelection(std::string_view text);

/// A variable that whoever made the dictionary could not make an array of.
struct Unreadable {
  std::string name;    ///< the variable's name
  std::string reason;  ///< such as "it holds text"
};

/// What is asked of a table of the arrays of a dictionary.
struct Request {
  /// The dictionary, as sentences start with it.
  std::string source = "The dictionary";

  /// Shell patterns of names, of paths where they hold a `/`; all arrays unless given.
  std::optional<std::vector<std::string>> variables;
  /// Patterns of what is left out of these.
  std::vector<std::string> exclude;

  /// The axes whose points become rows, the first varying fastest. Unless given: the axes of the
  /// array with the most values (the first of several; no axis twice), dimension 0 first, less
  /// those that have no coordinates and at most 16 points (unless none would be left).
  std::optional<std::vector<std::string>> index;

  /// Parts of axes; the whole of all others.
  std::vector<AxisSelection> selections;

  /// Whether positions stand where coordinates would. Coordinate variables are columns then.
  bool positions = false;

  /// Whether the table may have more than MOST_COLUMNS columns.
  bool allColumns = false;

  /// What stands in the dictionary's file, but not in the dictionary.
  std::vector<Unreadable> unreadable;
};

/// More columns than this are an error unless they are asked for.
inline constexpr unsigned long MOST_COLUMNS = 100;

}  // namespace quillon::tables
