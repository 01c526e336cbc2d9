/// @file
/// Which arrays of a dictionary become which columns of a table.
#pragma once

#include <object_model/Dictionary.h>
#include <quillon/tables/Request.h>

#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace quillon::tables {

/// Stands for no index axis.
inline constexpr std::size_t NO_AXIS = std::numeric_limits<std::size_t>::max();

/// Which indices of a dimension a column reads: those from `first` on, `step` apart, along the
/// index axis number `axis`; or `first` alone where that is NO_AXIS.
struct DimensionUse {
  unsigned long first = 0;     ///< counted from 0
  unsigned long step = 1;      ///< at least 1
  std::size_t axis = NO_AXIS;  ///< in the order of Plan::axes
};

/// Where an array is found.
struct ArraySource {
  std::string variable;      ///< the entry's name
  unsigned long levels = 0;  ///< how many containers further up than the table's dictionary
  /// Set for the coordinates that this array knows of this dimension of its own, see
  /// `memory::HasCoordinates`.
  std::optional<unsigned long> coordinatesOf;
};

/// One column of the table.
struct PlannedColumn {
  std::string name;      ///< unique in the table
  bool isIndex = false;  ///< whether it tells the points of an index axis
  std::optional<ArraySource>
      source;  ///< the array that is read; the column has positions unless set
  std::vector<DimensionUse>
      dimensions;  ///< one for each dimension of that array; one for positions
};

/// One axis whose points become rows.
struct IndexAxis {
  std::string name;        ///< unique in the plan
  unsigned long size = 0;  ///< how many points of it the table has
};

/// A table as data: what is read, not the values.
struct Plan {
  std::vector<IndexAxis> axes;         ///< the first varies fastest
  std::vector<PlannedColumn> columns;  ///< coordinates of single positions, the index, the values
  unsigned long rows = 1;              ///< the product of the axes' sizes
  std::vector<std::string> notes;  ///< a sentence for each array that is not there, with the reason
};

/// Plans a table of the arrays of `dictionary`, in its order; nested dictionaries are not part of
/// it.
///
/// An array that has none of the index axes is left out with a note unless the request's variables
/// name it or it is a single value; the others are repeated along the index axes that they lack,
/// and spread over columns along the axes that are not in the index. These columns are called
/// `intensity[time=3, channel=DAPI]`: the last dimension first, by coordinate, or by position where
/// the axis has no coordinates, one is missing or one occurs twice. Index columns are called after
/// their axis and hold coordinates: those that an array of the dictionary knows (HasCoordinates;
/// but not where they are another array's values, such as the names of stations, which are a column
/// of their own), else the one-dimensional array called as its axis in the dictionary or the
/// nearest enclosing one; positions, as the dictionary counts them, where there are none. A
/// coordinate array is no column of its own beside these. A column of positions is called `NAME
/// (position)` where an array has its name.
/// @param dictionary borrowed for the call.
/// @param request what is asked for.
/// @throws Error for names that match nothing (it offers the nearest ones), an axis of two sizes, a
///   part of an axis that is empty or outside of it, too many columns, or nothing to show.
[[nodiscard]] Plan plan(const object_model::Dictionary& dictionary, const Request& request = {});

}  // namespace quillon::tables
