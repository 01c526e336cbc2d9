/// @file
/// The interface of a table of named, typed columns.
#pragma once

#include <tabra/DataType.h>
#include <tabra/Export.h>

#include <array>
#include <string>

namespace tabra {

/// A table of named, typed columns that all have the same number of rows. Columns and rows are
/// counted from 0.
///
/// Ownership: references returned stay valid until the table changes.
/// Errors: what an index outside the table does is the concrete class's choice; see there.
/// Threads: the interface takes no locks; what may run concurrently is the concrete class's choice.
/// ABI: an interface without fields. Each virtual is a slot in the order declared here; append
/// after the last, never insert, reorder or remove.
class TABRA_EXPORT DataFrameView {
 public:
  virtual ~DataFrameView();  // slots 0 and 1

  /// The number of columns and the number of rows, in this order.
  virtual const std::array<unsigned long, 2>& shape() const = 0;  // slot 2

  /// The name of a column; names need not be unique.
  virtual const std::string& columnName(unsigned long column) const = 0;  // slot 3

  /// The unit of a column; empty for none. The object model never calls it.
  virtual const std::string& columnUnit(unsigned long column) const = 0;  // slot 4

  /// Sets the unit of a column.
  virtual void setColumnUnit(unsigned long column, const std::string& unit) = 0;  // slot 5

  /// What the cells of a column hold.
  virtual DataType columnDataType(unsigned long column) const = 0;  // slot 6

  /// Copies the cells of rows `firstRow` to `firstRow + count - 1` of a column to `destination`,
  /// one after the other, 8 bytes each. Where `count` is 0, `destination` may be null.
  virtual void read(unsigned long column, unsigned long firstRow, unsigned long count,
                    void* destination) const = 0;  // slot 7

  /// Copies `count` values, 8 bytes each, from `source` into a column, from row `firstRow` on.
  virtual void write(unsigned long column, unsigned long firstRow, unsigned long count,
                     const void* source) = 0;  // slot 8

  /// Appends a column at the right end, with as many rows as the table has. What its cells hold
  /// until they are written is the concrete class's choice; an export may leave some unwritten.
  virtual void addColumn(const std::string& name, DataType type) = 0;  // slot 9

  /// Inserts `count` rows before row `firstRow`, in every column; their cells as in addColumn().
  virtual void addRows(unsigned long firstRow, unsigned long count) = 0;  // slot 10

  /// Removes a column. A caller that removes several in a row counts them all as they were before
  /// the first removal; a call of any other operation ends such a run, and columns count anew.
  virtual void removeColumn(unsigned long column) = 0;  // slot 11

  /// Removes `count` rows from row `firstRow` on, in every column.
  virtual void removeRows(unsigned long firstRow, unsigned long count) = 0;  // slot 12

  /// Sets the unit of a column, through setColumnUnit().
  void setUnit(unsigned long column, const std::string& unit);
};

}  // namespace tabra
