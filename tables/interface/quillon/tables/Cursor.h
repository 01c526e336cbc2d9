/// @file
/// The rows of a table, run by run.
#pragma once

#include <quillon/tables/Table.h>

#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace quillon::tables {

/// Goes through the rows of a table from the first on and has one run of them at a time, all
/// columns of it, in the columns' types.
///
/// Ownership: shares the table's state; owns the cells of the run. Threads: one at a time.
class Cursor {
 public:
  /// Stands before the first row of `table`, and ends after `mostRows` rows; 0 for all.
  explicit Cursor(Table table, unsigned long mostRows = 0);
  ~Cursor();
  Cursor(const Cursor&) = delete;
  Cursor& operator=(const Cursor&) = delete;

  /// Reads the next run. @return false, without a run, at the end. Throws what Table::read() does.
  [[nodiscard]] bool next();

  /// The first row of the run.
  unsigned long firstRow() const { return m_first; }
  /// How many rows the run has.
  unsigned long rows() const { return m_rows; }

  /// The cells of a column in this run, rows() of them, until the next call of next(). `T` as for
  /// Table::read(). @throws std::invalid_argument for another `T`.
  template <class T>
  const T* cells(unsigned long column) const;

  /// Whether a cell of the run is missing; `row` is counted from firstRow().
  bool isMissing(unsigned long column, unsigned long row) const;

  /// Which cells of a nullable column are missing in this run, rows() of them, until the next call
  /// of next(); null for other columns, whose cells tell themselves.
  const bool* missing(unsigned long column) const;

 private:
  class Cells;

  Table m_table;
  unsigned long m_end;
  unsigned long m_first = 0;
  unsigned long m_rows = 0;
  std::vector<std::unique_ptr<Cells>> m_cells;
};

}  // namespace quillon::tables
