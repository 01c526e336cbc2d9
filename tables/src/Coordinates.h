#pragma once

#include <object_model/Dictionary.h>
#include <quillon/memory/Axes.h>
#include <quillon/memory/Facets.h>
#include <quillon/tables/Plan.h>

#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace quillon::tables {

/// Why no column can hold the array's values; empty when one can.
std::string misfitOf(const object_model::Array& array);

/// Whether the array's values are integers the lowest of which stands for none.
bool lowestIsMissing(const object_model::Array& array);

/// The array where `source` says that it is, seen from `dictionary`, which it does not outlive.
/// @throws Error when it is not there.
std::shared_ptr<const object_model::Array> findArray(const object_model::Dictionary& dictionary,
                                                     const ArraySource& source);

/// Where the coordinates along the axis `axis` of `size` points are: those that an array of the
/// dictionary knows, else the one-dimensional array called as its axis in the dictionary or the
/// nearest one around it. Nothing where there are none that a column can hold.
std::optional<ArraySource> findCoordinates(const object_model::Dictionary& dictionary,
                                           const std::string& axis, unsigned long size);

/// Holds every time and every integer exactly.
using Number = long double;

/// All coordinates along an axis.
struct CoordinateValues {
  /// Numbers, texts, or times if `isTime`.
  std::variant<std::vector<Number>, std::vector<std::string>, std::vector<long>> values;
  bool isTime = false;
  bool isFloat = false;    ///< numbers are stored as floats
  bool isInteger = false;  ///< numbers are integers
  memory::Calendar calendar = memory::Calendar::Standard;

  /// Those that are looked for by a number; texts have none.
  std::vector<Number> asNumbers() const;
  /// A text for each, the shortest that tells it; empty for those that are missing.
  std::vector<std::string> asTexts() const;
};

CoordinateValues valuesOf(const object_model::Array& coordinates);

}  // namespace quillon::tables
