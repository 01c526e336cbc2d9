/// @file
/// What the columns of a table of one's own are read from.
#pragma once

#include <quillon/tables/Table.h>

#include <algorithm>
#include <vector>

namespace quillon::tables {

/// One column of a table, in whatever way it keeps its cells. Derive from it to make a `Table` of
/// what is neither a dictionary nor a `tabra::DataFrameView`.
///
/// Ownership: belongs to its table. Threads: const operations may run concurrently where tables
/// made of it are to be read so. Errors: what operations throw passes through the table's.
class ColumnSource {
 public:
  ColumnSource() = default;
  ColumnSource(const ColumnSource&) = delete;
  ColumnSource& operator=(const ColumnSource&) = delete;
  virtual ~ColumnSource() = default;

  /// Fills in what is known of the column, called once. Its name is left as it is where the table
  /// knows it.
  virtual void describe(Column& column) const = 0;

  /// Copies `count` cells from the row `firstRow` on, in the C++ type that the column's type stands
  /// for; the rows are there.
  virtual void read(unsigned long firstRow, unsigned long count, void* destination) const = 0;

  /// Copies which of these cells are missing; called for columns that are described as nullable.
  virtual void readMissing(unsigned long /*firstRow*/, unsigned long count,
                           bool* destination) const {
    std::fill_n(destination, count, false);
  }

  /// Where these cells lie one after the other in memory, in the column's type and aligned for it;
  /// null where they do not. There is at least one row. It holds as long as the source does.
  virtual const void* cellsInPlace(unsigned long /*firstRow*/, unsigned long /*count*/) const {
    return nullptr;
  }

  /// How times are best written; asked of columns of times.
  virtual memory::TimeForm timeForm() const { return memory::TimeForm::Date; }

  /// Whether reading any rows costs no more than copying them.
  virtual bool isInMemory() const { return true; }

  /// The blocks in which cells are kept, as extents along the index axes, one for each; empty where
  /// there are none.
  virtual std::vector<unsigned long> chunks() const { return {}; }
};

}  // namespace quillon::tables
