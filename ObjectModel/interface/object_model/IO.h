/// @file
/// Dictionaries of arrays as tables, and tables as text.
#pragma once

#include <object_model/Export.h>
#include <tabra/DataFrameView.h>

#include <memory>
#include <string>
#include <vector>

namespace object_model {

class Dictionary;

/// Turns the arrays of `dictionary` into a flat table in `frame`, whose previous content is lost.
///
/// `indexNames` lists the axes that become the table's row index, matched exactly with the axis
/// names that the arrays' descriptors give. The table gets one row for every combination of index
/// coordinates, the first index axis varying fastest. Its columns, from left to right:
///
/// - one index column for each name of `indexNames`, called "Index [NAME]", which holds the
///   coordinates (0, 1, 2, ...) as unsigned integers;
/// - for each array entry, in entry order, one column for every coordinate combination of its axes
///   that are not index axes (the first varying fastest), called "ENTRY[AXIS=1, OTHER=4]", or just
///   "ENTRY" where there is no such axis. Its unit is the array's physical unit.
///
/// A one-dimensional array always gives a single column: without an index axis, its first element
/// stands in every row. An array that lacks an index axis has its values repeated along it. Entries
/// that are no arrays and arrays of 0 or more than 3 dimensions are passed over. With more than
/// three index names, or where index axes and further axes of an array add up to more than three,
/// the columns are made and left unfilled. An index name that no array carries gives a table
/// without rows.
///
/// @param dictionary borrowed for the call.
/// @param frame borrowed for the call; must not be null.
/// @param indexNames the index axes, in the order of the index columns.
/// @throws std::runtime_error "Unconvertible Dictionary. Same axes must have the same size": an
///   index axis has different lengths in two arrays, or along two axes of one. The frame is
///   untouched.
/// @throws std::runtime_error "Non convertible type": an array holds anything but `UInt`, `Int` or
///   `Double`. The frame is untouched.
/// @throws std::length_error when there would be more rows than 64 bits can count, or more columns
///   than any vector can have. The frame is untouched.
/// @throws InvalidCall "Unsuported export" when an array changes its element type during the call.
/// Exceptions of the dictionary, the arrays and the frame pass through; the frame is then partly
/// rebuilt.
/// Threads: nothing else may use the frame during the call; the dictionary is only read, though
/// through its accessors for writing.
OBJECT_MODEL_EXPORT void exportToDataFrame(Dictionary& dictionary, tabra::DataFrameView* frame,
                                           const std::vector<std::string>& indexNames);

/// The first `maxRows` rows of `frame` as aligned plain text; every row when `maxRows` is 0.
///
/// The first line holds the column names, then follows a line for each row, and the line "..." when
/// rows were left out. Every column but the last is left-aligned and padded with blanks to a width
/// of 15, or of its name's length and two where that is more. Widths come from the names alone: a
/// value that fills its column runs straight into the next one. Values are written as a stream in
/// its default state writes them, under the global locale: floating-point numbers with six
/// significant digits. A column of a type other than the three of `tabra::DataTypeId` has empty
/// cells. A frame without columns yields no header and no rows. Each line ends in a newline.
///
/// Only the rows shown are read, in one `read` a column.
///
/// @param frame read during the call; must not be null.
/// @param maxRows how many rows to show at most; 0 for all.
/// @throws std::length_error when the rows to show need more memory than any vector or string can
///   have, or a column name has more characters than a width can count (2^31 - 3).
/// Exceptions of the frame pass through.
/// Threads: calls may run concurrently where the frame may be read concurrently.
OBJECT_MODEL_EXPORT std::string exportDataFrameToString(std::shared_ptr<tabra::DataFrameView> frame,
                                                        unsigned long maxRows);

/// The first `maxRows` rows of `frame` as an HTML table; every row when `maxRows` is 0.
///
/// Rows, columns and values are those of exportDataFrameToString(); rows left out show as one row
/// of cells that hold "...". The layout is fixed to the character and unusual: every cell, in head
/// and body, is a `<th>`, and the body's rows are nested in one further row. Browsers show it as a
/// plain table.
///
/// Column names go in as they are: a name that comes from elsewhere may hold markup. Escape such
/// names before they reach the table (or give the frame a wrapper whose columnName() escapes), or
/// the page runs what they hold. Values need no escaping.
///
/// @param frame read during the call; must not be null.
/// @param maxRows how many rows to show at most; 0 for all.
/// Errors and threads: as exportDataFrameToString().
OBJECT_MODEL_EXPORT std::string exportDataFrameToHtml(std::shared_ptr<tabra::DataFrameView> frame,
                                                      unsigned long maxRows);

}  // namespace object_model
